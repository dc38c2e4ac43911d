#include <gtest/gtest.h>

#include <string>

#include "lib/FuncLib.h"
#include "lib/TestMachine.h"

namespace zent {
namespace {

using testing::TestMachine;

TestMachine& WithFolders(TestMachine& machine) {
  machine.UserFolder("Personal", R"(C:\Docs)");
  machine.UserFolder("AppData", R"(C:\Roaming)");
  machine.CommonFolder("Common AppData", R"(C:\ProgramData)");
  return machine;
}

struct PathCase {
  const char* what;
  const char* paths_file;  ///< its lines; null: there is no such file
  const char* folder;
  const char* key;
  const char* path;
};

constexpr PathCase kPathCases[] = {
    {"without a file, data", nullptr, R"(C:\K)", "datapath", R"(C:\K\Data\)"},
    {"without a file, temporary files", nullptr, R"(C:\K)", "temppath", R"(C:\K\Temp\)"},
    {"without a file, outbox", nullptr, R"(C:\K)", "outboxpath", R"(C:\K\Outbox\)"},
    {"without a file, settings", nullptr, R"(C:\K)", "inipath", ""},
    {"without a file, another key", nullptr, R"(C:\K)", "otherpath", ""},
    {"the key in any case", nullptr, R"(C:\K\)", "DataPath", R"(C:\K\Data\)"},
    {"without the key", "[General]\r\nTempPath=D:\\T\r\n", R"(C:\K)", "DataPath", R"(C:\K\Data\)"},
    {"the value", "[General]\r\nDATAPATH=D:\\Data\r\n", R"(C:\K)", "DataPath", R"(D:\Data\)"},
    {"a value with its backslash", "[General]\r\nDataPath=D:\\Data\\\r\n", R"(C:\K)", "DataPath",
     R"(D:\Data\)"},
    {"an empty value", "[General]\r\nDataPath=\r\n", R"(C:\K)", "DataPath", ""},
    {"a value of another section", "[Other]\r\nDataPath=D:\\\r\n", R"(C:\K)", "DataPath",
     R"(C:\K\Data\)"},
    {"any key that the file has", "[General]\r\nBackup=E:\\B\r\n", R"(C:\K)", "Backup", R"(E:\B\)"},
    {"documents", "[General]\r\nDataPath=$(MyDocuments)\\Korvo\r\n", R"(C:\K)", "DataPath",
     R"(C:\Docs\Korvo\)"},
    {"documents alone", "[General]\r\nDataPath=$(mydocuments)\r\n", R"(C:\K)", "DataPath",
     R"(C:\Docs\)"},
    {"a name right behind the macro", "[General]\r\nDataPath=$(MyDocuments)Korvo\r\n", R"(C:\K)",
     "DataPath", R"(C:\Docs\Korvo\)"},
    {"the user's application data", "[General]\r\nIniPath=$(WinAppDataPath)\\Zent\r\n", R"(C:\K)",
     "IniPath", R"(C:\Roaming\Zent\)"},
    {"application data of all", "[General]\r\nIniPath=$(WINCOMMONAPPDATAPATH)\\Zent\r\n", R"(C:\K)",
     "IniPath", R"(C:\ProgramData\Zent\)"},
    {"only the first macro in their order",
     "[General]\r\nIniPath=$(WinAppDataPath)\\$(MyDocuments)\r\n", R"(C:\K)", "IniPath",
     R"($(WinAppDataPath)\C:\Docs\)"},
    {"an unknown macro stays", "[General]\r\nIniPath=$(AppPath)\\x\r\n", R"(C:\K)", "IniPath",
     R"($(AppPath)\x\)"},
};

TEST(GetKorvoPath, TakesThePathsFileOrTheDefault) {
  for (const PathCase& row : kPathCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    WithFolders(machine);
    if (row.paths_file != nullptr) machine.files.PutFile(R"(C:\K\KorvoPaths.ini)", row.paths_file);
    EXPECT_EQ(GetKorvoPath(machine.ports, row.folder, row.key), row.path);
  }
}

TEST(GetKorvoPath, LeavesNoMacroWhereTheFolderIsUnknown) {
  TestMachine machine;
  machine.files.PutFile(R"(C:\K\KorvoPaths.ini)", "[General]\r\nDataPath=$(MyDocuments)\\K\r\n");
  EXPECT_EQ(GetKorvoPath(machine.ports, R"(C:\K)", "DataPath"), R"(\K\)");
}

TEST(GetKorvoPath, KeepsTheCharactersOfTheBuffer) {
  TestMachine machine;
  const std::string name(300, 'x');
  machine.files.PutFile(R"(C:\K\KorvoPaths.ini)", "[General]\r\nDataPath=" + name + "\r\n");
  EXPECT_EQ(GetKorvoPath(machine.ports, R"(C:\K)", "DataPath"), std::string(254, 'x') + '\\');
}

/// An installation whose public folder is that of a system after Vista.
void InstallKorvo(TestMachine& machine) {
  machine.system.version = {.platform = kPlatformNt, .major = 6, .minor = 1};
  WithFolders(machine);
  machine.registry.PutText(KeyHandle::LocalMachine, std::string(kAppPathsKey) + "Korvo.exe", "",
                           R"(C:\Program Files\Korvo\Korvo.exe)");
}

TEST(GetKorvoSharedFolder, IsTheOneInThePublicFolder) {
  TestMachine machine;
  InstallKorvo(machine);
  machine.files.PutFolder(R"(C:\ProgramData\Zent)");
  EXPECT_EQ(GetKorvoSharedFolder(machine.ports), R"(C:\ProgramData\Zent\)");
}

TEST(GetKorvoSharedFolder, IsTheInstallationWhereThePublicFolderHasNone) {
  TestMachine machine;
  InstallKorvo(machine);
  EXPECT_EQ(GetKorvoSharedFolder(machine.ports), R"(C:\Program Files\Korvo\)");
  machine.files.PutFile(R"(C:\ProgramData\Zent)", "a file is no folder");
  EXPECT_EQ(GetKorvoSharedFolder(machine.ports), R"(C:\Program Files\Korvo\)");
}

TEST(GetKorvoSharedFolder, IsNotAFolderOfThePackage) {
  TestMachine machine;
  machine.files.PutFolder(R"(D:\Package\Zent)");
  machine.files.SetCurrentFolder(R"(D:\Package)");
  EXPECT_EQ(GetKorvoSharedFolder(machine.ports), "");
}

struct RedirectCase {
  const char* what;
  const char* file;
  KorvoIni korvo_ini;
  const char* value;
};

constexpr RedirectCase kRedirectCases[] = {
    {"the application's file is exchanged", R"(C:\Any\Korvo.ini)", KorvoIni::Redirected, "shared"},
    {"in any case", R"(c:\any\KORVO.INI)", KorvoIni::Redirected, "shared"},
    {"wherever the name stands", R"(C:\Any\Korvo.ini\x)", KorvoIni::Redirected, "shared"},
    {"unless it is meant as given", R"(C:\Any\Korvo.ini)", KorvoIni::AsGiven, "given"},
    {"another file stays", R"(C:\Any\MyKorvo.ini)", KorvoIni::Redirected, "mine"},
    {"a name without a folder lies in the Windows folder", "Korvo.ini", KorvoIni::Redirected,
     "windows"},
};

void PutIniFiles(TestMachine& machine) {
  InstallKorvo(machine);
  machine.files.PutFile(R"(C:\ProgramData\Zent\KorvoPaths.ini)",
                        "[General]\r\nIniPath=$(WinAppDataPath)\\Zent\r\n");
  machine.files.PutFile(R"(C:\Roaming\Zent\Korvo.ini)", "[General]\r\nk=shared\r\n");
  machine.files.PutFile(R"(C:\Any\Korvo.ini)", "[General]\r\nk=given\r\n");
  machine.files.PutFile(R"(C:\Any\MyKorvo.ini)", "[General]\r\nk=mine\r\n");
  machine.files.PutFile(R"(C:\windows\Korvo.ini)", "[General]\r\nk=windows\r\n");
}

TEST(ReadIniValue, FollowsTheSettingsFileOfTheApplication) {
  TestMachine machine;
  PutIniFiles(machine);
  for (const RedirectCase& row : kRedirectCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ReadIniValue(machine.ports, row.file, "General", "k", "none", row.korvo_ini),
              row.value);
  }
}

TEST(ReadIniValue, GivesTheDefaultForWhatIsMissing) {
  TestMachine machine;
  machine.files.PutFile(R"(C:\a.ini)", "[General]\r\nk=v\r\nempty=\r\n");
  EXPECT_EQ(ReadIniValue(machine.ports, R"(C:\a.ini)", "general", "K", "d"), "v");
  EXPECT_EQ(ReadIniValue(machine.ports, R"(C:\a.ini)", "General", "none", "d"), "d");
  EXPECT_EQ(ReadIniValue(machine.ports, R"(C:\a.ini)", "General", "empty", "d"), "");
  EXPECT_EQ(ReadIniValue(machine.ports, R"(C:\none.ini)", "General", "k", "d"), "d");
}

TEST(ReadIniValue, KeepsTheCharactersOfTheBuffer) {
  TestMachine machine;
  machine.files.PutFile(R"(C:\a.ini)", "[General]\r\nk=" + std::string(254, 'x') + "yz\r\n");
  EXPECT_EQ(ReadIniValue(machine.ports, R"(C:\a.ini)", "General", "k", ""), std::string(254, 'x'));
}

TEST(ReadIniValue, LooksInTheWindowsFolderWhereNoFolderIsNamed) {
  TestMachine machine;
  PutIniFiles(machine);
  machine.files.PutFile(R"(C:\ProgramData\Zent\KorvoPaths.ini)", "[General]\r\n");
  EXPECT_EQ(ReadIniValue(machine.ports, R"(C:\Any\Korvo.ini)", "General", "k", ""), "windows");
}

TEST(WriteIniValue, FollowsTheSettingsFileOfTheApplication) {
  TestMachine machine;
  PutIniFiles(machine);

  EXPECT_TRUE(WriteIniValue(machine.ports, R"(C:\Any\Korvo.ini)", "General", "k", "new").ok());
  EXPECT_EQ(machine.files.Contents(R"(C:\Roaming\Zent\Korvo.ini)"), "[General]\r\nk=new\r\n");
  EXPECT_EQ(machine.files.Contents(R"(C:\Any\Korvo.ini)"), "[General]\r\nk=given\r\n");

  EXPECT_TRUE(WriteIniValue(machine.ports, R"(C:\Any\Korvo.ini)", "General", "k", "newer",
                            KorvoIni::AsGiven)
                  .ok());
  EXPECT_EQ(machine.files.Contents(R"(C:\Any\Korvo.ini)"), "[General]\r\nk=newer\r\n");
  EXPECT_EQ(machine.files.Contents(R"(C:\Roaming\Zent\Korvo.ini)"), "[General]\r\nk=new\r\n");
}

TEST(WriteIniValue, ReturnsWhatWentWrong) {
  TestMachine machine;
  machine.files.PutFile(R"(C:\a.ini)", "[General]\r\nk=v\r\n", kAttributeReadOnly);
  EXPECT_EQ(WriteIniValue(machine.ports, R"(C:\a.ini)", "General", "k", "new").number(),
            kPathFileAccess);
  EXPECT_EQ(machine.files.Contents(R"(C:\a.ini)"), "[General]\r\nk=v\r\n");
}

}  // namespace
}  // namespace zent
