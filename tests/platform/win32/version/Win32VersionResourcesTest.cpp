#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "contracts/PeBuilder.h"
#include "contracts/VersionResourcesContract.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/version/Win32VersionResources.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

constexpr const char* kVersionPath = R"(\StringFileInfo\040904B0\FileVersion)";

class Win32Subject : public VersionResourcesSubject {
 public:
  const VersionResources& resources() override { return resources_; }
  std::string folder() override { return folder_.path().string(); }
  void PutFile(std::string_view name, std::string_view bytes) override { folder_.Put(name, bytes); }
  bool KeepsOwnCases() override { return false; }

 private:
  TempFolder folder_;
  Win32VersionResources resources_;
};

INSTANTIATE_TEST_SUITE_P(Win32, VersionResourcesContract, ::testing::Values([] {
                           return std::unique_ptr<VersionResourcesSubject>(new Win32Subject);
                         }));

class Win32Version : public ::testing::Test {
 protected:
  std::string PathOf(const char* name) const { return (folder_.path() / name).string(); }
  std::string Put(const char* name, std::string_view bytes) const {
    return folder_.Put(name, bytes).string();
  }
  /// The file's version; "none" when it has none.
  std::string VersionOf(const std::string& path) const {
    const Result<std::unique_ptr<VersionInfo>> info = resources_.Open(path);
    return info.ok() ? info.value()->QueryText(kVersionPath).value_or("none") : "none";
  }
  const Win32VersionResources& resources() const { return resources_; }

 private:
  TempFolder folder_;
  Win32VersionResources resources_;
};

TEST_F(Win32Version, HandsBackWhyThereIsNoVersion) {
  Put("good.dll", LibraryOfVersion("3.6.0"));
  Put("bare.dll", BuildPe({}));
  Put("readme.txt", "MZ is how a program begins");
  const std::string held = Put("held.dll", LibraryOfVersion("3.6.0"));
  const UniqueHandle holder(
      CreateFileA(held.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  const struct {
    const char* what;
    std::string path;
    int number;
  } cases[] = {
      {"a library with a version", PathOf("good.dll"), 0},
      {"the name in any case", PathOf("GOOD.Dll"), 0},
      {"no such file", PathOf("missing.dll"), kFileNotFound},
      {"no such folder", PathOf(R"(missing\good.dll)"), kPathNotFound},
      {"a folder", PathOf("."), kPathFileAccess},
      {"a text", PathOf("readme.txt"), kInvalidFileFormat},
      {"a library without resources", PathOf("bare.dll"), kInvalidFileFormat},
      {"a file that may not be read", held, kPermissionDenied},
      {"a name outside the code page", PathOf("a") + "\u0416.dll", kBadFileName},
      {"a name that is too long", PathOf("x") + std::string(300, 'x'), kPathFileAccess},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(resources().Open(row.path).number(), row.number);
  }
}

TEST_F(Win32Version, ABareNameIsNotSearchedFor) {
  EXPECT_EQ(resources().Open("kernel32.dll").number(), kFileNotFound);
  EXPECT_EQ(resources().Open("kernel32").number(), kFileNotFound);
}

TEST_F(Win32Version, TheNameIsTakenAsItIs) {
  Put("tool.dll", LibraryOfVersion("9.9"));
  EXPECT_EQ(resources().Open(PathOf("tool")).number(), kFileNotFound);
  const std::string text = Put("tool", "no program");
  EXPECT_EQ(resources().Open(text).number(), kInvalidFileFormat);
  EXPECT_EQ(VersionOf(Put("tool", LibraryOfVersion("1.0"))), "1.0");
  EXPECT_EQ(VersionOf(PathOf("tool.")), "1.0");
  EXPECT_EQ(VersionOf(PathOf("tool.dll")), "9.9");
  Put(R"(a.folder\tool.dll)", LibraryOfVersion("9.9"));
  EXPECT_EQ(VersionOf(Put(R"(a.folder\tool)", LibraryOfVersion("2.0"))), "2.0");
}

TEST_F(Win32Version, APathMayHoldLettersOfTheCodePageAndSlashes) {
  Put("K\xE4se.dll", LibraryOfVersion("1.0"));
  EXPECT_EQ(VersionOf(PathOf("K") + "\u00e4se.dll"), "1.0");
  std::string slashed = Put("b.dll", LibraryOfVersion("2.0"));
  for (char& c : slashed) c = c == '\\' ? '/' : c;
  EXPECT_EQ(VersionOf(slashed), "2.0");
}

TEST_F(Win32Version, KeepsTheVersionOfTheMomentItWasOpened) {
  const std::string path = Put("a.dll", LibraryOfVersion("1.0"));
  const Result<std::unique_ptr<VersionInfo>> before = resources().Open(path);
  Put("a.dll", LibraryOfVersion("2.0"));
  const Result<std::unique_ptr<VersionInfo>> after = resources().Open(path);

  ASSERT_TRUE(before.ok());
  ASSERT_TRUE(after.ok());
  EXPECT_EQ(before.value()->QueryText(kVersionPath), "1.0");
  EXPECT_EQ(after.value()->QueryText(kVersionPath), "2.0");
}

TEST_F(Win32Version, LeavesTheFileFreeForOthers) {
  const std::string path = Put("a.dll", LibraryOfVersion("1.0"));
  const Result<std::unique_ptr<VersionInfo>> info = resources().Open(path);
  ASSERT_TRUE(info.ok());
  EXPECT_TRUE(DeleteFileA(path.c_str()));
}

TEST_F(Win32Version, AReadOnlyFileIsRead) {
  const std::string path = Put("a.dll", LibraryOfVersion("1.0"));
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(VersionOf(path), "1.0");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(Win32Version, AProgramThatRunsIsRead) {
  char own[MAX_PATH];
  ASSERT_GT(GetModuleFileNameA(nullptr, own, MAX_PATH), 0U);
  EXPECT_EQ(resources().Open(own).number(), kInvalidFileFormat) << "it has no version";
  char system[MAX_PATH];
  ASSERT_GT(GetSystemDirectoryA(system, MAX_PATH), 0U);
  const auto info = resources().Open(std::string(system) + R"(\kernel32.dll)");
  ASSERT_TRUE(info.ok());
  EXPECT_EQ(info.value()->QueryBytes("\\").value_or("").size(), 52U);
}

TEST_F(Win32Version, AnswersAreTheSameInAnyOrder) {
  const std::string path = Put("a.dll", LibraryOfVersion("1.2.3"));
  const Result<std::unique_ptr<VersionInfo>> info = resources().Open(path);
  ASSERT_TRUE(info.ok());
  const std::optional<std::string> fixed = info.value()->QueryBytes("\\");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(info.value()->QueryText(kVersionPath), "1.2.3");
    EXPECT_EQ(info.value()->QueryBytes("\\"), fixed);
  }
}

}  // namespace
}  // namespace zent::testing
