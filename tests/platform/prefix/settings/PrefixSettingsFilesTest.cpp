#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "SettingsMachine.h"
#include "platform/prefix/settings/PrefixSettingsFiles.h"

namespace zent {
namespace {

using std::string_view_literals::operator""sv;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::SettingsMachine;

constexpr std::string_view kPath = R"(C:\Korvo\a.ini)";
constexpr std::string_view kOne = "[S]\r\nA=1\r\n";

TEST(PrefixSettingsFiles, ANameWithoutAFolderLiesInTheWindowsFolder) {
  SettingsMachine machine;
  machine.system.windows_folder = R"(D:\Win)";
  machine.files.PutFolder(R"(D:\Win)");

  EXPECT_TRUE(machine.settings.Write("Korvo.ini", "S", "A", "1").ok());

  EXPECT_EQ(machine.files.Contents(R"(D:\Win\Korvo.ini)"), kOne);
  EXPECT_EQ(machine.settings.Read("korvo.INI", "S", "A", "D", 255).text, "1");
}

TEST(PrefixSettingsFiles, ANameWithDotAndBackslashLiesInTheCurrentFolder) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, kOne);
  machine.files.SetCurrentFolder(R"(C:\Korvo)");
  EXPECT_EQ(machine.settings.Read(R"(.\a.ini)", "S", "A", "D", 255).text, "1");
  EXPECT_EQ(machine.settings.Read("./a.ini", "S", "A", "D", 255).text, "1");
}

struct ReadFailure {
  const char* what;
  std::string_view path;
  int number;
};

constexpr ReadFailure kReadFailures[] = {
    {"missing file", R"(C:\Korvo\none.ini)", kFileNotFound},
    {"missing folder", R"(C:\None\a.ini)", kPathNotFound},
    {"missing drive", R"(Q:\a.ini)", kPathNotFound},
    {"a folder", R"(C:\Korvo)", kPathFileAccess},
    {"a name that cannot be", R"(C:\Korvo\a?.ini)", kBadFileName},
    {"open elsewhere, not shared", R"(C:\Korvo\held.ini)", kPermissionDenied},
};

TEST(PrefixSettingsFiles, AReadThatFailsGivesTheDefaultAndTheReason) {
  for (const ReadFailure& row : kReadFailures) {
    SCOPED_TRACE(row.what);
    SettingsMachine machine;
    machine.files.PutFile(R"(C:\Korvo\held.ini)", kOne);
    machine.files.HoldOpen(R"(C:\Korvo\held.ini)", false);

    const SettingsText value = machine.settings.Read(row.path, "S", "A", "\"D\" ", 255);
    EXPECT_EQ(value.text, "D");
    EXPECT_EQ(value.file.number(), row.number);
    EXPECT_EQ(machine.settings.Read(row.path, "S", std::nullopt, "D", 255).text, "D");
    EXPECT_EQ(machine.settings.Read(row.path, std::nullopt, std::nullopt, "D", 255).text, "");
  }
}

struct WriteFailure {
  const char* what;
  std::string_view path;
  int number;
};

constexpr WriteFailure kWriteFailures[] = {
    {"missing folder", R"(C:\None\a.ini)", kPathNotFound},
    {"missing drive", R"(Q:\a.ini)", kPathNotFound},
    {"a folder", R"(C:\Korvo)", kPathFileAccess},
    {"read-only file", R"(C:\Korvo\fixed.ini)", kPathFileAccess},
    {"open elsewhere, shared for reading", R"(C:\Korvo\held.ini)", kPermissionDenied},
    {"open elsewhere, not shared", R"(C:\Korvo\closed.ini)", kPermissionDenied},
};

TEST(PrefixSettingsFiles, AWriteThatFailsSaysWhyAndChangesNothing) {
  for (const WriteFailure& row : kWriteFailures) {
    SCOPED_TRACE(row.what);
    SettingsMachine machine;
    machine.files.PutFile(R"(C:\Korvo\fixed.ini)", kOne, kAttributeReadOnly);
    machine.files.PutFile(R"(C:\Korvo\held.ini)", kOne);
    machine.files.PutFile(R"(C:\Korvo\closed.ini)", kOne);
    machine.files.HoldOpen(R"(C:\Korvo\held.ini)");
    machine.files.HoldOpen(R"(C:\Korvo\closed.ini)", false);

    EXPECT_EQ(machine.settings.Write(row.path, "S", "A", "2").number(), row.number);

    for (const std::string& path : machine.files.AllFiles()) {
      EXPECT_EQ(machine.files.Contents(path), kOne);
    }
    EXPECT_EQ(machine.files.AllFiles().size(), 3U);
    EXPECT_FALSE(machine.files.Exists(R"(C:\None)"));
  }
}

TEST(PrefixSettingsFiles, AWriteThatTheFileSystemRefusesLeavesTheOldFile) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, kOne);
  machine.files.log().FailChange(1, StandardError(kDiskFull));
  EXPECT_EQ(machine.settings.Write(kPath, "S", "A", "2").number(), kDiskFull);
  EXPECT_EQ(machine.files.Contents(kPath), kOne);
}

TEST(PrefixSettingsFiles, AHiddenFileIsWrittenAndStaysHidden) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, kOne, kAttributeHidden);
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "A", "7").ok());
  EXPECT_EQ(machine.files.Contents(kPath), "[S]\r\nA=7\r\n");
  EXPECT_EQ(machine.files.Attributes(kPath).value(), kAttributeHidden);
}

TEST(PrefixSettingsFiles, ChangesAFileWithOneWriteOfTheWhole) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, kOne);
  EXPECT_TRUE(machine.settings.Write(kPath, "T", "B", "2").ok());
  EXPECT_THAT(machine.files.log().changes(), ElementsAre(R"(Write C:\Korvo\a.ini)"));
}

TEST(PrefixSettingsFiles, WhatChangesNoByteDoesNotTouchTheFile) {
  SettingsMachine machine;
  machine.files.PutFile(kPath, kOne, kAttributeReadOnly);
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "A", "1").ok());
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "none", std::nullopt).ok());
  EXPECT_TRUE(machine.settings.Write(kPath, "none", std::nullopt, std::nullopt).ok());
  EXPECT_TRUE(machine.settings.Write(R"(C:\Korvo\none.ini)", "S", "A", std::nullopt).ok());
  EXPECT_THAT(machine.files.log().changes(), IsEmpty());
}

TEST(PrefixSettingsFiles, TextsEndAtANul) {
  SettingsMachine machine;
  EXPECT_TRUE(machine.settings.Write(kPath, "S\0x"sv, "A\0x"sv, "1\0x"sv).ok());
  EXPECT_EQ(machine.files.Contents(kPath), kOne);
  EXPECT_EQ(machine.settings.Read(kPath, "S\0y"sv, "A\0y"sv, "D", 255).text, "1");
  EXPECT_EQ(machine.settings.Read(kPath, "S", "none", "D \0y"sv, 255).text, "D");
}

TEST(PrefixSettingsFiles, TextsPassThroughTheAnsiCodePage) {
  SettingsMachine machine;
  EXPECT_TRUE(machine.settings.Write(kPath, "\xD0\x96", "\xD0\x96", "\xD0\x96y").ok());
  EXPECT_EQ(machine.files.Contents(kPath), "[?]\r\n?=?y\r\n");
  EXPECT_EQ(machine.settings.Read(kPath, "\xD0\x96", "?", "D", 255).text, "?y");
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "\xD0\x96", 255).text, "?");
}

TEST(PrefixSettingsFiles, TheBufferCountsCharacters) {
  SettingsMachine machine;
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "A", "\xC3\xA4\xC3\xB6\xC3\xBC").ok());
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 3).text, "\xC3\xA4\xC3\xB6");
  EXPECT_EQ(machine.settings.Read(kPath, "S", "B", "\xC3\xA4\xC3\xB6\xC3\xBC", 3).text,
            "\xC3\xA4\xC3\xB6");
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 0).text, "");
  EXPECT_EQ(machine.settings.Read(kPath, "S", "A", "D", 1).text, "");
}

TEST(PrefixSettingsFiles, AScrambledPasswordComesBack) {
  SettingsMachine machine;
  std::string scrambled;
  for (const char c : std::string_view("S3cret pass")) scrambled += static_cast<char>(~c);
  machine.files.PutFile(kPath, "[S]\r\nA=" + scrambled + "\r\nB=2\r\n");

  const std::string value = machine.settings.Read(kPath, "S", "A", "", 255).text;
  EXPECT_TRUE(machine.settings.Write(kPath, "S", "B", value).ok());

  EXPECT_EQ(machine.files.Contents(kPath), "[S]\r\nA=" + scrambled + "\r\nB=" + scrambled + "\r\n");
}

}  // namespace
}  // namespace zent
