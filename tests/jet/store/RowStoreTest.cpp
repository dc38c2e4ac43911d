#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/StoreFile.h"
#include "jet/format/JetErrors.h"
#include "jet/store/RowStore.h"

namespace zent::jet::testing {
namespace {

using Rows = std::map<RowPointer, std::string>;

struct Table {
  explicit Table(std::size_t cache_pages = 4096) : file(cache_pages) {}

  RowPointer Insert(const std::string& row) {
    const Result<RowPointer> at = rows.Insert(AsBytes(row));
    EXPECT_TRUE(at.ok()) << at.error().description;
    return at.value_or({});
  }
  std::string Fetch(RowPointer at) {
    const Result<StoredRow> row = rows.Fetch(at);
    return row.ok() ? std::string(AsText(row.value().bytes)) : row.error().description;
  }
  Rows Scan() {
    Rows found;
    RowScan scan(rows);
    for (;;) {
      const Result<bool> more = scan.Next();
      EXPECT_TRUE(more.ok()) << more.error().description;
      if (!more.value_or(false)) return found;
      EXPECT_TRUE(found.empty() || found.rbegin()->first < scan.at());
      found.emplace(scan.at(), AsText(scan.bytes()));
    }
  }
  RowPages::Owner owner() { return {.number = definition, .owned = owned, .free = free}; }
  std::size_t PageCount() { return ExpectRightRowPages(file, owner()).size(); }

  StoreFile file;
  PageNumber definition = file.NewPage();
  RowPointer owned = file.NewMap();
  RowPointer free = file.NewMap();
  RowStore rows{file.maps(), definition, owned, free};
};

TEST(RowStore, FillsPagesOneAfterTheOther) {
  Table table;
  Rows model;
  for (unsigned i = 0; i < 100; ++i) {
    const std::string row = SampleBytes(98, i);
    model.emplace(table.Insert(row), row);
  }
  EXPECT_EQ(table.Scan(), model);
  EXPECT_EQ(table.PageCount(), 3U);  // 36 rows until an eighth of a page is left
}

TEST(RowStore, KeepsTheRowPointerOfARowThatGrows) {
  Table table;
  std::vector<RowPointer> at;
  for (unsigned i = 0; i < 8; ++i) at.push_back(table.Insert(SampleBytes(450, i)));
  const std::string grown = SampleBytes(3000, 77);
  ASSERT_TRUE(table.rows.Update(at[2], AsBytes(grown)).ok());
  EXPECT_EQ(table.Fetch(at[2]), grown);
  EXPECT_EQ(table.Scan().size(), 8U);
  EXPECT_EQ(table.Scan()[at[2]], grown);
  // It grows on its new page, moves to a third, and is never two hops away.
  const std::string larger = SampleBytes(4060, 78);
  ASSERT_TRUE(table.rows.Update(at[2], AsBytes(larger)).ok());
  EXPECT_EQ(table.Fetch(at[2]), larger);
  EXPECT_EQ(table.Scan()[at[2]], larger);
  EXPECT_EQ(table.PageCount(), 2U);
  ASSERT_TRUE(table.rows.Delete(at[2]).ok());
  EXPECT_EQ(table.rows.Fetch(at[2]).number(), kRecordDeleted);
  EXPECT_EQ(table.PageCount(), 1U);
  EXPECT_EQ(table.Scan().size(), 7U);
}

TEST(RowStore, GivesNoSlotToAnotherRow) {
  Table table;
  const RowPointer first = table.Insert("first row");
  const RowPointer second = table.Insert("second row");
  ASSERT_TRUE(table.rows.Delete(second).ok());
  EXPECT_NE(table.Insert("third row"), second);
  EXPECT_EQ(table.Fetch(first), "first row");
  EXPECT_EQ(table.rows.Update(second, AsBytes("again")).number(), kRecordDeleted);
  EXPECT_EQ(table.rows.Delete(second).number(), kRecordDeleted);
}

TEST(RowStore, RefusesRowsThatNoPageTakes) {
  Table table;
  const RowPointer at = table.Insert(SampleBytes(4060, 1));
  EXPECT_EQ(table.rows.Insert(AsBytes(SampleBytes(4061, 1))).number(), kRecordTooLarge);
  EXPECT_EQ(table.rows.Update(at, AsBytes(SampleBytes(4061, 1))).number(), kRecordTooLarge);
  EXPECT_EQ(table.PageCount(), 1U);
}

TEST(RowStore, ScansWhileRowsChange) {
  Table table;
  for (unsigned i = 0; i < 200; ++i) table.Insert(SampleBytes(100, i));
  RowScan scan(table.rows);
  std::size_t seen = 0;
  while (scan.Next().value_or(false)) {
    ++seen;
    if (seen % 3 == 0) {
      ASSERT_TRUE(table.rows.Update(scan.at(), AsBytes(SampleBytes(600, 1))).ok());
    } else {
      ASSERT_TRUE(table.rows.Delete(scan.at()).ok());
    }
  }
  EXPECT_EQ(seen, 200U);
  EXPECT_EQ(table.Scan().size(), 66U);
}

TEST(RowStore, GoesOnBehindARow) {
  Table table;
  for (unsigned i = 0; i < 100; ++i) table.Insert(SampleBytes(100, i));
  const Rows all = table.Scan();
  for (auto row = all.begin(); row != all.end(); ++row) {
    RowScan scan(table.rows);
    scan.MoveBehind(row->first);
    const bool more = scan.Next().value_or(false);
    ASSERT_EQ(more, std::next(row) != all.end());
    if (more) {
      EXPECT_EQ(scan.at(), std::next(row)->first);
    }
  }
}

TEST(RowStore, ReadsEachPageOfAScanOnce) {
  Table table(16);  // pages of memory
  for (unsigned i = 0; i < 5000; ++i) table.Insert(SampleBytes(100, i));
  table.file.Commit();
  const std::size_t pages = table.file.maps().Pages(table.owned).value().size();
  const std::uint64_t before = table.file.pager().counters().pages_read;
  EXPECT_EQ(table.Scan().size(), 5000U);
  EXPECT_LE(table.file.pager().counters().pages_read - before, pages + pages / 10);
  EXPECT_GE(pages, 130U);
}

/// The file has exactly the model's rows, and every page of it a use.
void ExpectEqual(Table& table, const Rows& model) {
  EXPECT_EQ(table.Scan(), model);
  for (const auto& [at, row] : model) EXPECT_EQ(table.Fetch(at), row);
  const std::vector<PageNumber> owned = ExpectRightRowPages(table.file, table.owner());
  std::set<PageNumber> named(owned.begin(), owned.end());
  named.insert({table.definition, table.owned.page});
  ExpectAllPagesNamed(table.file, named);
}

TEST(RowStore, EqualsAModelAfterRandomChanges) {
  Table table;
  Rows model;
  std::mt19937 random(9);
  for (unsigned step = 0; step < 4000; ++step) {
    const std::string row = SampleBytes(4 + random() % (random() % 5 == 0 ? 4000 : 300), step);
    const unsigned what = static_cast<unsigned>(random() % 10);
    if (model.size() < 5 || what < 4) {
      ASSERT_TRUE(model.emplace(table.Insert(row), row).second);
    } else {
      const auto at =
          std::next(model.begin(), static_cast<std::ptrdiff_t>(random() % model.size()));
      if (what < 7) {
        ASSERT_TRUE(table.rows.Update(at->first, AsBytes(row)).ok());
        at->second = row;
      } else {
        ASSERT_TRUE(table.rows.Delete(at->first).ok());
        model.erase(at);
      }
    }
    if (step % 400 == 0) ExpectEqual(table, model);
  }
  while (!model.empty()) {
    ASSERT_TRUE(table.rows.Delete(model.begin()->first).ok());
    model.erase(model.begin());
  }
  ExpectEqual(table, model);
}

TEST(RowStore, FindsItsWayAfterARollback) {
  Table table;
  table.Insert("kept");
  table.file.Commit();
  for (unsigned i = 0; i < 100; ++i) table.Insert(SampleBytes(200, i));
  table.file.Rollback();
  for (unsigned i = 0; i < 10; ++i) table.file.NewPage();
  table.Insert("behind");
  EXPECT_EQ(table.Scan().size(), 2U);
  EXPECT_EQ(table.PageCount(), 1U);
}

struct DamageCase {
  const char* what;
  std::size_t at;  ///< of the page with rows
  std::vector<std::uint8_t> bytes;
  int fetch;  ///< error of fetching slot 0
};
const DamageCase kDamage[] = {
    {"the page of another table", 4, {0x55}, kCannotOpenDatabase},
    {"no data page", 0, {4}, kCannotOpenDatabase},
    {"more slots than a page holds", 12, {0xFF, 0x0F}, kCannotOpenDatabase},
    {"a row beyond the page", 14, {0xFF, 0x1F}, kCannotOpenDatabase},
    {"a row over the directory", 14, {0x02, 0x00}, kCannotOpenDatabase},
    {"a pointer to itself", 14, {0x00, 0x40 | 0x0F}, kCannotOpenDatabase},
};
TEST(RowStore, RefusesDamageAndLeavesThePage) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    Table table;
    const RowPointer at = table.Insert(SampleBytes(256, 1));
    table.file.Overwrite(at.page, 0x0F00, {0, static_cast<std::uint8_t>(at.page), 0, 0});
    table.file.Overwrite(at.page, row.at, row.bytes);
    RowScan scan(table.rows);
    EXPECT_EQ(table.rows.Fetch(at).number(), row.fetch);
    EXPECT_EQ(scan.Next().number(), kCannotOpenDatabase);
    EXPECT_EQ(table.rows.Update(at, AsBytes("new row")).number(), kCannotOpenDatabase);
    EXPECT_EQ(table.rows.Delete(at).number(), kCannotOpenDatabase);
  }
  Table table;
  EXPECT_EQ(table.rows.Fetch({.page = 5000, .row = 0}).number(), kCannotOpenDatabase);
  EXPECT_EQ(table.rows.Fetch({.page = 0, .row = 0}).number(), kCannotOpenDatabase);
}

TEST(RowStore, RefusesAPointerToARowThatHasNotMoved) {
  Table table;
  const RowPointer first = table.Insert(SampleBytes(256, 1));
  const RowPointer second = table.Insert(SampleBytes(256, 2));
  table.file.Overwrite(first.page, 0x0F00, {second.row, static_cast<std::uint8_t>(second.page), 0});
  table.file.Overwrite(first.page, 0x0F03, {0});
  table.file.Overwrite(first.page, 14, {0x00, 0x4F});
  EXPECT_EQ(table.rows.Fetch(first).number(), kCannotOpenDatabase);
  EXPECT_EQ(table.Fetch(second), SampleBytes(256, 2));
}

TEST(RowStore, RefusesARowThatHasMovedTwice) {
  Table table;
  const RowPointer first = table.Insert(SampleBytes(256, 1));
  const RowPointer second = table.Insert(SampleBytes(256, 2));
  const RowPointer third = table.Insert(SampleBytes(256, 3));
  table.file.OverwriteU32(first.page, 0x0F00, second.packed());
  table.file.OverwriteU32(first.page, 0x0E00, third.packed());
  table.file.Overwrite(first.page, 14, {0x00, 0x4F, 0x00, 0x4E, 0x00, 0x8D});
  EXPECT_EQ(table.Fetch(second), SampleBytes(256, 3));
  EXPECT_EQ(table.rows.Fetch(first).number(), kCannotOpenDatabase);
  EXPECT_EQ(table.rows.Update(first, AsBytes("new row")).number(), kCannotOpenDatabase);
  EXPECT_EQ(table.rows.Delete(first).number(), kCannotOpenDatabase);
}

}  // namespace
}  // namespace zent::jet::testing
