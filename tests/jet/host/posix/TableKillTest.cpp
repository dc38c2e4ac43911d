#include <gtest/gtest.h>

#include <algorithm>

#include "KillingStorage.h"
#include "jet/fakes/SampleTable.h"
#include "jet/storage/Journal.h"
#include "support/TempFolder.h"

/// A process is killed at every changing call of transactions over a table.
namespace zent::jet::testing {
namespace {

TEST(TableKill, AtEveryCallLeavesTheTableAsBeforeOrAsAfter) {
  const std::string start = SampleTable::Make();
  const std::vector<TableRows> states = SampleTableStates();
  const zent::testing::TempFolder folder;
  std::size_t reached = 0;
  int kills = 0;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    const std::string path = folder.Put("Korvo.mdb", start).string();
    const bool killed = IsWorkKilledAt(call, [&](Storage& storage) {
      std::size_t committed = 0;
      return ChangeSampleTable(storage, path, committed);
    });

    PosixStorage storage;
    const TableRows rows = ExpectRightSampleTable(storage, path);
    ASSERT_FALSE(HasFailure());
    // A later kill never leaves an earlier state.
    const auto from = states.begin() + static_cast<std::ptrdiff_t>(reached);
    const auto found = std::find(from, states.end(), rows);
    ASSERT_NE(found, states.end());
    reached = static_cast<std::size_t>(found - states.begin());
    ASSERT_FALSE(storage.Exists(Journal::PathFor(path)).value_or(true));
    if (!killed) break;
    ++kills;
  }
  EXPECT_EQ(reached, kTableChanges);
  EXPECT_GT(kills, 60);
}

}  // namespace
}  // namespace zent::jet::testing
