#include "jet/fakes/TableBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "jet/fakes/StoreChecks.h"
#include "jet/format/DefinitionPages.h"

namespace zent::jet::testing {
namespace {

void ExpectRightIndex(StoreFile& file, TableStore& table, std::size_t i,
                      std::set<PageNumber>& named) {
  TableIndex& index = table.indexes()[i];
  std::set<Entry> entries;
  RowScan scan(table.rows());
  while (scan.Next().value_or(false)) {
    const Result<RowFields> fields = LoadFields(table.definition(), scan.bytes(), scan.page());
    const Result<TableIndex::RowKey> key =
        index.KeyOf(table.definition(), fields.value(), scan.page());
    EXPECT_TRUE(key.ok());
    if (key.value().key) entries.insert({*key.value().key, scan.at()});
  }
  const std::vector<PageNumber> pages = ExpectRightTree(file, index.tree(), entries);
  named.insert(pages.begin(), pages.end());
}

}  // namespace

TableBuilder& TableBuilder::Column(std::string name, ColumnType type, std::uint16_t length,
                                   std::uint8_t flags) {
  ColumnDefinition column{.name = std::move(name), .type = type, .number = table_.max_columns};
  column.ordinal = table_.max_columns++;
  column.slot = table_.variable_slots;
  column.flags = static_cast<std::uint8_t>(kNullableColumn | flags);
  column.length = length;
  const bool variable = IsText(type) || type == ColumnType::Binary || IsLong(type);
  if (variable) {
    ++table_.variable_slots;
  } else {
    column.flags |= kFixedColumn;
    if (type == ColumnType::Bool) {
      column.length = 1;
    } else {
      column.length = static_cast<std::uint16_t>(FixedSizeOf(type));
      column.fixed_offset = static_cast<std::uint16_t>(table_.FixedAreaSize());
    }
  }
  table_.columns.push_back(std::move(column));
  return *this;
}

TableBuilder& TableBuilder::AutoNumber(std::string name) {
  return Column(std::move(name), ColumnType::Long, 4, kAutoNumberColumn);
}

TableBuilder& TableBuilder::Compressed() {
  table_.columns.back().extended_flags |= kCompressedColumn;
  return *this;
}

TableBuilder& TableBuilder::Index(const std::vector<int>& columns, std::uint8_t flags,
                                  bool primary) {
  RealIndex real;
  real.flags = static_cast<std::uint8_t>(kAccessIndex | flags);
  for (const int column : columns) {
    real.columns.push_back({.column = static_cast<std::uint16_t>(column < 0 ? ~column : column),
                            .ascending = column >= 0});
  }
  LogicalIndex logical{.name = "Index" + std::to_string(table_.logical_indexes.size())};
  logical.number = logical.real = static_cast<std::uint32_t>(table_.logical_indexes.size());
  logical.kind = primary ? IndexKind::Primary : IndexKind::Ordinary;
  table_.real_indexes.push_back(std::move(real));
  table_.logical_indexes.push_back(std::move(logical));
  return *this;
}

TableBuilder& TableBuilder::At(PageNumber page) {
  page_ = page;
  return *this;
}

PageNumber TableBuilder::Write() {
  const PageNumber page = page_ != 0 ? page_ : file_.NewPage();
  table_.owned_map = file_.NewMap();
  table_.free_map = file_.NewMap();
  for (RealIndex& real : table_.real_indexes) {
    real.map = file_.NewMap();
    const Result<IndexTree> tree = IndexTree::Create(file_.maps(), page, real.map);
    EXPECT_TRUE(tree.ok());
    real.root = tree.value().place().root;
  }
  for (const ColumnDefinition& column : table_.columns) {
    if (!IsLong(column.type)) continue;
    const RowPointer owned = file_.NewMap();
    table_.long_value_maps.push_back({column.number, owned, file_.NewMap()});
  }
  WriteSmallDefinition(file_, page, table_);
  return page;
}

void WriteSmallDefinition(StoreFile& file, PageNumber page, const TableDefinition& table) {
  const std::vector<std::uint8_t> stream = SerialiseTableDefinition(table);
  EXPECT_EQ(DefinitionPageCount(JetVersion::Jet4, stream.size()), 1U);
  Result<PageEdit> edit = file.pager().Edit(page);
  ASSERT_TRUE(edit.ok());
  WriteDefinitionPage(JetVersion::Jet4, stream, 0, 0, edit.value().bytes());
}

std::unique_ptr<TableStore> TableBuilder::Build() {
  Result<std::unique_ptr<TableStore>> store = TableStore::Open(file_.maps(), Write());
  EXPECT_TRUE(store.ok()) << store.error().description;
  return std::move(store.value());
}

TableRows ExpectRightTable(StoreFile& file, TableStore& table) {
  std::set<PageNumber> named;
  TableRows rows = ExpectRightTable(file, table, named);
  ExpectAllPagesNamed(file, named);
  return rows;
}

TableRows ExpectRightTable(StoreFile& file, TableStore& table, std::set<PageNumber>& named) {
  const TableDefinition& definition = table.definition();
  TableRows rows;
  RowScan scan(table.rows());
  for (Result<bool> more = scan.Next(); more.value_or(false); more = scan.Next()) {
    Result<std::vector<Value>> values = table.Values(scan.bytes(), scan.page());
    EXPECT_TRUE(values.ok()) << values.error().description;
    rows.emplace(scan.at(), values.value_or({}));
  }
  EXPECT_EQ(table.RowCount().value_or(0), rows.size());

  named.insert(table.definition_pages().begin(), table.definition_pages().end());
  named.insert({definition.owned_map.page, definition.free_map.page});
  const auto add = [&](const RowPages::Owner& owner) {
    const std::vector<PageNumber> pages = ExpectRightRowPages(file, owner);
    named.insert(pages.begin(), pages.end());
  };
  add({.number = table.page(), .owned = definition.owned_map, .free = definition.free_map});
  for (const LongValueMaps& maps : definition.long_value_maps) {
    named.insert({maps.owned.page, maps.free.page});
    add({.number = kLongValueOwner, .owned = maps.owned, .free = maps.free, .reuses_slots = true});
  }
  for (std::size_t i = 0; i < definition.real_indexes.size(); ++i) {
    SCOPED_TRACE(i);
    named.insert(definition.real_indexes[i].map.page);
    ExpectRightIndex(file, table, i, named);
  }
  return rows;
}

}  // namespace zent::jet::testing
