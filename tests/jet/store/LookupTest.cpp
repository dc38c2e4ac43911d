#include <gtest/gtest.h>

#include "jet/fakes/TableBuilder.h"
#include "jet/fakes/TestDatabase.h"

/// What finding one row by its key costs in pages, nothing being in memory.
namespace zent::jet::testing {
namespace {

constexpr int kRows = 6000;
constexpr std::size_t kHeight = 3;

std::string KeyText(int number) {
  return std::to_string(100'000 + number) + " is long enough a key to make the tree high";
}

/// A table with a text key in a file of its own.
struct KeyedFile {
  KeyedFile() {
    storage.Put(kPath, EmptyStoreFile());
    StoreFile file(storage, kPath);
    const std::unique_ptr<TableStore> table = TableBuilder(file)
                                                  .Column("Code", ColumnType::Text, 200)
                                                  .Column("Number", ColumnType::Long)
                                                  .Index({0}, kUniqueIndex, true)
                                                  .Build();
    for (int number = 0; number < kRows; ++number) {
      std::vector<Value> values = {KeyText(number * 7 % kRows), number * 7 % kRows};
      EXPECT_TRUE(table->Insert(values).ok());
    }
    file.Commit();
    page = table->page();
    place = table->indexes()[0].tree().place();
    columns = table->indexes()[0].key_columns();
    const auto root = HoldIndexPage(file.pager(), place.root, place.table);
    EXPECT_EQ(root.value().view.level() + 1U, kHeight);
  }

  MemoryStorage storage;
  PageNumber page = 0;
  IndexPlace place;
  std::vector<KeyColumn> columns;
};

TEST(Lookup, ReadsNoMorePagesThanTheTreeIsHigh) {
  KeyedFile keyed;
  for (int number = 0; number < kRows; number += 23) {
    SCOPED_TRACE(number);
    const Result<std::unique_ptr<Pager>> pager =
        Pager::Open(keyed.storage, kPath, Opened(Sharing::Exclusive));
    const std::string key = IndexKey(keyed.columns, std::vector<Value>{KeyText(number)}).value();
    const std::uint64_t before = pager.value()->counters().pages_read;

    IndexCursor cursor(*pager.value(), keyed.place.table, keyed.place.root);
    ASSERT_TRUE(cursor.Seek(key).value_or(false));
    ASSERT_EQ(cursor.key(), key);
    EXPECT_LE(pager.value()->counters().pages_read - before, kHeight);
  }
}

TEST(Lookup, ReadsOneMorePageForTheRow) {
  KeyedFile keyed;
  for (int number = 0; number < kRows; number += 101) {
    SCOPED_TRACE(number);
    const Result<std::unique_ptr<Pager>> pager =
        Pager::Open(keyed.storage, kPath, Opened(Sharing::Exclusive));
    UsageMaps maps(*pager.value());
    const auto table = TableStore::Open(maps, keyed.page);
    const std::uint64_t before = pager.value()->counters().pages_read;

    IndexCursor cursor = table.value()->indexes()[0].tree().Cursor();
    const std::string key = IndexKey(keyed.columns, std::vector<Value>{KeyText(number)}).value();
    ASSERT_TRUE(cursor.Seek(key).value_or(false));
    EXPECT_EQ(table.value()->Fetch(cursor.row()).value_or({}).at(1), Value(number));
    EXPECT_LE(pager.value()->counters().pages_read - before, kHeight + 1);
  }
}

}  // namespace
}  // namespace zent::jet::testing
