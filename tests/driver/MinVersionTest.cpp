#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "contracts/PeBuilder.h"
#include "driver/Checks.h"
#include "driver/frmZentUpdate.h"
#include "fakes/run/RunBuilder.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LibraryOfVersion;
using testing::MemoryMachine;
using testing::RecordingObserver;
using testing::RecordingWindow;
using testing::RunBuilder;

constexpr const char* kKorvo = R"(C:\Korvo\Korvo.exe)";
constexpr const char* kNeed = "This update needs Korvo.exe version 3.06.0000 or higher.";

void Install(RunBuilder& given, const char* path, const char* version) {
  given.machine.files.PutFile(path, LibraryOfVersion(version));
}

TokenList CheckOfKorvo() { return {"CheckMinVersion", "Korvo.exe", "$(apppath)", "3.06.0000"}; }

struct PassCase {
  const char* what;
  const char* file;
  const char* place;
  const char* required;
  const char* installed_path;
  const char* installed;
  const char* message;
};

constexpr PassCase kPassCases[] = {
    {"the very version", "Korvo.exe", "$(apppath)", "3.06.0000", kKorvo, "3.06.0000",
     "Korvo.exe: installed version 3.06.0000, needed 3.06.0000"},
    {"a higher one", "Korvo.exe", "$(apppath)", "3.06.0000", kKorvo, "3.10",
     "Korvo.exe: installed version 3.10, needed 3.06.0000"},
    {"a fourth number does not count", "Korvo.exe", "$(apppath)", "3.6.0.99", kKorvo, "3.6.0.1",
     "Korvo.exe: installed version 3.6.0.1, needed 3.6.0.99"},
    {"a folder behind a macro", "mail.dll", R"($(AppPath)\AddIn\)", "1.0",
     R"(C:\Korvo\AddIn\mail.dll)", "1.0", "mail.dll: installed version 1.0, needed 1.0"},
    {"a folder without its backslash", "mail.dll", R"($(AppPath)\AddIn)", "1.0",
     R"(C:\Korvo\AddIn\mail.dll)", "1.0", "mail.dll: installed version 1.0, needed 1.0"},
    {"a whole path", "mail.dll", R"($(AppPath)\AddIn\mail.dll)", "1.0",
     R"(C:\Korvo\AddIn\mail.dll)", "1.0", "mail.dll: installed version 1.0, needed 1.0"},
    {"a folder without a macro", "mail.dll", R"(C:\Shared)", "1.0", R"(C:\Shared\mail.dll)", "1.0",
     "mail.dll: installed version 1.0, needed 1.0"},
};

TEST(CheckMinVersion, PassesWithoutWaiting) {
  for (const PassCase& row : kPassCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    Install(given, row.installed_path, row.installed);
    const CommandRecord record =
        given.Call(CheckMinVersion, {"CheckMinVersion", row.file, row.place, row.required});
    EXPECT_THAT(given.messages(), ElementsAre(row.message));
    EXPECT_THAT(given.window.waits, IsEmpty());
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Done);
  }
}

struct FailCase {
  const char* what;
  const char* file;
  const char* installed;  ///< empty: no such file
  const char* required;
  const char* need;
};

constexpr FailCase kFailCases[] = {
    {"another file fails at once", "mail.dll", "3.05", "3.06.0000",
     "This update needs mail.dll version 3.06.0000 or higher."},
    {"so does another version of the application", "Korvo.exe", "3.05", "3.06.0001",
     "This update needs Korvo.exe version 3.06.0001 or higher."},
    {"and the same version in other words", "Korvo.exe", "3.05", "3.6.0",
     "This update needs Korvo.exe version 3.6.0 or higher."},
    {"a file that is not there", "mail.dll", "", "0.0.1",
     "This update needs mail.dll version 0.0.1 or higher."},
};

TEST(CheckMinVersion, ALowerVersionEndsTheList) {
  for (const FailCase& row : kFailCases) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    const std::string path = R"(C:\Korvo\)" + std::string(row.file);
    if (*row.installed != '\0') Install(given, path.c_str(), row.installed);
    const CommandRecord record =
        given.Call(CheckMinVersion, {"CheckMinVersion", row.file, "$(apppath)", row.required});
    ASSERT_EQ(given.messages().size(), 2U);
    EXPECT_EQ(given.messages()[1], row.need);
    EXPECT_THAT(given.window.waits, IsEmpty());
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_FALSE(given.window.IsEnabled(WindowButton::Continue));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_EQ(record.reason, path + " is older than " + row.required);
  }
}

TEST(CheckMinVersion, ShowsThatAFileHasNoVersion) {
  RunBuilder given;
  given.Call(CheckMinVersion, {"CheckMinVersion", "none.dll", "$(apppath)", "1.0"});
  EXPECT_EQ(given.messages()[0], "none.dll: installed version none, needed 1.0");
}

TEST(CheckMinVersion, NamesTheFileWithoutItsFolder) {
  RunBuilder given;
  given.Call(CheckMinVersion,
             {"CheckMinVersion", R"(AddIn\mail.dll)", R"($(apppath)\AddIn\mail.dll)", "1.0"});
  EXPECT_EQ(given.messages()[1], "This update needs mail.dll version 1.0 or higher.");
}

TEST(CheckMinVersion, TooFewTokensIsAReportedError9) {
  RunBuilder given;
  given.Call(CheckMinVersion, {"CheckMinVersion", "Korvo.exe", "$(apppath)"});
  EXPECT_THAT(given.window.boxes, ElementsAre(::testing::EndsWith("Number: 9")));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

/// A run that waits for the service pack; at each wait of the window `meanwhile` happens.
class ServicePackWait : public ::testing::Test {
 protected:
  ServicePackWait() {
    Install(given_, kKorvo, "3.05.0012");
    given_.machine.clock.per_look = milliseconds(0);
  }

  CommandRecord Check(std::function<void()> meanwhile) {
    given_.window.on_events = [this, meanwhile = std::move(meanwhile)](milliseconds wait) {
      given_.machine.clock.Advance(wait);
      was_enabled_ = was_enabled_ || (given_.window.IsEnabled(WindowButton::Continue) &&
                                      given_.window.IsEnabled(WindowButton::Install360));
      tags_.push_back(given_.run.tags.cmdContinue);
      meanwhile();
    };
    return given_.Call(CheckMinVersion, CheckOfKorvo());
  }

  RunBuilder given_;
  bool was_enabled_ = false;
  std::vector<std::string> tags_;
};

TEST_F(ServicePackWait, GuidesTheUserAndLooksAgain) {
  const CommandRecord record = Check([&] {
    Install(given_, kKorvo, "3.06.0000");
    given_.run.tags.cmdContinue.clear();
  });
  EXPECT_THAT(
      given_.messages(),
      ElementsAre("Korvo.exe: installed version 3.05.0012, needed 3.06.0000", kNeed, "\r\n",
                  "Please follow these instructions.",
                  " 1) Click on the 'Install 3.6.0' button (below), and then click on RUN.",
                  " 2) At the end of Step 1, if a 'reboot' is needed, please ignore it.",
                  " 3) Please click on the 'Continue' button (below).",
                  " 4) If 'reboot' was needed in Step 1, please reboot the computer now.", "\r\n"));
  EXPECT_TRUE(was_enabled_);
  EXPECT_EQ(tags_.front(), "Wait");
  EXPECT_FALSE(given_.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Done);
}

TEST_F(ServicePackWait, AVersionThatIsStillLowerEndsTheList) {
  const CommandRecord record = Check([&] { given_.run.tags.cmdContinue.clear(); });
  ASSERT_EQ(given_.messages().size(), 10U);
  EXPECT_EQ(given_.messages()[9], kNeed);
  EXPECT_TRUE(given_.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
}

TEST_F(ServicePackWait, GoesOnInStepsOfASecondUntilTheTagIsEmpty) {
  const milliseconds start = given_.machine.clock.ticks;
  Check([&] {
    const milliseconds waited = given_.machine.clock.ticks - start;
    if (waited > std::chrono::hours(1)) given_.run.tags.cmdContinue.clear();
  });
  const milliseconds waited = given_.machine.clock.ticks - start;
  EXPECT_EQ(waited, std::chrono::hours(1) + std::chrono::seconds(1));
}

TEST_F(ServicePackWait, EndsWhenTheWindowIsClosed) {
  Check([&] { given_.window.close_requested = true; });
  EXPECT_EQ(given_.window.waits.size(), 1U);
  EXPECT_EQ(given_.run.tags.cmdContinue, "");
  EXPECT_FALSE(given_.window.IsEnabled(WindowButton::Continue));
  EXPECT_FALSE(given_.window.IsEnabled(WindowButton::Install360));
  EXPECT_TRUE(given_.run.state.ErrorOccurred);
}

TEST_F(ServicePackWait, TheNameMayBeWrittenInAnyCase) {
  given_.window.on_events = [&](milliseconds wait) {
    given_.machine.clock.Advance(wait);
    given_.run.tags.cmdContinue.clear();
  };
  given_.Call(CheckMinVersion, {"checkminversion", "KORVO.EXE", "$(apppath)", "3.06.0000"});
  EXPECT_FALSE(given_.window.waits.empty());
}

TEST(CheckMinVersionInARun, WaitsForTheButtonsOfTheWindow) {
  MemoryMachine machine;
  RecordingWindow window;
  RecordingObserver observer;
  frmZentUpdate form(machine.platform, window, observer, {}, R"(D:\Package)");
  machine.InstallKorvo();
  machine.files.PutFile(kKorvo, LibraryOfVersion("3.05"));
  machine.files.PutFile(R"(D:\Package\ZentUpdate.ini)",
                        "[General]\r\nAppName=Korvo\r\n[setup]\r\n"
                        "CheckMinVersion,Korvo.exe,$(apppath),3.06.0000\r\nmsg,after\r\n");
  window.clicks = {WindowButton::Install360, WindowButton::Continue};
  window.on_events = [&](milliseconds wait) {
    machine.clock.Advance(wait);
    if (machine.shell.addresses.empty()) return;
    machine.files.PutFile(kKorvo, LibraryOfVersion("3.06.0000"));
  };
  window.Run(form);

  EXPECT_EQ(machine.shell.addresses.size(), 1U);
  EXPECT_THAT(observer.messages, ::testing::Contains("after"));
  EXPECT_EQ(form.result(), RunResult::Success);
  EXPECT_FALSE(window.IsEnabled(WindowButton::Continue));
  EXPECT_FALSE(window.IsEnabled(WindowButton::Install360));
}

}  // namespace
}  // namespace zent
