#include <gtest/gtest.h>

#include <string>

#include "lib/RegFuncs.h"
#include "lib/TestMachine.h"

namespace zent {
namespace {

using testing::TestMachine;

struct FolderCase {
  const char* what;
  std::string (*getter)(const Platform&);
  KeyHandle root;
  const char* value;
};

constexpr FolderCase kFolderCases[] = {
    {"documents", GetMyDocumentsFolder, KeyHandle::CurrentUser, "Personal"},
    {"desktop", GetDesktopFolder, KeyHandle::CurrentUser, "Desktop"},
    {"application data", GetAppDataFolder, KeyHandle::CurrentUser, "AppData"},
    {"local application data", GetLocalAppDataFolder, KeyHandle::CurrentUser, "Local AppData"},
    {"application data of all", GetCommonAppDataFolder, KeyHandle::LocalMachine, "Common AppData"},
};

constexpr const char* kShellFolders =
    R"(SOFTWARE\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders)";

TEST(ShellFolders, AreReadFromTheirValueAndEndWithABackslash) {
  for (const FolderCase& row : kFolderCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    machine.registry.PutText(row.root, kShellFolders, row.value, R"(C:\Users\k\Folder)");
    EXPECT_EQ(row.getter(machine.ports), R"(C:\Users\k\Folder\)");
    EXPECT_EQ(machine.registry.OpenKeyCount(), 0U);
  }
}

TEST(ShellFolders, AreExpanded) {
  for (const FolderCase& row : kFolderCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    machine.system.environment = {{"USERPROFILE", R"(C:\Users\k)"}};
    machine.registry.PutValue(row.root, kShellFolders, row.value,
                              {kRegExpandSz, R"(%UserProfile%\Folder)"});
    EXPECT_EQ(row.getter(machine.ports), R"(C:\Users\k\Folder\)");
  }
}

TEST(ShellFolders, AreEmptyWhenTheRegistryDoesNotTell) {
  for (const FolderCase& row : kFolderCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    EXPECT_EQ(row.getter(machine.ports), "") << "no key";
    machine.registry.PutKey(row.root, kShellFolders);
    EXPECT_EQ(row.getter(machine.ports), "") << "no value";
    machine.registry.PutValue(row.root, kShellFolders, row.value, {kRegDword, "abcd"});
    EXPECT_EQ(row.getter(machine.ports), "") << "no text";
    EXPECT_EQ(machine.registry.OpenKeyCount(), 0U);
  }
}

struct PublicCase {
  const char* what;
  OsVersion version;
  const char* folder;
};

constexpr PublicCase kPublicCases[] = {
    {"NT 6.0 has a public profile", {kPlatformNt, 6, 0}, R"(C:\Users\Public\)"},
    {"NT 6.1 is not taken for it", {kPlatformNt, 6, 1}, R"(C:\ProgramData\)"},
    {"nor is NT 6.2", {kPlatformNt, 6, 2}, R"(C:\ProgramData\)"},
    {"NT 5.1", {kPlatformNt, 5, 1}, R"(C:\ProgramData\)"},
    {"another family of that version", {kPlatform9x, 6, 0}, R"(C:\ProgramData\)"},
};

constexpr const char* kProfileList = R"(SOFTWARE\Microsoft\Windows NT\CurrentVersion\ProfileList)";

TEST(GetPublicFolder, IsThePublicProfileOnVistaAlone) {
  for (const PublicCase& row : kPublicCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    machine.system.version = row.version;
    machine.system.environment = {{"SystemDrive", "C:"}};
    machine.registry.PutText(KeyHandle::LocalMachine, kProfileList, "Public",
                             R"(%SYSTEMdrive%\Users\Public)");
    machine.CommonFolder("Common AppData", R"(C:\ProgramData)");
    EXPECT_EQ(GetPublicFolder(machine.ports), row.folder);
  }
}

TEST(GetPublicFolder, ExpandsAnExpandableProfileToo) {
  TestMachine machine;
  machine.system.version = {kPlatformNt, 6, 0};
  machine.system.environment = {{"SystemDrive", "D:"}};
  machine.registry.PutValue(KeyHandle::LocalMachine, kProfileList, "Public",
                            {kRegExpandSz, R"(%SystemDrive%\Users\Public)"});
  EXPECT_EQ(GetPublicFolder(machine.ports), R"(D:\Users\Public\)");
}

TEST(GetPublicFolder, IsEmptyOnVistaWithoutAPublicProfile) {
  TestMachine machine;
  machine.system.version = {kPlatformNt, 6, 0};
  machine.CommonFolder("Common AppData", R"(C:\ProgramData)");
  EXPECT_EQ(GetPublicFolder(machine.ports), "");
}

struct AppPathCase {
  const char* what;
  const char* value;
  const char* folder;
};

constexpr AppPathCase kAppPathCases[] = {
    {"a full path", R"(C:\Program Files\Korvo\Korvo.exe)", R"(C:\Program Files\Korvo)"},
    {"in quotes", R"("C:\Program Files\Korvo\Korvo.exe")", R"(C:\Program Files\Korvo)"},
    {"with slashes", "C:/Korvo/Korvo.exe", "C:/Korvo"},
    {"a slash behind the last backslash stays", R"(C:\Korvo/Korvo.exe)", "C:"},
    {"in the root of a drive", R"(C:\Korvo.exe)", "C:"},
    {"a folder alone", R"(C:\Korvo\)", R"(C:\Korvo)"},
    {"without a folder", "Korvo.exe", ""},
    {"empty", "", ""},
};

TEST(GetAppPath, IsTheFolderOfTheProgram) {
  for (const AppPathCase& row : kAppPathCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    machine.registry.PutText(KeyHandle::LocalMachine,
                             R"(SOFTWARE\Microsoft\Windows\CurrentVersion\App Paths\Korvo.exe)", "",
                             row.value);
    EXPECT_EQ(GetAppPath(machine.ports, "korvo.exe"), row.folder);
    EXPECT_EQ(machine.registry.OpenKeyCount(), 0U);
  }
}

constexpr const char* kAppPaths32 =
    R"(SOFTWARE\Wow6432Node\Microsoft\Windows\CurrentVersion\App Paths\Korvo.exe)";

TEST(GetAppPath, IsEmptyForWhatIsNotInstalled) {
  TestMachine machine;
  EXPECT_EQ(GetAppPath(machine.ports, "Korvo.exe"), "");
  machine.registry.PutText(KeyHandle::CurrentUser, std::string(kAppPathsKey) + "Korvo.exe", "",
                           R"(C:\User\Korvo.exe)");
  EXPECT_EQ(GetAppPath(machine.ports, "Korvo.exe"), "") << "another root";
}

TEST(GetAppPath, LooksAmongThe32BitProgramsNext) {
  TestMachine machine;
  machine.registry.PutText(KeyHandle::LocalMachine, kAppPaths32, "", R"(C:\x86\Korvo.exe)");
  EXPECT_EQ(GetAppPath(machine.ports, "Korvo.exe"), R"(C:\x86)");

  const std::string plain = std::string(kAppPathsKey) + "Korvo.exe";
  machine.registry.PutText(KeyHandle::LocalMachine, plain, "Path", R"(C:\x64)");
  EXPECT_EQ(GetAppPath(machine.ports, "Korvo.exe"), R"(C:\x86)") << "a key without a program";

  machine.registry.PutText(KeyHandle::LocalMachine, plain, "", R"(C:\x64\Korvo.exe)");
  EXPECT_EQ(GetAppPath(machine.ports, "Korvo.exe"), R"(C:\x64)");
}

}  // namespace
}  // namespace zent
