#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "contracts/SettingsFilesContract.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/settings/Win32SettingsFiles.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kOne = "[S]\r\nA=1\r\n";

class Win32Subject : public SettingsFilesSubject {
 public:
  SettingsFiles& settings() override { return settings_; }
  std::string folder() override { return folder_.path().string(); }
  void PutFile(std::string_view name, std::string_view bytes) override { folder_.Put(name, bytes); }

 private:
  TempFolder folder_;
  Win32SettingsFiles settings_;
};

INSTANTIATE_TEST_SUITE_P(Win32, SettingsFilesContract, ::testing::Values([] {
                           return std::unique_ptr<SettingsFilesSubject>(new Win32Subject);
                         }));

class Win32Settings : public ::testing::Test {
 protected:
  std::string PathOf(const char* name) const { return (folder_.path() / name).string(); }
  std::string Put(const char* name, std::string_view bytes = kOne) const {
    return folder_.Put(name, bytes).string();
  }
  std::string Get(const char* name) const { return folder_.Get(name); }
  /// The value of "A" in "S", "D" being the default.
  std::string Read(const std::string& path) {
    return settings_.Read(path, "S", "A", "D", 255).text;
  }
  Win32SettingsFiles& settings() { return settings_; }

 private:
  TempFolder folder_;
  Win32SettingsFiles settings_;
};

UniqueHandle Hold(const std::string& path, DWORD share) {
  return UniqueHandle(
      CreateFileA(path.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

std::string InWindowsFolder(const char* name) {
  char folder[MAX_PATH];
  EXPECT_GT(GetWindowsDirectoryA(folder, MAX_PATH), 0U);
  return std::string(folder) + '\\' + name;
}

TEST_F(Win32Settings, ANameWithoutAFolderLiesInTheWindowsFolder) {
  constexpr const char* kName = "zent-contract.ini";
  DeleteFileA(InWindowsFolder(kName).c_str());
  EXPECT_EQ(settings().Read(kName, "S", "A", "D", 255).file.number(), kFileNotFound);

  EXPECT_TRUE(settings().Write(kName, "S", "A", "1").ok());

  EXPECT_EQ(Read(InWindowsFolder(kName)), "1");
  EXPECT_EQ(Read("ZENT-Contract.INI"), "1");
  EXPECT_TRUE(DeleteFileA(InWindowsFolder(kName).c_str()));
}

TEST_F(Win32Settings, ANameWithDotAndBackslashLiesInTheCurrentFolder) {
  const std::string path = Put("a.ini");
  char before[MAX_PATH];
  ASSERT_GT(GetCurrentDirectoryA(MAX_PATH, before), 0U);
  ASSERT_TRUE(SetCurrentDirectoryA(path.substr(0, path.rfind('\\')).c_str()));
  EXPECT_EQ(Read(R"(.\a.ini)"), "1");
  EXPECT_EQ(Read("./a.ini"), "1");
  SetCurrentDirectoryA(before);
}

TEST_F(Win32Settings, AReadThatFailsGivesTheDefaultAndTheReason) {
  const std::string held = Put("held.ini");
  const UniqueHandle holder = Hold(held, 0);
  const struct {
    const char* what;
    std::string path;
    int number;
  } cases[] = {
      {"missing file", PathOf("none.ini"), kFileNotFound},
      {"missing folder", PathOf(R"(none\a.ini)"), kPathNotFound},
      {"missing drive", R"(Q:\a.ini)", kPathNotFound},
      {"a folder", PathOf("."), kPathFileAccess},
      {"no name", "", kPathFileAccess},
      {"a name that cannot be", PathOf("a?.ini"), kBadFileName},
      {"a name outside the code page", PathOf("a") + "\u0416.ini", kBadFileName},
      {"open elsewhere, not shared", held, kPermissionDenied},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    const SettingsText value = settings().Read(row.path, "S", "A", "\"D\" ", 255);
    EXPECT_EQ(value.text, "D");
    EXPECT_EQ(value.file.number(), row.number);
    EXPECT_EQ(settings().Read(row.path, "S", std::nullopt, "D", 255).text, "D");
    EXPECT_EQ(settings().Read(row.path, std::nullopt, std::nullopt, "D", 255).text, "");
  }
}

TEST_F(Win32Settings, AWriteThatFailsSaysWhyAndChangesNothing) {
  const std::string fixed = Put("fixed.ini");
  ASSERT_TRUE(SetFileAttributesA(fixed.c_str(), FILE_ATTRIBUTE_READONLY));
  const std::string shared = Put("shared.ini");
  const std::string closed = Put("closed.ini");
  UniqueHandle shared_holder = Hold(shared, FILE_SHARE_READ);
  UniqueHandle closed_holder = Hold(closed, 0);
  const struct {
    const char* what;
    std::string path;
    int number;
  } cases[] = {
      {"missing folder", PathOf(R"(none\a.ini)"), kPathNotFound},
      {"missing drive", R"(Q:\a.ini)", kPathNotFound},
      {"a folder", PathOf("."), kPathFileAccess},
      {"no name", "", kPathFileAccess},
      {"a name that cannot be", PathOf("a?.ini"), kBadFileName},
      {"read-only file", fixed, kPathFileAccess},
      {"open elsewhere, shared for reading", shared, kPermissionDenied},
      {"open elsewhere, not shared", closed, kPermissionDenied},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(settings().Write(row.path, "S", "A", "2").number(), row.number);
    EXPECT_EQ(settings().Write(row.path, "S", "A", std::nullopt).number(), row.number);
    EXPECT_EQ(settings().Write(row.path, "S", std::nullopt, std::nullopt).number(), row.number);
  }
  shared_holder.Close();
  closed_holder.Close();
  for (const char* name : {"fixed.ini", "shared.ini", "closed.ini"}) EXPECT_EQ(Get(name), kOne);
  EXPECT_EQ(Read(fixed), "1") << "reading goes on";
  EXPECT_EQ(GetFileAttributesA(PathOf("none").c_str()), INVALID_FILE_ATTRIBUTES);
  SetFileAttributesA(fixed.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(Win32Settings, AFileIsReadAndWrittenWhileAnotherProgramReadsIt) {
  const std::string path = Put("a.ini");
  const UniqueHandle holder = Hold(path, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
  EXPECT_TRUE(settings().Write(path, "S", "A", "2").ok());
  EXPECT_EQ(Read(path), "2");
}

TEST_F(Win32Settings, AHiddenFileIsWrittenAndStaysHidden) {
  const std::string path = Put("a.ini");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
  EXPECT_TRUE(settings().Write(path, "S", "A", "7").ok());
  EXPECT_EQ(Get("a.ini"), "[S]\r\nA=7\r\n");
  EXPECT_NE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
}

TEST_F(Win32Settings, AWriteIsInTheFileAtOnce) {
  const std::string path = PathOf("a.ini");
  EXPECT_TRUE(settings().Write(path, "S", "A", "1").ok());
  EXPECT_EQ(Get("a.ini"), kOne);
  EXPECT_TRUE(settings().Write(path, "S", "A", std::nullopt).ok());
  EXPECT_EQ(Get("a.ini").find("A=1"), std::string::npos);
}

TEST_F(Win32Settings, WhatAnotherProgramWroteIsReadAtOnce) {
  const std::string path = Put("a.ini");
  EXPECT_EQ(Read(path), "1");
  Put("a.ini", "[S]\r\nA=2\r\n");
  EXPECT_EQ(Read(path), "2");
  EXPECT_TRUE(settings().Write(path, "S", "A", "3").ok());
  Put("a.ini", "[S]\r\nA=4\r\n");
  EXPECT_EQ(Read(path), "4");
}

TEST_F(Win32Settings, RemovingWhatIsNotThereChangesNothing) {
  const std::string path = Put("a.ini");
  EXPECT_TRUE(settings().Write(path, "S", "none", std::nullopt).ok());
  EXPECT_TRUE(settings().Write(path, "none", std::nullopt, std::nullopt).ok());
  EXPECT_EQ(Get("a.ini"), kOne);
  EXPECT_TRUE(settings().Write(PathOf("none.ini"), "S", "A", std::nullopt).ok());
  EXPECT_EQ(GetFileAttributesA(PathOf("none.ini").c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(Win32Settings, TextsEndAtANul) {
  const std::string path = PathOf("a.ini");
  EXPECT_TRUE(settings().Write(path, "S\0x"sv, "A\0x"sv, "1\0x"sv).ok());
  EXPECT_EQ(Get("a.ini"), kOne);
  EXPECT_EQ(settings().Read(path, "S\0y"sv, "A\0y"sv, "D", 255).text, "1");
  EXPECT_EQ(settings().Read(path, "S", "none", "D \0y"sv, 255).text, "D");
}

TEST_F(Win32Settings, TextsPassThroughTheAnsiCodePage) {
  const std::string path = PathOf("a.ini");
  EXPECT_TRUE(settings().Write(path, "\u0416", "\u0416", "\u0416y\u00e4").ok());
  EXPECT_EQ(Get("a.ini"), "[?]\r\n?=?y\xE4\r\n");
  EXPECT_EQ(settings().Read(path, "\u0416", "?", "D", 255).text, "?y\u00e4");
  EXPECT_EQ(settings().Read(path, "S", "A", "\u0416", 255).text, "?");
}

TEST_F(Win32Settings, TheNameOfAFileMayHoldLettersOfTheCodePage) {
  const std::string path = PathOf("K") + "\u00e4se \u20ac.ini";
  EXPECT_TRUE(settings().Write(path, "S", "A", "1").ok());
  EXPECT_EQ(Read(path), "1");
}

struct DefaultCase {
  const char* what;
  std::string_view default_text;
  std::string_view text;
};

constexpr DefaultCase kDefaultCases[] = {
    {"as it is", "D", "D"},
    {"nothing", "", ""},
    {"trailing blanks go", "  D  ", "  D"},
    {"blanks alone go", "   ", ""},
    {"a pair of quotes goes", "\"D\"", "D"},
    {"one pair only", "'\"D\"'", "\"D\""},
    {"a quote alone stays", "\"", "\""},
    {"what the search itself asks with", "0", "0"},
    {"... both", "1", "1"},
};

TEST_F(Win32Settings, TheDefaultLosesBlanksAndQuotes) {
  const std::string path = Put("a.ini", "[S]\r\nA=0\r\nB=1\r\nC=\r\n");
  for (const DefaultCase& row : kDefaultCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(settings().Read(path, "S", "none", row.default_text, 255).text, row.text);
    EXPECT_EQ(settings().Read(path, "none", std::nullopt, row.default_text, 255).text, row.text);
    EXPECT_EQ(settings().Read(path, "S", "A", row.default_text, 255).text, "0");
    EXPECT_EQ(settings().Read(path, "S", "B", row.default_text, 255).text, "1");
    EXPECT_EQ(settings().Read(path, "S", "C", row.default_text, 255).text, "");
  }
}

}  // namespace
}  // namespace zent::testing
