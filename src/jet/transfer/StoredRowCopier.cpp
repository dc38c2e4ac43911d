#include "jet/transfer/StoredRowCopier.h"

#include <algorithm>

#include "jet/format/LongValueDescriptor.h"
#include "jet/store/LongValues.h"

namespace zent::jet {

StoredRowCopier::StoredRowCopier(TableStore& from, TableLoader& to) : from_(from), to_(to) {
  for (const ColumnDefinition& column : from.definition().columns) {
    if (IsLong(column.type)) long_columns_.push_back(&column);
  }
}

Result<bool> StoredRowCopier::Copy(ByteView row, PageNumber page) {
  RowView view;
  const TableDefinition& table = from_.definition();
  if (!view.Reset(table.version, table.variable_slots > 0, row) || !view.IsWhole(table) ||
      !FindLongValues(view, row, page)) {
    return false;
  }
  if (!outside_.empty()) {
    row_.assign(row.begin(), row.end());
    row = row_;
  }
  for (const LongField& field : outside_) {
    const MutableBytes bytes = MutableBytes(row_).subspan(field.at, kLongValueDescriptorSize);
    Status read = ReadLongValue(from_.rows().maps().pager(), bytes, page, value_);
    if (!read.ok()) return read.error();
    const Result<std::string> stored = to_.StoreLongValue(field.column, AsBytes(value_));
    if (!stored.ok()) return stored.error();
    std::copy(stored.value().begin(), stored.value().end(), bytes.begin());
  }
  if (Status added = to_.AddStored(row); !added.ok()) return added.error();
  return true;
}

bool StoredRowCopier::FindLongValues(const RowView& view, ByteView row, PageNumber page) {
  const std::size_t longest = LayoutOf(from_.definition().version).data.max_inline_value;
  outside_.clear();
  for (const ColumnDefinition* const column : long_columns_) {
    ByteView bytes;
    const RowView::FieldState state = view.Field(*column, bytes);
    if (state == RowView::FieldState::Null) continue;
    if (state == RowView::FieldState::Damaged) return false;
    const Result<LongValueDescriptor> value = ParseLongValue(bytes, page);
    if (!value.ok()) return false;
    const bool in_row = value.value().kind == LongValueKind::Inline;
    const std::size_t size = kLongValueDescriptorSize + (in_row ? value.value().length : 0);
    if (bytes.size() != size || (value.value().length <= longest) != in_row) return false;
    if (in_row) continue;
    outside_.push_back(
        {.column = column->number, .at = static_cast<std::size_t>(bytes.data() - row.data())});
  }
  return true;
}

}  // namespace zent::jet
