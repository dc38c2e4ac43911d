#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "jet/catalog/Transaction.h"
#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/samples/SamplePaths.h"
#include "jet/schema/Schema.h"
#include "jet/tools/Verify.h"
#include "support/TempFolder.h"

/// Real files are changed, in memory: each user table loses a third of its rows, and gets its rows
/// once more; a new table is made. Then everything must be in order.
namespace zent::jet::testing {
namespace {

using ::testing::IsEmpty;

constexpr int kNewRows = 2000;

struct Changes {
  std::size_t inserted = 0;
  std::size_t refused = 0;
  std::size_t deleted = 0;
};

std::vector<RowPointer> RowsOf(Table& table) {
  std::vector<RowPointer> rows;
  RowScan scan(table.store().rows());
  for (;;) {
    const Result<bool> found = scan.Next();
    EXPECT_TRUE(found.ok());
    if (!found.value_or(false)) return rows;
    rows.push_back(scan.at());
  }
}

void CopyRow(Table& table, RowPointer at, Changes& changes) {
  Result<std::vector<Value>> values = table.store().Fetch(at);
  ASSERT_TRUE(values.ok()) << values.error().description;
  for (std::size_t i = 0; i < values.value().size(); ++i) {
    if (table.definition().columns[i].IsAutoNumber()) values.value()[i] = Null();
  }
  // A key that must be unique, and a relationship, may refuse the copy.
  table.Insert(values.value()).ok() ? ++changes.inserted : ++changes.refused;
}

void ChangeTable(Table& table, Changes& changes) {
  const std::vector<RowPointer> rows = RowsOf(table);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i % 3 == 0) {
      table.Delete(rows[i]).ok() ? ++changes.deleted : ++changes.refused;
    } else {
      CopyRow(table, rows[i], changes);
    }
  }
}

void MakeTable(Catalog& catalog) {
  const NewTable table = {
      .name = "Zent made this",
      .columns = {{.name = "Id", .type = ColumnType::Long, .auto_number = true},
                  {.name = "Name", .type = ColumnType::Text, .size = 50},
                  {.name = "Notes", .type = ColumnType::Memo}},
      .indexes = {{.name = "Key", .columns = {{.name = "Id"}}, .unique = true, .primary = true},
                  {.name = "ByName", .columns = {{.name = "Name"}}}}};
  const Status made = Schema(catalog).CreateTable(table);
  ASSERT_TRUE(made.ok()) << made.error().description;
  Table& opened = *catalog.OpenTable(table.name).value();
  for (int i = 0; i < kNewRows; ++i) {
    std::vector<Value> values(3);
    values[opened.PositionOf("Name").value()] = "Name " + std::to_string(i * 7919 % kNewRows);
    values[opened.PositionOf("Notes").value()] = std::string(static_cast<std::size_t>(i), 'n');
    const Result<RowPointer> row = opened.Insert(values);
    ASSERT_TRUE(row.ok()) << row.error().description;
  }
}

void ChangeFile(MemoryStorage& storage, Changes& changes) {
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::Exclusive));
  ASSERT_TRUE(pager.ok()) << pager.error().description;
  const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager.value());
  ASSERT_TRUE(catalog.ok()) << catalog.error().description;
  Result<Transaction> transaction = Transaction::Begin(*catalog.value());
  ASSERT_TRUE(transaction.ok()) << transaction.error().description;
  const Result<std::vector<CatalogObject>> tables = catalog.value()->Tables();
  ASSERT_TRUE(tables.ok()) << tables.error().description;
  for (const CatalogObject& object : tables.value()) {
    if (object.type != ObjectType::Table || object.IsSystem()) continue;
    SCOPED_TRACE(object.name);
    const Result<Table*> table = catalog.value()->OpenTable(object.name);
    ASSERT_TRUE(table.ok()) << table.error().description;
    ChangeTable(*table.value(), changes);
  }
  MakeTable(*catalog.value());
  const Status committed = transaction.value().Commit();
  ASSERT_TRUE(committed.ok()) << committed.error().description;
}

std::vector<std::string> FaultsOf(MemoryStorage& storage) {
  std::vector<std::string> faults;
  const Result<std::unique_ptr<Pager>> pager =
      Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
  EXPECT_TRUE(pager.ok());
  const Result<VerifySummary> summary =
      VerifyDatabase(*pager.value(), [&](const std::string& line) { faults.push_back(line); });
  EXPECT_TRUE(summary.ok());
  return faults;
}

TEST(SampleWrite, LeavesRealFilesInOrder) {
  Changes changes;
  for (const std::filesystem::path& path : SamplePaths()) {
    const std::string bytes = zent::testing::ReadHostFile(path);
    if (ReadVersion(AsBytes(bytes)).value() != JetVersion::Jet4) continue;
    SCOPED_TRACE(path.filename().string());
    MemoryStorage storage;
    storage.Put(kPath, bytes);
    ChangeFile(storage, changes);
    EXPECT_THAT(FaultsOf(storage), IsEmpty());
  }
  EXPECT_GT(changes.inserted, 100U);
  EXPECT_GT(changes.deleted, 100U);
}

}  // namespace
}  // namespace zent::jet::testing
