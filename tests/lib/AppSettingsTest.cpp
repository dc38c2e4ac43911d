#include <gtest/gtest.h>

#include "lib/AppSettings.h"
#include "lib/TestMachine.h"

namespace zent {
namespace {

using testing::TestMachine;

constexpr const char* kSettingsKey = R"(Software\VB and VBA Program Settings\Korvo\Settings)";

TEST(GetAppSetting, ReadsTheValueOfTheSectionsKey) {
  TestMachine machine;
  machine.registry.PutText(KeyHandle::CurrentUser, kSettingsKey, "SSUN", "sa");
  EXPECT_EQ(GetAppSetting(machine.ports, "Korvo", "Settings", "SSUN"), "sa");
  EXPECT_EQ(GetAppSetting(machine.ports, "KORVO", "settings", "ssun"), "sa");
  EXPECT_EQ(machine.registry.OpenKeyCount(), 0U);
}

struct MissingCase {
  const char* what;
  const char* app;
  const char* section;
  const char* key;
};

constexpr MissingCase kMissingCases[] = {
    {"another application", "Other", "Settings", "SSUN"},
    {"another section", "Korvo", "General", "SSUN"},
    {"another key", "Korvo", "Settings", "SSPW"},
    {"no text", "Korvo", "Settings", "Number"},
    {"without an application", "", "Settings", "SSUN"},
    {"without a section", "Korvo", "", "SSUN"},
    {"without a key", "Korvo", "Settings", ""},
};

TEST(GetAppSetting, GivesTheDefaultForWhatIsMissing) {
  TestMachine machine;
  machine.registry.PutText(KeyHandle::CurrentUser, kSettingsKey, "SSUN", "sa");
  machine.registry.PutText(KeyHandle::CurrentUser, kSettingsKey, "", "default value of the key");
  machine.registry.PutValue(KeyHandle::CurrentUser, kSettingsKey, "Number", {kRegDword, "abcd"});
  for (const MissingCase& row : kMissingCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(GetAppSetting(machine.ports, row.app, row.section, row.key, "d"), "d");
    EXPECT_EQ(GetAppSetting(machine.ports, row.app, row.section, row.key), "");
  }
}

TEST(SaveAppSetting, StoresWhatGetAppSettingReads) {
  TestMachine machine;
  EXPECT_TRUE(SaveAppSetting(machine.ports, "Korvo", "Settings", "Talamu", "\xC2\x8C").ok());
  EXPECT_EQ(GetAppSetting(machine.ports, "Korvo", "Settings", "Talamu"), "\xC2\x8C");
  EXPECT_TRUE(SaveAppSetting(machine.ports, "Korvo", "Settings", "Talamu", "").ok());
  EXPECT_EQ(GetAppSetting(machine.ports, "Korvo", "Settings", "Talamu", "d"), "");

  EXPECT_TRUE(machine.registry.Value(KeyHandle::CurrentUser, kSettingsKey, "Talamu").has_value());
  EXPECT_EQ(machine.registry.OpenKeyCount(), 0U);
}

TEST(SaveAppSetting, RefusesAnEmptyName) {
  TestMachine machine;
  EXPECT_EQ(SaveAppSetting(machine.ports, "", "s", "k", "v").number(), kInvalidProcedureCall);
  EXPECT_EQ(SaveAppSetting(machine.ports, "a", "", "k", "v").number(), kInvalidProcedureCall);
  EXPECT_EQ(SaveAppSetting(machine.ports, "a", "s", "", "v").number(), kInvalidProcedureCall);
  EXPECT_TRUE(machine.registry.log().changes().empty());
}

TEST(SaveAppSetting, ReturnsWhatWentWrong) {
  for (const char* step : {"CreateKey", "SetText", "CloseKey"}) {
    SCOPED_TRACE(step);
    TestMachine machine;
    machine.registry.log().FailWhere(step, StandardError(kDiskFull));
    EXPECT_EQ(SaveAppSetting(machine.ports, "Korvo", "s", "k", "v").number(), kDiskFull);
  }
}

struct RunCase {
  const char* what;
  const char* last_run;  ///< null: the setting is missing
  bool never_run;
};

constexpr RunCase kRunCases[] = {
    {"missing", nullptr, true},
    {"empty", "", true},
    {"no date", "yesterday", true},
    {"a plain number", "38675", true},
    {"a date and time", "11/19/2005 7:05:00 PM", false},
    {"a date", "2005-11-19", false},
};

TEST(HasNeverRun, AsksWhetherTheLastRunIsADate) {
  for (const RunCase& row : kRunCases) {
    SCOPED_TRACE(row.what);
    TestMachine machine;
    if (row.last_run != nullptr) {
      machine.registry.PutText(KeyHandle::CurrentUser, kSettingsKey, "LastRunDateTime",
                               row.last_run);
    }
    EXPECT_EQ(HasNeverRun(machine.ports, "Korvo"), row.never_run);
  }
}

TEST(HasNeverRun, LooksAtTheApplicationThatIsNamed) {
  TestMachine machine;
  machine.registry.PutText(KeyHandle::CurrentUser, kSettingsKey, "LastRunDateTime", "1/2/2005");
  EXPECT_FALSE(HasNeverRun(machine.ports, "korvo"));
  EXPECT_TRUE(HasNeverRun(machine.ports, "Korvo2"));
}

}  // namespace
}  // namespace zent
