#include <gtest/gtest.h>

#include <algorithm>

#include "KillingStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/storage/Journal.h"
#include "support/TempFolder.h"

/// A process is killed at every changing call that it makes on real files.
namespace zent::jet::testing {
namespace {

/// Makes the sample changes in a process killed at the n-th call; true when it was.
bool IsKilledAt(int call, const std::string& path) {
  return IsWorkKilledAt(call, [&](Storage& storage) {
    std::size_t committed = 0;
    return MakeChanges(storage, path, SampleChanges().size(), committed);
  });
}

TEST(Kill, AtEveryCallLeavesOneOfTheStates) {
  const std::vector<std::string> states = SampleStates();
  const zent::testing::TempFolder folder;
  std::size_t reached = 0;
  int kills = 0;
  for (int call = 1;; ++call) {
    SCOPED_TRACE(call);
    const std::string path = folder.Put("Korvo.mdb", states.front()).string();
    const bool killed = IsKilledAt(call, path);

    PosixStorage storage;
    ASSERT_TRUE(Pager::Open(storage, path, Opened(Sharing::Exclusive)).ok());
    const auto found = std::find(states.begin(), states.end(), folder.Get("Korvo.mdb"));
    ASSERT_NE(found, states.end());
    // A later kill never leaves an earlier state.
    const auto state = static_cast<std::size_t>(found - states.begin());
    ASSERT_GE(state, reached);
    reached = state;
    ASSERT_FALSE(storage.Exists(Journal::PathFor(path)).value_or(true));
    if (!killed) break;
    ++kills;
  }
  EXPECT_EQ(reached, SampleChanges().size());
  EXPECT_GT(kills, 40);
}

}  // namespace
}  // namespace zent::jet::testing
