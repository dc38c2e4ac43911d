#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "scenarios/wine/WinePrefix.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

/// The sample machine under Wine, and programs that come with it.
struct Given {
  Given() { fs::create_directories(folder.path() / "package"); }
  ProgramEnd Cmd(const std::string& lines) const {
    folder.Put("test.cmd", "@echo off\r\n" + lines);
    return prefix.Run(R"(C:\windows\system32\cmd.exe)", {"/c", R"(E:\test.cmd)"});
  }
  std::string Changes(const PrefixState& before) const {
    prefix.WaitForEnd();
    const PrefixChanges changes = ChangesBetween(before, prefix.State());
    return CompareTrees(changes.before, changes.after);
  }

  TempFolder folder;
  WinePrefix prefix{ZENT_SAMPLE_MACHINE, ZENT_SAMPLE_MACHINE, folder.path()};
};

TEST(WinePrefix, RunsProgramsOverTheMachine) {
  const Given given;
  const ProgramEnd end =
      given.Cmd("type \"C:\\Program Files\\Zent\\NetUpd.ini\"\r\necho %APPDATA%\r\nexit 7\r\n");
  EXPECT_EQ(end.exit_code, 7);
  EXPECT_THAT(end.output, HasSubstr(R"(C:\users\anna\AppData\Roaming)"));
  EXPECT_THAT(end.output, HasSubstr("[Update]"));
}

TEST(WinePrefix, HasTheMachinesRegistry) {
  const Given given;
  const ProgramEnd end = given.Cmd(
      R"(reg query "HKLM\Software\Microsoft\Windows\CurrentVersion\App Paths\Korvo.exe")");
  EXPECT_THAT(end.output, HasSubstr(R"(C:\Program Files\Zent\Korvo.exe)"));
}

TEST(WinePrefix, IsNotChangedByWineItself) {
  const Given given;
  const PrefixState before = given.prefix.State();
  given.Cmd("exit 0");
  given.prefix.WaitForEnd();
  const PrefixChanges changes = ChangesBetween(before, given.prefix.State());
  EXPECT_EQ(CompareTrees(changes.before, changes.after), "");
  EXPECT_EQ(changes.after.at("system.reg"), "");
  EXPECT_EQ(changes.after.at("user.reg"), "");
}

TEST(WinePrefix, TellsWhatAProgramChanged) {
  const Given given;
  const PrefixState before = given.prefix.State();
  given.Cmd(
      "mkdir C:\\New\r\ndel \"C:\\Program Files\\Zent\\Korvo.exe\"\r\necho x> "
      "C:\\windows\\win.ini\r\n"
      "reg add HKCU\\Software\\Zent /v Theme /d light\r\n");
  EXPECT_EQ(given.Changes(before),
            "- drive_c/Program Files/Zent/Korvo.exe\n"
            "~ drive_c/windows/win.ini\n"
            "~ user.reg\n"
            "+ drive_c/New/\n");
}

}  // namespace
}  // namespace zent::testing
