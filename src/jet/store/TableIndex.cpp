#include "jet/store/TableIndex.h"

#include <algorithm>

#include "jet/format/JetErrors.h"

namespace zent::jet {

Result<TableIndex> TableIndex::Open(UsageMaps& maps, PageNumber page, const TableDefinition& table,
                                    std::size_t position) {
  const RealIndex& real = table.real_indexes[position];
  TableIndex index(IndexTree(maps, {.table = page, .root = real.root, .map = real.map}), position);
  Result<std::vector<KeyColumn>> key_columns = KeyColumnsOf(table, real);
  if (!key_columns.ok()) return key_columns.error();
  index.key_columns_ = std::move(key_columns.value());
  for (const IndexColumn& column : real.columns) {
    const auto at =
        std::find_if(table.columns.begin(), table.columns.end(),
                     [&](const ColumnDefinition& one) { return one.number == column.column; });
    index.columns_.push_back(static_cast<std::size_t>(at - table.columns.begin()));
  }
  const bool primary = std::any_of(
      table.logical_indexes.begin(), table.logical_indexes.end(), [&](const LogicalIndex& logical) {
        return logical.real == position && logical.kind == IndexKind::Primary;
      });
  index.unique_ = primary || real.IsUnique();
  index.required_ = primary || real.IsRequired();
  index.ignores_nulls_ = real.IgnoresNulls();
  return index;
}

Result<TableIndex::RowKey> TableIndex::KeyOf(const TableDefinition& table, const RowFields& fields,
                                             PageNumber page) {
  RowKey row_key{.all_null = true};
  values_.clear();
  for (const std::size_t column : columns_) {
    Result<Value> value =
        FieldValue(tree_.maps().pager(), table.columns[column], fields[column], page);
    if (!value.ok()) return value.error();
    const bool null = IsNull(value.value());
    row_key.has_null = row_key.has_null || null;
    row_key.all_null = row_key.all_null && null;
    values_.push_back(std::move(value.value()));
  }
  if (row_key.all_null && ignores_nulls_) return row_key;
  Result<std::string> key = IndexKey(key_columns_, values_);
  if (!key.ok()) return key.error();
  row_key.key = std::move(key.value());
  return row_key;
}

Status TableIndex::Check(const RowKey& key) {
  if (required_ && key.has_null) return JetError(kNullInKey);
  if (!key.key) return {};
  if (key.key->size() > kMaxIndexKey) return JetError(kRecordTooLarge);
  if (!unique_ || key.all_null) return {};
  const Result<bool> taken = tree_.HasKey(*key.key);
  if (!taken.ok()) return taken.error();
  return taken.value() ? Status(JetError(kDuplicateKey)) : Status();
}

}  // namespace zent::jet
