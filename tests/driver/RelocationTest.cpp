#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "driver/Relocation.h"
#include "driver/run/Product.h"
#include "fakes/run/RunBuilder.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RunBuilder;

constexpr const char* kPublicSettings = R"(C:\users\Public\Zent\Korvo.ini)";
constexpr const char* kVirtualSettings =
    R"(C:\users\anna\Local\VirtualStore\Program Files\Zent\Korvo.ini)";
constexpr const char* kInstalledSettings = R"(C:\Korvo\Korvo.ini)";
constexpr const char* kSources = R"(SOFTWARE\ODBC\ODBC.INI\)";
constexpr const char* kDriverFile = R"(C:\windows\system32\sqlncli.dll)";
constexpr const char* kDriverMissing =
    "SQL Native Client Driver could not be installed because your computer does not have Latest "
    "Windows Installer.";

/// A machine with its folders named and the driver installed.
class Relocation : public ::testing::Test {
 protected:
  Relocation() {
    given_.machine.InstallKorvo();
    auto& registry = given_.machine.registry;
    registry.PutText(KeyHandle::CurrentUser, kShellFoldersKey, "Local AppData",
                     R"(C:\users\anna\Local)");
    registry.PutText(KeyHandle::LocalMachine, kShellFoldersKey, "Common AppData",
                     R"(C:\ProgramData)");
    registry.PutText(KeyHandle::LocalMachine, R"(SOFTWARE\ODBC\ODBCINST.INI\SQL Native Client)",
                     "Driver", kDriverFile);
  }

  void PutSettings(const char* path, const std::string& connect_text) {
    given_.machine.files.PutFile(path, "[General]\r\nKorvoDataBase=" + connect_text + "\r\n");
  }
  void DefineSource(KeyHandle root, const std::string& name) {
    given_.machine.registry.PutText(root, kSources + name, "Driver", "old.dll");
  }
  void ForgetSettings() {
    for (const char* path : {kPublicSettings, kVirtualSettings, kInstalledSettings}) {
      [[maybe_unused]] const Status deleted = given_.machine.files.Delete(path);
    }
  }
  CommandRecord Relocate() { return given_.Call(RelocateDataSource, {"SS2000ToSS2005"}); }

  std::string Driver(KeyHandle root, const std::string& name) const {
    const auto value = given_.machine.registry.Value(root, kSources + name, "Driver");
    return value ? value->data : "none";
  }
  std::string ListedDriver(KeyHandle root, const std::string& name) const {
    const auto value =
        given_.machine.registry.Value(root, kSources + std::string("ODBC Data Sources"), name);
    return value ? value->data : "none";
  }

  RunBuilder given_;
};

TEST_F(Relocation, ADataSourceOfTheUserIsChangedThere) {
  PutSettings(kInstalledSettings, "DSN=Korvo;UID=sa;");
  DefineSource(KeyHandle::CurrentUser, "Korvo");
  DefineSource(KeyHandle::LocalMachine, "Korvo");
  const CommandRecord record = Relocate();
  EXPECT_EQ(Driver(KeyHandle::CurrentUser, "Korvo"), kDriverFile);
  EXPECT_EQ(ListedDriver(KeyHandle::CurrentUser, "Korvo"), "SQL Native Client");
  EXPECT_EQ(Driver(KeyHandle::LocalMachine, "Korvo"), "old.dll") << "left alone";
  EXPECT_EQ(ListedDriver(KeyHandle::LocalMachine, "Korvo"), "none");
  EXPECT_THAT(
      given_.messages(),
      ElementsAre(R"(Writing into Registry HKCU|SOFTWARE\ODBC\ODBC.INI\Korvo|Driver )",
                  R"(Writing into Registry HKCU|SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources|Korvo )"));
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_EQ(given_.machine.registry.OpenKeyCount(), 0U);
}

TEST_F(Relocation, ADataSourceOfAllUsersIsChangedThere) {
  PutSettings(kInstalledSettings, "DSN=Korvo;UID=sa;");
  DefineSource(KeyHandle::LocalMachine, "Korvo");
  EXPECT_EQ(Relocate().outcome, Outcome::Done);
  EXPECT_EQ(Driver(KeyHandle::LocalMachine, "Korvo"), kDriverFile);
  EXPECT_EQ(ListedDriver(KeyHandle::LocalMachine, "Korvo"), "SQL Native Client");
  EXPECT_EQ(Driver(KeyHandle::CurrentUser, "Korvo"), "none");
  EXPECT_THAT(
      given_.messages(),
      ElementsAre(R"(Writing into Registry HKLM|SOFTWARE\ODBC\ODBC.INI\Korvo|Driver )",
                  R"(Writing into Registry HKLM|SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources|Korvo )"));
}

struct NameCase {
  const char* what;
  const char* connect_text;
  const char* name;  ///< empty: none
};

constexpr NameCase kNameCases[] = {
    {"capitals", "DSN=Korvo;UID=sa;", "Korvo"},
    {"small letters", "dsn=Korvo;", "Korvo"},
    {"any case", "Dsn=Korvo;PWD=x", "Korvo"},
    {"not at the start", "ODBC;DSN=Zent Data;", "Zent Data"},
    {"the first of two", "DSN=One;DSN=Two;", "One"},
    {"without a semicolon there is no name", "DSN=Korvo", ""},
    {"a semicolon before it does not count", "UID=sa;DSN=Korvo", ""},
    {"an empty name", "DSN=;UID=sa;", ""},
    {"an Access database", "Korvo.mdb", ""},
    {"nothing at all", "", ""},
};

TEST_F(Relocation, TakesTheNameBetweenDsnAndTheSemicolon) {
  for (const NameCase& row : kNameCases) {
    SCOPED_TRACE(row.what);
    given_.machine.registry.log().Forget();
    for (const char* name : {"Korvo", "Zent Data", "One", "Two"}) {
      DefineSource(KeyHandle::CurrentUser, name);
    }
    PutSettings(kInstalledSettings, row.connect_text);
    const CommandRecord record = Relocate();
    if (*row.name == '\0') {
      EXPECT_THAT(given_.machine.registry.log().changes(), IsEmpty());
      EXPECT_EQ(record.outcome, Outcome::Skipped);
      EXPECT_EQ(record.reason, "the application's database is no data source");
      continue;
    }
    EXPECT_EQ(record.outcome, Outcome::Done);
    EXPECT_EQ(Driver(KeyHandle::CurrentUser, row.name), kDriverFile);
  }
}

/// Where settings may be, each file with a data source of its own.
constexpr std::pair<const char*, const char*> kSettingsFiles[] = {
    {kPublicSettings, "A"}, {kVirtualSettings, "B"}, {kInstalledSettings, "C"}};

struct PlaceCase {
  const char* what;
  OsVersion version;
  std::vector<std::string> files;  ///< those that are there
  const char* source;              ///< the one that is changed
};

TEST_F(Relocation, FindsTheSettingsFile) {
  const OsVersion vista{kPlatformNt, 6, 0};
  const std::vector<PlaceCase> rows = {
      {"the public one first", vista, {kPublicSettings, kVirtualSettings, kInstalledSettings}, "A"},
      {"then that of the virtual store", vista, {kVirtualSettings, kInstalledSettings}, "B"},
      {"one only in the virtual store", vista, {kVirtualSettings}, "B"},
      {"then that beside the program", vista, {kInstalledSettings}, "C"},
      {"before Vista that beside the program",
       {kPlatformNt, 5, 1},
       {kPublicSettings, kVirtualSettings, kInstalledSettings},
       "C"},
      {"after Vista, too",
       {kPlatformNt, 6, 1},
       {kPublicSettings, kVirtualSettings, kInstalledSettings},
       "C"},
      {"and on 9x",
       {kPlatform9x, 6, 0},
       {kPublicSettings, kVirtualSettings, kInstalledSettings},
       "C"},
  };
  for (const PlaceCase& row : rows) {
    SCOPED_TRACE(row.what);
    ForgetSettings();
    given_.machine.system.version = row.version;
    for (const auto& [path, source] : kSettingsFiles) {
      DefineSource(KeyHandle::CurrentUser, source);
      const bool is_there = std::find(row.files.begin(), row.files.end(), path) != row.files.end();
      if (is_there) PutSettings(path, std::string("DSN=") + source + ";");
    }
    Relocate();
    for (const auto& [path, source] : kSettingsFiles) {
      EXPECT_EQ(Driver(KeyHandle::CurrentUser, source),
                std::string(row.source) == source ? kDriverFile : "old.dll")
          << path;
    }
  }
}

TEST_F(Relocation, ReadsTheFoundFileAndNotTheRedirectedOne) {
  // C:\Ini is where the paths file sends readers of Korvo.ini.
  PutSettings(R"(C:\Ini\Korvo.ini)", "DSN=Redirected;");
  PutSettings(kInstalledSettings, "DSN=Korvo;");
  DefineSource(KeyHandle::CurrentUser, "Korvo");
  DefineSource(KeyHandle::CurrentUser, "Redirected");
  Relocate();
  EXPECT_EQ(Driver(KeyHandle::CurrentUser, "Korvo"), kDriverFile);
  EXPECT_EQ(Driver(KeyHandle::CurrentUser, "Redirected"), "old.dll");
}

TEST(RelocateDataSource, FoldersThatTheMachineDoesNotNameAreNotThePackage) {
  RunBuilder bare;
  bare.machine.files.PutFile(R"(D:\Package\Zent\Korvo.ini)",
                             "[General]\r\nKorvoDataBase=DSN=Package;\r\n");
  bare.machine.registry.PutText(KeyHandle::LocalMachine,
                                R"(SOFTWARE\ODBC\ODBCINST.INI\SQL Native Client)", "Driver", "x");
  EXPECT_EQ(bare.Call(RelocateDataSource, {"SS2000ToSS2005"}).outcome, Outcome::Skipped);
}

struct DriverCase {
  const char* what;
  bool key;    ///< of the driver
  bool value;  ///< "Driver" is a text
  bool installed;
};

TEST(RelocateDataSource, TheDriverIsThereWhenItsFileIsNamed) {
  constexpr DriverCase kRows[] = {
      {"key and value", true, true, true},
      {"a key alone is no driver", true, false, false},
      {"no key", false, false, false},
  };
  for (const DriverCase& row : kRows) {
    SCOPED_TRACE(row.what);
    RunBuilder given;
    const char* const path = R"(SOFTWARE\ODBC\ODBCINST.INI\SQL Native Client)";
    if (row.key) given.machine.registry.PutKey(KeyHandle::LocalMachine, path);
    if (row.value) given.machine.registry.PutText(KeyHandle::LocalMachine, path, "Driver", "x");
    given.Call(RelocateDataSource, {"SS2000ToSS2005"});
    EXPECT_EQ(given.messages().empty(), row.installed);
  }
}

TEST(RelocateDataSource, AMissingDriverIsSaidAndTheListGoesOn) {
  RunBuilder given;
  given.machine.files.PutFile(kInstalledSettings, "[General]\r\nKorvoDataBase=DSN=Korvo;\r\n");
  given.machine.registry.PutText(KeyHandle::CurrentUser, kSources + std::string("Korvo"), "Driver",
                                 "old.dll");
  const CommandRecord record = given.Call(RelocateDataSource, {"SS2000ToSS2005"});
  EXPECT_THAT(given.messages(),
              ElementsAre(kDriverMissing, "Please contact " + std::string(kSupportContact) + "."));
  EXPECT_FALSE(given.run.state.ErrorOccurred);
  EXPECT_THAT(given.machine.registry.log().changes(), IsEmpty());
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, "the driver is not installed: SQL Native Client");
}

TEST(RelocateDataSource, AnAccessInstallationWithoutTheDriverIsOnlyAWarning) {
  RunBuilder given;
  given.machine.files.PutFile(kInstalledSettings, "[General]\r\nKorvoDataBase=Korvo.mdb\r\n");
  const CommandRecord record = given.Call(RelocateDataSource, {"SS2000ToSS2005"});
  EXPECT_THAT(given.messages(), Contains(kDriverMissing));
  EXPECT_EQ(record.outcome, Outcome::Warned);
}

TEST_F(Relocation, AnUndefinedDataSourceIsSaidWithoutItsPassword) {
  PutSettings(kInstalledSettings, "DSN=Korvo;PWD=secret;UID=sa;");
  const CommandRecord record = Relocate();
  EXPECT_THAT(given_.messages(), ElementsAre("DSN not found in the registry; DSNName=Korvo; "
                                             "DSN=DSN=Korvo;***********UID=sa;"));
  EXPECT_FALSE(given_.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, "the data source is not defined: Korvo");
}

TEST_F(Relocation, AFailedWriteShowsTheBoxOfTheRegistryCommand) {
  PutSettings(kInstalledSettings, "DSN=Korvo;");
  DefineSource(KeyHandle::CurrentUser, "Korvo");
  given_.machine.registry.log().FailWhere("SetText", StandardError(kPathFileAccess));
  const CommandRecord record = Relocate();
  EXPECT_EQ(given_.window.boxes.size(), 2U);
  EXPECT_FALSE(given_.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
}

}  // namespace
}  // namespace zent
