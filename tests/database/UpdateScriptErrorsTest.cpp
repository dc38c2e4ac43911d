#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/ScriptRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MemoryTables;
using testing::ScriptRun;
using ::testing::StartsWith;

constexpr const char* kSoundField = "<AddField><Name>Active</Name><Type>Yes/No</Type></AddField>";
constexpr const char* kBrokenField = "<AddField><Name>Broken</Name></AddField>";

struct ErrorCase {
  const char* what;
  std::deque<RuntimeError> opens;  ///< version, in-use check, backup's two, database, template
  const char* file_call;
  const char* world_call;
  const char* shown;  ///< how the description ends
};

constexpr const char* kTroubleWithBackup =
    "Trouble. The backup is D:\\Data\\Korvo 2006-05-04 03-02-01.mdb.";

TEST(UpdateDB, AnErrorIsThreeMessagesAndErrorOccurredStaysClear) {
  const RuntimeError trouble{.number = 3049, .description = "Trouble"};
  const RuntimeError good{.number = 0, .description = {}};
  const ErrorCase cases[] = {
      {"a damaged database", {trouble}, nullptr, nullptr, "Trouble"},
      {"a disk that fills during the backup", {}, "Copy", nullptr, "Trouble"},
      {"somebody opens it again",
       {good, good, good, good, trouble},
       nullptr,
       nullptr,
       kTroubleWithBackup},
      {"a change that cannot begin", {}, nullptr, "BeginTransaction", kTroubleWithBackup},
      {"a field that cannot be added", {}, nullptr, "AddField", "Trouble"},
      {"changes that cannot be kept", {}, nullptr, "Commit", kTroubleWithBackup},
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
    EXPECT_THAT(last, ElementsAre(HasSubstr("Error updating Database"), EndsWith(row.shown),
                                  "Number: 3049"));
    EXPECT_THAT(last[1], StartsWith("Description: "));
    EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50"));
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred) << "the run goes on";
    EXPECT_EQ(given.access.world.open, 0);
  }
}

TEST(UpdateDB, AFieldThatCannotBeAddedDoesNotStopTheOthers) {
  ScriptRun given;
  given.PutDocument("3.6",
                    "<AddField><Name>Active</Name><Type>Yes/No</Type></AddField>"
                    "<AddField><Name>My Note</Name><Type>Memo</Type></AddField>"
                    "<AddField><Name>Odd</Name><Type>Picture</Type></AddField>"
                    "<AddField><Name>Staff</Name><Type>Long</Type></AddField>");
  given.access.world.failures["AddField My Note"] = {.number = 3190, .description = "Too many"};
  given.access.world.failures["AddField Odd"] = {.number = 3259, .description = "No such type"};

  const CommandRecord record = given.Update();

  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, HasSubstr("My Note: Too many (3190); Odd: No such type (3259)"));
  EXPECT_THAT(given.messages(),
              ElementsAre(StartsWith("Updating Database "), StartsWith("Backing up "),
                          "Error updating Database ", "Description: Too many", "Number: 3190"))
      << "the first one is shown";
  for (const MemoryTables* tables : {&given.database(), &given.pattern()}) {
    EXPECT_THAT(tables->Describe(), Contains("Companies: Name 10 50, Active 1 0, Staff 4 0"));
  }
  EXPECT_TRUE(given.machine.files.Exists(ScriptRun::kBackup)) << "the backup stays";
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(UpdateDB, ChangesThatCannotBeKeptAreToldAlsoBehindAFieldThatCouldNotBeAdded) {
  ScriptRun given;
  given.access.world.failures["AddField My Note"] = {.number = 3190, .description = "Too many"};
  given.Refuse(ScriptRun::kDatabase, "Commit", {.number = 61, .description = "Disk full"});
  const CommandRecord record = given.Update();

  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, HasSubstr("nothing was kept: Disk full (61)"));
  EXPECT_THAT(given.messages(), Contains("Number: 3190"));
  EXPECT_EQ(given.messages().back(), "Number: 61");
  EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50"));
}

TEST(UpdateDB, AddsTheFieldsBeforeOneThatIsNotWhole) {
  ScriptRun given;
  given.PutDocument("3.6", std::string(kSoundField) + kBrokenField);

  const CommandRecord record = given.Update();

  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, HasSubstr("field 2: "));
  ASSERT_EQ(given.messages().size(), 5U);
  EXPECT_EQ(given.messages()[2], "Error updating Database ");
  EXPECT_EQ(given.messages()[4], "Number: 91");
  EXPECT_THAT(given.database().Describe(), Contains("Companies: Name 10 50, Active 1 0"));
  EXPECT_THAT(given.pattern().Describe(), Contains("Companies: Name 10 50, Active 1 0"));
}

TEST(UpdateDB, AFieldThatIsNotWholeDoesNotMatterToADatabaseOfThatVersion) {
  ScriptRun given;
  given.PutDocument("3.5", kBrokenField);
  EXPECT_EQ(given.Update().outcome, Outcome::Skipped);
  EXPECT_THAT(given.messages(), IsEmpty());
}

TEST(UpdateDB, ADocumentWithoutATableIsAnErrorBeforeTheDatabaseIsTouched) {
  ScriptRun given;
  given.machine.files.PutFile(R"(D:\Package\db.xml)",
                              "<UpdateDB><Version>3.6</Version></UpdateDB>");
  EXPECT_EQ(given.Update().outcome, Outcome::Failed);
  EXPECT_THAT(given.messages(),
              ElementsAre(R"(Updating Database D:\Data\Korvo.mdb)", "Error updating Database ",
                          StartsWith("Description: "), "Number: 91"));
  EXPECT_FALSE(given.machine.files.Exists(ScriptRun::kBackup));
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

}  // namespace
}  // namespace zent
