#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/samples/SamplePaths.h"
#include "jet/store/TableStore.h"

/// Real files, read as the engine reads them: every row of every table, and every index against
/// the rows.
namespace zent::jet::testing {
namespace {

/// What was read, so that a test that reads nothing shows.
struct Counts {
  std::size_t files = 0;
  std::size_t tables = 0;
  std::size_t rows = 0;
  std::size_t entries = 0;
};

/// The entries of an index, which must be those of the rows.
std::size_t CompareIndex(Pager& pager, TableStore& table, TableIndex& index,
                         const std::set<Entry>& expected) {
  std::set<Entry> found;
  IndexCursor cursor = index.tree().Cursor();
  Result<bool> on = cursor.SeekFirst();
  for (; on.value_or(false); on = cursor.Next()) found.insert({cursor.key(), cursor.row()});
  EXPECT_TRUE(on.ok()) << on.error().description;
  EXPECT_TRUE(found == expected) << found.size() << " entries, not " << expected.size();
  std::size_t backward = 0;
  for (on = cursor.SeekLast(); on.value_or(false); on = cursor.Previous()) ++backward;
  EXPECT_EQ(backward, found.size());
  for (const Entry& entry : expected) {
    EXPECT_TRUE(cursor.Seek(entry.key, entry.row).value_or(false));
    EXPECT_EQ(cursor.Compare(entry.key, entry.row), 0);
    EXPECT_TRUE(table.rows().Fetch(entry.row).ok());
  }
  EXPECT_LT(cursor.on_entry() ? cursor.row().page : 0, pager.page_count());
  return found.size();
}

void ReadTable(Pager& pager, TableStore& table, Counts& counts) {
  std::vector<std::set<Entry>> entries(table.indexes().size());
  RowScan scan(table.rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    ++counts.rows;
    const Result<std::vector<Value>> values = table.Values(scan.bytes(), scan.page());
    EXPECT_TRUE(values.ok()) << values.error().description;
    const Result<RowFields> fields = LoadFields(table.definition(), scan.bytes(), scan.page());
    ASSERT_TRUE(fields.ok());
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const Result<TableIndex::RowKey> key =
          table.indexes()[i].KeyOf(table.definition(), fields.value(), scan.page());
      ASSERT_TRUE(key.ok()) << key.error().description;
      if (key.value().key) entries[i].insert({*key.value().key, scan.at()});
    }
  }
  EXPECT_TRUE(more.ok()) << more.error().description;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    counts.entries += CompareIndex(pager, table, table.indexes()[i], entries[i]);
  }
}

/// The definition pages of the local tables, by the catalog.
std::vector<PageNumber> TablesOf(TableStore& catalog) {
  std::vector<PageNumber> tables;
  RowScan scan(catalog.rows());
  while (scan.Next().value_or(false)) {
    const std::vector<Value> values = catalog.Values(scan.bytes(), scan.page()).value_or({});
    std::int32_t id = 0;
    bool is_table = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
      const std::string& name = catalog.definition().columns[i].name;
      if (name == "Type") is_table = values[i] == Value(std::int16_t{1});
      if (name == "Id" && !IsNull(values[i])) id = std::get<std::int32_t>(values[i]);
    }
    if (is_table) tables.push_back(static_cast<PageNumber>(id));
  }
  return tables;
}

void ReadFile(const std::filesystem::path& path, Counts& counts) {
  std::ifstream file(path, std::ios::binary);
  MemoryStorage storage;
  storage.Put(kPath, std::string(std::istreambuf_iterator<char>(file), {}));
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
  ASSERT_TRUE(pager.ok()) << pager.error().description;
  ++counts.files;
  UsageMaps maps(*pager.value());
  const Result<std::unique_ptr<TableStore>> catalog = TableStore::Open(maps, kObjectsPage);
  ASSERT_TRUE(catalog.ok()) << catalog.error().description;
  for (const PageNumber page : TablesOf(*catalog.value())) {
    SCOPED_TRACE(page);
    const Result<std::unique_ptr<TableStore>> table = TableStore::Open(maps, page);
    ASSERT_TRUE(table.ok()) << table.error().description;
    ++counts.tables;
    ReadTable(*pager.value(), *table.value(), counts);
  }
}

TEST(SampleStore, ReadsEveryRowAndFindsItInEveryIndex) {
  Counts counts;
  for (const std::filesystem::path& path : SamplePaths()) {
    SCOPED_TRACE(path);
    ReadFile(path, counts);
  }
  RecordProperty("rows", static_cast<int>(counts.rows));
  EXPECT_GT(counts.files, 10U);
  EXPECT_GT(counts.tables, 100U);
  EXPECT_GT(counts.rows, 5000U);
  EXPECT_GT(counts.entries, 5000U);
}

}  // namespace
}  // namespace zent::jet::testing
