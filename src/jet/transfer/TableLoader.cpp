#include "jet/transfer/TableLoader.h"

#include <algorithm>

#include "jet/format/DefinitionPages.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

// Long values come in all lengths: a few pages at a time leave little room unused. Pages that are
// open stay in the cache, which may be small: a table with many such columns has fewer for each.
constexpr std::size_t kOpenLongValuePages = 4;
constexpr std::size_t kOpenPagesOfATable = 128;

std::size_t OpenPagesOfEach(std::size_t columns) {
  return std::clamp(kOpenPagesOfATable / std::max<std::size_t>(columns, 1), std::size_t{1},
                    kOpenLongValuePages);
}

/// The key of a row whose columns are all null.
Result<std::string> NullKey(const std::vector<KeyColumn>& columns) {
  return IndexKey(columns, std::vector<Value>(columns.size()));
}

bool IsPrimary(const TableDefinition& table, std::size_t real) {
  return std::any_of(table.logical_indexes.begin(), table.logical_indexes.end(),
                     [&](const LogicalIndex& logical) {
                       return logical.real == real && logical.kind == IndexKind::Primary;
                     });
}

}  // namespace

TableLoader::TableLoader(UsageMaps& maps, StoredDefinition definition)
    : maps_(maps),
      table_(std::move(definition.table)),
      pages_(std::move(definition.pages)),
      appender_(maps,
                {.number = pages_.front(),
                 .owned = table_.owned_map,
                 .free = table_.free_map,
                 .reuses_slots = false},
                1),
      builder_(table_) {
  const std::size_t open_pages = OpenPagesOfEach(table_.long_value_maps.size());
  for (const LongValueMaps& column : table_.long_value_maps) {
    const RowPages::Owner owner = {.number = kLongValueOwner,
                                   .owned = column.owned,
                                   .free = column.free,
                                   .reuses_slots = true};
    long_values_.try_emplace(column.column, maps, owner, open_pages);
  }
}

Result<std::unique_ptr<TableLoader>> TableLoader::Open(UsageMaps& maps, PageNumber definition_page,
                                                       std::size_t sort_bytes) {
  Result<StoredDefinition> definition = ReadDefinition(maps.pager(), definition_page);
  if (!definition.ok()) return definition.error();
  std::unique_ptr<TableLoader> loader(new TableLoader(maps, std::move(definition.value())));
  if (Status opened = loader->OpenIndexes(sort_bytes); !opened.ok()) return opened.error();
  return loader;
}

Status TableLoader::OpenIndexes(std::size_t sort_bytes) {
  const std::size_t count = table_.real_indexes.size();
  for (std::size_t i = 0; i < count; ++i) {
    const RealIndex& real = table_.real_indexes[i];
    LoadedIndex index;
    Result<std::vector<KeyColumn>> key_columns = KeyColumnsOf(table_, real);
    if (!key_columns.ok()) return key_columns.error();
    index.key_columns = std::move(key_columns.value());
    for (const IndexColumn& column : real.columns) {
      const ColumnDefinition* const one = table_.ColumnOf(column.column);
      if (IsText(one->type) && !IsCovered(table_.version, *one)) {
        return JetErrorBecause(kReadOnly, "the sort order of field " + one->name + " is not known");
      }
      index.columns.push_back(one);
    }
    const bool primary = IsPrimary(table_, i);
    index.required = primary || real.IsRequired();
    index.ignores_nulls = real.IgnoresNulls();
    index.tree = std::make_unique<IndexTree>(
        maps_, IndexPlace{.table = pages_.front(), .root = real.root, .map = real.map});
    Result<std::string> null_key = NullKey(index.key_columns);
    if (!null_key.ok()) return null_key.error();
    index.sorter = std::make_unique<KeySorter>(*index.tree, primary || real.IsUnique(),
                                               std::move(null_key.value()), sort_bytes / count);
    indexes_.push_back(std::move(index));
  }
  return {};
}

Status TableLoader::StoreLongValues(RowFields& fields) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    FieldBytes& field = fields[i];
    if (!IsLong(table_.columns[i].type) || !field.present || field.stored) continue;
    Result<std::string> stored =
        StoreLongValue(table_.columns[i].number, AsBytes(field.bytes), field.apart);
    if (!stored.ok()) return stored.error();
    field.bytes = std::move(stored.value());
    field.stored = true;
  }
  return {};
}

Status TableLoader::Add(RowFields& fields) {
  if (Status stored = StoreLongValues(fields); !stored.ok()) return stored;
  Result<ByteView> row = BuildRow(table_, fields, builder_);
  if (row.number() == kRecordTooLarge && MoveApart(table_, fields)) {
    if (Status stored = StoreLongValues(fields); !stored.ok()) return stored;
    row = BuildRow(table_, fields, builder_);
  }
  if (!row.ok()) return row.error();
  return AddStored(row.value());
}

Result<std::string> TableLoader::StoreLongValue(std::uint16_t column, ByteView value, bool apart) {
  const auto values = long_values_.find(column);
  if (values == long_values_.end()) {
    return Damaged(pages_.front(), "a memo or OLE field without maps");
  }
  RowAppender& rows = values->second;
  return zent::jet::StoreLongValue(maps_.pager(), value, apart,
                                   [&rows](ByteView row) { return rows.Append(row); });
}

Status TableLoader::AddStored(ByteView row) {
  if (row.size() > maps_.pager().layout().data.max_row) return JetError(kRecordTooLarge);
  const Result<RowPointer> at = appender_.Append(row);
  if (!at.ok()) return at.error();
  ++rows_;
  if (indexes_.empty()) return {};
  const Result<RowView> view = RowView::Open(table_, row, at.value().page);
  if (!view.ok()) return view.error();
  for (LoadedIndex& index : indexes_) {
    if (Status added = AddKey(index, view.value(), at.value()); !added.ok()) return added;
  }
  return {};
}

Status TableLoader::AppendColumn(const ColumnDefinition& column, const KeyColumn& key_column,
                                 const RowView& row, RowPointer at, std::string& key,
                                 std::size_t& nulls) {
  ByteView bytes;
  if (column.type == ColumnType::Text && table_.version == JetVersion::Jet4 &&
      row.Field(column, bytes) == RowView::FieldState::Present) {
    return AppendStoredText(key_column, bytes, key);
  }
  const Result<Value> value = FieldValue(maps_.pager(), column, row, at.page);
  if (!value.ok()) return value.status();
  nulls += IsNull(value.value()) ? 1U : 0U;
  return AppendKey(key_column, value.value(), key);
}

Status TableLoader::AddKey(LoadedIndex& index, const RowView& row, RowPointer at) {
  KeySorter& sorter = *index.sorter;
  std::size_t nulls = 0;
  for (std::size_t i = 0; i < index.columns.size(); ++i) {
    Status made =
        AppendColumn(*index.columns[i], index.key_columns[i], row, at, sorter.keys(), nulls);
    if (!made.ok()) return made;
  }
  if (index.required && nulls > 0) return JetError(kNullInKey);
  if (!index.ignores_nulls || nulls < index.columns.size()) return sorter.AddKey(at);
  sorter.DropKey();
  return {};
}

Status TableLoader::WriteCounter(std::size_t offset, std::uint32_t value) {
  const DefinitionPlace place = DefinitionPlaceOf(table_.version, offset);
  Result<PageEdit> edit = maps_.pager().Edit(pages_[place.page]);
  if (!edit.ok()) return edit.error();
  StoreU32(edit.value().bytes(), place.offset, value);
  return {};
}

Status TableLoader::Finish(bool compacted) {
  if (Status finished = appender_.Finish(); !finished.ok()) return finished;
  for (auto& [column, rows] : long_values_) {
    if (Status finished = rows.Finish(); !finished.ok()) return finished;
  }
  for (std::size_t i = 0; i < indexes_.size(); ++i) {
    KeySorter& sorter = *indexes_[i].sorter;
    if (Status built = sorter.Finish(); !built.ok()) return built;
    const std::size_t offset = DistinctKeysOffset(table_.version, i);
    if (Status wrote = WriteCounter(offset, sorter.distinct_keys()); !wrote.ok()) return wrote;
    if (!compacted) continue;
    if (Status wrote = WriteCounter(offset - 4, rows_); !wrote.ok()) return wrote;
  }
  return WriteCounter(RowCountOffset(table_.version), rows_);
}

}  // namespace zent::jet
