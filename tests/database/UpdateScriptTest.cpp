#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/UpdateScript.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MemoryTables;
using ::testing::Not;

constexpr const char* kDatabase = R"(D:\Data\Korvo.mdb)";
constexpr const char* kTemplate = R"(C:\Korvo\Customize\KorvoTPL.mdb)";
constexpr const char* kBackup = R"(D:\Data\Korvo 2006-05-04 03-02-01.mdb)";

/// A database of version 3.5, its template, and a document that adds two fields.
struct ScriptRun : DatabaseRun {
  ScriptRun() {
    run.state.KorvoDataBaseName = kDatabase;
    for (const char* path : {kDatabase, kTemplate}) {
      PutDatabase(path).Add("Companies", {"Name"});
      access.Put(path).Add("version", {"Version"}, {{"3.5"}});
    }
    database().Find("Companies")->rows = {{"Zent"}};
    PutDocument("3.6",
                "<AddField><Name>Active</Name><Type>yes/no</Type><Size>1</Size></AddField>"
                "<AddField><Name>My Note</Name><Type>Text</Type><Size>80</Size></AddField>");
  }

  void PutDocument(const std::string& version, const std::string& fields,
                   const std::string& script = "") {
    machine.files.PutFile(R"(D:\Package\db.xml)",
                          "<UpdateDB><Version>" + version + "</Version><SQLServerScript>" + script +
                              "</SQLServerScript><Table><Name>Companies</Name>" + fields +
                              "</Table></UpdateDB>");
  }
  MemoryTables& database() { return access.Put(kDatabase); }
  MemoryTables& pattern() { return access.Put(kTemplate); }
  CommandRecord Update() { return Call(UpdateDatabase, {"upddb", "db.xml"}); }
};

TEST(UpdateDB, AddsTheFieldsToTheDatabaseAndItsTemplate) {
  ScriptRun given;

  const CommandRecord record = given.Update();

  EXPECT_THAT(given.messages(), ElementsAre(R"(Updating Database D:\Data\Korvo.mdb)",
                                            "Backing up D:\\Data\\Korvo.mdb\r\n"
                                            "    as D:\\Data\\Korvo 2006-05-04 03-02-01.mdb"));
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("Companies: Name 10 50, Active 1 0, My Note 10 80", "  Zent||",
                          "version: Version 10 50", "  3.5"))
      << "no version is written back";
  EXPECT_THAT(given.pattern().Describe(),
              ElementsAre("Companies: Name 10 50, Active 1 0, My Note 10 80",
                          "version: Version 10 50", "  3.5"));
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_EQ(given.access.world.open, 0);
  EXPECT_TRUE(given.machine.files.Exists(kBackup));
}

TEST(UpdateDB, ADocumentOfTheDatabasesVersionDoesNothing) {
  for (const char* version : {"3.5", "3.5-1", "3.5-2", " 3.5 "}) {
    SCOPED_TRACE(version);
    ScriptRun given;
    given.PutDocument(version,
                      "<AddField><Name>A</Name><Type>Memo</Type><Size>0</Size></AddField>");
    EXPECT_EQ(given.Update().outcome, Outcome::Skipped);
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_FALSE(given.machine.files.Exists(kBackup));
  }
}

TEST(UpdateDB, AVersionWithADashComparesByItsFirstThreeCharacters) {
  ScriptRun given;
  given.database().Find("version")->rows = {{"3.6"}};
  given.PutDocument("3.6-1", "<AddField><Name>A</Name><Type>Memo</Type><Size>0</Size></AddField>");
  EXPECT_EQ(given.Update().outcome, Outcome::Skipped);
}

TEST(UpdateDB, ADatabaseWithoutAVersionDiffersFromEveryDocument) {
  ScriptRun given;
  given.database().tables.pop_back();
  EXPECT_EQ(given.Update().outcome, Outcome::Done);
  EXPECT_TRUE(given.database().Find("Companies")->PositionOf("Active").has_value());
}

TEST(UpdateDB, AFieldThatExistsIsSkippedSilently) {
  ScriptRun given;
  given.database().Find("Companies")->definition.fields[0].name = "ACTIVE";
  EXPECT_EQ(given.Update().outcome, Outcome::Done);
  EXPECT_THAT(given.database().Describe(), Contains("Companies: ACTIVE 10 50, My Note 10 80"));
  EXPECT_THAT(given.pattern().Describe(), Contains("Companies: Name 10 50, My Note 10 80"))
      << "the template gets what the database gets";
  EXPECT_EQ(given.messages().size(), 2U);
}

TEST(UpdateDB, TypeDateIsEight) {
  ScriptRun given;
  given.PutDocument("3.6", "<AddField><Name>Day</Name><Type>Date</Type><Size/></AddField>");
  given.Update();
  EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50, Day 8 0"));
}

TEST(UpdateDB, AMissingTemplateIsAWarningAndTheDatabaseIsChanged) {
  ScriptRun given;
  ASSERT_TRUE(given.machine.files.Delete(kTemplate).ok());
  EXPECT_EQ(given.Update().outcome, Outcome::Warned);
  EXPECT_TRUE(given.database().Find("Companies")->PositionOf("My Note").has_value());
}

TEST(UpdateDB, ATemplateThatDoesNotOpenIsAWarningAndTheDatabaseIsChanged) {
  ScriptRun given;
  const RuntimeError good{.number = 0, .description = {}};
  given.access.failures = {good, good, good,
                           good, good, {.number = 3049, .description = "damaged"}};
  const CommandRecord record = given.Update();
  EXPECT_EQ(record.outcome, Outcome::Warned);
  EXPECT_THAT(record.reason, HasSubstr("damaged"));
  EXPECT_TRUE(given.database().Find("Companies")->PositionOf("My Note").has_value());
}

TEST(UpdateDB, ATableThatTheDatabaseLacksIsAWarning) {
  ScriptRun given;
  given.database().Find("Companies")->definition.name = "Firms";
  EXPECT_EQ(given.Update().outcome, Outcome::Warned);
  EXPECT_THAT(given.pattern().Describe(), Contains("Companies: Name 10 50"));
}

TEST(UpdateDB, ACancelledInUseCheckLeavesTheDatabaseAndErrorOccurredClear) {
  ScriptRun given;
  given.access.failures = {{.number = 0, .description = {}},
                           {.number = 3356, .description = "in use"}};
  given.window.answers = {Answer::Cancel};
  const CommandRecord record = given.Update();
  EXPECT_THAT(given.messages(), ElementsAre(R"(Updating Database D:\Data\Korvo.mdb)",
                                            R"(Could not open database D:\Data\Korvo.mdb)"));
  EXPECT_FALSE(given.machine.files.Exists(kBackup));
  EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50"));
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(UpdateDB, AsksToCloseADatabaseThatCannotEvenBeRead) {
  for (const Answer answer : {Answer::Retry, Answer::Cancel}) {
    ScriptRun given;
    const RuntimeError held{.number = 3045, .description = "in use"};
    given.access.failures = {held, held};
    given.window.answers = {answer};
    given.Update();
    EXPECT_EQ(given.window.boxes.size(), 1U);
    EXPECT_EQ(given.database().Find("Companies")->PositionOf("Active").has_value(),
              answer == Answer::Retry);
  }
}

struct ErrorCase {
  const char* what;
  std::deque<RuntimeError> opens;  ///< version, in-use check, backup's two, database, template
  const char* file_call;
  const char* world_call;
};

TEST(UpdateDB, AnErrorIsThreeMessagesAndErrorOccurredStaysClear) {
  const RuntimeError trouble{.number = 3049, .description = "Trouble"};
  const RuntimeError good{.number = 0, .description = {}};
  const ErrorCase cases[] = {
      {"a damaged database", {trouble}, nullptr, nullptr},
      {"a disk that fills during the backup", {}, "Copy", nullptr},
      {"somebody opens it again", {good, good, good, good, trouble}, nullptr, nullptr},
      {"a field that cannot be added", {}, nullptr, "AddField"},
      {"changes that cannot be kept", {}, nullptr, "Commit"},
  };
  for (const ErrorCase& row : cases) {
    SCOPED_TRACE(row.what);
    ScriptRun given;
    given.access.failures = row.opens;
    if (row.file_call != nullptr) given.machine.files.log().FailWhere(row.file_call, trouble);
    if (row.world_call != nullptr) given.access.world.failures[row.world_call] = trouble;

    EXPECT_EQ(given.Update().outcome, Outcome::Failed);

    ASSERT_GE(given.messages().size(), 3U);
    const std::vector<std::string> last(given.messages().end() - 3, given.messages().end());
    EXPECT_THAT(last, ElementsAre(HasSubstr("Error updating Database"), HasSubstr("Trouble"),
                                  "Number: 3049"));
    EXPECT_THAT(last[1], ::testing::StartsWith("Description: "));
    EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50"));
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred) << "the run goes on";
    EXPECT_EQ(given.access.world.open, 0);
  }
}

TEST(UpdateDB, AnErrorKeepsWhatWasDoneBefore) {
  ScriptRun given;
  given.access.world.failures["AddField My Note"] = {.number = 61, .description = "Disk full"};
  EXPECT_EQ(given.Update().outcome, Outcome::Failed);
  EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50, Active 1 0"));
  EXPECT_THAT(given.pattern().Describe(), Contains("Companies: Name 10 50, Active 1 0"));
  EXPECT_TRUE(given.machine.files.Exists(kBackup)) << "the backup stays";
}

struct Killed {};

TEST(UpdateDB, AKillAtAnyCallLeavesTheDatabaseAsBeforeOrAsAfter) {
  ScriptRun whole;
  const std::vector<std::string> before = whole.database().Describe();
  std::size_t calls = 0;
  whole.access.world.on_call = [&](const std::string&) { ++calls; };
  whole.Update();
  const std::vector<std::string> after = whole.database().Describe();
  ASSERT_NE(before, after);
  for (std::size_t kill_at = 1; kill_at <= calls; ++kill_at) {
    SCOPED_TRACE(kill_at);
    ScriptRun given;
    std::size_t call = 0;
    given.access.world.on_call = [&](const std::string& what) {
      // The closing of a database is what the end of the process does, too.
      if (++call == kill_at && what != "Close") throw Killed();
    };
    try {
      given.Update();
    } catch (const Killed&) {
    }
    const std::vector<std::string> found = given.database().Describe();
    EXPECT_TRUE(found == before || found == after);
    if (found == after) {
      EXPECT_TRUE(given.pattern().Find("Companies")->PositionOf("My Note").has_value())
          << "the template is never behind the database";
    }
  }
}

TEST(UpdateDB, ADocumentThatCannotBeLoadedDoesNothing) {
  struct Case {
    const char* what;
    std::optional<std::string> contents;
  };
  const Case cases[] = {{"a missing one", std::nullopt},
                        {"an empty one", ""},
                        {"a truncated one", "<UpdateDB><Version>3.6"}};
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    ScriptRun given;
    if (row.contents) {
      given.machine.files.PutFile(R"(D:\Package\db.xml)", *row.contents);
    } else {
      ASSERT_TRUE(given.machine.files.Delete(R"(D:\Package\db.xml)").ok());
    }
    const CommandRecord record = given.Update();
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_THAT(given.access.opens, IsEmpty());
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(UpdateDB, AMissingArgumentIsReported) {
  ScriptRun given;
  given.Call(UpdateDatabase, {"upddb"});
  EXPECT_THAT(given.window.boxes, ElementsAre(HasSubstr("Number: 9")));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

// --- Servers ---

struct ServerRun : ScriptRun {
  ServerRun() {
    run.state.KorvoDataBaseName = "DSN=Korvo;";
    server.world.databases["server"].Add("version", {"Version"}, {{"3.5"}});
    server.world.databases["server"].Add("Companies", {"Name"});
  }
};

TEST(UpdateDB, AServerIsNotChangedAndItsScriptShown) {
  ServerRun given;
  given.PutDocument("3.6", "<AddField><Name>A</Name><Type>Memo</Type><Size/></AddField>",
                    "ALTER TABLE Companies\nADD A ntext");
  const std::vector<std::string> before = given.server.world.databases["server"].Describe();

  const CommandRecord record = given.Update();

  EXPECT_THAT(given.messages(),
              ElementsAre(" ",
                          "NOTE: Please ask your SQL Server Administrator to run \r\n"
                          "      the following script on the Korvo Database. \r\n"
                          "      ALTER TABLE Companies\r\nADD A ntext"));
  EXPECT_EQ(given.server.world.databases["server"].Describe(), before);
  EXPECT_EQ(record.outcome, Outcome::Warned) << "somebody has to run it";
  EXPECT_EQ(given.server.world.open, 0);
}

TEST(UpdateDB, AServerWithoutAScriptGetsNoNoticeAndNoChange) {
  ServerRun given;
  const std::vector<std::string> before = given.server.world.databases["server"].Describe();
  EXPECT_EQ(given.Update().outcome, Outcome::Done);
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_EQ(given.server.world.databases["server"].Describe(), before);
}

TEST(UpdateDB, AServerOfTheDocumentsVersionGetsNoNotice) {
  ServerRun given;
  given.PutDocument("3.5-4", "", "ALTER TABLE Companies");
  EXPECT_EQ(given.Update().outcome, Outcome::Skipped);
  EXPECT_THAT(given.messages(), IsEmpty());
}

TEST(UpdateDB, AServerThatCannotBeOpenedIsToldAsAnError) {
  ServerRun given;
  given.server.silent_failures = {{.number = 17, .description = "unreachable"}};
  EXPECT_EQ(given.Update().outcome, Outcome::Failed);
  EXPECT_THAT(given.messages(), Contains("Number: 91"));
  EXPECT_THAT(given.messages(), Not(Contains(HasSubstr("Updating Database"))));
}

}  // namespace
}  // namespace zent
