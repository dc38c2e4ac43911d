#include <gtest/gtest.h>

#include "jet/fakes/MemoryStorage.h"
#include "jet/random/RandomDatabase.h"
#include "jet/transfer/Compaction.h"

/// Random changes of structure and rows against a model in memory.
namespace zent::jet::testing {
namespace {

constexpr int kSteps = 900;
constexpr int kStepsBetweenChecks = 75;

void ExpectCompacted(Storage& storage, const DatabaseModel& model) {
  const Status done = CompactDatabase(storage, {.source = "old.mdb", .target = "new.mdb"});
  ASSERT_TRUE(done.ok()) << done.error().description;
  const auto pager = Pager::Open(storage, "new.mdb", {});
  ASSERT_TRUE(pager.ok());
  const auto catalog = Catalog::Open(*pager.value());
  ASSERT_TRUE(catalog.ok());
  ExpectModel(*catalog.value(), model, false);
  EXPECT_EQ(FaultsOfFile(*pager.value()), std::vector<std::string>());
}

class RandomChanges : public ::testing::TestWithParam<unsigned> {};

TEST_P(RandomChanges, LeaveWhatTheModelHolds) {
  MemoryStorage storage;
  RandomDatabase database(storage, "old.mdb", GetParam(), Palette::All);
  for (int step = 1; step <= kSteps; ++step) {
    SCOPED_TRACE(step);
    database.Step();
    if (step % kStepsBetweenChecks == 0) database.Check();
    ASSERT_FALSE(HasFailure());
  }
  database.Commit();
  EXPECT_GT(database.made(), kSteps / 3);
  EXPECT_GT(database.refused(), 10);
  database.Close();
  ExpectCompacted(storage, database.model());
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, ::testing::Range(1U, 11U));

}  // namespace
}  // namespace zent::jet::testing
