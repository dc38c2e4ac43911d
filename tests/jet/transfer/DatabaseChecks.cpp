#include "jet/transfer/DatabaseChecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "jet/fakes/TestDatabase.h"
#include "jet/store/RowFields.h"

namespace zent::jet::testing {
namespace {

/// The columns of a table by name, as their positions.
std::map<std::string, std::size_t> ColumnsOf(const TableDefinition& table) {
  std::map<std::string, std::size_t> columns;
  for (std::size_t i = 0; i < table.columns.size(); ++i) columns[table.columns[i].name] = i;
  return columns;
}

std::map<std::int32_t, std::string> NamesOf(Catalog& catalog) {
  std::map<std::int32_t, std::string> names;
  const Result<std::vector<CatalogObject>> objects = catalog.Objects();
  EXPECT_TRUE(objects.ok());
  for (const CatalogObject& object : objects.value_or({})) {
    names[object.id] = std::to_string(static_cast<int>(object.type)) + object.name;
  }
  return names;
}

/// The rows of a table of the catalog; the numbers of its column `id` told by what they name.
std::vector<std::string> CatalogRows(Catalog& catalog, PageNumber page, const std::string& id) {
  const std::map<std::int32_t, std::string> names = NamesOf(catalog);
  const Result<Table*> table = catalog.OpenTableAt(page, "system");
  EXPECT_TRUE(table.ok());
  std::vector<std::string> told;
  std::set<std::size_t> numbers;
  const std::map<std::string, std::size_t> columns = ColumnsOf(table.value()->definition());
  std::size_t place = 0;
  for (const auto& [name, position] : columns) {
    if (name == id) numbers.insert(place);
    ++place;
  }
  for (const std::vector<Value>& row : RowsOf(*table.value())) {
    std::string text;
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (numbers.contains(i)) {
        const auto named = names.find(std::get<std::int32_t>(row[i]));
        text += named == names.end() ? "none" : named->second;
      } else {
        text += ::testing::PrintToString(row[i].index());
        if (const auto* const one = std::get_if<Text>(&row[i])) text += *one;
        if (const auto* const one = std::get_if<std::int32_t>(&row[i])) {
          text += std::to_string(*one);
        }
        if (const auto* const one = std::get_if<Binary>(&row[i])) text += one->bytes;
        if (const auto* const one = std::get_if<std::int16_t>(&row[i])) {
          text += std::to_string(*one);
        }
      }
      text += '|';
    }
    told.push_back(std::move(text));
  }
  return told;
}

void ExpectSameObject(Catalog& a, const CatalogObject& one, Catalog& b, const CatalogObject& two) {
  SCOPED_TRACE(one.name);
  EXPECT_EQ(one.name, two.name);
  EXPECT_EQ(one.type, two.type);
  EXPECT_EQ(one.parent, two.parent);
  EXPECT_EQ(one.flags, two.flags);
  EXPECT_EQ(one.created, two.created);
  EXPECT_EQ(one.updated, two.updated);
  EXPECT_EQ(one.connect, two.connect);
  EXPECT_EQ(one.database, two.database);
  EXPECT_EQ(one.foreign_name, two.foreign_name);
  const Result<PropertyBlob> properties = a.Properties(one);
  const Result<PropertyBlob> others = b.Properties(two);
  ASSERT_TRUE(properties.ok() && others.ok());
  EXPECT_TRUE(properties.value() == others.value());
}

struct IndexFacts {
  std::string name;
  IndexKind kind;
  ForeignSide side;
  std::int32_t partner;
  std::uint8_t flags;
  std::vector<std::pair<std::string, bool>> columns;
  bool operator==(const IndexFacts&) const = default;
};

std::vector<IndexFacts> IndexesOf(const TableDefinition& table) {
  std::vector<IndexFacts> indexes;
  for (const LogicalIndex& logical : table.logical_indexes) {
    const RealIndex& real = table.real_indexes[logical.real];
    IndexFacts facts{logical.name, logical.kind, logical.side, logical.partner, real.flags, {}};
    for (const IndexColumn& column : real.columns) {
      facts.columns.emplace_back(table.ColumnOf(column.column)->name, column.ascending);
    }
    indexes.push_back(std::move(facts));
  }
  return indexes;
}

void ExpectSameColumns(const TableDefinition& a, const TableDefinition& b) {
  ASSERT_EQ(a.columns.size(), b.columns.size());
  for (std::size_t i = 0; i < a.columns.size(); ++i) {
    const ColumnDefinition& one = a.columns[i];
    const ColumnDefinition& two = b.columns[i];
    SCOPED_TRACE(one.name);
    EXPECT_EQ(one.name, two.name);
    EXPECT_EQ(one.type, two.type);
    EXPECT_EQ(one.length, two.length);
    EXPECT_EQ(one.ordinal, two.ordinal);
    EXPECT_EQ(one.flags, two.flags);
    EXPECT_EQ(one.extended_flags, two.extended_flags);
    EXPECT_EQ(one.details, two.details);
  }
}

}  // namespace

OpenedDatabase OpenCatalog(Storage& storage, std::string_view path) {
  OpenedDatabase opened;
  Result<std::unique_ptr<Pager>> pager = Pager::Open(storage, path, Opened(Sharing::Exclusive));
  EXPECT_TRUE(pager.ok()) << (pager.ok() ? "" : pager.error().description);
  if (!pager.ok()) return opened;
  opened.pager = std::move(pager.value());
  Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*opened.pager);
  EXPECT_TRUE(catalog.ok()) << (catalog.ok() ? "" : catalog.error().description);
  if (catalog.ok()) opened.catalog = std::move(catalog.value());
  return opened;
}

Rows RowsOf(Table& table) {
  Rows rows;
  const std::map<std::string, std::size_t> columns = ColumnsOf(table.definition());
  RowScan scan(table.store().rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    const Result<std::vector<Value>> values = table.store().Values(scan.bytes(), scan.page());
    EXPECT_TRUE(values.ok()) << (values.ok() ? "" : values.error().description);
    if (!values.ok()) return rows;
    std::vector<Value> row;
    row.reserve(columns.size());
    for (const auto& [name, position] : columns) row.push_back(values.value()[position]);
    rows.push_back(std::move(row));
  }
  EXPECT_TRUE(more.ok()) << (more.ok() ? "" : more.error().description);
  return rows;
}

void ExpectSameTable(Table& a, Table& b, bool with_rows) {
  SCOPED_TRACE(a.name());
  EXPECT_EQ(ColumnsOf(a.definition()).size(), ColumnsOf(b.definition()).size());
  if (!with_rows) return;
  const Rows rows = RowsOf(a);
  const Rows others = RowsOf(b);
  EXPECT_TRUE(rows == others) << rows.size() << " and " << others.size() << " rows";
  EXPECT_EQ(b.store().RowCount().value_or(99), rows.size());
  EXPECT_EQ(a.store().LastAutoNumber().value_or(-1), b.store().LastAutoNumber().value_or(-2));
  ExpectRightIndexes(b);
}

void ExpectRightIndexes(Table& table) {
  const TableDefinition& definition = table.definition();
  for (TableIndex& index : table.store().indexes()) {
    SCOPED_TRACE(index.position());
    std::set<std::pair<std::string, RowPointer>> expected;
    RowScan scan(table.store().rows());
    while (scan.Next().value_or(false)) {
      const Result<RowFields> fields = LoadFields(definition, scan.bytes(), scan.page());
      ASSERT_TRUE(fields.ok());
      Result<TableIndex::RowKey> key = index.KeyOf(definition, fields.value(), scan.page());
      ASSERT_TRUE(key.ok());
      if (key.value().key) expected.emplace(*key.value().key, scan.at());
    }
    std::vector<std::pair<std::string, RowPointer>> found;
    IndexCursor cursor = index.tree().Cursor();
    Result<bool> on = cursor.SeekFirst();
    for (; on.value_or(false); on = cursor.Next()) found.emplace_back(cursor.key(), cursor.row());
    EXPECT_TRUE(on.ok());
    EXPECT_TRUE(std::equal(found.begin(), found.end(), expected.begin(), expected.end()))
        << found.size() << " entries, not " << expected.size();
    for (const auto& [key, row] : expected) ASSERT_TRUE(cursor.Seek(key, row).value_or(false));
  }
}

void ExpectSameContents(Catalog& a, Catalog& b) {
  const std::vector<CatalogObject> objects = a.Objects().value_or({});
  const std::vector<CatalogObject> others = b.Objects().value_or({});
  ASSERT_EQ(objects.size(), others.size());
  for (std::size_t i = 0; i < objects.size(); ++i) {
    ExpectSameObject(a, objects[i], b, others[i]);
    if (!objects[i].IsLocalTable() || objects[i].definition() <= kRelationshipsPage) continue;
    const Result<Table*> one = a.OpenTableAt(objects[i].definition(), objects[i].name);
    const Result<Table*> two = b.OpenTableAt(others[i].definition(), others[i].name);
    ASSERT_TRUE(one.ok() && two.ok()) << objects[i].name;
    ExpectSameTable(*one.value(), *two.value());
    ExpectSameColumns(one.value()->definition(), two.value()->definition());
    EXPECT_TRUE(IndexesOf(one.value()->definition()) == IndexesOf(two.value()->definition()));
  }
  EXPECT_EQ(CatalogRows(a, kAcesPage, "ObjectId"), CatalogRows(b, kAcesPage, "ObjectId"));
  EXPECT_EQ(CatalogRows(a, kQueriesPage, "ObjectId"), CatalogRows(b, kQueriesPage, "ObjectId"));
  EXPECT_EQ(a.Relationships().value_or({}), b.Relationships().value_or({}));
}

}  // namespace zent::jet::testing
