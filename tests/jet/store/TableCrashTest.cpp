#include <gtest/gtest.h>

#include <algorithm>

#include "jet/fakes/SampleTable.h"
#include "jet/fakes/TestDatabase.h"

/// The machine stops at every changing call of transactions over a table: its rows, indexes, long
/// values, maps and counters are all as before, or all as after, the transaction.
namespace zent::jet::testing {
namespace {

constexpr PowerLoss kLosses[] = {
    {PowerLoss::KeepsAll, 0},
    {PowerLoss::LosesAll, 0},
    {PowerLoss::KeepsOdd, 0},
    {PowerLoss::KeepsRandom, 1},
};

/// Stops at changing call `call`, and looks at what each loss leaves. False when there were fewer
/// calls.
bool SurvivesStopAt(int call, const std::string& start, const std::vector<TableRows>& states) {
  MemoryStorage machine;
  machine.Put(kPath, start);
  machine.StopAt(call);
  std::size_t committed = 0;
  static_cast<void>(ChangeSampleTable(machine, kPath, committed));
  if (!machine.stopped()) return false;
  const std::size_t next = std::min(committed + 1, states.size() - 1);
  for (const PowerLoss& loss : kLosses) {
    SCOPED_TRACE(::testing::Message() << "loss " << int{loss.kind} << " after " << committed);
    const auto disk = machine.AfterPowerLoss(loss);
    const TableRows rows = ExpectRightSampleTable(*disk, kPath);
    EXPECT_TRUE(rows == states[committed] || rows == states[next]);
  }
  return true;
}

TEST(TableCrash, LeavesTheTableAsBeforeOrAsAfter) {
  const std::string start = SampleTable::Make();
  const std::vector<TableRows> states = SampleTableStates();
  int stops = 0;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    if (!SurvivesStopAt(call, start, states)) break;
    ASSERT_FALSE(HasFailure());
    ++stops;
  }
  EXPECT_GT(stops, 60);
}

TEST(TableCrash, IsTriedOverTransactionsThatOutgrowTheCache) {
  MemoryStorage storage;
  storage.Put(kPath, SampleTable::Make());
  StoreFile file(storage, kPath, kTableCachePages);
  const std::unique_ptr<TableStore> table = SampleTable::Open(file);
  for (int number = 0; number < 140; ++number) {
    std::vector<Value> values = SampleTable::Row(number, 3000);
    ASSERT_TRUE(table->Insert(values).ok());
  }
  EXPECT_GT(file.pager().counters().spills, 0U);
  EXPECT_LE(file.pager().counters().most_pages_held, kTableCachePages);
}

}  // namespace
}  // namespace zent::jet::testing
