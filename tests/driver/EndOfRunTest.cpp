#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/FormRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::FormRun;
using ::testing::IsEmpty;
using ::testing::Not;

/// A run to its end; flags that commands would set are set while the list waits.
struct End : FormRun {
  explicit End(std::string_view auto_close, std::string_view lines = "wait,0.1\r\n")
      : FormRun("[General]\r\nAppName=Korvo\r\nAutoClose=" + std::string(auto_close) +
                "\r\n[setup]\r\n" + std::string(lines)) {}
  void Run(bool reboot = false, bool copy_exe_failed = false) {
    window.on_events = [this, reboot, copy_exe_failed](std::chrono::milliseconds) {
      form.run().state.RebootComputer = reboot;
      form.run().state.CopyExeFailed = copy_exe_failed;
    };
    window.Run(form);
  }
};

struct CloseCase {
  const char* auto_close;
  bool after_success;
  bool after_failure;
};

constexpr CloseCase kCloseCases[] = {
    {"", false, false},        {"no", false, false},         {"yes", true, true},
    {"noerrors", true, false}, {"  NoErrors ", true, false}, {"YES", true, true},
    {"perhaps", false, false},
};

TEST(AutoClose, ClosesAfterTheRunsThatItNames) {
  for (const CloseCase& row : kCloseCases) {
    SCOPED_TRACE(row.auto_close);
    End good(row.auto_close);
    good.Run();
    EXPECT_EQ(good.window.closed, row.after_success);
    End bad(row.auto_close, "msg\r\n");
    bad.Run();
    EXPECT_EQ(bad.window.closed, row.after_failure);
  }
}

TEST(AutoClose, NoErrorsClosesAfterTheRestartQuestion) {
  End given("noerrors");
  given.window.answers = {Answer::No};
  given.Run(true);
  EXPECT_TRUE(given.window.closed);
}

TEST(AutoClose, IsKeptWithTheCloseButton) {
  End given("  NoErrors ");
  given.Run();
  EXPECT_EQ(given.form.run().tags.cmdClose, "noerrors");
}

TEST(EndOfRun, AFailureIsSaidInThreeLines) {
  End given("no", "msg\r\n");
  given.Run();
  ASSERT_GE(given.observer.messages.size(), 3U);
  EXPECT_THAT(std::vector(given.observer.messages.end() - 3, given.observer.messages.end()),
              ElementsAre("", "Setup failed.", "Click on 'Close' to exit."));
  EXPECT_EQ(given.form.result(), RunResult::Failed);
}

TEST(EndOfRun, TheRestartQuestionStandsOnTopOfAllWindows) {
  End given("no");
  given.window.answers = {Answer::No};
  given.Run(true);

  ASSERT_EQ(given.window.questions.size(), 1U);
  const MessageQuestion& question = given.window.questions[0];
  EXPECT_EQ(question.text,
            "To complete the installation, please reboot the computer.\r\n\r\nDo you want reboot "
            "now?\r\n(Click Yes to reboot now, Click No to reboot later.)");
  EXPECT_EQ(question.buttons, BoxButtons::YesNo);
  EXPECT_TRUE(question.topmost);
  EXPECT_THAT(given.observer.messages,
              Contains("To complete the installation, please reboot the computer."));
  EXPECT_THAT(given.observer.messages, Not(Contains("Setup successfully completed.")));
  EXPECT_THAT(given.machine.shell.sessions, IsEmpty());
  EXPECT_TRUE(given.observer.restart);
}

TEST(EndOfRun, YesRestartsWithoutForceAndWithoutPowerOff) {
  End given("no");
  given.window.answers = {Answer::Yes};
  given.Run(true);
  EXPECT_THAT(given.machine.shell.sessions, ElementsAre(kRestart));
}

TEST(EndOfRun, ARestartThatTheSystemRefusesIsSaid) {
  End given("no");
  given.window.answers = {Answer::Yes};
  given.machine.shell.privilege = false;
  given.Run(true);
  EXPECT_THAT(given.machine.shell.sessions, IsEmpty());
  EXPECT_THAT(given.observer.messages, Contains("Error restarting the computer"));
}

TEST(EndOfRun, AProgramThatCouldNotBeReplacedOffersNoRestart) {
  End given("no");
  given.Run(true, true);
  ASSERT_EQ(given.window.questions.size(), 1U);
  EXPECT_EQ(given.window.questions[0].text,
            "To complete the installation, please reboot the computer.");
  EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::Ok);
  EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Information);
  EXPECT_THAT(given.machine.shell.sessions, IsEmpty());
}

TEST(EndOfRun, AFailureAsksNoRestart) {
  End given("no", "wait,0.1\r\nmsg\r\n");
  given.Run(true);
  EXPECT_EQ(given.window.questions.size(), 1U) << "only the box of the failed command";
}

TEST(cmdContinue, ReleasesTheWaitAndDisablesBothButtons) {
  End given("no");
  given.form.run().tags.cmdContinue = "Wait";
  given.window.EnableButton(WindowButton::Continue, true);
  given.window.EnableButton(WindowButton::Install360, true);
  given.form.cmdContinue_Click();
  EXPECT_EQ(given.form.run().tags.cmdContinue, "");
  EXPECT_FALSE(given.window.IsEnabled(WindowButton::Continue));
  EXPECT_FALSE(given.window.IsEnabled(WindowButton::Install360));
}

TEST(cmdInstall360, OpensTheDownloadOfTheServicePack) {
  End given("no");
  given.form.cmdInstall360_Click();
  EXPECT_THAT(given.machine.shell.addresses,
              ElementsAre(::testing::MatchesRegex("http://.*/download/KorvoSP%203\\.6\\.0\\.exe")));
}

TEST(cmdInstall360, SaysWhenTheAddressCannotBeOpened) {
  End given("no");
  given.machine.shell.open_address = StandardError(kDeviceUnavailable);
  given.form.cmdInstall360_Click();
  EXPECT_THAT(given.observer.messages, Contains("Description: Device unavailable"));
  EXPECT_FALSE(given.form.run().state.ErrorOccurred);
}

TEST(cmdClose, ClosesTheWindow) {
  End given("no");
  given.form.cmdClose_Click();
  EXPECT_TRUE(given.window.closed);
}

}  // namespace
}  // namespace zent
