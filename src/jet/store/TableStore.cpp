#include "jet/store/TableStore.h"

#include <algorithm>

#include "jet/format/DefinitionPages.h"
#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

Result<StoredDefinition> ReadDefinition(Pager& pager, PageNumber page) {
  const ReadScope scope(pager);
  if (!scope.status().ok()) return scope.status().error();
  StoredDefinition definition;
  DefinitionJoiner joiner(pager.version());
  for (PageNumber next = page; !joiner.complete(); next = joiner.next()) {
    const Result<PageView> view = pager.Read(next);
    if (!view.ok()) return view.error();
    if (Status added = joiner.Add(next, view.value().bytes()); !added.ok()) return added.error();
    definition.pages.push_back(next);
  }
  Result<TableDefinition> table = ParseTableDefinition(pager.version(), joiner.stream(), page);
  if (!table.ok()) return table.error();
  definition.table = std::move(table.value());
  return definition;
}

TableStore::TableStore(UsageMaps& maps, StoredDefinition definition)
    : maps_(maps),
      table_(std::move(definition.table)),
      pages_(std::move(definition.pages)),
      rows_(maps, pages_.front(), table_.owned_map, table_.free_map),
      builder_(table_),
      rules_(table_.columns.size()) {}

Result<std::unique_ptr<TableStore>> TableStore::Open(UsageMaps& maps, PageNumber definition_page) {
  Result<StoredDefinition> definition = ReadDefinition(maps.pager(), definition_page);
  if (!definition.ok()) return definition.error();
  std::unique_ptr<TableStore> store(new TableStore(maps, std::move(definition.value())));
  const TableDefinition& table = store->table_;
  for (std::size_t i = 0; i < table.real_indexes.size(); ++i) {
    Result<TableIndex> index = TableIndex::Open(maps, definition_page, table, i);
    if (!index.ok()) return index.error();
    store->indexes_.push_back(std::move(index.value()));
  }
  for (const LongValueMaps& column : table.long_value_maps) {
    if (column.owned.page == 0) continue;
    for (std::size_t position = 0; position < table.columns.size(); ++position) {
      if (table.columns[position].number != column.column) continue;
      store->long_values_.emplace(position, LongValues(maps, column));
    }
  }
  return store;
}

Result<std::uint32_t> TableStore::ReadCounter(std::size_t offset) {
  const DefinitionPlace place = DefinitionPlaceOf(table_.version, offset);
  const Result<PageView> view = maps_.pager().Read(pages_[place.page]);
  if (!view.ok()) return view.error();
  return LoadU32(view.value().bytes(), place.offset);
}

// No counter crosses the end of a page: those of all indexes a table can have are on the first.
Status TableStore::WriteCounter(std::size_t offset, std::uint32_t value) {
  const DefinitionPlace place = DefinitionPlaceOf(table_.version, offset);
  Result<PageEdit> edit = maps_.pager().Edit(pages_[place.page]);
  if (!edit.ok()) return edit.error();
  StoreU32(edit.value().bytes(), place.offset, value);
  return {};
}

Result<std::uint32_t> TableStore::RowCount() { return ReadCounter(RowCountOffset(table_.version)); }

Result<std::int32_t> TableStore::LastAutoNumber() {
  const Result<std::uint32_t> number = ReadCounter(AutoNumberOffset(table_.version));
  if (!number.ok()) return number.error();
  return static_cast<std::int32_t>(number.value());
}

Status TableStore::SetLastAutoNumber(std::int32_t number) {
  return WriteCounter(AutoNumberOffset(table_.version), static_cast<std::uint32_t>(number));
}

Result<Value> TableStore::Field(ByteView row, std::size_t position, PageNumber page) {
  const Result<RowView> view = RowView::Open(table_, row, page);
  if (!view.ok()) return view.error();
  return FieldValue(maps_.pager(), table_.columns[position], view.value(), page);
}

Result<std::vector<Value>> TableStore::Values(ByteView row, PageNumber page) {
  std::vector<Value> values;
  if (Status loaded = Load(row, page, values); !loaded.ok()) return loaded.error();
  return values;
}

Status TableStore::Load(ByteView row, PageNumber page, std::vector<Value>& values) {
  const Result<RowView> view = RowView::Open(table_, row, page);
  if (!view.ok()) return view.error();
  values.resize(table_.columns.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    Result<Value> value = FieldValue(maps_.pager(), table_.columns[i], view.value(), page);
    if (!value.ok()) return value.error();
    values[i] = std::move(value.value());
  }
  return {};
}

Result<std::vector<Value>> TableStore::Fetch(RowPointer at) {
  const Result<StoredRow> row = rows_.Fetch(at);
  if (!row.ok()) return row.error();
  return Values(row.value().bytes, row.value().page.page());
}

Status TableStore::Writable() const {
  if (Status writable = maps_.pager().Writable(); !writable.ok()) return writable;
  for (const ColumnDefinition& column : table_.columns) {
    if (!IsText(column.type) || IsCovered(table_.version, column)) continue;
    return JetErrorBecause(kReadOnly, "the sort order of field " + column.name + " is not known");
  }
  return {};
}

}  // namespace zent::jet
