#include "jet/fakes/SampleTable.h"

#include <gtest/gtest.h>

#include "jet/fakes/TestDatabase.h"

namespace zent::jet::testing {
namespace {

constexpr int kFirstRows = 40;
constexpr int kMostRows = 140;

/// The rows as they are found, to be changed while they are gone through.
Result<std::vector<RowPointer>> RowsOf(TableStore& table) {
  std::vector<RowPointer> rows;
  RowScan scan(table.rows());
  for (;;) {
    const Result<bool> more = scan.Next();
    if (!more.ok()) return more.error();
    if (!more.value()) return rows;
    rows.push_back(scan.at());
  }
}

Status InsertRows(TableStore& table, int first, int end) {
  for (int number = first; number < end; ++number) {
    const std::size_t note_size = number % 5 == 0 ? 9000U : static_cast<std::size_t>(number) * 7U;
    std::vector<Value> values = SampleTable::Row(number, note_size);
    const Result<RowPointer> at = table.Insert(values);
    if (!at.ok()) return at.error();
  }
  return {};
}

/// Every `step`-th row gets other texts, longer ones, so that some move to other pages.
Status ChangeRows(TableStore& table, std::size_t step) {
  const Result<std::vector<RowPointer>> rows = RowsOf(table);
  if (!rows.ok()) return rows.error();
  for (std::size_t i = 0; i < rows.value().size(); i += step) {
    const ColumnChange changes[] = {
        {SampleTable::Code, "moved " + std::to_string(i * 37 % 100)},
        {SampleTable::City, std::string(60, static_cast<char>('a' + i % 26))},
        {SampleTable::Note, std::string(i % 2 == 0 ? 5000 : 3, 'm')},
    };
    if (Status done = table.Update(rows.value()[i], changes); !done.ok()) return done;
  }
  return {};
}

Status DeleteRows(TableStore& table, std::size_t step) {
  const Result<std::vector<RowPointer>> rows = RowsOf(table);
  if (!rows.ok()) return rows.error();
  for (std::size_t i = 0; i < rows.value().size(); i += step) {
    if (Status done = table.Delete(rows.value()[i]); !done.ok()) return done;
  }
  return {};
}

Status MakeChange(TableStore& table, std::size_t change) {
  switch (change) {
    case 0:
      return InsertRows(table, 0, kFirstRows);
    case 1:
      return ChangeRows(table, 3);
    case 2:
      return DeleteRows(table, 2);
    default:
      if (Status done = InsertRows(table, kFirstRows, kMostRows); !done.ok()) return done;
      return DeleteRows(table, 4);
  }
}

}  // namespace

std::string SampleTable::Make() {
  MemoryStorage storage;
  storage.Put(kPath, EmptyStoreFile());
  {
    StoreFile file(storage, kPath);
    TableBuilder(file)
        .AutoNumber("Id")
        .Column("Code", ColumnType::Text, 100)
        .Column("City", ColumnType::Text, 120)
        .Column("Born", ColumnType::Date)
        .Column("Note", ColumnType::Memo)
        .Index({Id}, kUniqueIndex | kRequiredIndex, true)
        .Index({Code}, kUniqueIndex)
        .Index({City, ~Born})
        .Build();
    file.Commit();
  }
  return storage.Bytes(kPath);
}

std::unique_ptr<TableStore> SampleTable::Open(StoreFile& file) {
  Result<std::unique_ptr<TableStore>> table = TableStore::Open(file.maps(), kDefinition);
  EXPECT_TRUE(table.ok()) << table.error().description;
  return std::move(table.value());
}

std::vector<Value> SampleTable::Row(int number, std::size_t note_size) {
  const auto letter = static_cast<char>('a' + number % 26);
  return {Null(), "code " + std::to_string(number * 7919 % 10007), std::string(20, letter),
          Date{static_cast<double>(number)}, std::string(note_size, letter)};
}

Status ChangeSampleTable(Storage& storage, std::string_view path, std::size_t& committed) {
  committed = 0;
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, path, Opened(Sharing::Exclusive, kTableCachePages));
  if (!pager.ok()) return pager.error();
  UsageMaps maps(*pager.value());
  const Result<std::unique_ptr<TableStore>> table =
      TableStore::Open(maps, SampleTable::kDefinition);
  if (!table.ok()) return table.error();
  for (; committed < kTableChanges; ++committed) {
    PageTransaction transaction(*pager.value());
    if (!transaction.status().ok()) return transaction.status();
    if (Status made = MakeChange(*table.value(), committed); !made.ok()) return made;
    if (Status done = transaction.Commit(); !done.ok()) return done;
  }
  return {};
}

std::vector<TableRows> SampleTableStates() {
  std::vector<TableRows> states;
  MemoryStorage storage;
  storage.Put(kPath, SampleTable::Make());
  StoreFile file(storage, kPath);
  const std::unique_ptr<TableStore> table = SampleTable::Open(file);
  states.push_back(ExpectRightTable(file, *table));
  for (std::size_t change = 0; change < kTableChanges; ++change) {
    const Status made = MakeChange(*table, change);
    EXPECT_TRUE(made.ok()) << made.error().description;
    states.push_back(ExpectRightTable(file, *table));
    file.Commit();
  }
  return states;
}

TableRows ExpectRightSampleTable(Storage& storage, std::string_view path) {
  StoreFile file(storage, path);
  const std::unique_ptr<TableStore> table = SampleTable::Open(file);
  return ExpectRightTable(file, *table);
}

}  // namespace zent::jet::testing
