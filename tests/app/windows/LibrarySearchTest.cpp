#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "app/windows/ProgramRun.h"
#include "support/TempFolder.h"

namespace zent::testing {
namespace {

using ::testing::HasSubstr;

std::filesystem::path OwnFolder() {
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  return std::filesystem::path(self).parent_path();
}

/// A program among planted libraries: beside it, in its current folder and in a folder of PATH.
class PlantedFolders {
 public:
  PlantedFolders() {
    std::filesystem::create_directories(program().parent_path());
    std::filesystem::copy_file(OwnFolder() / "search_program.exe", program());
    Plant("program/zentprogram.dll");
    Plant("current/zentcurrent.dll");
    Plant("path/zentpath.dll");
    wchar_t before[32767] = {};
    GetEnvironmentVariableW(L"PATH", before, 32767);
    path_before_ = before;
    const std::wstring planted = (folder_.path() / "path").make_preferred().native();
    SetEnvironmentVariableW(L"PATH", (planted + L";" + path_before_).c_str());
  }
  PlantedFolders(const PlantedFolders&) = delete;
  PlantedFolders& operator=(const PlantedFolders&) = delete;
  ~PlantedFolders() { SetEnvironmentVariableW(L"PATH", path_before_.c_str()); }

  void Plant(const std::string& name) {
    const std::filesystem::path target = (folder_.path() / name).make_preferred();
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(OwnFolder() / "planted_library.dll", target);
  }

  /// What the program says of its libraries.
  std::string Told() { return RunProgramFile(program(), L"", folder_.path() / "current").output; }

 private:
  std::filesystem::path program() const {
    return (folder_.path() / "program/search.exe").make_preferred();
  }

  TempFolder folder_;
  std::wstring path_before_;
};

TEST(LimitLibrarySearch, LeavesTheSystemsFolderAlone) {
  const std::string told = PlantedFolders().Told();
  EXPECT_THAT(told, HasSubstr("as started: program current path system."));
  EXPECT_THAT(told, HasSubstr("limited: system."));
}

}  // namespace
}  // namespace zent::testing
