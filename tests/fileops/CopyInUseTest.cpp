#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fileops/CopyCommands.h"
#include "fileops/FileMachine.h"

/// Copies over a file that another program uses.
namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using testing::ErrorBox;
using testing::FileMachine;
using ::testing::IsEmpty;

struct RetryCase {
  const char* what;
  int failures;  ///< how often the file is found in use
  std::vector<Answer> answers;
  int boxes;
  Outcome outcome;
  const char* contents;
};

/// Runs a copy over a file in use; the first `failures` attempts meet it.
void ExpectRetries(Status (*handler)(UpdateRun&, const TokenList&), const char* source,
                   const RetryCase& row) {
  SCOPED_TRACE(row.what);
  FileMachine given;
  given.window.answers.assign(row.answers.begin(), row.answers.end());
  std::size_t asked = 0;
  given.window.on_ask = [&] {
    if (++asked == static_cast<std::size_t>(row.failures)) {
      given.machine.files.Release(R"(C:\Korvo\held.txt)");
    }
  };
  const CommandRecord record = given.Call(handler, {"", source, R"(C:\Korvo\held.txt)"});
  EXPECT_EQ(given.window.boxes.size(), static_cast<std::size_t>(row.boxes));
  EXPECT_EQ(record.outcome, row.outcome) << record.reason;
  EXPECT_EQ(given.run.state.ErrorOccurred, row.outcome == Outcome::Failed);
  EXPECT_EQ(given.machine.files.Contents(R"(C:\Korvo\held.txt)"), row.contents);
}

TEST(CopyFromPackage, TriesAFileInUseAsOftenAsTheUserWants) {
  const RetryCase rows[] = {
      {"cancelled at once", 9, {Answer::Cancel}, 1, Outcome::Failed, "old"},
      {"freed before the first retry", 1, {Answer::Retry}, 1, Outcome::Done, "new"},
      {"freed before the third retry",
       3,
       {Answer::Retry, Answer::Retry, Answer::Retry},
       3,
       Outcome::Done,
       "new"},
      {"cancelled after two retries",
       9,
       {Answer::Retry, Answer::Retry, Answer::Cancel},
       3,
       Outcome::Failed,
       "old"},
  };
  for (const RetryCase& row : rows) ExpectRetries(CopyFromPackage, "new.txt", row);
}

TEST(CopyOnMachine, TriesAFileInUseOnceMore) {
  const RetryCase rows[] = {
      {"cancelled", 9, {Answer::Cancel}, 1, Outcome::Failed, "old"},
      {"freed before the retry", 1, {Answer::Retry}, 1, Outcome::Done, "new"},
      {"still in use at the retry: reported without another question",
       9,
       {Answer::Retry, Answer::Retry},
       2,
       Outcome::Failed,
       "old"},
  };
  for (const RetryCase& row : rows) ExpectRetries(CopyOnMachine, R"(D:\Package\new.txt)", row);
}

TEST(CopyFromPackage, PausesFiveSecondsBeforeARetryAndKeepsTheWindowAlive) {
  FileMachine given;
  given.window.answers = {Answer::Retry};
  given.machine.clock.per_look = std::chrono::milliseconds(0);
  given.window.on_events = [&](std::chrono::milliseconds) {
    given.machine.clock.Advance(std::chrono::milliseconds(100));
  };
  const auto start = given.machine.clock.ticks;
  given.Call(CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\held.txt)"});
  EXPECT_EQ(given.machine.clock.ticks - start, std::chrono::seconds(5));
  EXPECT_EQ(given.window.waits.size(), 50U);
}

TEST(CopyOnMachine, RetriesWithoutAPause) {
  FileMachine given;
  given.window.answers = {Answer::Retry};
  given.Call(CopyOnMachine, {"copyl", R"(D:\Package\new.txt)", R"(C:\Korvo\held.txt)"});
  EXPECT_THAT(given.window.waits, IsEmpty());
  EXPECT_EQ(given.window.questions.at(1).buttons, BoxButtons::Ok);
}

TEST(CopyFromPackage, AnotherErrorAtTheRetryIsReported) {
  FileMachine given;
  given.window.answers = {Answer::Retry};
  given.window.on_ask = [&] {
    given.machine.files.log().FailWhere("Copy ", StandardError(kDiskFull));
  };
  given.Call(CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\held.txt)"});
  EXPECT_THAT(given.window.boxes, ElementsAre(ErrorBox("Error Copying new.txt", kPermissionDenied),
                                              ErrorBox("Error Copying new.txt", kDiskFull)));
}

TEST(CopyFromPackage, AsksWithTheDefaultTitleAndAnInformationIcon) {
  FileMachine given;
  given.Call(CopyFromPackage, {"copy", "new.txt", R"(C:\Korvo\held.txt)"});
  ASSERT_EQ(given.window.questions.size(), 1U);
  const MessageQuestion& box = given.window.questions[0];
  EXPECT_EQ(box.title, kDefaultTitle);
  EXPECT_EQ(box.text, "Error Copying new.txt\r\nDescription: Permission denied\r\nNumber: 70");
  EXPECT_EQ(box.buttons, BoxButtons::RetryCancel);
  EXPECT_EQ(box.icon, BoxIcon::Information);
}

TEST(CopyIfMissing, AFileInUseIsReportedLikeAnyError) {
  for (const auto& [handler, source] :
       {std::pair{&CopyFromPackageIfMissing, "new.txt"},
        std::pair{&CopyOnMachineIfMissing, R"(D:\Package\new.txt)"}}) {
    FileMachine given;
    given.machine.files.HoldOpen(R"(D:\Package\new.txt)", false);
    given.window.answers = {Answer::Retry};
    given.Call(handler, {"", source, R"(C:\Korvo\fresh.txt)"});
    EXPECT_THAT(given.window.boxes,
                ElementsAre(ErrorBox(std::string("Error Copying ") + source, kPermissionDenied)));
    EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::Ok);
    EXPECT_TRUE(given.run.state.ErrorOccurred);
  }
}

struct AddInCase {
  const char* what;
  const char* source;
  bool is_add_in;
};

constexpr AddInCase kAddInCases[] = {
    {"an add-in of the mail program", "KVONewMailCtrl.dll", true},
    {"another one, in any case", "KVOCF.DLL", true},
    {"in a folder of the package", R"(Outlook\kvoolrd.dll)", true},
    {"as a part of the name", "zentbar.dll.new", true},
    {"another library", "kvo.dll", false},
};

TEST(CopyFromPackage, AsksToCloseOutlookForItsAddIns) {
  for (const AddInCase& row : kAddInCases) {
    SCOPED_TRACE(row.what);
    FileMachine given;
    given.machine.files.PutFile(std::string(R"(D:\Package\)") + row.source, "new");
    given.Call(CopyFromPackage, {"copy", row.source, R"(C:\Korvo\held.txt)"});
    ASSERT_EQ(given.window.boxes.size(), 1U);
    const std::string advice = "Number: 70\r\n\r\nPlease close Outlook and Retry.";
    EXPECT_THAT(given.window.boxes[0], EndsWith(row.is_add_in ? advice : "Number: 70"));
  }
}

TEST(CopyOnMachine, SaysNothingOfOutlook) {
  FileMachine given;
  given.machine.files.PutFile(R"(D:\Package\zentbar.dll)", "new");
  given.Call(CopyOnMachine, {"copyl", "zentbar.dll", R"(C:\Korvo\held.txt)"});
  EXPECT_THAT(given.window.boxes, ElementsAre(EndsWith("Number: 70")));
}

TEST(CopyPackageFile, QuietShowsNoBoxAndNeverAsks) {
  FileMachine given;
  CopyPackageFile(given.run, "new.txt", R"(C:\Korvo\held.txt)", true);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_THAT(given.window.waits, IsEmpty());
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

}  // namespace
}  // namespace zent
