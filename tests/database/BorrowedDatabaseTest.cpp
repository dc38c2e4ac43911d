#include <gtest/gtest.h>

#include "database/BorrowedDatabase.h"
#include "database/fakes/MemoryDatabase.h"

namespace zent {
namespace {

using testing::MemoryDatabase;
using testing::MemoryWorld;

constexpr int kNotCommitted = 3146;
constexpr int kNotRolledBack = 3147;

struct KindCase {
  const char* what;
  DatabaseKind kind;
};

constexpr KindCase kKinds[] = {{"a file", DatabaseKind::Access},
                               {"a server", DatabaseKind::Server}};

/// A database of one table with one row.
struct OneRow {
  explicit OneRow(DatabaseKind kind) : database(world, "database", kind) {
    world.databases["database"].Add("T", {"A"}, {{"old"}});
  }
  Status Change(const std::string& value) {
    return database.Execute("UPDATE T SET A='" + value + "'").status();
  }
  std::string Value() { return world.databases["database"].Find("T")->Text(0, "A"); }

  MemoryWorld world;
  MemoryDatabase database;
};

TEST(InOneTransaction, KeepsAChange) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(row.what);
    OneRow given(row.kind);
    EXPECT_TRUE(InOneTransaction(given.database, [&] { return given.Change("new"); }).ok());
    EXPECT_FALSE(given.database.InTransaction());
    EXPECT_EQ(given.Value(), "new");
  }
}

TEST(InOneTransaction, IsPartOfTheOneThatIsOpen) {
  OneRow given(DatabaseKind::Server);
  ASSERT_TRUE(given.database.BeginTransaction().ok());
  EXPECT_TRUE(InOneTransaction(given.database, [&] { return given.Change("new"); }).ok());
  EXPECT_TRUE(given.database.InTransaction());
  ASSERT_TRUE(given.database.Rollback().ok());
  EXPECT_EQ(given.Value(), "old");
}

TEST(InOneTransaction, UndoesAChangeThatFailsHalfWay) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(row.what);
    OneRow given(row.kind);
    const Status done = InOneTransaction(given.database, [&]() -> Status {
      if (Status changed = given.Change("new"); !changed.ok()) return changed;
      return StandardError(kInvalidProcedureCall);
    });
    EXPECT_EQ(done.number(), kInvalidProcedureCall);
    EXPECT_FALSE(given.database.InTransaction());
    EXPECT_EQ(given.Value(), "old");
  }
}

// A change that is saved later must not become part of one that could not be committed.
TEST(InOneTransaction, LeavesNoneOpenThatCannotBeCommitted) {
  for (const KindCase& row : kKinds) {
    SCOPED_TRACE(row.what);
    OneRow given(row.kind);
    given.world.failures["Commit"] = {.number = kNotCommitted, .description = "disk full"};
    given.world.failures["Rollback"] = {.number = kNotRolledBack, .description = "why"};

    const Status done = InOneTransaction(given.database, [&] { return given.Change("new"); });

    EXPECT_EQ(done.number(), kNotCommitted);
    EXPECT_FALSE(given.database.InTransaction());
    EXPECT_EQ(given.Value(), "old");
    EXPECT_TRUE(given.Change("later").ok());
    EXPECT_TRUE(given.database.Close().ok());
    EXPECT_EQ(given.Value(), "later");
  }
}

}  // namespace
}  // namespace zent
