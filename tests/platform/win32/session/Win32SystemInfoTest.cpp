#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

#include "platform/win32/session/StartedProgram.h"
#include "platform/win32/session/Win32Processes.h"
#include "platform/win32/session/Win32SystemInfo.h"

namespace zent {
namespace {

using ::testing::EndsWith;
using ::testing::Optional;

TEST(Win32SystemInfo, NamesAVersionOfTheNtFamily) {
  const OsVersion version = Win32SystemInfo().Version();
  EXPECT_EQ(version.platform, kPlatformNt);
  EXPECT_GE(version.major, 5U);
}

struct VersionCase {
  const char* emulated;  ///< as Wine calls the Windows that it stands in for
  const char* told;      ///< platform, major, minor
};

constexpr VersionCase kVersionCases[] = {
    {"winxp64", "2 5 2"},
    {"vista", "2 6 0"},
    {"win7", "2 6 1"},
    {"win10", "2 6 2"},  // all that it tells a program without a manifest
};

TEST(Win32SystemInfo, TellsTheVersionOfTheSystem) {
  constexpr const char* kKey = R"(Software\Wine\AppDefaults\other.exe)";
  if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version") == nullptr) return;
  for (const VersionCase& row : kVersionCases) {
    SCOPED_TRACE(row.emulated);
    const testing::TempFolder folder;
    const std::string program = testing::PutOtherProgram(folder, "other.exe");
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, kKey, &key), ERROR_SUCCESS);
    RegSetValueExA(key, "Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(row.emulated),
                   static_cast<DWORD>(std::strlen(row.emulated) + 1));
    RegCloseKey(key);

    const auto started = Win32Processes().Start({program, "", program});
    ASSERT_TRUE(started.ok());
    EXPECT_TRUE(testing::WaitForExit(started.value()));
    RegDeleteKeyA(HKEY_CURRENT_USER, kKey);

    EXPECT_THAT(testing::RecordOf(program), EndsWith("\n" + std::string(row.told) + "\n"));
  }
}

TEST(Win32SystemInfo, NamesFoldersWithoutABackslashBehind) {
  Win32SystemInfo system;
  for (const std::string& folder :
       {system.WindowsFolder(), system.SystemFolder(), system.TempFolder()}) {
    SCOPED_TRACE(folder);
    EXPECT_EQ(folder.substr(1, 2), ":\\");
    EXPECT_NE(folder.back(), '\\');
    const DWORD attributes = GetFileAttributesA(folder.c_str());
    ASSERT_NE(attributes, INVALID_FILE_ATTRIBUTES);
    EXPECT_NE(attributes & FILE_ATTRIBUTE_DIRECTORY, 0U);
  }
  EXPECT_TRUE(system.SystemFolder().starts_with(system.WindowsFolder()));
}

TEST(Win32SystemInfo, TheTemporaryFolderIsThatOfTheEnvironment) {
  char before[MAX_PATH] = {};
  GetEnvironmentVariableA("TMP", before, MAX_PATH);
  SetEnvironmentVariableA("TMP", R"(C:\windows)");
  EXPECT_THAT(Win32SystemInfo().TempFolder(), ::testing::StrCaseEq(R"(C:\windows)"));
  SetEnvironmentVariableA("TMP", before);
}

struct VariableCase {
  const char* what;
  const char* ansi;  ///< nullptr: not set
  std::optional<std::string> text;
};

TEST(Win32SystemInfo, ReadsTheEnvironment) {
  const std::string long_value(1000, 'x');
  const VariableCase rows[] = {
      {"a value", "some value", "some value"},
      {"nothing", nullptr, std::nullopt},
      {"an umlaut", "M\xFCller", "M\xC3\xBCller"},
      {"longer than a path", long_value.c_str(), long_value},
      {"a value anew", "C:\\Korvo\\", "C:\\Korvo\\"},
  };
  for (const VariableCase& row : rows) {
    SCOPED_TRACE(row.what);
    SetEnvironmentVariableA("ZENT_TEST", row.ansi);
    EXPECT_EQ(Win32SystemInfo().EnvironmentVariable("ZENT_TEST"), row.text);
    EXPECT_EQ(Win32SystemInfo().EnvironmentVariable("zent_Test"), row.text);
  }
  SetEnvironmentVariableA("ZENT_TEST", nullptr);
}

TEST(Win32SystemInfo, AVariableThatIsSetToNothingIsSet) {
  SetEnvironmentVariableA("ZENT_TEST", "");
  EXPECT_THAT(Win32SystemInfo().EnvironmentVariable("ZENT_TEST"), Optional(std::string()));
  SetEnvironmentVariableA("ZENT_TEST", nullptr);
}

TEST(Win32SystemInfo, WhatCannotBeANameIsNotSet) {
  using namespace std::string_literals;
  ASSERT_NE(SetEnvironmentVariableA("=Q:", R"(Q:\hidden)"), FALSE);
  for (const std::string& name : {""s, "\xE4\xB8\xAD"s, "SystemRoot\0x"s, "=Q:"s, "SystemRoot="s}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Win32SystemInfo().EnvironmentVariable(name), std::nullopt);
  }
  SetEnvironmentVariableA("=Q:", nullptr);
}

TEST(Win32SystemInfo, HasTheCodePageOfTheMachine) {
  ASSERT_EQ(GetACP(), 1252U);
  Win32SystemInfo system;
  EXPECT_EQ(system.ToAnsi("a\xC3\xBC\xE2\x82\xAC\xD0\x96"), "a\xFC\x80?");
  EXPECT_EQ(system.FromAnsi("a\xFC\x80\x81"), "a\xC3\xBC\xE2\x82\xAC\xC2\x81");
}

TEST(Win32SystemInfo, ExpandsTextsByTheEnvironment) {
  Win32SystemInfo system;
  EXPECT_THAT(ExpandEnvironment(system, R"(%SystemDrive%\a)"), EndsWith(R"(:\a)"));
}

}  // namespace
}  // namespace zent
