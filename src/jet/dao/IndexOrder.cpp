#include "jet/dao/TableOrder.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/values/Conversion.h"

namespace zent::jet {
namespace {

/// The first key that is above all that begin with `key`; empty when there is none.
std::string Above(std::string key) {
  while (!key.empty() && static_cast<std::uint8_t>(key.back()) == 0xFF) key.pop_back();
  if (!key.empty()) key.back() = static_cast<char>(static_cast<std::uint8_t>(key.back()) + 1);
  return key;
}

/// A value to seek in a column. A text may be longer than the column holds: then no row has it.
Result<Value> SoughtValue(ColumnDefinition column, const Value& value) {
  constexpr std::uint16_t kLongestText = 255 * 2;  // bytes; a key takes no more
  if (column.type == ColumnType::Text) column.length = kLongestText;
  return ConvertForColumn(column, value);
}

}  // namespace

Result<TableIndex*> IndexOrder::Index() {
  const Result<Table*> table = table_();
  return table.ok() ? IndexOf(*table.value()) : Result<TableIndex*>(table.error());
}

Result<TableIndex*> IndexOrder::IndexOf(Table& table) const {
  std::vector<TableIndex>& indexes = table.store().indexes();
  if (!real_ || *real_ >= indexes.size()) return JetError(kNoCurrentIndex);
  return &indexes[*real_];
}

RowOrder::Found IndexOrder::Take(const Result<bool>& found, const IndexCursor& cursor) {
  if (!found.ok()) return found.error();
  if (!found.value()) return std::optional<RowPointer>();
  key_ = cursor.key();
  row_ = cursor.row();
  return std::optional<RowPointer>(row_);
}

RowOrder::Found IndexOrder::First() {
  const Result<TableIndex*> index = Index();
  if (!index.ok()) return index.error();
  IndexCursor cursor = index.value()->tree().Cursor();
  return Take(cursor.SeekFirst(), cursor);
}

RowOrder::Found IndexOrder::Last() {
  const Result<TableIndex*> index = Index();
  if (!index.ok()) return index.error();
  IndexCursor cursor = index.value()->tree().Cursor();
  return Take(cursor.SeekLast(), cursor);
}

RowOrder::Found IndexOrder::Next() {
  const Result<TableIndex*> index = Index();
  if (!index.ok()) return index.error();
  IndexCursor cursor = index.value()->tree().Cursor();
  Result<bool> found = cursor.Seek(key_, row_);
  // The entry itself, unless it is gone.
  if (found.ok() && found.value() && cursor.Compare(key_, row_) == 0) found = cursor.Next();
  return Take(found, cursor);
}

RowOrder::Found IndexOrder::Previous() {
  const Result<TableIndex*> index = Index();
  if (!index.ok()) return index.error();
  IndexCursor cursor = index.value()->tree().Cursor();
  Result<bool> found = cursor.Seek(key_, row_);
  if (found.ok()) found = found.value() ? cursor.Previous() : cursor.SeekLast();
  return Take(found, cursor);
}

Result<bool> IndexOrder::GoTo(RowPointer row) {
  const Result<Table*> table = table_();
  if (!table.ok()) return table.error();
  const Result<TableIndex*> index = IndexOf(*table.value());
  if (!index.ok()) return index.error();
  const Result<StoredRow> stored = table.value()->store().rows().Fetch(row);
  if (!stored.ok()) {
    return stored.number() == kRecordDeleted ? Result<bool>(false) : Result<bool>(stored.error());
  }
  const TableDefinition& definition = table.value()->definition();
  const PageNumber page = stored.value().page.page();
  const Result<RowFields> fields = LoadFields(definition, stored.value().bytes, page);
  if (!fields.ok()) return fields.error();
  Result<TableIndex::RowKey> key = index.value()->KeyOf(definition, fields.value(), page);
  if (!key.ok()) return key.error();
  if (!key.value().key) return false;
  key_ = std::move(*key.value().key);
  row_ = row;
  return true;
}

Result<std::string> IndexOrder::KeyOf(std::span<const Value> values) {
  const Result<Table*> table = table_();
  if (!table.ok()) return table.error();
  const Result<TableIndex*> index = IndexOf(*table.value());
  if (!index.ok()) return index.error();
  const std::vector<KeyColumn>& columns = index.value()->key_columns();
  if (values.empty() || values.size() > columns.size()) return JetError(kInvalidArgument);
  std::string key;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::size_t position = index.value()->columns()[i];
    const Result<Value> value =
        SoughtValue(table.value()->definition().columns[position], values[i]);
    if (!value.ok()) return value.error();
    if (Status made = AppendKey(columns[i], value.value(), key); !made.ok()) return made.error();
  }
  return key;
}

RowOrder::Found IndexOrder::SeekFrom(const std::string& key) {
  const Result<TableIndex*> index = Index();
  if (!index.ok()) return index.error();
  IndexCursor cursor = index.value()->tree().Cursor();
  return Take(cursor.Seek(key), cursor);
}

RowOrder::Found IndexOrder::SeekEqual(const std::string& key) {
  Found found = SeekFrom(key);
  if (!found.ok() || !found.value() || key_.starts_with(key)) return found;
  return std::optional<RowPointer>();
}

RowOrder::Found IndexOrder::SeekAbove(const std::string& key) {
  const std::string above = Above(key);
  if (above.empty()) return std::optional<RowPointer>();
  return SeekFrom(above);
}

RowOrder::Found IndexOrder::SeekUpTo(const std::string& key) {
  const std::string above = Above(key);
  return above.empty() ? Last() : Before(above);
}

RowOrder::Found IndexOrder::SeekBelow(const std::string& key) { return Before(key); }

RowOrder::Found IndexOrder::Before(const std::string& key) {
  const Result<TableIndex*> index = Index();
  if (!index.ok()) return index.error();
  IndexCursor cursor = index.value()->tree().Cursor();
  Result<bool> found = cursor.Seek(key);
  if (found.ok()) found = found.value() ? cursor.Previous() : cursor.SeekLast();
  return Take(found, cursor);
}

}  // namespace zent::jet
