#include <gtest/gtest.h>

#include <functional>

#include "jet/format/JetErrors.h"
#include "jet/store/IndexFile.h"

namespace zent::jet::testing {
namespace {

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

TEST(IndexTree, TakesANodeThatListsItsTail) {
  struct Case {
    const char* what;
    std::uint32_t listed;  ///< the number that the entry of the tail is a copy of
    std::uint32_t rows;    ///< after the change
  };
  constexpr Case kCases[] = {
      {"the last leaf gets an entry", 1499, 1501},
      {"the last leaf is parted", 1499, 4000},
      {"the last leaf is emptied", 1499, 1000},
      {"the entry is out of date", 1400, 1501},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    Index index;
    for (std::uint32_t i = 0; i < 1500; ++i) index.Insert(EntryOf(LongKey(i), i));
    IndexPage root = Loaded(index, index.tree.place().root);
    const Entry listed = EntryOf(LongKey(row.listed), row.listed);
    root.entries.push_back({.key = listed.key, .row = listed.row, .child = root.tail});
    Rewrite(index.file, index.tree.place().root, root);

    for (std::uint32_t i = 1500; i < row.rows; ++i) index.Insert(EntryOf(LongKey(i), i));
    for (std::uint32_t i = 1500; i > row.rows; --i) index.Delete(EntryOf(LongKey(i - 1), i - 1));
    index.Check();
    while (!index.model.empty()) index.Delete(Entry(*index.model.rbegin()));
    EXPECT_EQ(index.Check(), 1U);
  }
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
