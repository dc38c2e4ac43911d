#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/ScriptRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::ScriptRun;
using ::testing::StartsWith;

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
  EXPECT_TRUE(given.machine.files.Exists(ScriptRun::kBackup));
}

TEST(UpdateDB, ADocumentOfTheDatabasesVersionDoesNothing) {
  for (const char* version : {"3.5", "3.5-1", "3.5-2", " 3.5 "}) {
    SCOPED_TRACE(version);
    ScriptRun given;
    given.PutDocument(version,
                      "<AddField><Name>A</Name><Type>Memo</Type><Size>0</Size></AddField>");
    EXPECT_EQ(given.Update().outcome, Outcome::Skipped);
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_FALSE(given.machine.files.Exists(ScriptRun::kBackup));
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
  ASSERT_TRUE(given.machine.files.Delete(ScriptRun::kTemplate).ok());
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

TEST(UpdateDB, ATemplateThatRefusesTheChangeIsAWarningAndTheDatabaseIsChanged) {
  for (const char* call : {"BeginTransaction", "AddField", "AddField My Note", "Commit"}) {
    SCOPED_TRACE(call);
    ScriptRun given;
    given.Refuse(ScriptRun::kTemplate, call, {.number = 3049, .description = "damaged"});
    const CommandRecord record = given.Update();
    EXPECT_EQ(record.outcome, Outcome::Warned);
    EXPECT_THAT(record.reason, HasSubstr("the template was not changed: damaged (3049)"));
    EXPECT_EQ(given.messages().size(), 2U) << "no error is shown";
    EXPECT_THAT(given.database().Describe(),
                Contains("Companies: Name 10 50, Active 1 0, My Note 10 80"));
    EXPECT_THAT(given.pattern().Describe(), Contains("Companies: Name 10 50")) << "wholly or not";
    EXPECT_EQ(given.access.world.open, 0);
  }
}

TEST(UpdateDB, ATableThatTheDatabaseLacksIsAWarningAndTheTemplateIsChanged) {
  ScriptRun given;
  given.database().Find("Companies")->definition.name = "Firms";
  EXPECT_EQ(given.Update().outcome, Outcome::Warned);
  EXPECT_THAT(given.database().Describe(), Contains("Firms: Name 10 50"));
  EXPECT_THAT(given.pattern().Describe(),
              Contains("Companies: Name 10 50, Active 1 0, My Note 10 80"));
}

TEST(UpdateDB, ACancelledInUseCheckLeavesTheDatabaseAndErrorOccurredClear) {
  ScriptRun given;
  given.access.failures = {{.number = 0, .description = {}},
                           {.number = 3356, .description = "in use"}};
  given.window.answers = {Answer::Cancel};
  const CommandRecord record = given.Update();
  EXPECT_THAT(given.messages(), ElementsAre(R"(Updating Database D:\Data\Korvo.mdb)",
                                            R"(Could not open database D:\Data\Korvo.mdb)"));
  EXPECT_FALSE(given.machine.files.Exists(ScriptRun::kBackup));
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
    const char* const next = answer == Answer::Retry ? "Backing up" : "Could not open database";
    EXPECT_THAT(given.messages(),
                ElementsAre(R"(Updating Database D:\Data\Korvo.mdb)", StartsWith(next)));
    EXPECT_EQ(given.database().Find("Companies")->PositionOf("Active").has_value(),
              answer == Answer::Retry);
  }
}

constexpr const char* kBrokenField = "<AddField><Name>Broken</Name></AddField>";

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

TEST(UpdateDB, AFieldThatIsNotWholeDoesNotMatterToAServer) {
  ServerRun given;
  given.PutDocument("3.6", kBrokenField, "ALTER TABLE Companies ADD A ntext");
  EXPECT_EQ(given.Update().outcome, Outcome::Warned);
  EXPECT_EQ(given.messages().size(), 2U) << "the script is shown";
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
