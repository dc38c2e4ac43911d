#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/InUseCheck.h"
#include "database/fakes/DatabaseRun.h"
#include "lib/AppSettings.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";

constexpr const char* kInUseText =
    "To update the current version of Korvo,\r\n"
    "the database (D:\\Data\\Korvo.mdb) need to be updated too.\r\n"
    "\r\n"
    "The database cannot be updated because it is opened by you or \r\n"
    "someother Korvo user on the network.\r\n"
    "\r\n"
    "Close all instances of Korvo and click on 'Retry' or \r\n"
    "click on 'Cancel' to cancel the update.";

RuntimeError InUse(int number = 3356) { return {.number = number, .description = "in use"}; }

TEST(IsDataBaseOpen, IsFalseWhenTheExclusiveOpenSucceeds) {
  DatabaseRun given;
  given.access.Put(kPath);

  EXPECT_FALSE(IsDataBaseOpen(given.run, kPath));

  ASSERT_EQ(given.access.opens.size(), 1U);
  EXPECT_TRUE(given.access.opens[0].exclusive);
  EXPECT_EQ(given.access.world.open, 0);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(IsDataBaseOpen, AsksWhileTheDatabaseIsInUse) {
  for (const int number : {3356, 3045}) {
    DatabaseRun given;
    given.access.Put(kPath);
    given.run.SetTitle("ZentUpdate 3.6.0");
    given.access.failures = {InUse(number)};
    given.window.answers = {Answer::Cancel};

    EXPECT_TRUE(IsDataBaseOpen(given.run, kPath));

    EXPECT_THAT(given.window.boxes, ElementsAre(kInUseText));
    EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::RetryCancel);
    EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
    EXPECT_EQ(given.window.questions[0].title, "ZentUpdate 3.6.0");
    EXPECT_EQ(given.access.opens.size(), 1U);
    EXPECT_THAT(given.access.world.calls, IsEmpty()) << "the database is untouched";
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(IsDataBaseOpen, RetryAfterTheOtherUserHasClosedTheDatabaseIsFalse) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.failures = {InUse(), InUse(3045), InUse()};
  given.window.answers = {Answer::Retry, Answer::Retry, Answer::Retry};
  EXPECT_FALSE(IsDataBaseOpen(given.run, kPath));
  EXPECT_EQ(given.access.opens.size(), 4U);
  EXPECT_EQ(given.window.boxes.size(), 3U);
}

TEST(IsDataBaseOpen, HasNoLimitOfRetries) {
  DatabaseRun given;
  given.access.Put(kPath);
  for (int i = 0; i < 500; ++i) {
    given.access.failures.push_back(InUse());
    given.window.answers.push_back(Answer::Retry);
  }
  EXPECT_FALSE(IsDataBaseOpen(given.run, kPath));
}

TEST(IsDataBaseOpen, TellsTheErrorOfAMissingDatabase) {
  DatabaseRun given;
  EXPECT_TRUE(IsDataBaseOpen(given.run, kPath));
  EXPECT_THAT(given.window.boxes,
              ElementsAre("To update the current version of Korvo,\r\n"
                          "the database (D:\\Data\\Korvo.mdb) need to be updated too.\r\n"
                          "\r\n"
                          "The database cannot be updated because:\r\n"
                          "Error Number: 3024\r\n"
                          "Error Description: Could not find file 'D:\\Data\\Korvo.mdb'.\r\n"
                          "\r\n"
                          "Correct the above problem and click on 'Retry' or \r\n"
                          "click on 'Cancel' to cancel the update."));
  EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::RetryCancel);
  EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
}

TEST(IsDataBaseOpen, AsksForThePasswordOfTheFileLikeEveryOpen) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Secret";
  given.window.texts = {"Secret"};
  EXPECT_FALSE(IsDataBaseOpen(given.run, kPath));
  EXPECT_EQ(given.window.inputs.size(), 1U);
}

TEST(IsDataBaseOpen, TellsAServerThatCannotBeOpenedAsAnyOtherError) {
  DatabaseRun given;
  given.server.silent_failures = {{.number = 17, .description = "x"}};
  EXPECT_TRUE(IsDataBaseOpen(given.run, "DSN=Korvo;"));
  ASSERT_EQ(given.window.boxes.size(), 2U);
  EXPECT_THAT(given.window.boxes[1], ::testing::HasSubstr("Error Number: 91\r\n"));
}

TEST(IsDataBaseOpen, NamesInTheLogWhoHoldsTheFile) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.failures = {InUse()};
  given.access.users = {{.computer = "PC-ANNA", .user = "Admin"}, {.computer = "PC2", .user = ""}};
  EXPECT_TRUE(IsDataBaseOpen(given.run, kPath));
  EXPECT_THAT(given.messages(), ElementsAre("The database is opened by PC-ANNA (Admin), PC2"));
  EXPECT_THAT(given.window.boxes, ElementsAre(kInUseText));
}

TEST(IsDataBaseOpen, NamesNobodyForAnotherError) {
  DatabaseRun given;
  given.access.users = {{.computer = "PC-ANNA", .user = "Admin"}};
  EXPECT_TRUE(IsDataBaseOpen(given.run, kPath));
  EXPECT_THAT(given.messages(), IsEmpty());
}

struct LastRunCase {
  const char* value;
  bool never_run;
};

constexpr LastRunCase kLastRunCases[] = {
    {"11/19/2005 7:05:00 PM", false}, {"1/2/2005", false}, {"", true}, {"never", true}};

TEST(HasNeverRun, GoesByTheLastRunTimeOfTheApplicationNamed) {
  for (const LastRunCase& row : kLastRunCases) {
    DatabaseRun given;
    ASSERT_TRUE(
        SaveAppSetting(given.machine.platform, "Other", "Settings", "LastRunDateTime", row.value)
            .ok());
    EXPECT_EQ(HasNeverRun(given.machine.platform, "Other"), row.never_run) << row.value;
  }
  DatabaseRun given;
  EXPECT_TRUE(HasNeverRun(given.machine.platform, "Missing"));
}

}  // namespace
}  // namespace zent
