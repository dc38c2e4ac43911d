#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "contracts/PeBuilder.h"
#include "scenarios/ScenarioFiles.h"
#include "scenarios/wine/UpdatedMachine.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr int kRestartNeeded = 3010 % 256;  // what the host sees of Windows' numbers
constexpr int kFailed = 1603 % 256;
constexpr int kInUse = 1618 % 256;

struct ExitCase {
  const char* what;
  const char* list;       ///< of the package; empty for none
  const char* arguments;  ///< behind the package
  const char* before;     ///< a command that is run before
  int exit_code;          ///< in full, as Windows knows it
};

constexpr ExitCase kExits[] = {
    {"success", "msg,ran", "", "", 0},
    {"a failed command", "msg", "", "", 1603},
    {"a wrong option", "msg,ran", "--nosuch", "", 1639},
    {"no package there", "", "", "", 1619},
    {"refused", "nosuchcommand", "--strict", "", 1625},
    {"success with warnings", "nosuchcommand", "--detailed-exitcode", "", 10},
    {"warnings are no matter otherwise", "nosuchcommand", "", "", 0},
    {"not installed", "msg,ran", "",
     R"(reg delete "HKLM\Software\Microsoft\Windows\CurrentVersion\App Paths\Korvo.exe" /f)", 1642},
};

/// A path of the host as programs of the machine know it.
std::string WindowsPath(std::string path) {
  std::replace(path.begin(), path.end(), '/', '\\');
  return "Z:" + path;
}

// The host sees eight bits of a number; a batch file sees all.
TEST(WindowsProgram, EndsWithWindowsNumbers) {
  const UpdatedMachine given({});
  std::string batch = "@echo off\r\n";
  std::string expected;
  for (const ExitCase& row : kExits) {
    const std::string name = "p" + std::to_string(&row - kExits);
    if (*row.list != '\0') {
      given.folder().Put("package/" + name + "/ZentUpdate.ini",
                         std::string("[General]\r\nAppName=Korvo\r\n[setup]\r\n") + row.list);
    }
    batch += std::string(row.before) + "\r\nstart /wait " + WindowsPath(ZENT_PROGRAM) + " D:\\" +
             name + " --console --unattended " + row.arguments + "\r\necho " + row.what +
             " %errorlevel%>>E:\\exits\r\n";
    expected += std::string(row.what) + " " + std::to_string(row.exit_code) + "\n";
  }
  given.folder().Put("exits.cmd", batch);

  const ProgramEnd end =
      given.prefix().Run(R"(C:\windows\system32\cmd.exe)", {"/c", R"(E:\exits.cmd)"});

  EXPECT_EQ(WithoutCarriageReturns(given.folder().Get("exits")), expected) << end.output;
}

TEST(WindowsProgram, ASecondRunIsSentAwayAndChangesNothing) {
  const UpdatedMachine given({R"(wrttoini,$(apppath)\First.ini,S,K,at work)", "wait,4",
                              R"(wrttoini,$(apppath)\Last.ini,S,K,done)"});
  std::future<ProgramEnd> first = std::async(std::launch::async, [&given] { return given.Run(); });
  ASSERT_TRUE(ComesUp(given.File("Program Files/Zent/First.ini")));

  const MachineTree before = given.prefix().State().files;
  const ProgramEnd second =
      given.prefix().Run(ZENT_PROGRAM, {R"(D:\)", "--console", "--unattended"});
  const MachineTree after = given.prefix().State().files;

  EXPECT_EQ(second.exit_code, kInUse) << second.output;
  EXPECT_EQ(CompareTrees(before, after), "");
  EXPECT_FALSE(fs::exists(given.File("Program Files/Zent/Last.ini")));  // the first was at work
  EXPECT_EQ(first.get().exit_code, 0);
  EXPECT_TRUE(fs::exists(given.File("Program Files/Zent/Last.ini")));
  EXPECT_EQ(given.Run().exit_code, 0);  // nothing of the first stands in the way
}

TEST(WindowsProgram, AFileThatAnotherProgramHoldsIsAskedAbout) {
  const UpdatedMachine given({R"(copy,new.htm,$(helppath)\Contacts.htm)", "msg,never"});
  given.folder().Put("package/new.htm", "new");
  given.folder().Put("answers", "retry\ncancel\n");
  const fs::path file = given.File("Program Files/Zent/ZentHelp/Contacts.htm");
  const std::string old = ReadHostFile(file);
  HeldFile held(given, R"(C:\Program Files\Zent\ZentHelp\Contacts.htm)", false);
  ASSERT_TRUE(held.held());

  const ProgramEnd end = given.Run({"--answers", R"(E:\answers)"});

  EXPECT_EQ(end.exit_code, kFailed) << end.output;
  EXPECT_THAT(given.Records(), HasSubstr("box RetryCancel -> retry: "));
  EXPECT_THAT(given.Records(), HasSubstr("box RetryCancel -> cancel: "));
  EXPECT_THAT(given.Records(), HasSubstr("4 copy failed"));
  EXPECT_EQ(ReadHostFile(file), old);

  held.Release();
  EXPECT_EQ(given.Run().exit_code, 0);
  EXPECT_EQ(ReadHostFile(file), "new");
}

TEST(WindowsProgram, ALibraryInUseIsReplacedByRenaming) {
  const UpdatedMachine given({"CopyRegIfNotSameVersion,kvocf.dll,$(apppath)"});
  const std::string library = LibraryOfVersion("3.6");
  given.folder().Put("package/kvocf.dll", library);
  const fs::path folder = given.File("Program Files/Zent");
  std::ofstream(folder / "kvocf.dll") << "old";
  fs::copy_file(ZENT_HOLD_FILE, given.File("windows/system32/regsvr32.exe"));
  HeldFile held(given, R"(C:\Program Files\Zent\kvocf.dll)", true);
  ASSERT_TRUE(held.held());

  const ProgramEnd end = given.Run();

  EXPECT_EQ(end.exit_code, kRestartNeeded) << end.output << given.Log();
  EXPECT_THAT(given.Records(), HasSubstr("box YesNo -> no: "));
  EXPECT_EQ(ReadHostFile(folder / "kvocf.dll"), library);
  int kept = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().filename().string().rfind("kvocf 2", 0) != 0) continue;
    EXPECT_EQ(ReadHostFile(entry.path()), "old");
    ++kept;
  }
  EXPECT_EQ(kept, 1);
}

struct VersionCase {
  const char* version;  ///< "CurrentVersion" and "CurrentBuildNumber" of the machine
  const char* build;
  bool is_vista;
};

constexpr VersionCase kVersions[] = {
    {"5.2", "3790", false}, {"6.0", "6002", true}, {"6.1", "7601", false}};

TEST(WindowsProgram, VistasBlocksAreForVistaAlone) {
  for (const VersionCase& row : kVersions) {
    SCOPED_TRACE(row.version);
    const UpdatedMachine given(
        {"msg,before", "BeginVista", "msg,on Vista", "EndVista", "msg,after"});
    given.folder().Put(
        "version.cmd",
        std::string(R"(@set key="HKLM\Software\Microsoft\Windows NT\CurrentVersion")") +
            "\r\n@reg add %key% /f /v CurrentVersion /d " + row.version +
            "\r\n@reg add %key% /f /v CurrentBuildNumber /d " + row.build + "\r\n");
    given.prefix().Run(R"(C:\windows\system32\cmd.exe)", {"/c", R"(E:\version.cmd)"});

    EXPECT_EQ(given.Run().exit_code, 0);

    EXPECT_THAT(given.Log(), HasSubstr("  before\n"));
    EXPECT_THAT(given.Log(), HasSubstr("  after\n"));
    EXPECT_EQ(given.Log().find("  on Vista\n") != std::string::npos, row.is_vista) << given.Log();
  }
}

}  // namespace
}  // namespace zent::testing
