#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "database/DatabaseBackup.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::MemoryTables;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";
constexpr const char* kBackup = R"(D:\Data\Korvo 2006-05-04 03-02-01.mdb)";

struct BackupRun : DatabaseRun {
  BackupRun() { PutDatabase(kPath).Add("Companies", {"Name"}, {{"Zent"}, {"Korvo"}}); }
};

TEST(BackUpDatabase, CopiesToATimeStampedName) {
  BackupRun given;
  const Result<std::string> backup = BackUpDatabase(given.run, kPath);
  ASSERT_TRUE(backup.ok());
  EXPECT_EQ(backup.value(), kBackup);
  EXPECT_EQ(given.machine.files.Contents(kBackup), "database");
  EXPECT_THAT(given.messages(), ElementsAre("Backing up D:\\Data\\Korvo.mdb\r\n"
                                            "    as D:\\Data\\Korvo 2006-05-04 03-02-01.mdb"));
  EXPECT_EQ(given.access.world.open, 0);
}

TEST(BackUpDatabase, NeverWritesOverAnEarlierBackup) {
  BackupRun given;
  given.machine.files.PutFile(kBackup, "an earlier one");
  ASSERT_TRUE(BackUpDatabase(given.run, kPath).ok());
  EXPECT_EQ(given.machine.files.Contents(kBackup), "an earlier one");
}

TEST(BackUpDatabase, AsksForAPasswordOnce) {
  BackupRun given;
  given.access.password = "Secret";
  given.window.texts = {"Secret"};
  EXPECT_TRUE(BackUpDatabase(given.run, kPath).ok());
  EXPECT_EQ(given.window.inputs.size(), 1U);
}

TEST(BackUpDatabase, LeavesSystemAndLinkedTablesOutOfTheCheck) {
  for (const std::uint32_t attributes : {kTableSystem, kTableAttached}) {
    BackupRun given;
    given.access.Put(kPath).Add("Other", {"A"}).definition.attributes = attributes;
    given.access.world.failures["OpenRecordset Other"] = {.number = 3112, .description = "no"};
    EXPECT_TRUE(BackUpDatabase(given.run, kPath).ok());
  }
}

TEST(BackUpDatabase, ACopyThatIsNotWholeIsAnError) {
  struct Case {
    const char* what;
    std::function<void(MemoryTables&)> damage;
  };
  const Case cases[] = {
      {"a row is missing", [](MemoryTables& tables) { tables.tables[0].rows.pop_back(); }},
      {"a table is missing", [](MemoryTables& tables) { tables.tables.clear(); }},
      {"a table has another name",
       [](MemoryTables& tables) { tables.tables[0].definition.name = "X"; }},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    BackupRun given;
    const auto copy = given.machine.files.on_copied;
    given.machine.files.on_copied = [&](std::string_view source, std::string_view target) {
      copy(source, target);
      row.damage(given.access.Put(std::string(target)));
    };
    const Result<std::string> backup = BackUpDatabase(given.run, kPath);
    EXPECT_EQ(backup.number(), kDeviceIoError);
    EXPECT_THAT(backup.error().description, HasSubstr(kBackup));
    EXPECT_FALSE(given.machine.files.Exists(kBackup)) << "nobody takes it for a backup";
    EXPECT_EQ(given.machine.files.Contents(kPath), "database");
  }
}

TEST(BackUpDatabase, ACopyThatDoesNotOpenIsAnErrorThatNamesIt) {
  BackupRun given;
  given.access.failures = {{.number = 0, .description = {}},
                           {.number = 3049, .description = "damaged"}};
  const Result<std::string> backup = BackUpDatabase(given.run, kPath);
  EXPECT_EQ(backup.number(), 3049);
  EXPECT_EQ(backup.error().description, R"(Backup D:\Data\Korvo 2006-05-04 03-02-01.mdb: damaged)");
}

TEST(BackUpDatabase, TellsOfACopyThatIsNotWholeAndStays) {
  BackupRun given;
  given.access.failures = {{.number = 0, .description = {}},
                           {.number = 3049, .description = "damaged"}};
  given.machine.files.log().FailWhere("Delete", {.number = 70, .description = "Denied"});
  given.run.BeginCommand({.line = 1, .keyword = "stdf"});
  EXPECT_EQ(BackUpDatabase(given.run, kPath).number(), 3049);
  given.run.EndCommand();
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
  EXPECT_THAT(given.observer.records[0].reason, HasSubstr(kBackup));
}

TEST(BackUpDatabase, ListsTheTablesOfEachDatabaseOnce) {
  BackupRun given;
  for (int i = 0; i < 50; ++i) given.access.Put(kPath).Add("T" + std::to_string(i), {"A"});
  EXPECT_TRUE(BackUpDatabase(given.run, kPath).ok());
  const std::vector<std::string>& calls = given.access.world.calls;
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "Tables"), 2);
}

TEST(BackUpDatabase, ADiskThatFillsIsAnErrorThatNamesTheBackup) {
  BackupRun given;
  given.machine.files.log().FailWhere("Copy", {.number = kDiskFull, .description = "Disk full"});
  const Result<std::string> backup = BackUpDatabase(given.run, kPath);
  EXPECT_EQ(backup.number(), kDiskFull);
  EXPECT_THAT(backup.error().description, HasSubstr(kBackup));
  EXPECT_FALSE(given.machine.files.Exists(kBackup));
}

}  // namespace
}  // namespace zent
