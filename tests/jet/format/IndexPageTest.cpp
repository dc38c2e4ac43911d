#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "HexBytes.h"
#include "jet/format/IndexPage.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr JetVersion kVersion = JetVersion::Jet4;

using Page = std::vector<std::uint8_t>;

/// A page of the given bytes at 0 and at the entries, the mask having the given ends.
Page PageOf(const char* head, const char* entries, std::initializer_list<std::size_t> ends) {
  Page page(4096);
  const std::string start = Hex(head);
  std::copy(start.begin(), start.end(), page.begin());
  const std::string body = Hex(entries);
  std::copy(body.begin(), body.end(), page.begin() + 0x1E0);
  for (const std::size_t end : ends) {
    page[27 + end / 8] = static_cast<std::uint8_t>(page[27 + end / 8] | (1U << (end % 8)));
  }
  return page;
}

IndexPageView Open(const Page& page) {
  const Result<IndexPageView> view = IndexPageView::Open(kVersion, page, 1);
  EXPECT_TRUE(view.ok());
  return view.value();
}

Page Build(const IndexPage& content, JetVersion version = kVersion) {
  Page page(LayoutOf(version).page_size, 0xCC);
  EXPECT_TRUE(BuildIndexPage(version, content, page));
  return page;
}

IndexEntry EntryOf(const char* key, PageNumber page, std::uint8_t row, PageNumber child = 0) {
  return {Hex(key), {.page = page, .row = row}, child};
}

// The primary key of a real table with three rows.
const char* const kLeafHead =
    "04 01 05 0E 1B 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 02 04 08";
const char* const kLeafEntries =
    "7F 80 00 00 00 00 00 3C 00 7F 80 00 00 01 00 00 3C 01 7F 80 00 00 02 00 00 3C 02";

TEST(IndexPage, ReadsALeaf) {
  const Page page = PageOf(kLeafHead, kLeafEntries, {});
  const IndexPageView view = Open(page);
  EXPECT_TRUE(view.leaf());
  EXPECT_EQ(view.owner(), 27U);
  ASSERT_EQ(view.count(), 3U);
  EXPECT_EQ(view.Entry(1), EntryOf("7F 80 00 00 01", 60, 1));
  EXPECT_EQ(view.used(), 27U);
  EXPECT_EQ(view.free_space(), 4096U - 0x1FB);
}

TEST(IndexPage, IsWrittenAsTheApplicationWritesIt) {
  const Page page = PageOf(kLeafHead, kLeafEntries, {});
  EXPECT_EQ(ToHex(AsText(Build(Open(page).Load()))), ToHex(AsText(page)));
}

// A node above two leaves, and the first of these with a prefix of three bytes, in descending
// order.
TEST(IndexPage, ReadsANodeWithItsTail) {
  const Page page = PageOf(
      "03 01 13 0E 0F 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 21 00 00 00"
      "00 00 01 00 20",
      "80 7F FF FF EC 00 00 11 00 00 00 00 20", {});
  const IndexPageView view = Open(page);
  EXPECT_FALSE(view.leaf());
  EXPECT_EQ(view.level(), 1);
  EXPECT_EQ(view.tail(), 33U);
  ASSERT_EQ(view.count(), 1U);
  EXPECT_EQ(view.Entry(0), EntryOf("80 7F FF FF EC", 17, 0, 32));
  EXPECT_EQ(ToHex(AsText(Build(view.Load()))), ToHex(AsText(page)));
}

TEST(IndexPage, ReadsEntriesWithoutTheirPrefix) {
  const Page page = PageOf(
      "04 01 00 00 0F 00 00 00 00 00 00 00 00 00 00 00 21 00 00 00 00 00 00 00"
      "03 00 00",
      "80 7F FF ED 32 00 00 14 38 ED 33 00 00 14 37 ED 34 00 00 14 36", {9, 15, 21});
  const IndexPageView view = Open(page);
  EXPECT_EQ(view.prefix(), 3U);
  EXPECT_EQ(view.next(), 33U);
  ASSERT_EQ(view.count(), 3U);
  EXPECT_EQ(view.Entry(0), EntryOf("80 7F FF ED 32", 20, 56));
  EXPECT_EQ(view.Entry(2), EntryOf("80 7F FF ED 34", 20, 54));
}

// As in a real file of Access 97: all keys are the same, and so is the first byte of the pointers.
TEST(IndexPage, ReadsAPrefixThatRunsIntoThePointers) {
  const Page page = PageOf(
      "04 01 00 00 0F 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
      "06 00 00",
      "7F 80 00 00 01 00 01 8F 00 01 8F 01 02 C3 01", {9, 12, 15});
  const IndexPageView view = Open(page);
  ASSERT_EQ(view.count(), 3U);
  EXPECT_EQ(view.Entry(0), EntryOf("7F 80 00 00 01", 399, 0));
  EXPECT_EQ(view.Entry(1), EntryOf("7F 80 00 00 01", 399, 1));
  EXPECT_EQ(view.Entry(2), EntryOf("7F 80 00 00 01", 0x2C3, 1));
  Page changed = page;
  EXPECT_FALSE(InsertEntry(view, kVersion, 3, EntryOf("7F 80 00 00 01", 0x300, 1), changed));
  EXPECT_EQ(changed, page);
}

// Rows of one key whose pointers differ in the last two bytes alone.
TEST(IndexPage, ReadsAsManyEntriesAsAPageHolds) {
  Page page = PageOf(
      "04 01 00 00 0F 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
      "07 00 00",
      "7F 80 00 00 01 00 01 00 00", {9});
  constexpr std::size_t kEntries = 1500;
  for (std::size_t i = 1; i < kEntries; ++i) {
    const std::size_t end = 9 + 2 * i;
    page[0x1E0 + end - 2] = static_cast<std::uint8_t>(i / 250);
    page[0x1E0 + end - 1] = static_cast<std::uint8_t>(i % 250);
    page[27 + end / 8] = static_cast<std::uint8_t>(page[27 + end / 8] | (1U << (end % 8)));
  }
  const IndexPageView view = Open(page);
  ASSERT_EQ(view.count(), kEntries);
  for (std::size_t i = 0; i < kEntries; ++i) {
    const RowPointer row = {.page = static_cast<PageNumber>(0x100 + i / 250),
                            .row = static_cast<std::uint8_t>(i % 250)};
    ASSERT_EQ(view.Entry(i), EntryOf("7F 80 00 00 01", row.page, row.row));
    ASSERT_EQ(view.LowerBound(Hex("7F 80 00 00 01"), row), i);
  }
}

struct BoundCase {
  const char* what;
  const char* key;
  RowPointer row;
  std::size_t found;
};

constexpr BoundCase kBounds[] = {
    {"below all", "7F 7F", {}, 0},
    {"the first entry", "7F 80 00 00 00", {.page = 60, .row = 0}, 0},
    {"any row of a key", "7F 80 00 00 01", {}, 1},
    {"a later row of a key", "7F 80 00 00 01", {.page = 60, .row = 2}, 2},
    {"a later page wins over a row", "7F 80 00 00 01", {.page = 61, .row = 0}, 2},
    {"a shorter key comes first", "7F 80 00 00", {.page = 99, .row = 9}, 0},
    {"a longer key comes after", "7F 80 00 00 01 00", {}, 2},
    {"above all", "7F 81", {}, 3},
};

TEST(LowerBound, FindsTheFirstEntryNotBelow) {
  const Page page = PageOf(kLeafHead, kLeafEntries, {});
  for (const BoundCase& row : kBounds) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Open(page).LowerBound(Hex(row.key), row.row), row.found);
  }
}

struct DamageCase {
  const char* what;
  const char* head;
  std::initializer_list<std::size_t> ends;
};

const DamageCase kDamage[] = {
    {"another type", "01 01", {9}},
    {"an entry shorter than its pointer", "04 01", {3}},
    {"one within the entries", "04 01", {9, 11}},
    {"a node's entry shorter than its pointers", "03 01", {7}},
    {"an entry of no bytes", "04 01", {0}},
    {"an end behind the page", "04 01", {9, 3617}},
    {"a prefix longer than the first entry",
     "04 01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 0A 00",
     {9, 18}},
};

TEST(IndexPageView, RefusesDamage) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(IndexPageView::Open(kVersion, PageOf(row.head, "", row.ends), 5).number(),
              kCannotOpenDatabase);
  }
  EXPECT_EQ(IndexPageView::Open(kVersion, ByteView(Page(4096)).first(100), 5).number(),
            kCannotOpenDatabase);
}

std::vector<IndexEntry> Numbered(std::size_t count, const char* prefix) {
  std::vector<IndexEntry> entries;
  for (std::size_t i = 0; i < count; ++i) {
    std::string key = Hex(prefix);
    key.push_back(static_cast<char>(i >> 8U));
    key.push_back(static_cast<char>(i));
    entries.push_back({key, {.page = static_cast<PageNumber>(i), .row = 1}, 0});
  }
  return entries;
}

struct PrefixCase {
  const char* what;
  std::vector<IndexEntry> entries;
  std::size_t prefix;
  std::size_t size;
};

const PrefixCase kPrefixes[] = {
    {"none", {}, 0, 0},
    {"one entry has none", {EntryOf("7F 01", 1, 1)}, 0, 6},
    {"what first and last share", {EntryOf("7F 01 02", 1, 1), EntryOf("7F 01 03", 1, 1)}, 2, 12},
    {"equal keys", {EntryOf("7F 01", 1, 1), EntryOf("7F 01", 1, 2)}, 2, 10},
    {"not more than the shortest", {EntryOf("7F", 1, 1), EntryOf("7F 01", 1, 2)}, 1, 10},
    {"an end that differs from its neighbours in no order",
     {EntryOf("7F 01", 1, 1), EntryOf("00", 1, 3), EntryOf("7F 01", 1, 2)},
     0,
     17},
    {"nothing shared", {EntryOf("00", 1, 1), EntryOf("7F 01", 1, 2)}, 0, 11},
};

TEST(BestPrefix, IsCommonToAllKeys) {
  for (const PrefixCase& row : kPrefixes) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(BestPrefix(row.entries), row.prefix);
    EXPECT_EQ(PackedSize(row.entries, true), row.size);
  }
}

TEST(BuildIndexPage, PacksOnlyWhatWouldNotFit) {
  const std::size_t room = IndexPageRoom(kVersion);
  EXPECT_EQ(room, 3616U);
  const std::size_t size = 10 + 2 + 4;
  const char* const prefix = "7F 11 22 33 44 55 66 77 88 99";
  const IndexPage fits = {.entries = Numbered(room / size, prefix)};
  EXPECT_EQ(Open(Build(fits)).prefix(), 0U);
  const IndexPage packed = {.owner = 4, .previous = 5, .next = 6, .entries = Numbered(500, prefix)};
  const Page page = Build(packed);
  EXPECT_EQ(Open(page).prefix(), 10U);
  EXPECT_EQ(Open(page).Load(), packed);
  const IndexPage too_many = {.entries = Numbered(700, prefix)};
  Page kept(4096, 0xAB);
  EXPECT_FALSE(BuildIndexPage(kVersion, too_many, kept));
  EXPECT_EQ(kept, Page(4096, 0xAB));
}

// A damaged page may hold its entries in no order; to write it again must not change their keys.
TEST(BuildIndexPage, KeepsEveryKeyOfAPageInNoOrder) {
  IndexPage content = {.entries = Numbered(220, "7F 11 22 33 44 55 66 77 88 99")};
  content.entries[100].key = Hex("01 02 03 04 05 06 07 08 09 0A 0B 0C");
  Page page(4096);
  ASSERT_TRUE(BuildIndexPage(kVersion, content, page));
  EXPECT_EQ(Open(page).Load(), content);
  content.entries = Numbered(400, "7F 11 22 33 44 55 66 77 88 99");
  content.entries[100].key = Hex("7F 11 02 03 04 05 06 07 08 09 0A 0B");
  EXPECT_FALSE(BuildIndexPage(kVersion, content, page)) << "two bytes shared do not make it fit";
}

TEST(BuildIndexPage, KeepsToTheFormOfAccess97) {
  const IndexPage content = {
      .level = 1, .leaf = false, .owner = 4, .tail = 9, .entries = {EntryOf("7F 01", 3, 1, 8)}};
  const Page page = Build(content, JetVersion::Jet3);
  EXPECT_EQ(page.size(), 2048U);
  EXPECT_EQ(page[21], 1);
  const Result<IndexPageView> view = IndexPageView::Open(JetVersion::Jet3, page, 1);
  ASSERT_TRUE(view.ok());
  EXPECT_EQ(view.value().Load(), content);
}

// A page and a sorted list go the same way through many random insertions and removals.
TEST(InsertEntry, AgreesWithAModel) {
  std::mt19937 random(11);
  for (const bool leaf : {true, false}) {
    IndexPage model = {.level = static_cast<std::uint8_t>(leaf ? 0 : 1), .leaf = leaf, .owner = 3};
    Page page = Build(model);
    int in_place = 0;
    for (int step = 0; step < 4000; ++step) {
      const IndexPageView view = Open(page);
      IndexEntry entry = {std::string("\x7F\x11\x22\x33", 4),
                          {.page = static_cast<PageNumber>(random() % 5000), .row = 1},
                          0};
      entry.key.append(random() % 9, static_cast<char>(random() % 256));
      if (!leaf) entry.child = static_cast<PageNumber>(random());
      const std::size_t at = view.LowerBound(entry.key, entry.row);
      std::vector<IndexEntry>& entries = model.entries;
      if (random() % 5 != 0) {
        if (at < view.count() && view.Compare(at, entry.key, entry.row) == 0) continue;
        entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(at), entry);
        if (InsertEntry(view, kVersion, at, entry, page)) {
          ++in_place;
        } else if (!BuildIndexPage(kVersion, model, page)) {
          entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(at));
        }
      } else if (at < view.count()) {
        entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(at));
        if (RemoveEntry(view, kVersion, at, page)) {
          ++in_place;
        } else {
          ASSERT_TRUE(BuildIndexPage(kVersion, model, page));
        }
      }
      const IndexPageView after = Open(page);
      ASSERT_EQ(after.free_space(), IndexPageRoom(kVersion) - after.used());
      ASSERT_EQ(after.Load(), model) << "step " << step;
    }
    EXPECT_GT(in_place, 500);
  }
}

TEST(RemoveEntry, EmptiesAPage) {
  const IndexPage one = {.entries = {EntryOf("7F 01", 1, 1)}};
  Page page = Build(one);
  ASSERT_TRUE(RemoveEntry(Open(page), kVersion, 0, page));
  EXPECT_EQ(Open(page).Load(), IndexPage{});
  EXPECT_EQ(Open(page).free_space(), IndexPageRoom(kVersion));
}

TEST(CompareEntries, GoesByKeyThenPageThenRow) {
  const IndexEntry ascending[] = {EntryOf("7F", 1, 1), EntryOf("7F", 1, 2), EntryOf("7F", 2, 0),
                                  EntryOf("7F 00", 0, 0), EntryOf("80", 0, 0)};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t k = 0; k < std::size(ascending); ++k) {
      EXPECT_EQ(
          CompareEntries(ascending[i].key, ascending[i].row, ascending[k].key, ascending[k].row),
          i < k   ? -1
          : i > k ? 1
                  : 0);
    }
  }
}

}  // namespace
}  // namespace zent::jet
