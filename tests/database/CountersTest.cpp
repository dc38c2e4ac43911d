#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "database/Counters.h"
#include "database/DBFuncs.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MemoryRow;
using testing::MemoryTable;

using Rows = std::vector<MemoryRow>;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";

/// A database with counters, opened.
struct Counting : DatabaseRun {
  explicit Counting(std::vector<MemoryRow> rows) {
    access.Put(kPath).Add("Counters", {"TableName", "CurCount"}, std::move(rows));
    database = std::move(OpenDatabase(run, kPath).value());
  }
  bool Draw(const std::string& table) { return GetNextNumber(run, *database, table, key); }
  MemoryTable& counters() { return *access.Put(kPath).Find("Counters"); }

  DatabasePtr database;
  std::string key = "as it was";
};

struct PrefixCase {
  const char* table;
  const char* prefix;
};

constexpr PrefixCase kPrefixCases[] = {{"companies", "CM"},
                                       {"contacts", "CN"},
                                       {"consultants", "CS"},
                                       {"requirements", "RQ"},
                                       {"emailssent", "ES"},
                                       {"emailsreceived", "ER"},
                                       {"emailslinked", "EL"},
                                       {"reminders", "RM"},
                                       {"mlinkinfo", "ML"},
                                       {"  Companies ", "CM"},
                                       {"MLinkInfo", "ML"},
                                       {"Lookup", ""},
                                       {"", ""},
                                       {"companies2", ""}};

TEST(KeyFieldPrefix, NamesTheTablesWithKeys) {
  for (const PrefixCase& row : kPrefixCases) {
    EXPECT_EQ(KeyFieldPrefix(row.table), row.prefix) << row.table;
  }
}

struct KeyCase {
  const char* what;
  const char* last;
  const char* site;
  const char* next;
};

constexpr KeyCase kKeyCases[] = {
    {"the main site", "CM00000099", "0", "CM00000100"},
    {"another site", "CM30000099", "3", "CM30000100"},
    {"the largest serial grows by a digit", "CM99999999", "0", "CM100000000"},
    {"the largest serial of a site grows by a digit", "CM39999999", "3", "CM310000000"},
    {"the stored prefix is kept", "XY00000001", "0", "XY00000002"},
    {"the site's digit takes the place of what was there", "CM00000041", "3", "CM30000042"},
    {"the digit of another site counts at the main one", "CM30000041", "0", "CM30000042"},
    {"a short key", "CM7", "0", "CM00000001"},
    {"no number", "CMABCDEFGH", "0", "CM00000001"},
    {"an empty key", "", "0", "00000001"},
};

TEST(NextKey, AddsOneToTheSerial) {
  for (const KeyCase& row : kKeyCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(NextKey(row.last, row.site), row.next);
  }
}

TEST(GetNextNumber, DrawsTheNextKeyAndKeepsIt) {
  Counting given(Rows{{"Companies", "CM00000099"}, {"Contacts", "CN00000007"}});

  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000100");
  EXPECT_EQ(given.counters().Text(0, "CurCount"), "CM00000100");
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000101");
  EXPECT_TRUE(given.Draw("Contacts"));
  EXPECT_EQ(given.key, "CN00000008");
  EXPECT_EQ(given.counters().rows.size(), 2U);
}

TEST(GetNextNumber, ReadsTheSiteAndTheCounterAsTheyAreWritten) {
  Counting given(Rows{{"Companies", "CM00000099"}});
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_THAT(given.access.world.calls,
              ElementsAre("OpenRecordset SELECT * FROM Counters WHERE TableName='SiteID' ",
                          "OpenRecordset SELECT * FROM Counters WHERE TableName='Companies' ",
                          "Edit", "Set CurCount=CM00000100", "Update"));
}

struct SiteCase {
  const char* what;
  FieldValue site;
  const char* key;
};

const SiteCase kSiteCases[] = {
    {"site 3", "3", "CM30000100"},
    {"its first character counts", " 3 is the site", "CM30000100"},
    {"site 0", "0", "CM30000100"},
    {"a blank value is site 0", "   ", "CM30000100"},
    {"a null is site 0", {}, "CM30000100"},
    {"site 5 takes over", "5", "CM50000100"},
    {"a character of several bytes is not cut", "\u00C4 7", "CM\u00C40000100"},
};

TEST(GetNextNumber, BuildsTheSiteIntoTheKey) {
  for (const SiteCase& row : kSiteCases) {
    SCOPED_TRACE(row.what);
    Counting given(Rows{{"SiteID", row.site}, {"Companies", "CM30000099"}});
    EXPECT_TRUE(given.Draw("Companies"));
    EXPECT_EQ(given.key, row.key);
  }
}

struct MissingCase {
  const char* table;
  const char* at_main_site;  ///< empty: no key
  const char* at_site_3;
};

constexpr MissingCase kMissingCases[] = {
    {"Companies", "CM00000001", "CM30000001"},
    {"COMPANIES", "CM00000001", "CM30000001"},
    {"Reminders", "RM00000001", "RM30000001"},
    {"EMailsLinked", "EL00000001", "EL30000001"},
    {"MLinkInfo", "ML00000001", "ML30000001"},
    {"contacts", "", ""},
    {"Consultants", "", ""},
    {"Requirements", "", ""},
    {"EMailsSent", "", ""},
    {"EMailsReceived", "", ""},
    {"Lookup", "", ""},
};

TEST(GetNextNumber, MakesTheCounterOfFourTablesOnDemand) {
  for (const MissingCase& row : kMissingCases) {
    SCOPED_TRACE(row.table);
    for (const bool main_site : {true, false}) {
      const std::string expected = main_site ? row.at_main_site : row.at_site_3;
      Counting given(Rows{{"SiteID", main_site ? "0" : "3"}});
      EXPECT_EQ(given.Draw(row.table), !expected.empty());
      EXPECT_EQ(given.key, expected.empty() ? "as it was" : expected);
      ASSERT_EQ(given.counters().rows.size(), expected.empty() ? 1U : 2U);
      if (expected.empty()) continue;
      EXPECT_EQ(given.counters().Text(1, "TableName"), row.table) << "as the caller wrote it";
      EXPECT_EQ(given.counters().Text(1, "CurCount"), expected);
    }
  }
}

TEST(GetNextNumber, WithoutAKeyTellsNothing) {
  Counting given(Rows{});
  EXPECT_FALSE(given.Draw("contacts"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(GetNextNumber, TellsADatabaseError) {
  for (const char* call : {"OpenRecordset", "Edit", "Set", "Update"}) {
    SCOPED_TRACE(call);
    Counting given(Rows{{"Companies", "CM00000099"}});
    given.access.world.failures[call] = {.number = 3052, .description = "No more locks."};
    EXPECT_FALSE(given.Draw("Companies"));
    EXPECT_EQ(given.key, "as it was");
    EXPECT_THAT(given.window.boxes,
                ElementsAre("Fatal Error - Could not get the Next Companies Number. - "
                            "No more locks."));
    EXPECT_EQ(given.counters().Text(0, "CurCount"), "CM00000099");
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(GetNextNumber, TellsAMissingTableOfCounters) {
  Counting given(Rows{});
  given.access.Put(kPath).tables.clear();
  EXPECT_FALSE(given.Draw("Companies"));
  EXPECT_THAT(given.window.boxes.at(0), HasSubstr("Could not get the Next Companies Number. - "));
}

TEST(GetNextNumber, DrawsAgainWhenAnotherUserWasFaster) {
  Counting given(Rows{{"Companies", "CM00000099"}});
  given.access.world.on_call = [&](const std::string& call) {
    given.access.world.failures.clear();
    if (call != "Update" || given.counters().Text(0, "CurCount") != "CM00000099") return;
    given.counters().rows[0][1] = "CM00000100";
    given.access.world.failures["Update"] = {.number = 3197, .description = "changed"};
  };
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000101");
}

/// The same table on a server, where others draw at the same time.
struct CountingOnServer : DatabaseRun {
  explicit CountingOnServer(std::vector<MemoryRow> rows) {
    server.world.databases["server"].Add("Counters", {"TableName", "CurCount"}, std::move(rows));
    database = std::move(OpenDatabase(run, "DSN=Korvo;").value());
  }
  bool Draw(const std::string& table) { return GetNextNumber(run, *database, table, key); }
  MemoryTable& counters() { return *server.world.databases["server"].Find("Counters"); }

  DatabasePtr database;
  std::string key;
};

TEST(GetNextNumber, ChangesARowOfAServerOnlyWhileItHoldsWhatWasRead) {
  CountingOnServer given(Rows{{"Companies", "CM00000099"}});
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000100");
  EXPECT_EQ(given.server.world.calls.back(),
            "Execute UPDATE Counters SET CurCount='CM00000100' WHERE TableName='Companies' AND "
            "CurCount='CM00000099'");
}

TEST(GetNextNumber, NeverGivesAKeyThatAnotherProgramDrew) {
  CountingOnServer given(Rows{{"Companies", "CM00000099"}});
  std::vector<std::string> theirs;
  given.server.world.on_call = [&](const std::string& call) {
    if (!call.starts_with("Execute") || theirs.size() >= 3) return;
    theirs.push_back(NextKey(given.counters().Text(0, "CurCount"), "0"));
    given.counters().rows[0][1] = theirs.back();
  };
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000103");
  EXPECT_THAT(theirs, ElementsAre("CM00000100", "CM00000101", "CM00000102"));
}

TEST(GetNextNumber, GivesUpWhenItNeverGetsATurn) {
  CountingOnServer given(Rows{{"Companies", "CM00000099"}});
  given.server.world.on_call = [&](const std::string& call) {
    if (!call.starts_with("Execute")) return;
    given.counters().rows[0][1] = NextKey(given.counters().Text(0, "CurCount"), "0");
  };
  EXPECT_FALSE(given.Draw("Companies"));
  EXPECT_THAT(given.window.boxes.at(0), HasSubstr("Others draw from the counter all the time."));
}

TEST(GetNextNumber, AddsACounterToAServerWhileItHoldsTheSitesRow) {
  CountingOnServer given(Rows{{"SiteID", "0"}});
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000001");
  EXPECT_EQ(given.counters().Text(0, "CurCount"), "0");
  const std::vector<std::string>& calls = given.server.world.calls;
  const auto begin = std::find(calls.begin(), calls.end(), "BeginTransaction");
  EXPECT_THAT(
      std::vector<std::string>(begin, calls.end()),
      ElementsAre("BeginTransaction",
                  "Execute UPDATE Counters SET CurCount=CurCount WHERE TableName='SiteID'",
                  "OpenRecordset SELECT * FROM Counters WHERE TableName='Companies' ", "AddNew",
                  "Set TableName=Companies", "Set CurCount=CM00000001", "Update", "Commit"));
}

TEST(GetNextNumber, HoldsAllRowsOfAServerThatHasNoneOfItsSite) {
  CountingOnServer given(Rows{{"Contacts", "CN00000007"}});
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000001");
  EXPECT_EQ(given.counters().Text(0, "CurCount"), "CN00000007");
  const std::vector<std::string>& calls = given.server.world.calls;
  const auto begin = std::find(calls.begin(), calls.end(), "BeginTransaction");
  ASSERT_GE(std::distance(begin, calls.end()), 4);
  EXPECT_THAT(std::vector<std::string>(begin, begin + 4),
              ElementsAre("BeginTransaction",
                          "Execute UPDATE Counters SET CurCount=CurCount WHERE TableName='SiteID'",
                          "Execute UPDATE Counters SET CurCount=CurCount",
                          "OpenRecordset SELECT * FROM Counters WHERE TableName='Companies' "));
}

TEST(GetNextNumber, AddsTheFirstCounterOfAServer) {
  CountingOnServer given(Rows{});
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000001");
}

TEST(GetNextNumber, TakesTheCounterThatAnotherProgramAddedMeanwhile) {
  CountingOnServer given(Rows{{"SiteID", "0"}});
  given.server.world.on_call = [&](const std::string& call) {
    if (call == "BeginTransaction") given.counters().rows.push_back({"Companies", "CM00000001"});
  };
  EXPECT_TRUE(given.Draw("Companies"));
  EXPECT_EQ(given.key, "CM00000002");
  EXPECT_EQ(given.counters().rows.size(), 2U);
}

}  // namespace
}  // namespace zent
