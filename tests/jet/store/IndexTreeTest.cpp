#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/StoreFile.h"
#include "jet/format/JetErrors.h"
#include "jet/store/IndexTree.h"

namespace zent::jet::testing {
namespace {

/// A key of the form that a long column has.
std::string LongKey(std::uint32_t number) {
  std::string key = "\x7F";
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    key += static_cast<char>((number >> shift) & 0xFFU);
  }
  return key;
}

Entry EntryOf(std::string key, std::uint32_t number) {
  return {std::move(key),
          {.page = number / 200 + 10, .row = static_cast<std::uint8_t>(number % 200)}};
}

struct Index {
  void Insert(const Entry& entry) {
    const Status done = tree.Insert(entry.key, entry.row);
    ASSERT_TRUE(done.ok()) << done.error().description;
    ASSERT_TRUE(model.insert(entry).second);
  }
  void Delete(const Entry& entry) {
    const Status done = tree.Delete(entry.key, entry.row);
    ASSERT_TRUE(done.ok()) << done.error().description;
    ASSERT_EQ(model.erase(entry), 1U);
  }
  /// Checks everything; returns the number of pages.
  std::size_t Check() {
    const std::vector<PageNumber> pages = ExpectRightTree(file, tree, model);
    std::set<PageNumber> named(pages.begin(), pages.end());
    named.insert({table, map.page});
    ExpectAllPagesNamed(file, named);
    return pages.size();
  }

  StoreFile file;
  PageNumber table = file.NewPage();
  RowPointer map = file.NewMap();
  IndexTree tree = IndexTree::Create(file.maps(), table, map).value();
  std::set<Entry> model;
};

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

/// A leaf or node as a writer of another kind may leave it.
void Rewrite(StoreFile& file, PageNumber page, const IndexPage& content) {
  Result<PageEdit> edit = file.pager().Edit(page);
  ASSERT_TRUE(edit.ok());
  ASSERT_TRUE(BuildIndexPage(JetVersion::Jet4, content, edit.value().bytes()));
}
IndexPage Loaded(Index& index, PageNumber page) {
  return HoldIndexPage(index.file.pager(), page, index.table).value().view.Load();
}

TEST(IndexTree, TakesANodeWithoutTailAndAnEmptyLeaf) {
  Index index;
  for (std::uint32_t i = 0; i < 1500; ++i) index.Insert(EntryOf(LongKey(i), i));
  IndexPage root = Loaded(index, index.tree.place().root);
  ASSERT_GE(root.entries.size(), 2U);
  const Entry last = *index.model.rbegin();
  root.entries.push_back({.key = last.key, .row = last.row, .child = root.tail});
  root.tail = 0;
  Rewrite(index.file, index.tree.place().root, root);
  const PageNumber second = root.entries[1].child;
  IndexPage leaf = Loaded(index, second);
  for (const IndexEntry& entry : leaf.entries) index.model.erase({entry.key, entry.row});
  const std::string emptied = leaf.entries.front().key;
  leaf.entries.clear();
  Rewrite(index.file, second, leaf);

  std::set<Entry> found;
  IndexCursor cursor = index.tree.Cursor();
  for (bool on = cursor.SeekFirst().value_or(false); on; on = cursor.Next().value_or(false)) {
    found.insert({cursor.key(), cursor.row()});
  }
  EXPECT_EQ(found, index.model);
  ASSERT_TRUE(cursor.Seek(emptied).value_or(false));
  EXPECT_GT(cursor.key(), emptied);
  // Changes set right what they touch.
  index.Insert(EntryOf(LongKey(9000), 9000));
  root = Loaded(index, index.tree.place().root);
  EXPECT_EQ(root.entries.back().key, LongKey(9000));
  index.Delete(EntryOf(LongKey(9000), 9000));
  ASSERT_TRUE(cursor.SeekLast().value_or(false));
  EXPECT_EQ(cursor.key(), LongKey(1499));
}

/// The second of two indexes of one table, with every second number.
struct OtherIndex {
  explicit OtherIndex(Index& beside) : index(beside) {
    for (std::uint32_t i = 0; i < 1500; ++i) {
      const Entry entry = EntryOf(LongKey(i * 2), i);
      EXPECT_TRUE(tree.Insert(entry.key, entry.row).ok());
      model.insert(entry);
    }
  }

  Index& index;
  RowPointer map = index.file.NewMap();
  IndexTree tree = IndexTree::Create(index.file.maps(), index.table, map).value();
  std::set<Entry> model;
};

// Both indexes name the same table on their pages: only their maps tell them apart.
TEST(IndexTree, ChangesNoPageOfAnotherIndexOfTheTable) {
  struct Case {
    const char* what;
    Status (*change)(IndexTree& tree);
  };
  const Case cases[] = {
      {"a key at the start",
       [](IndexTree& tree) {
         return tree.Insert(LongKey(1), {9, 9});
       }},
      {"a key at the end",
       [](IndexTree& tree) {
         return tree.Insert(LongKey(9000), {9, 9});
       }},
      {"an entry of the other one",
       [](IndexTree& tree) { return tree.Delete(LongKey(0), EntryOf("", 0).row); }},
      {"all", [](IndexTree& tree) { return tree.Clear(); }},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    Index index;
    for (std::uint32_t i = 0; i < 1500; ++i) index.Insert(EntryOf(LongKey(i), i));
    const OtherIndex other(index);
    IndexTree astray(index.file.maps(),
                     {.table = index.table, .root = other.tree.place().root, .map = index.map});
    EXPECT_EQ(row.change(astray).number(), kCannotOpenDatabase);
    ExpectRightTree(index.file, other.tree, other.model);
    ExpectRightTree(index.file, index.tree, index.model);
  }
}

TEST(IndexTree, FollowsNoChildOrLinkIntoAnotherIndex) {
  Index index;
  for (std::uint32_t i = 0; i < 1500; ++i) index.Insert(EntryOf(LongKey(i), i));
  const OtherIndex other(index);
  IndexPage root = Loaded(index, index.tree.place().root);
  const PageNumber foreign = Loaded(index, other.tree.place().root).entries[0].child;
  // The second leaf has one entry, and the other index's first leaf for a neighbour.
  const PageNumber second = root.entries[1].child;
  IndexPage leaf = Loaded(index, second);
  leaf.entries.resize(1);
  leaf.previous = foreign;
  Rewrite(index.file, second, leaf);
  IndexPage neighbour = Loaded(index, foreign);
  neighbour.next = second;
  Rewrite(index.file, foreign, neighbour);
  const IndexEntry only = leaf.entries[0];
  EXPECT_EQ(index.tree.Delete(only.key, only.row).number(), kCannotOpenDatabase);
  EXPECT_EQ(Loaded(index, foreign), neighbour);

  root.entries[0].child = foreign;
  Rewrite(index.file, index.tree.place().root, root);
  EXPECT_EQ(index.tree.Insert(LongKey(1), {9, 9}).number(), kCannotOpenDatabase);
  EXPECT_EQ(Loaded(index, foreign), neighbour);
}

struct DamageCase {
  const char* what;
  std::function<void(Index&, IndexPage& root, IndexPage& leaf)> damage;
};
const DamageCase kDamage[] = {
    {"a leaf whose next is itself",
     [](Index&, IndexPage& root, IndexPage& leaf) { leaf.next = root.entries[0].child; }},
    {"a leaf whose next is the root",
     [](Index& index, IndexPage&, IndexPage& leaf) { leaf.next = index.tree.place().root; }},
    {"a next beyond the end", [](Index&, IndexPage&, IndexPage& leaf) { leaf.next = 7777; }},
    {"a next that is no index page",
     [](Index&, IndexPage&, IndexPage& leaf) { leaf.next = kGlobalMapPage; }},
    {"a root whose child is the root",
     [](Index& index, IndexPage& root, IndexPage&) {
       for (IndexEntry& entry : root.entries) entry.child = index.tree.place().root;
     }},
    {"a leaf of another table", [](Index&, IndexPage&, IndexPage& leaf) { leaf.owner = 3; }},
    {"an empty leaf whose next is itself",
     [](Index&, IndexPage& root, IndexPage& leaf) {
       leaf.entries.clear();
       leaf.next = root.entries[0].child;
     }},
    {"a node without children",
     [](Index&, IndexPage& root, IndexPage&) {
       root.entries.clear();
       root.tail = 0;
     }},
};
TEST(IndexTree, RefusesDamage) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    Index index;
    for (std::uint32_t i = 0; i < 1500; ++i) index.Insert(EntryOf(LongKey(i), i));
    IndexPage root = Loaded(index, index.tree.place().root);
    const PageNumber first = root.entries[0].child;
    IndexPage leaf = Loaded(index, first);
    row.damage(index, root, leaf);
    Rewrite(index.file, index.tree.place().root, root);
    Rewrite(index.file, first, leaf);

    IndexCursor cursor = index.tree.Cursor();
    Result<bool> more = cursor.SeekFirst();
    for (int i = 0; i < 2000 && more.value_or(false); ++i) more = cursor.Next();
    EXPECT_EQ(more.number(), kCannotOpenDatabase);
    EXPECT_FALSE(cursor.on_entry());
  }
}

}  // namespace
}  // namespace zent::jet::testing
