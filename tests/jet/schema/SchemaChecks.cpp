#include "jet/schema/SchemaChecks.h"

#include <gtest/gtest.h>

#include <set>

#include "jet/fakes/StoreChecks.h"
#include "jet/fakes/TableBuilder.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/schema/NewDatabase.h"

namespace zent::jet::testing {
namespace {

std::unique_ptr<TableStore> OpenAt(StoreFile& file, PageNumber definition) {
  Result<std::unique_ptr<TableStore>> table = TableStore::Open(file.maps(), definition);
  EXPECT_TRUE(table.ok()) << (table.ok() ? "" : table.error().description);
  return table.ok() ? std::move(table.value()) : nullptr;
}

/// Each foreign index of `table` has a partner that points back at it.
void ExpectRightPartners(StoreFile& file, const TableStore& table) {
  for (const LogicalIndex& index : table.definition().logical_indexes) {
    SCOPED_TRACE(index.name);
    if (index.kind != IndexKind::Foreign) {
      EXPECT_EQ(index.partner, -1);
      continue;
    }
    const std::unique_ptr<TableStore> other = OpenAt(file, index.other_table);
    ASSERT_NE(other, nullptr);
    int partners = 0;
    for (const LogicalIndex& candidate : other->definition().logical_indexes) {
      if (static_cast<std::int32_t>(candidate.number) != index.partner) continue;
      ++partners;
      EXPECT_EQ(candidate.kind, IndexKind::Foreign);
      EXPECT_EQ(candidate.other_table, table.page());
      EXPECT_EQ(candidate.partner, static_cast<std::int32_t>(index.number));
      EXPECT_NE(candidate.side, index.side);
    }
    EXPECT_EQ(partners, 1);
  }
}

}  // namespace

std::string EmptyDatabase() {
  MemoryStorage storage;
  const Status made = CreateDatabase(storage, kPath, {.created = {.days = 38000.5}});
  EXPECT_TRUE(made.ok()) << (made.ok() ? "" : made.error().description);
  return storage.Bytes(kPath);
}

std::vector<NamedRow> RowsOf(StoreFile& file, PageNumber definition) {
  std::vector<NamedRow> rows;
  const std::unique_ptr<TableStore> table = OpenAt(file, definition);
  if (table == nullptr) return rows;
  RowScan scan(table->rows());
  while (scan.Next().value_or(false)) {
    const Result<std::vector<Value>> values = table->Values(scan.bytes(), scan.page());
    EXPECT_TRUE(values.ok());
    NamedRow& row = rows.emplace_back();
    for (std::size_t i = 0; i < values.value_or({}).size(); ++i) {
      row[table->definition().columns[i].name] = values.value()[i];
    }
  }
  return rows;
}

void ExpectRightDatabase(StoreFile& file) {
  std::set<PageNumber> named;
  std::set<std::int32_t> ids;
  for (const NamedRow& object : RowsOf(file, kObjectsPage)) {
    const std::int32_t id = std::get<std::int32_t>(object.at("Id"));
    EXPECT_TRUE(ids.insert(id).second);
    if (std::get<std::int16_t>(object.at("Type")) != 1) continue;
    SCOPED_TRACE(std::get<Text>(object.at("Name")));
    const std::unique_ptr<TableStore> table = OpenAt(file, static_cast<PageNumber>(id));
    ASSERT_NE(table, nullptr);
    ExpectRightTable(file, *table, named);
    ExpectRightPartners(file, *table);
  }
  for (PageNumber fixed = 0; fixed <= kRelationshipsPage; ++fixed) named.erase(fixed);
  ExpectAllPagesNamed(file, named);
  for (const NamedRow& right : RowsOf(file, kAcesPage)) {
    EXPECT_EQ(ids.count(std::get<std::int32_t>(right.at("ObjectId"))), 1U);
  }
}

namespace {

std::unique_ptr<Catalog> Opened(StoreFile& file) {
  Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(file.pager());
  EXPECT_TRUE(catalog.ok()) << (catalog.ok() ? "" : catalog.error().description);
  return std::move(catalog.value());
}

}  // namespace

SchemaFile::SchemaFile(const std::string& bytes)
    : file_(bytes), catalog_(Opened(file_)), schema_(*catalog_, Date{39000}) {}

const TableDefinition& SchemaFile::Definition(std::string_view table) {
  const Result<Table*> opened = catalog_->OpenTable(table);
  EXPECT_TRUE(opened.ok()) << (opened.ok() ? "" : opened.error().description);
  return opened.value()->definition();
}

PageNumber SchemaFile::PageOf(std::string_view table) {
  const auto object = catalog_->FindIn(kTablesId, table);
  EXPECT_TRUE(object.ok() && object.value());
  return object.value()->definition();
}

Status SchemaFile::Insert(std::string_view table, const std::vector<std::vector<Value>>& rows) {
  const Result<Table*> opened = catalog_->OpenTable(table);
  if (!opened.ok()) return opened.error();
  const std::vector<std::size_t>& order = opened.value()->display_order();
  for (const std::vector<Value>& row : rows) {
    std::vector<Value> values(order.size());
    for (std::size_t i = 0; i < row.size(); ++i) values[order[i]] = row[i];
    if (Result<RowPointer> at = opened.value()->Insert(values); !at.ok()) return at.error();
  }
  return {};
}

std::vector<Value> SchemaFile::Column(std::string_view table, const std::string& column) {
  std::vector<Value> values;
  for (const NamedRow& row : Rows(table)) values.push_back(row.at(column));
  return values;
}

void ExpectNumber(const Status& status, int number) {
  EXPECT_EQ(status.number(), number) << (status.ok() ? "no error" : status.error().description);
}

NewTable People() {
  NewTable table{.name = "People"};
  table.columns = {{.name = "Id", .auto_number = true},
                   {.name = "Name", .type = ColumnType::Text, .size = 40, .required = true},
                   {.name = "Born", .type = ColumnType::Date},
                   {.name = "Notes", .type = ColumnType::Memo}};
  table.indexes = {{.name = "PrimaryKey", .columns = {{.name = "Id"}}, .primary = true},
                   {.name = "ByName", .columns = {{.name = "Name"}}}};
  return table;
}

}  // namespace zent::jet::testing
