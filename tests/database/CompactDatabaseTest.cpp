#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/CompactDatabase.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";
constexpr const char* kTemporary = R"(D:\Data\Korvo.mdb_tmp)";

TEST(CompactDatabase, PutsTheCompactedFileInPlace) {
  struct Case {
    const char* password;
    const char* compaction;
  };
  constexpr Case kCases[] = {
      {"", R"(D:\Data\Korvo.mdb > D:\Data\Korvo.mdb_tmp ())"},
      {"Secret", R"(D:\Data\Korvo.mdb > D:\Data\Korvo.mdb_tmp (;pwd=Secret))"},
  };
  for (const Case& row : kCases) {
    DatabaseRun given;
    given.PutDatabase(kPath);
    EXPECT_TRUE(CompactDatabase(given.run, kPath, row.password).ok());
    EXPECT_THAT(given.access.compactions, ElementsAre(row.compaction));
    EXPECT_THAT(given.messages(), ElementsAre(R"(Compacting D:\Data\Korvo.mdb)"));
    EXPECT_EQ(given.machine.files.Contents(kPath), "compacted");
    EXPECT_FALSE(given.machine.files.Exists(kTemporary));
  }
}

/// What the engine and the updater leave when they are killed.
constexpr const char* kLeftovers[] = {R"(D:\Data\Korvo.mdb_tmp)",
                                      R"(D:\Data\Korvo.mdb_tmp.zent-new)",
                                      R"(D:\Data\Korvo.mdb_tmp.zent-new-journal)"};

TEST(CompactDatabase, DeletesStaleTemporaryFilesFirst) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  for (const char* left : kLeftovers) given.machine.files.PutFile(left, "stale");
  given.access.world.on_call = [&](const std::string& call) {
    if (!call.starts_with("Compact")) return;
    for (const char* left : kLeftovers) EXPECT_FALSE(given.machine.files.Exists(left)) << left;
  };
  EXPECT_TRUE(CompactDatabase(given.run, kPath, "").ok());
  EXPECT_EQ(given.machine.files.Contents(kPath), "compacted");
}

TEST(RemoveLeftovers, DeletesEachFileOfAKilledCompactionAndNoOther) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  const std::vector<std::string> before = given.machine.files.AllFiles();
  for (const char* left : kLeftovers) {
    given.machine.files.PutFile(left, "stale");
    EXPECT_TRUE(RemoveLeftovers(given.run, kPath).ok());
    EXPECT_EQ(given.machine.files.AllFiles(), before);
  }
}

TEST(CompactDatabase, TheDatabaseIsThereAtEveryChangeOfAFile) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  given.machine.files.log().Forget();
  EXPECT_TRUE(CompactDatabase(given.run, kPath, "").ok());
  EXPECT_THAT(given.machine.files.log().changes(),
              ElementsAre(R"(Replace D:\Data\Korvo.mdb_tmp > D:\Data\Korvo.mdb)"));
}

TEST(CompactDatabase, AHiddenDatabaseStaysHidden) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  given.machine.files.PutFile(kPath, "database", kAttributeHidden);
  EXPECT_TRUE(CompactDatabase(given.run, kPath, "").ok());
  EXPECT_EQ(given.machine.files.Contents(kPath), "compacted");
  EXPECT_EQ(given.machine.files.Attributes(kPath).value_or(0), kAttributeHidden);
}

TEST(CompactDatabase, WhoOpensTheDatabaseMeanwhileKeepsIt) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  given.access.on_compacted = [&](std::string_view target) {
    given.machine.files.PutFile(target, "compacted");
    given.machine.files.HoldOpen(kPath);
  };
  EXPECT_EQ(CompactDatabase(given.run, kPath, "").number(), kPermissionDenied);
  EXPECT_EQ(given.machine.files.Contents(kPath), "database");
  EXPECT_FALSE(given.machine.files.Exists(kTemporary));
}

TEST(CompactDatabase, TellsOfATemporaryFileThatStays) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  for (const char* call : {"Replace", "Delete"}) {
    given.machine.files.log().FailWhere(call, {.number = kDeviceIoError, .description = "I/O"});
  }
  given.run.BeginCommand({.line = 1, .keyword = "stdf"});
  EXPECT_EQ(CompactDatabase(given.run, kPath, "").number(), kDeviceIoError);
  given.run.EndCommand();
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
  EXPECT_EQ(given.observer.records[0].reason, R"(left behind: D:\Data\Korvo.mdb_tmp)");
}

TEST(CompactDatabase, AnErrorLeavesTheOldFileAndNoTemporaryOne) {
  const RuntimeError full{.number = kDiskFull, .description = "Disk full"};
  for (const bool engine_fails : {true, false}) {
    DatabaseRun given;
    given.PutDatabase(kPath);
    if (engine_fails) {
      given.access.world.failures["Compact"] = full;
    } else {
      given.machine.files.log().FailWhere("Replace", full);
    }
    EXPECT_EQ(CompactDatabase(given.run, kPath, "").number(), kDiskFull);
    EXPECT_EQ(given.machine.files.Contents(kPath), "database");
    EXPECT_FALSE(given.machine.files.Exists(kTemporary));
  }
}

TEST(CompactDatabase, AStaleFileThatCannotBeDeletedIsAnError) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  given.machine.files.PutFile(kTemporary, "held");
  given.machine.files.HoldOpen(kTemporary);
  EXPECT_EQ(CompactDatabase(given.run, kPath, "").number(), kPermissionDenied);
  EXPECT_EQ(given.machine.files.Contents(kPath), "database");
}

TEST(CompactDatabase, NeedsAnEngine) {
  DatabaseRun given;
  given.run.database.access = nullptr;
  EXPECT_EQ(CompactDatabase(given.run, kPath, "").number(), kCannotCreateObject);
}

}  // namespace
}  // namespace zent
