#include "database/Counters.h"
#include "database/DBFuncs.h"
#include "database/engines/odbc/servers/ServerDatabase.h"
#include "database/fakes/DatabaseRun.h"

namespace zent::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class LostServers : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    server.Run("CREATE TABLE Counters (TableName VARCHAR(50) PRIMARY KEY, CurCount VARCHAR(50))");
    server.Run("INSERT INTO Counters VALUES ('SiteID', '0'), ('Companies', 'CM00000007')");
    given.run.database.server = &server.engine();
    std::string connect = server.connect_text();
    database = KVOOpenSQLServerDB(given.run, connect);
    ASSERT_NE(database, nullptr);
  }
  void TearDown() override {
    database.reset();
    given.run.database.workspace.reset();
  }

  /// Lets the server end the connection, as it does when it is shut down.
  void Cut() {
    const auto id = database->OpenRecordset("SELECT CONNECTION_ID() AS Id", RecordsetUse::Read);
    ASSERT_TRUE(id.ok());
    server.Run("KILL CONNECTION " + id.value()->Get("Id").value_or({}).AsText());
  }
  std::string Count() {
    const auto another = server.Open();
    const auto rows = another->OpenRecordset("SELECT * FROM Counters WHERE TableName='Companies'",
                                             RecordsetUse::Read);
    return rows.ok() ? rows.value()->Get("CurCount").value_or({}).AsText() : "";
  }

  ServerDatabase server{GetParam()};
  DatabaseRun given;
  DatabasePtr database;
};

TEST_P(LostServers, GiveNoKeyAndSaySo) {
  Cut();
  std::string key = "as it was";
  EXPECT_FALSE(GetNextNumber(given.run, *database, "Companies", key));
  EXPECT_EQ(key, "as it was");
  ASSERT_FALSE(server.engine().Errors().empty());
  const EngineError& first = server.engine().Errors().front();
  EXPECT_EQ(first.sqlstate, "08S01") << first.number << " - " << first.source;
  EXPECT_THAT(
      given.window.boxes,
      ElementsAre(AllOf(StartsWith("Fatal Error - Could not get the Next Companies Number. - "),
                        HasSubstr("connection to the server was lost"))));
  EXPECT_EQ(Count(), "CM00000007");
}

TEST_P(LostServers, SaveNothingOfAnOpenTransaction) {
  ASSERT_TRUE(database->BeginTransaction().ok());
  std::string key;
  ASSERT_TRUE(GetNextNumber(given.run, *database, "Companies", key));
  Cut();
  EXPECT_FALSE(database->Commit().ok());
  EXPECT_EQ(server.engine().Errors().front().sqlstate, "08S01");
  EXPECT_FALSE(database->Rollback().ok());
  EXPECT_TRUE(database->Close().ok());
  EXPECT_EQ(Count(), "CM00000007");
}

TEST_P(LostServers, AreOpenedAgain) {
  Cut();
  EXPECT_FALSE(database->Tables().ok());
  std::string connect = server.connect_text();
  const DatabasePtr again = KVOOpenSQLServerDB(given.run, connect);
  ASSERT_NE(again, nullptr);
  std::string key;
  EXPECT_TRUE(GetNextNumber(given.run, *again, "Companies", key));
  EXPECT_EQ(key, "CM00000008");
}

ZENT_ON_SERVER_KINDS(LostServers);

}  // namespace
}  // namespace zent::testing
