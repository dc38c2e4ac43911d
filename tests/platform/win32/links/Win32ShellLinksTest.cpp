#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objbase.h>
#include <shellapi.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "contracts/LinkReader.h"
#include "contracts/LinkSamples.h"
#include "contracts/ShellLinksContract.h"
#include "platform/win32/UniqueHandle.h"
#include "platform/win32/links/Win32ShellLinks.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::IsEmpty;

constexpr const char* kTarget = R"(C:\Korvo\Korvo.exe)";

class Win32Subject : public ShellLinksSubject {
 public:
  ~Win32Subject() override { SetFileAttributesA(read_only_.c_str(), FILE_ATTRIBUTE_NORMAL); }
  ShellLinks& links() override { return links_; }
  std::string folder() override { return folder_.path().string() + '\\'; }
  std::string Contents(const std::string& name) override { return folder_.Get(name); }
  void MakeReadOnly(const std::string& name) override {
    read_only_ = folder() + name;
    ASSERT_TRUE(SetFileAttributesA(read_only_.c_str(), FILE_ATTRIBUTE_READONLY));
  }

 private:
  TempFolder folder_;
  Win32ShellLinks links_;
  std::string read_only_;
};

INSTANTIATE_TEST_SUITE_P(Win32, ShellLinksContract, ::testing::Values([] {
                           return std::unique_ptr<ShellLinksSubject>(new Win32Subject);
                         }));

class Win32Links : public ::testing::Test {
 protected:
  std::string PathOf(const char* name) const { return (folder_.path() / name).string(); }
  Status Create(const char* name, const ShellLink& link = {.target = kTarget}) {
    return links_.Create(PathOf(name), link);
  }
  std::string Get(const char* name) const { return folder_.Get(name); }
  std::string Put(const char* name, std::string_view bytes) const {
    return folder_.Put(name, bytes).string();
  }
  LinkFile Read(const char* name) const {
    const std::optional<LinkFile> link = ReadLink(folder_.Get(name));
    EXPECT_TRUE(link.has_value());
    return link.value_or(LinkFile{});
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  Win32ShellLinks& links() { return links_; }

 private:
  TempFolder folder_;
  Win32ShellLinks links_;
};

TEST_F(Win32Links, SayWhatWasRecordedOfTheSameTarget) {
  for (const LinkSample& sample : LoadLinkSamples(ZENT_TEST_DATA "/links/recorded.txt")) {
    SCOPED_TRACE(sample.name);
    const LinkFile recorded = ReadLink(sample.bytes).value();
    ASSERT_TRUE(Create("a.lnk", {.target = sample.target,
                                 .arguments = sample.arguments,
                                 .working_folder = sample.working_folder})
                    .ok());
    const LinkFile written = Read("a.lnk");
    EXPECT_EQ(written.path, recorded.path);
    EXPECT_EQ(written.PathOfItems(), recorded.PathOfItems());
    EXPECT_EQ(written.arguments, recorded.arguments);
    EXPECT_EQ(written.working_folder, recorded.working_folder);
    EXPECT_EQ(written.description, "");
    EXPECT_EQ(written.icon, "");
  }
}

struct TargetCase {
  const char* what;
  ShellLink link;
  const char* path;
};

const TargetCase kTargetCases[] = {
    {"a program", {.target = kTarget}, kTarget},
    {"slashes", {.target = "C:/Korvo/Korvo.exe"}, kTarget},
    {"letters of the code page", {.target = R"(C:\Büro\Café €.exe)"}, R"(C:\Büro\Café €.exe)"},
    {"arguments", {.target = kTarget, .arguments = R"(/x "a b" ä)"}, kTarget},
    {"a working folder", {.target = kTarget, .working_folder = R"(C:\Büro)"}, kTarget},
    {"a folder that is there", {.target = R"(C:\windows)"}, R"(C:\windows)"},
};

TEST_F(Win32Links, AreReadAsTheyWereAskedFor) {
  for (const TargetCase& row : kTargetCases) {
    SCOPED_TRACE(row.what);
    ASSERT_TRUE(Create("a.lnk", row.link).ok());
    const LinkFile link = Read("a.lnk");
    EXPECT_EQ(link.path, row.path);
    EXPECT_EQ(link.PathOfItems(), row.path);
    EXPECT_EQ(link.arguments, row.link.arguments);
    EXPECT_EQ(link.working_folder, row.link.working_folder);
  }
}

const ShellLink kRefusedLinks[] = {
    {.target = R"(C:\)" + std::string(260, 'x')},
    {.target = "C:\\\u0416.exe"},
    {.target = kTarget, .arguments = "\u0416"},
    {.target = kTarget, .arguments = std::string(70'000, 'x')},
    {.target = kTarget, .working_folder = "C:\\\u0416"},
    {.target = kTarget, .working_folder = R"(C:\)" + std::string(260, 'x')},
    {.target = std::string("C:\\a\0b", 6)},
};

TEST_F(Win32Links, WhatALinkCannotSayIsRefused) {
  for (const ShellLink& link : kRefusedLinks) {
    SCOPED_TRACE(link.target + ' ' + link.working_folder);
    EXPECT_EQ(Create("a.lnk", link).number(), kBadFileName);
  }
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(Win32Links, AFailureSaysWhyAndLeavesWhatIsThere) {
  const std::string held = Put("held.lnk", "old");
  Put(R"(folder.lnk\inside)", "x");
  UniqueHandle holder(
      CreateFileA(held.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  const struct {
    const char* what;
    std::string path;
    int number;
  } cases[] = {
      {"a link in use", held, kPermissionDenied},
      {"a folder of that name", PathOf("folder.lnk"), kPathFileAccess},
      {"a missing folder", PathOf(R"(none\a.lnk)"), kPathNotFound},
      {"a missing drive", R"(Q:\a.lnk)", kPathNotFound},
      {"a name that cannot be", PathOf("a?.lnk"), kBadFileName},
      {"a name outside the code page", PathOf("a") + "\u0416.lnk", kBadFileName},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(links().Create(row.path, {.target = kTarget}).number(), row.number);
  }
  holder.Close();
  EXPECT_EQ(Get("held.lnk"), "old");
  EXPECT_EQ(Names().size(), 2U);
}

TEST_F(Win32Links, LeaveNoOtherFile) {
  ASSERT_TRUE(Create("a.lnk").ok());
  ASSERT_TRUE(Create("a.lnk").ok());
  ASSERT_TRUE(links().Create(PathOf("K") + "\u00e4se \u20ac.lnk", {.target = kTarget}).ok());
  std::string slashed = PathOf("c.lnk");
  for (char& c : slashed) c = c == '\\' ? '/' : c;
  ASSERT_TRUE(links().Create(slashed, {.target = kTarget}).ok());
  EXPECT_EQ(Names().size(), 3U);
  EXPECT_EQ(Read("a.lnk").path, kTarget);
}

TEST_F(Win32Links, RemoveWhatAKilledRunLeftBesideThem) {
  Put(".zent-4000000001-0.tmp", "half");
  ASSERT_TRUE(Create("a.lnk").ok());
  EXPECT_THAT(Names(), ::testing::ElementsAre("a.lnk"));
}

TEST_F(Win32Links, AHiddenLinkStaysHidden) {
  const std::string path = Put("a.lnk", "old");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
  ASSERT_TRUE(Create("a.lnk").ok());
  EXPECT_EQ(Read("a.lnk").path, kTarget);
  EXPECT_NE(GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
}

TEST_F(Win32Links, StartTheTargetWithItsArgumentsInItsFolder) {
  char system[MAX_PATH];
  ASSERT_GT(GetSystemDirectoryA(system, MAX_PATH), 0U);
  const std::string readme = Put(R"(opened here\readme.txt)", "x");
  ASSERT_TRUE(Create("a.lnk", {.target = std::string(system) + R"(\cmd.exe)",
                               .arguments = "/c echo followed> result.txt",
                               .working_folder = readme.substr(0, readme.rfind('\\'))})
                  .ok());
  const std::string link = PathOf("a.lnk");
  const auto started = reinterpret_cast<INT_PTR>(
      ShellExecuteA(nullptr, nullptr, link.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
  EXPECT_GT(started, 32);

  for (int i = 0; i < 100 && Get(R"(opened here\result.txt)").empty(); ++i) Sleep(100);
  EXPECT_EQ(Get(R"(opened here\result.txt)"), "followed\r\n");
}

/// What CoInitialize answers a thread that has not used COM yet: this one has not, afterwards.
bool ComIsUnused() {
  const HRESULT result = CoInitialize(nullptr);
  if (SUCCEEDED(result)) CoUninitialize();
  return result == S_OK;
}

TEST_F(Win32Links, ComIsLeftAsItWas) {
  EXPECT_TRUE(ComIsUnused());
  ASSERT_TRUE(Create("a.lnk").ok());
  EXPECT_EQ(Create("b.lnk", {.target = "none"}).number(), kBadFileName);
  EXPECT_TRUE(ComIsUnused());
}

TEST_F(Win32Links, AThreadMayUseComInAnotherWay) {
  ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
  EXPECT_TRUE(Create("a.lnk").ok());
  EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_FALSE) << "still in use";
  CoUninitialize();
  CoUninitialize();
  EXPECT_TRUE(ComIsUnused());
}

}  // namespace
}  // namespace zent::testing
