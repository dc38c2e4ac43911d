#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/SQLFuncs.h"
#include "database/fakes/DatabaseRun.h"
#include "dataupdate/Conversion.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryDatabase;
using testing::MemoryTable;
using testing::MemoryTables;

/// A conversion of a server's database.
struct ServerConversion {
  explicit ServerConversion(const char* is_oracle = "0") : conversion(given.run, source, korvo) {
    given.run.database.kind = kSQLServer;
    given.SetIsOracle(is_oracle);
  }
  MemoryTables& tables() { return given.server.world.databases["server"]; }
  MemoryTables& old_tables() { return given.server.world.databases["source"]; }
  /// The SELECTs that were opened, in their order.
  std::vector<std::string> Queries() const {
    constexpr std::string_view kOpened = "OpenRecordset ";
    std::vector<std::string> queries;
    for (const std::string& call : given.server.world.calls) {
      if (call.starts_with("OpenRecordset Select ")) queries.push_back(call.substr(kOpened.size()));
    }
    return queries;
  }

  DatabaseRun given;
  MemoryDatabase source{given.server.world, "source", DatabaseKind::Server};
  MemoryDatabase korvo{given.server.world, "server", DatabaseKind::Server};
  Conversion conversion;
};

TEST(ConversionOfAServer, DescribesTheLinksThatItsWildcardsFind) {
  for (const char* is_oracle : {"0", "1"}) {
    SCOPED_TRACE(is_oracle);
    ServerConversion server(is_oracle);
    server.tables().Add("Links", {"FromID", "ToID", "Type", "SubType"}, {{"CS1", "CN1", "1", "2"}});
    server.tables().Add("Counters", {"TableName", "CurCount"}, {{"MLinkInfo", "ML00000006"}});
    server.tables().Add("MLinkInfo", {"MLinkIntID", "FromID", "ToID", "Type", "SubType",
                                      "MLinkType", "MLinkSubType", "Subject", "Notes", "DateTime",
                                      "CreateDate", "EditDate", "UserIDs"});

    DescribeLinks(server.conversion);

    EXPECT_THAT(server.Queries(),
                ElementsAre("Select * FROM Links where FromID LIKE 'CS%' AND (ToID LIKE 'CN%' OR "
                            "ToID LIKE 'RQ%') "));
    const MemoryTable& described = *server.tables().Find("MLinkInfo");
    ASSERT_EQ(described.rows.size(), 1U);
    EXPECT_EQ(described.Text(0, "MLinkIntID"), "ML00000007");
    EXPECT_EQ(described.Text(0, "FromID"), "CS1");
    EXPECT_EQ(described.Text(0, "ToID"), "CN1");
    EXPECT_EQ(described.Text(0, "SubType"), "2");
    EXPECT_EQ(described.Text(0, "CreateDate"), "5/4/2006 3:02:01 AM");
    EXPECT_EQ(described.Text(0, "UserIDs"), ",(All),");
    EXPECT_EQ(server.tables().Find("Counters")->Text(0, "CurCount"), "ML00000007");
    EXPECT_THAT(server.given.window.boxes, IsEmpty());
  }
}

TEST(ConversionOfAServer, TranslatesTheQueriesForKeys) {
  ServerConversion server;
  server.tables().Add("Links", {"FromID", "ToID", "Type", "SubType"});
  server.tables().Add("EMailsSent",
                      {"EMSentIntID", "SentToIntID", "MailType", "Info", "SentToDisplayName"},
                      {{"ES1", "\"CN1\"", "Resume", "Consultant\"7\";", ""}});

  LinkSentMail(server.conversion);

  // A quotation mark breaks such a query, as "'" does.
  EXPECT_THAT(server.Queries(),
              ElementsAre("Select ConsIntID From Consultants Where ConsultantID=''7''",
                          "Select DisplayName From Contacts Where ContactIntID=''CN1''"));
}

TEST(ConversionOfAServer, LooksForAnAliasAsItIsWritten) {
  ServerConversion server;
  server.tables().Add("Aliases", {"Name", "Alias"}, {{"William", "\"Bill\""}});
  server.old_tables().Add("Aliases", {"Name", "Alias"},
                          {{"William", "\"Bill\""}, {"William", "Will"}});

  AddAliases(server.conversion);

  EXPECT_THAT(server.Queries(),
              ElementsAre("Select * FROM Aliases WHERE Name='William' AND  Alias='\"Bill\"'",
                          "Select * FROM Aliases WHERE Name='William' AND  Alias='Will'"));
  EXPECT_EQ(server.tables().Find("Aliases")->rows.size(), 2U);
  EXPECT_EQ(server.tables().Find("Aliases")->Text(1, "Alias"), "Will");
  EXPECT_THAT(server.given.window.boxes, IsEmpty());
}

TEST(ConversionOfAServer, LosesNoSectionButTheOneThatCannotBeCommitted) {
  ServerConversion server;
  server.tables().Add("Aliases", {"Name", "Alias"});
  server.old_tables().Add("Aliases", {"Name", "Alias"}, {{"William", "Will"}});
  server.given.server.world.failures["Commit"] = StandardError(kDeviceIoError);

  AddAliases(server.conversion);
  EXPECT_TRUE(server.tables().Find("Aliases")->rows.empty());
  EXPECT_FALSE(server.korvo.InTransaction());
  server.given.server.world.failures.clear();
  AddAliases(server.conversion);

  EXPECT_EQ(server.tables().Find("Aliases")->rows.size(), 1U);
  EXPECT_THAT(server.given.window.boxes, ::testing::SizeIs(1));
}

}  // namespace
}  // namespace zent
