#include "jet/catalog/SystemTable.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

template <typename T>
T SystemRow::Get(std::size_t column) {
  if (!status_.ok()) return {};
  Result<Value> value = table_.store().Field(bytes_, table_.position(column), page_);
  if (!value.ok()) {
    status_ = value.error();
    return {};
  }
  if (IsNull(value.value())) return {};
  if (T* const held = std::get_if<T>(&value.value()); held != nullptr) return std::move(*held);
  status_ = Damaged(page_, "a column of the catalog has another type than it should");
  return {};
}

template std::string SystemRow::Get(std::size_t);
template std::int32_t SystemRow::Get(std::size_t);
template std::int16_t SystemRow::Get(std::size_t);
template Date SystemRow::Get(std::size_t);
template Binary SystemRow::Get(std::size_t);

Result<SystemTable> SystemTable::Open(UsageMaps& maps, PageNumber page,
                                      std::span<const std::string_view> columns) {
  Result<std::unique_ptr<TableStore>> store = TableStore::Open(maps, page);
  if (!store.ok()) return store.error();
  SystemTable table;
  table.store_ = std::move(store.value());
  const std::vector<ColumnDefinition>& there = table.store_->definition().columns;
  for (const std::string_view name : columns) {
    const auto found = std::find_if(there.begin(), there.end(), [&](const ColumnDefinition& one) {
      return SameName(one.name, name);
    });
    if (found == there.end()) {
      return Damaged(page, fmt::format("the catalog has no column {}", name));
    }
    table.positions_.push_back(static_cast<std::size_t>(found - there.begin()));
  }
  return table;
}

TableIndex* SystemTable::IndexOver(std::span<const std::size_t> columns) {
  std::vector<std::size_t> wanted;
  for (const std::size_t column : columns) wanted.push_back(positions_[column]);
  std::vector<TableIndex>& indexes = store_->indexes();
  const auto found = std::find_if(indexes.begin(), indexes.end(), [&](const TableIndex& index) {
    return index.columns() == wanted;
  });
  return found == indexes.end() ? nullptr : &*found;
}

Result<bool> SystemTable::HasKey(TableIndex& index, RowPointer at, std::string_view key) {
  const Result<StoredRow> row = store_->rows().Fetch(at);
  if (row.number() == kRecordDeleted) return false;
  if (!row.ok()) return row.error();
  const PageNumber page = row.value().page.page();
  const Result<RowFields> fields = LoadFields(store_->definition(), row.value().bytes, page);
  if (!fields.ok()) return fields.error();
  const Result<TableIndex::RowKey> there = index.KeyOf(store_->definition(), fields.value(), page);
  if (!there.ok()) return there.error();
  return there.value().key == key;
}

Result<std::optional<std::vector<RowPointer>>> SystemTable::Seek(
    std::span<const std::size_t> columns, std::span<const Value> values) {
  TableIndex* const index = IndexOver(columns);
  if (index == nullptr) return std::optional<std::vector<RowPointer>>();
  const Result<std::string> key = IndexKey(index->key_columns(), values);
  if (key.number() == kReadOnly) return std::optional<std::vector<RowPointer>>();
  if (!key.ok()) return key.error();

  std::vector<RowPointer> rows;
  IndexCursor cursor = index->tree().Cursor();
  Result<bool> on = cursor.Seek(key.value());
  for (; on.value_or(false); on = cursor.Next()) {
    const RowPointer at = cursor.row();
    if (cursor.Compare(key.value(), at) != 0) break;
    const Result<bool> right = HasKey(*index, at, key.value());
    if (!right.ok()) return right.error();
    if (!right.value()) return Damaged(at.page, "an index of the catalog leads to another row");
    rows.push_back(at);
  }
  if (!on.ok()) return on.error();
  return std::optional(std::move(rows));
}

}  // namespace zent::jet
