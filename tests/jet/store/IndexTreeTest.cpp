#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "jet/format/JetErrors.h"
#include "jet/store/IndexFile.h"

namespace zent::jet::testing {
namespace {

struct OrderCase {
  const char* what;
  std::vector<std::uint32_t> order;
  std::size_t most_pages;
};
std::vector<OrderCase> Orders() {
  std::vector<std::uint32_t> numbers(6000);
  for (std::uint32_t i = 0; i < numbers.size(); ++i) numbers[i] = i;
  std::vector<std::uint32_t> descending(numbers.rbegin(), numbers.rend());
  std::vector<std::uint32_t> shuffled = numbers;
  std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(4));
  return {{"ascending: full leaves", numbers, 13},
          {"descending", descending, 30},
          {"shuffled", shuffled, 25}};
}

TEST(IndexTree, HoldsWhatIsInsertedInAnyOrder) {
  for (const OrderCase& row : Orders()) {
    SCOPED_TRACE(row.what);
    Index index;
    for (const std::uint32_t number : row.order) index.Insert(EntryOf(LongKey(number), number));
    EXPECT_LE(index.Check(), row.most_pages);
    for (const std::uint32_t number : row.order) index.Delete(EntryOf(LongKey(number), number));
    EXPECT_EQ(index.Check(), 1U);
  }
}

TEST(IndexTree, FindsTheFirstEntryNotBelow) {
  Index index;
  for (std::uint32_t i = 0; i < 3000; ++i) index.Insert(EntryOf(LongKey(i * 2), i));
  IndexCursor cursor = index.tree.Cursor();
  for (std::uint32_t i = 0; i < 2999; ++i) {
    ASSERT_TRUE(cursor.Seek(LongKey(i * 2 + 1)).value_or(false));
    ASSERT_EQ(cursor.key(), LongKey(i * 2 + 2));
    ASSERT_TRUE(index.tree.HasKey(LongKey(i * 2)).value_or(false));
    ASSERT_FALSE(index.tree.HasKey(LongKey(i * 2 + 1)).value_or(true));
  }
  EXPECT_FALSE(cursor.Seek(LongKey(5999)).value_or(true));
  EXPECT_FALSE(cursor.on_entry());
  EXPECT_FALSE(index.tree.HasKey("\x7F").value_or(true));
}

TEST(IndexTree, ReadsAPagePerLevelToFindAKey) {
  Index index;
  for (std::uint32_t i = 0; i < 20000; ++i) index.Insert(EntryOf(LongKey(i), i));
  index.file.Commit();
  const PageNumber root = index.tree.place().root;
  for (const std::uint32_t number : {0U, 1U, 500U, 9999U, 19999U}) {
    SCOPED_TRACE(number);
    const Result<IndexPageHold> top = HoldIndexPage(index.file.pager(), root, index.table);
    const std::size_t child = top.value().view.LowerBound(LongKey(number), {});
    const PageNumber leaf =
        child < top.value().view.count() ? top.value().view.Child(child) : top.value().view.tail();
    // Every other page is no index page any more: whoever reads one fails.
    const std::vector<PageNumber> pages = index.file.maps().Pages(index.map).value();
    for (const PageNumber page : pages) {
      if (page != root && page != leaf) index.file.Overwrite(page, 0, {9});
    }
    IndexCursor cursor = index.tree.Cursor();
    EXPECT_TRUE(cursor.Seek(LongKey(number)).value_or(false));
    EXPECT_EQ(cursor.key(), LongKey(number));
    index.file.Rollback();
  }
}

TEST(IndexTree, KeepsEqualKeysInTheOrderOfTheirRows) {
  Index index;
  std::vector<std::uint32_t> numbers(3000);
  for (std::uint32_t i = 0; i < numbers.size(); ++i) numbers[i] = i;
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(8));
  for (const std::uint32_t number : numbers) index.Insert(EntryOf(std::string(60, 'k'), number));
  index.Check();
  IndexCursor cursor = index.tree.Cursor();
  ASSERT_TRUE(cursor.Seek(std::string(60, 'k')).value_or(false));
  EXPECT_EQ(cursor.row(), EntryOf("", 0).row);
}

TEST(IndexTree, PartsAPageWhoseCommonPrefixIsLost) {
  Index index;
  const std::string stem(200, 's');
  for (std::uint32_t i = 0; i < 300; ++i) index.Insert(EntryOf(stem + LongKey(i), i));
  index.Check();
  index.Insert(EntryOf("a", 1000));
  index.Insert(EntryOf("z", 1001));
  index.Insert(EntryOf(std::string(100, 's') + "m", 1002));
  EXPECT_GT(index.Check(), 2U);
}

TEST(IndexTree, RefusesWhatItCannotHold) {
  Index index;
  index.Insert(EntryOf(std::string(kMaxIndexKey, 'k'), 1));
  EXPECT_EQ(index.tree.Insert(std::string(kMaxIndexKey + 1, 'k'), {9, 9}).number(),
            kRecordTooLarge);
  const Entry there = EntryOf(std::string(kMaxIndexKey, 'k'), 1);
  EXPECT_EQ(index.tree.Insert(there.key, there.row).number(), kCannotOpenDatabase);
  EXPECT_EQ(index.tree.Delete("missing", {9, 9}).number(), kCannotOpenDatabase);
  EXPECT_EQ(index.tree.Delete(there.key, {9, 9}).number(), kCannotOpenDatabase);
  index.Check();
}

struct MixCase {
  const char* what;
  std::size_t longest;  ///< bytes of a key
  unsigned letters;     ///< few letters give common prefixes
  unsigned steps;
};
constexpr MixCase kMixes[] = {
    {"short keys, many equal", 3, 3, 6000},
    {"text", 40, 20, 6000},
    {"long keys: a high tree", kMaxIndexKey, 2, 2500},
};
TEST(IndexTree, EqualsAModelAfterRandomChanges) {
  for (const MixCase& mix : kMixes) {
    SCOPED_TRACE(mix.what);
    Index index;
    std::mt19937 random(21);
    const auto key = [&] {
      std::string text(1 + random() % mix.longest, ' ');
      for (char& letter : text) letter = static_cast<char>('a' + random() % mix.letters);
      return text;
    };
    for (unsigned step = 0; step < mix.steps; ++step) {
      // Mostly growing, then mostly shrinking.
      const bool grows = random() % 10 < (step < mix.steps / 2 ? 8U : 3U);
      if (index.model.empty() || grows) {
        index.Insert(EntryOf(key(), step));
      } else {
        auto at = index.model.lower_bound(EntryOf(key(), step));
        if (at == index.model.end()) at = index.model.begin();
        index.Delete(Entry(*at));
      }
      if (step % 500 == 0) index.Check();
      if (::testing::Test::HasFailure()) return;
    }
    while (!index.model.empty()) index.Delete(Entry(*index.model.begin()));
    EXPECT_EQ(index.Check(), 1U);
  }
}

TEST(IndexTree, ClearsToAnEmptyLeaf) {
  Index index;
  for (std::uint32_t i = 0; i < 5000; ++i) index.Insert(EntryOf(LongKey(i), i));
  ASSERT_TRUE(index.tree.Clear().ok());
  index.model.clear();
  EXPECT_EQ(index.Check(), 1U);
}

}  // namespace
}  // namespace zent::jet::testing
