#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "driver/Checks.h"
#include "driver/run/Product.h"
#include "driver/run/UpdateRun.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunBuilder;
using ::testing::StartsWith;

/// Lets the clock move only while the window waits.
void WaitInStep(RunBuilder& given) {
  given.machine.clock.per_look = milliseconds(0);
  given.window.on_events = [&](milliseconds wait) { given.machine.clock.Advance(wait); };
}

// --- cte ---

TEST(CheckBrowser, WithItsFolderPassesSilently) {
  RunBuilder given;
  given.machine.files.PutFolder(R"(C:\Program Files\Common Files\Microsoft Shared\TRIEDIT)");
  const CommandRecord record = given.Call(CheckBrowser, {"cte"});
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Done);
}

TEST(CheckBrowser, WithoutItSaysWhichVersionsWillDo) {
  RunBuilder given;
  const CommandRecord record = given.Call(CheckBrowser, {"cte"});
  ASSERT_EQ(given.messages().size(), 1U);
  const std::string& message = given.messages()[0];
  EXPECT_THAT(
      message,
      StartsWith("Setup cannot continue because, you do not have proper version of Internet "
                 "Explorer.\r\n"
                 "One of the following version is required.\r\n"
                 "Internet Explorer 5.01 (Service Pack 2) or \r\n"
                 "Internet Explorer 5.5 (Service Pack 2) or \r\n"
                 "Internet Explorer 6.0\r\n"
                 "\r\n"));
  const std::string last_lines = message.substr(message.rfind("\r\n\r\n") + 4);
  const std::size_t line_break = last_lines.find("\r\n");
  EXPECT_THAT(last_lines.substr(0, line_break), HasSubstr(kBrowserDownload));
  EXPECT_THAT(last_lines.substr(line_break), HasSubstr(kSupportContact));
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, "the browser is missing or too old");
}

TEST(CheckBrowser, AFileOfThatNameIsNoFolder) {
  RunBuilder given;
  given.machine.files.PutFile(R"(C:\Program Files\Common Files\Microsoft Shared\Triedit)", "x");
  given.Call(CheckBrowser, {"cte"});
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

// --- cdp ---

TEST(CheckDataFolder, WithTheFolderPassesSilently) {
  RunBuilder given;
  const CommandRecord record = given.Call(CheckDataFolder, {"cdp"});
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Done);
}

TEST(CheckDataFolder, NamesAnUnreachableNetworkFolder) {
  RunBuilder given;
  given.run.state.DataPath = R"(\\server\data\)";
  const CommandRecord record = given.Call(CheckDataFolder, {"cdp"});
  EXPECT_THAT(
      given.messages(),
      ElementsAre("\r\n Setup cannot continue because, the Korvo Data Path is not accessible.\r\n"
                  " Using Windows Explorer, Navigate to '\\\\server\\data\\' and try again. "));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, R"(the data folder is not accessible: \\server\data\)");
}

TEST(CheckDataFolder, AFolderThatCannotBeReadIsNotAccessible) {
  RunBuilder given;
  given.machine.files.log().FailWhere(R"(Find D:\Data)", StandardError(kPathFileAccess));
  given.Call(CheckDataFolder, {"cdp"});
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(CheckDataFolder, NoDataFolderIsNotAccessible) {
  RunBuilder given;
  given.run.state.DataPath = "";
  given.Call(CheckDataFolder, {"cdp"});
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

// --- ep ---

struct LimitCase {
  const char* what;
  TokenList tokens;
  int seconds;
};

TEST(CloseProgram, WaitsAtMostTheGivenTime) {
  const std::vector<LimitCase> rows = {
      {"ten seconds when the line gives none", {"ep", "Korvo"}, 10},
      {"as long as the line says", {"ep", "Korvo", "30"}, 30},
      {"the number at the start counts", {"ep", "Korvo", "2 s"}, 2},
      {"a text is no time at all", {"ep", "Korvo", "soon"}, 0},
  };
  for (const LimitCase& row : rows) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    WaitInStep(given);
    given.machine.shell.AddWindow("Korvo", -1);
    const milliseconds start = given.machine.clock.ticks;
    const CommandRecord record = given.Call(CloseProgram, row.tokens);
    const milliseconds waited = given.machine.clock.ticks - start;
    EXPECT_GE(waited, std::chrono::seconds(row.seconds));
    EXPECT_LE(waited, std::chrono::seconds(row.seconds) + milliseconds(100));
    EXPECT_EQ(record.outcome, Outcome::Warned);
  }
}

struct CloseCase {
  const char* what;
  const char* open_window;  ///< its title; empty: none
  int looks_until_closed;
  const char* title;  ///< the argument
  Outcome outcome;
  const char* reason;
};

constexpr CloseCase kCloseCases[] = {
    {"a window that closes", "Korvo", 2, "Korvo", Outcome::Done, ""},
    {"in any case", "KORVO", 0, "korvo", Outcome::Done, ""},
    {"one that stays is only recorded", "Korvo", -1, "Korvo", Outcome::Warned,
     "the window is still open: Korvo"},
    {"another program is left alone", "Korvo Helper", -1, "Korvo", Outcome::Skipped,
     "no window of this title: Korvo"},
    {"an empty title means no window", "", 0, "", Outcome::Skipped, "no window of this title: "},
};

TEST(CloseProgram, SaysOneLineWhateverComesOfIt) {
  for (const CloseCase& row : kCloseCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    WaitInStep(given);
    given.machine.shell.AddWindow(row.open_window, row.looks_until_closed);
    const CommandRecord record = given.Call(CloseProgram, {"ep", row.title});
    EXPECT_THAT(given.messages(), ElementsAre(std::string("Please wait.  Closing ") + row.title));
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, row.outcome);
    EXPECT_EQ(record.reason, row.reason);
  }
}

TEST(CloseProgram, WithoutATitleShowsItsErrorAsMessages) {
  RunBuilder given;
  const CommandRecord record = given.Call(CloseProgram, {"ep"});
  EXPECT_THAT(given.messages(),
              ElementsAre("Error closing ", "Description: Subscript out of range", "Number: 9"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
}

// --- CloseOutlookMessageIfRunning ---

TEST(AskToCloseMailProgram, AsksAboveAllWindowsAndLetsTheRunGoOnAfterSixSeconds) {
  RunBuilder given;
  WaitInStep(given);
  const milliseconds start = given.machine.clock.ticks;
  const CommandRecord record = given.Call(AskToCloseMailProgram, {"CloseOutlookMessageIfRunning"});

  ASSERT_EQ(given.window.questions.size(), 1U);
  EXPECT_EQ(given.window.questions[0].text, "Please close MS Outlook, if it is running.");
  EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::Ok);
  EXPECT_TRUE(given.window.questions[0].topmost);
  EXPECT_EQ(given.machine.clock.ticks - start, std::chrono::seconds(6));
  EXPECT_THAT(given.messages(), ElementsAre("Please wait...", " "));
  EXPECT_EQ(given.window.log, "  Please wait...\r\n   \r\n");
  EXPECT_EQ(given.observer.progress, std::vector<std::string>(6, "Please wait..."));
  EXPECT_THAT(given.machine.shell.searched, IsEmpty()) << "the program is not looked for";
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Done);
}

TEST(AskToCloseMailProgram, WaitsNoLongerForAWindowThatIsClosed) {
  RunBuilder given;
  WaitInStep(given);
  given.window.close_requested = true;
  const milliseconds start = given.machine.clock.ticks;
  given.Call(AskToCloseMailProgram, {"CloseOutlookMessageIfRunning"});
  EXPECT_EQ(given.machine.clock.ticks, start);
}

}  // namespace
}  // namespace zent
