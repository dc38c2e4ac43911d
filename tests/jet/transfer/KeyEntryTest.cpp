#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "jet/transfer/KeyEntry.h"

namespace zent::jet::testing {
namespace {

/// Entries of those heads; `at` tells where each one came.
std::vector<KeyEntry> EntriesOf(const std::vector<std::uint64_t>& heads) {
  std::vector<KeyEntry> entries;
  entries.reserve(heads.size());
  for (const std::uint64_t head : heads) {
    entries.push_back({.head = head,
                       .at = static_cast<std::uint32_t>(entries.size()),
                       .length = 1,
                       .row = {.page = 7, .row = 3}});
  }
  return entries;
}

std::vector<std::uint64_t> RandomHeads(std::size_t count, std::uint64_t mask) {
  std::mt19937_64 random(11);
  std::vector<std::uint64_t> heads(count);
  for (std::uint64_t& head : heads) head = random() & mask;
  return heads;
}

TEST(SortByHead, PutsHeadsInOrderAndLeavesEqualOnesInTheirs) {
  struct Case {
    const char* what;
    std::vector<std::uint64_t> heads;
  };
  const Case cases[] = {
      {"none", {}},
      {"one", {5}},
      {"all alike", {9, 9, 9}},
      {"different in the first byte", {0xFFULL << 56U, 1ULL << 56U, 0x80ULL << 56U, 1ULL << 56U}},
      {"different in the last byte", {255, 0, 128, 1, 0}},
      {"the greatest and the least", {~0ULL, 0, ~0ULL, 1}},
      {"many of all bytes", RandomHeads(5000, ~0ULL)},
      {"many that often meet", RandomHeads(5000, 0x0F00000000000003ULL)},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    std::vector<KeyEntry> entries = EntriesOf(row.heads);
    std::vector<KeyEntry> expected = entries;
    std::stable_sort(expected.begin(), expected.end(),
                     [](const KeyEntry& a, const KeyEntry& b) { return a.head < b.head; });
    SortByHead(entries);
    ASSERT_EQ(entries.size(), expected.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
      EXPECT_EQ(entries[i].head, expected[i].head) << i;
      EXPECT_EQ(entries[i].at, expected[i].at) << i;
      EXPECT_EQ(entries[i].row, expected[i].row) << i;
    }
  }
}

}  // namespace
}  // namespace zent::jet::testing
