#include <gtest/gtest.h>

#include <random>
#include <set>

#include "jet/fakes/StoreChecks.h"
#include "jet/format/JetErrors.h"
#include "jet/transfer/KeySorter.h"

namespace zent::jet::testing {
namespace {

IndexTree NewTree(StoreFile& file) {
  const PageNumber table = file.NewPage();
  const Result<IndexTree> tree = IndexTree::Create(file.maps(), table, file.NewMap());
  EXPECT_TRUE(tree.ok());
  return tree.value();
}

RowPointer RowAt(std::size_t i) {
  return {.page = static_cast<PageNumber>(10 + i / 200), .row = static_cast<std::uint8_t>(i % 200)};
}

TEST(KeySorter, BuildsATreeFromEntriesInAnyOrder) {
  struct Case {
    const char* what;
    std::size_t entries;
    std::size_t bytes;  ///< of memory
  };
  constexpr Case kCases[] = {
      {"none", 0, 1 << 20},      {"one", 1, 1 << 20},     {"all in memory", 3000, 1 << 20},
      {"in parts", 3000, 10000}, {"a part each", 100, 1},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    StoreFile file;
    IndexTree tree = NewTree(file);
    KeySorter sorter(tree, false, "", row.bytes);
    std::mt19937 random(7);
    std::set<Entry> expected;
    std::set<std::string> keys;
    for (std::size_t i = 0; i < row.entries; ++i) {
      const std::string key = SampleBytes(1 + random() % 30, static_cast<unsigned>(random() % 900));
      ASSERT_TRUE(sorter.Add(key, RowAt(i)).ok());
      expected.insert({key, RowAt(i)});
      keys.insert(key);
    }
    ASSERT_TRUE(sorter.Finish().ok());
    EXPECT_EQ(sorter.distinct_keys(), keys.size());
    ExpectRightTree(file, tree, expected);
  }
}

TEST(KeySorter, RefusesWhatTheIndexDoesNotTake) {
  struct Case {
    const char* what;
    bool unique;
    std::vector<std::string> keys;
    int number;
  };
  const Case cases[] = {
      {"two of one key", true, {"a", "b", "a"}, kDuplicateKey},
      {"two of one key where that is allowed", false, {"a", "b", "a"}, 0},
      {"two without values", true, {"null", "b", "null"}, 0},
      {"one begins as another", true, {"a", "ab", "abc"}, 0},
      {"too long", false, {std::string(kMaxIndexKey + 1, 'x')}, kRecordTooLarge},
  };
  for (const Case& row : cases) {
    for (const std::size_t bytes : {std::size_t{1}, std::size_t{1} << 20U}) {
      SCOPED_TRACE(std::string(row.what) + " in " + std::to_string(bytes));
      StoreFile file;
      IndexTree tree = NewTree(file);
      KeySorter sorter(tree, row.unique, "null", bytes);
      Status done;
      for (std::size_t i = 0; i < row.keys.size() && done.ok(); ++i) {
        done = sorter.Add(row.keys[i], RowAt(i));
      }
      if (done.ok()) done = sorter.Finish();
      EXPECT_EQ(done.number(), row.number);
    }
  }
}

}  // namespace
}  // namespace zent::jet::testing
