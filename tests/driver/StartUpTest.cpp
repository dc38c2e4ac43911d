#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/FormRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::FormRun;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr std::string_view kCurrentVersion = R"(SOFTWARE\Microsoft\Windows\CurrentVersion)";

/// A run through the start to its end.
struct Start : FormRun {
  explicit Start(std::string_view list = "[General]\r\nAppName=Korvo\r\n[setup]\r\nmsg,ran\r\n")
      : FormRun(list) {}
  const RunState& Run() {
    window.Run(form);
    return form.run().state;
  }
};

TEST(StartUp, SaysWhatItFoundInItsOrder) {
  Start given;
  given.Run();
  EXPECT_THAT(given.messages(),
              ElementsAre(R"(Korvo path: C:\Korvo\)", R"(Fetched Reg Key - C:\Program Files)",
                          R"(Fetched Reg Key - C:\Program Files\Common Files)",
                          R"(Fetched Data Folder - D:\Data\)", "ran", "",
                          "Setup successfully completed.", "Click on 'Close' to exit."));
}

TEST(StartUp, FillsTheRunState) {
  Start given("[General]\nAppName=Korvo\nPatchFileName=Patch360\n[setup]\n");
  const RunState& state = given.Run();
  EXPECT_EQ(state.AppExe, "Korvo.exe");
  EXPECT_EQ(state.AppPath, R"(C:\Korvo\)");
  EXPECT_EQ(state.ProgramFilesDir, R"(C:\Program Files\)");
  EXPECT_EQ(state.CommonFilesDir, R"(C:\Program Files\Common Files\)");
  EXPECT_EQ(state.WinAppDataDir, R"(C:\users\anna\AppData\)");
  EXPECT_EQ(state.HelpPath, R"(C:\Korvo\ZentHelp\)");
  EXPECT_EQ(state.ZentAppDataPath, R"(C:\users\Public\Zent\)");
  EXPECT_EQ(state.IniFileName, R"(C:\users\Public\Zent\Korvo.ini)");
  EXPECT_EQ(state.CurrDir, R"(D:\Package\)");
  EXPECT_EQ(state.SetupLstFileName, R"(D:\Package\ZentUpdate.ini)");
  EXPECT_EQ(state.PatchFileName, "Patch360");
  EXPECT_EQ(state.CommonAppDataDir, "") << "not fetched at start";
}

TEST(StartUp, TheTitleIsCaptionAndVersionUntilThePackageNamesAnother) {
  Start plain;
  plain.Run();
  EXPECT_THAT(plain.window.title, ::testing::MatchesRegex("ZentUpdate .+\\..+\\..+"));
  Start named("[General]\nAppName=Korvo\nCaption=Korvo 3.6.0 Update\n[setup]\n");
  named.Run();
  EXPECT_EQ(named.window.title, "Korvo 3.6.0 Update");
}

TEST(StartUp, VistaIsTheVersionTextNt60) {
  for (const auto& [version, is_vista] :
       {std::pair{OsVersion{2, 6, 0}, true}, std::pair{OsVersion{2, 6, 1}, false},
        std::pair{OsVersion{2, 5, 1}, false}, std::pair{OsVersion{1, 6, 0}, false}}) {
    Start given;
    given.machine.system.version = version;
    EXPECT_EQ(given.Run().IsVista, is_vista);
  }
}

TEST(StartUp, AnApplicationThatIsNotInstalledEndsTheLoadAtOnce) {
  Start given("[General]\nAppName=Missing\nAutoClose=yes\n[setup]\nmsg,never\n");
  const RunState& state = given.Run();
  EXPECT_THAT(
      given.messages(),
      ElementsAre("Could not get the installation path of Korvo. ",
                  "Most likely cause of the above error is: ",
                  "You are trying to install a patch, before doing a full installation.  "));
  EXPECT_FALSE(given.window.closed) << "it stays open even with AutoClose";
  EXPECT_FALSE(state.ErrorOccurred);
  EXPECT_EQ(given.form.result(), RunResult::NotInstalled);
  EXPECT_THAT(given.observer.ends, ElementsAre(RunResult::NotInstalled));
}

TEST(StartUp, AMissingSettingsFileFindsNoApplication) {
  Start given;
  EXPECT_TRUE(given.machine.files.Delete(R"(D:\Package\ZentUpdate.ini)").ok());
  given.Run();
  EXPECT_EQ(given.form.result(), RunResult::NotInstalled);
}

TEST(StartUp, AMissingFolderSettingFailsWithoutOpeningTheList) {
  Start given;
  given.machine.registry.log().FailWhere("CommonFilesDir", StandardError(kFileNotFound));
  const RunState& state = given.Run();
  EXPECT_THAT(given.messages(),
              ElementsAre(R"(Korvo path: C:\Korvo\)", R"(Fetched Reg Key - C:\Program Files)",
                          "Could not locate the 'Common Files Dir' key value in the Registry.", "",
                          "Setup failed.", "Click on 'Close' to exit."));
  EXPECT_TRUE(state.ErrorOccurred);
  EXPECT_EQ(state.DataPath, "");
}

TEST(StartUp, TheFirstMissingFolderSettingKeepsTheSecondFromBeingRead) {
  Start given;
  given.machine.registry.log().FailWhere("ProgramFilesDir", StandardError(kFileNotFound));
  given.Run();
  EXPECT_THAT(given.messages(),
              Contains("Could not locate the 'Program Files Dir' key value in the Registry."));
  EXPECT_THAT(given.messages(), Not(Contains(HasSubstr("Common Files"))));
}

TEST(GetCommonAppDataDir, ReadsTheFolderOfAllUsers) {
  Start given;
  EXPECT_FALSE(given.form.GetCommonAppDataDir());
  EXPECT_THAT(given.messages(),
              ElementsAre("Could not locate the 'Common AppData Dir' key in the Registry."));
  given.machine.registry.PutValue(
      KeyHandle::LocalMachine, std::string(kCurrentVersion) + R"(\Explorer\User Shell Folders)",
      "Common AppData", {kRegExpandSz, std::string("%ProgramData%\0", 14)});
  given.machine.system.environment["ProgramData"] = R"(C:\ProgramData)";
  EXPECT_TRUE(given.form.GetCommonAppDataDir());
  EXPECT_EQ(given.form.run().state.CommonAppDataDir, R"(C:\ProgramData\)");
  EXPECT_EQ(given.messages().back(), R"(Fetched Reg Key - C:\ProgramData)");
}

TEST(StartUp, ClosesEveryKeyThatItOpened) {
  Start given;
  given.Run();
  EXPECT_EQ(given.machine.registry.OpenKeyCount(), 0U);
}

struct DataCase {
  const char* what;
  const char* settings;
  const char* data_path;
  const char* database;
};

constexpr DataCase kDataCases[] = {
    {"both named", "[General]\nDataPath=D:\\Data\nDataBase=Mine.mdb\n", R"(D:\Data\)",
     R"(D:\Data\Mine.mdb)"},
    {"a folder with its backslash", "[General]\nDataPath=D:\\Data\\\n", R"(D:\Data\)",
     R"(D:\Data\Korvo.mdb)"},
    {"neither named", "[General]\n", R"(C:\Korvo\ZentData\)", R"(C:\Korvo\ZentData\Korvo.mdb)"},
    {"a data source stands as it is, without the data folder",
     "[General]\nDataPath=D:\\Data\nDataBase=DSN=Korvo;UID=sa;\n", R"(D:\Data\)",
     "DSN=Korvo;UID=sa;"},
    {"only capitals name a data source", "[General]\nDataPath=D:\\Data\nDataBase=dsn=Korvo\n",
     R"(D:\Data\)", R"(D:\Data\dsn=Korvo)"},
};

TEST(StartUp, FindsDataFolderAndDatabase) {
  for (const DataCase& row : kDataCases) {
    SCOPED_TRACE(row.what);
    Start given;
    given.machine.files.PutFile(R"(C:\Ini\Korvo.ini)", row.settings);
    const RunState& state = given.Run();
    EXPECT_EQ(state.DataPath, row.data_path);
    EXPECT_EQ(state.KorvoDataBaseName, row.database);
  }
}

TEST(StartUp, AnApplicationThatWasNeverStartedUsesItsOwnFolder) {
  for (const char* last_run : {"", "never", "2/30/2004"}) {
    SCOPED_TRACE(last_run);
    Start given;
    given.machine.registry.PutText(KeyHandle::CurrentUser,
                                   R"(Software\VB and VBA Program Settings\Korvo\Settings)",
                                   "LastRunDateTime", last_run);
    const RunState& state = given.Run();
    EXPECT_EQ(state.DataPath, R"(C:\Korvo\ZentData\)");
    EXPECT_EQ(state.KorvoDataBaseName, R"(C:\Korvo\ZentData\Korvo.mdb)");
  }
}

TEST(StartUp, ADefectEndsAsAReportedError) {
  Start given;
  given.window.on_events = [](std::chrono::milliseconds) { throw std::bad_alloc(); };
  given.Run();
  EXPECT_EQ(given.form.result(), RunResult::Failed);
  EXPECT_THAT(given.window.boxes, ElementsAre(HasSubstr("Error during setup")));
}

}  // namespace
}  // namespace zent
