#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/jetdb/JetdbRun.h"
#include "support/TempFolder.h"

/// The program jetdb on real files, from a new database to a compacted one.
namespace zent::testing {
namespace {

using ::testing::HasSubstr;

struct Step {
  const char* what;
  std::vector<std::string> arguments;
  int exit_code;
  const char* told;
};

void RunSteps(const TempFolder& folder, const std::vector<Step>& steps) {
  for (const Step& step : steps) {
    SCOPED_TRACE(step.what);
    const JetdbEnd end = RunBuiltJetdb(step.arguments, folder.path());
    EXPECT_EQ(end.exit_code, step.exit_code) << end.output;
    EXPECT_THAT(end.output, HasSubstr(step.told));
  }
}

TEST(Jetdb, MakesFillsChecksAndCompactsADatabase) {
  const TempFolder folder;
  folder.Put(
      "make.sql",
      "CREATE TABLE People (Id COUNTER CONSTRAINT pk PRIMARY KEY, Name TEXT(50), Notes MEMO);\n"
      "CREATE INDEX ByName ON People (Name);\n"
      "INSERT INTO People (Name, Notes) VALUES ('M\xC3\xBCller', 'one; two');\n"
      "INSERT INTO People (Name) VALUES ('Ada');\n");
  RunSteps(folder,
           {{"create", {"create", "a.mdb"}, 0, ""},
            {"create again", {"create", "a.mdb"}, 1, "jetdb: 3204: "},
            {"a script", {"sql", "a.mdb", "--file", "make.sql"}, 0, "(1 rows changed)"},
            {"a query",
             {"sql", "a.mdb", "SELECT Name, Notes FROM People ORDER BY Id"},
             0,
             "M\xC3\xBCller  one; two\n"},
            {"a wrong statement", {"sql", "a.mdb", "SELEKT 1"}, 1, "jetdb: 3075: "},
            {"tables", {"tables", "a.mdb"}, 0, "People"},
            {"info", {"info", "a.mdb"}, 0, "Jet 4 (Access 2000 to 2003)"},
            {"dump", {"dump", "a.mdb"}, 0, "\"M\xC3\xBCller\""},
            {"verify", {"verify", "a.mdb"}, 0, "no faults"},
            {"compact", {"compact", "a.mdb", "b.mdb", "--new-password", "secret"}, 0, ""},
            {"without the password", {"verify", "b.mdb"}, 1, "jetdb: 3031: "},
            {"verify the new file", {"verify", "b.mdb", "--password", "secret"}, 0, "no faults"},
            {"a file that is not there", {"info", "none.mdb"}, 1, "jetdb: 3024: "},
            {"no verb", {}, 2, "Try 'jetdb --help'."},
            {"help", {"--help"}, 0, "compact"}});
}

TEST(Jetdb, KnowsItsOwnFileUnderAnotherName) {
  const TempFolder folder;
  RunSteps(folder, {{"create", {"create", "a.mdb"}, 0, ""},
                    {"a table", {"sql", "a.mdb", "CREATE TABLE T (N LONG)"}, 0, ""},
                    {"a row", {"sql", "a.mdb", "INSERT INTO T VALUES (1)"}, 0, ""},
                    {"its copy",
                     {"sql", "a.mdb", "INSERT INTO T IN './a.mdb' SELECT N FROM T"},
                     0,
                     "(1 rows changed)"}});
}

TEST(Jetdb, TakesNamesInAnyLetters) {
  const TempFolder folder;
  RunSteps(folder, {{"create", {"create", "D\xC3\xA4t\xC3\xA9n.mdb"}, 0, ""},
                    {"verify", {"verify", "D\xC3\xA4t\xC3\xA9n.mdb"}, 0, "no faults"}});
  const std::filesystem::path name(u8"D\u00E4t\u00E9n.mdb");
  EXPECT_TRUE(std::filesystem::exists(folder.path() / name));
}

TEST(Jetdb, LeavesADamagedFileAsItIs) {
  const TempFolder folder;
  ASSERT_EQ(RunBuiltJetdb({"create", "a.mdb"}, folder.path()).exit_code, 0);
  std::string bytes = folder.Get("a.mdb");
  bytes.resize(bytes.size() - 3000);
  folder.Put("a.mdb", bytes);
  const JetdbEnd end = RunBuiltJetdb({"verify", "a.mdb"}, folder.path());
  EXPECT_EQ(end.exit_code, 1);
  EXPECT_EQ(folder.Get("a.mdb"), bytes);
}

}  // namespace
}  // namespace zent::testing
