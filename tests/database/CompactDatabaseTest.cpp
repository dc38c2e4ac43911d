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

TEST(CompactDatabase, DeletesAStaleTemporaryFileFirst) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  given.machine.files.PutFile(kTemporary, "stale");
  given.access.world.on_call = [&](const std::string& call) {
    if (call.starts_with("Compact")) {
      EXPECT_FALSE(given.machine.files.Exists(kTemporary));
    }
  };
  EXPECT_TRUE(CompactDatabase(given.run, kPath, "").ok());
  EXPECT_EQ(given.machine.files.Contents(kPath), "compacted");
}

TEST(CompactDatabase, TheDatabaseIsThereAtEveryChangeOfAFile) {
  DatabaseRun given;
  given.PutDatabase(kPath);
  given.machine.files.log().Forget();
  EXPECT_TRUE(CompactDatabase(given.run, kPath, "").ok());
  EXPECT_THAT(given.machine.files.log().changes(),
              ElementsAre(R"(Copy D:\Data\Korvo.mdb_tmp > D:\Data\Korvo.mdb)",
                          R"(Delete D:\Data\Korvo.mdb_tmp)"));
}

TEST(CompactDatabase, AnErrorLeavesTheOldFileAndNoTemporaryOne) {
  const RuntimeError full{.number = kDiskFull, .description = "Disk full"};
  for (const bool engine_fails : {true, false}) {
    DatabaseRun given;
    given.PutDatabase(kPath);
    if (engine_fails) {
      given.access.world.failures["Compact"] = full;
    } else {
      given.machine.files.log().FailWhere("Copy", full);
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
