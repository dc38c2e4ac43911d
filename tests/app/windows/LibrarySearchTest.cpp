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

/// A program among planted libraries: beside it, in its current folder, in folders of PATH and in
/// that of a driver. PATH names the first two folders as well, and one relative to the second.
class PlantedFolders {
 public:
  PlantedFolders() {
    std::filesystem::create_directories(program().parent_path());
    std::filesystem::copy_file(OwnFolder() / "search_program.exe", program());
    Plant("program/zentprogram.dll");
    Plant("current/zentcurrent.dll");
    Plant("current/relative/zentrelative.dll");
    Plant("path/zentpath.dll");
    Plant("driver/zentdriver.dll");
    SetPath();
    PutDriver();
  }
  PlantedFolders(const PlantedFolders&) = delete;
  PlantedFolders& operator=(const PlantedFolders&) = delete;
  ~PlantedFolders() {
    SetEnvironmentVariableW(L"PATH", path_before_.c_str());
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kDriver);
  }

  /// What the program says of its libraries.
  std::string Told() { return RunProgramFile(program(), L"", Place("current")).output; }

 private:
  static constexpr const wchar_t* kDriver = LR"(SOFTWARE\ODBC\ODBCINST.INI\Zent test)";

  std::filesystem::path Place(const char* name) const {
    return (folder_.path() / name).make_preferred();
  }
  std::filesystem::path program() const { return Place("program/search.exe"); }

  void Plant(const char* name) {
    const std::filesystem::path target = Place(name);
    std::filesystem::create_directories(target.parent_path());
    std::filesystem::copy_file(OwnFolder() / "planted_library.dll", target);
  }

  void SetPath() {
    wchar_t before[32767] = {};
    GetEnvironmentVariableW(L"PATH", before, 32767);
    path_before_ = before;
    const std::wstring planted = Place("path").native() + L";" + Place("program").native() + L";" +
                                 Place("current").native() + L"\\;relative;.;";
    SetEnvironmentVariableW(L"PATH", (planted + path_before_).c_str());
  }

  void PutDriver() {
    const std::wstring file = (Place("driver") / "driver.dll").native();
    HKEY key = nullptr;
    EXPECT_EQ(RegCreateKeyW(HKEY_LOCAL_MACHINE, kDriver, &key), ERROR_SUCCESS);
    RegSetValueExW(key, L"Driver", 0, REG_SZ, reinterpret_cast<const BYTE*>(file.c_str()),
                   static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
  }

  TempFolder folder_;
  std::wstring path_before_;
};

TEST(LibrarySearch, IsLimitedToTheSystemAndWidenedForDrivers) {
  const std::string told = PlantedFolders().Told();
  EXPECT_THAT(told, HasSubstr("as started: program current path system"));
  EXPECT_THAT(told, HasSubstr("limited: system."));
  EXPECT_THAT(told, HasSubstr("with drivers: path system driver."));
}

}  // namespace
}  // namespace zent::testing
