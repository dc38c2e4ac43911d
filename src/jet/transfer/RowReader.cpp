#include "jet/transfer/RowReader.h"

#include <fmt/format.h>

#include "jet/format/JetErrors.h"
#include "jet/store/LongValues.h"

namespace zent::jet {

Result<RowFields*> RowReader::Read(ByteView row, PageNumber page) {
  const Result<RowView> view = RowView::Open(from_.definition(), row, page);
  if (!view.ok()) return view.error();
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (Status read = ReadField(view.value(), i, page); !read.ok()) return read.error();
  }
  return &fields_;
}

Status RowReader::ReadField(const RowView& row, std::size_t i, PageNumber page) {
  const ColumnDefinition& column = from_.definition().columns[columns_[i]];
  FieldBytes& field = fields_[i];
  field.stored = false;
  field.apart = false;
  Pager& pager = from_.rows().maps().pager();
  if (from_.definition().version != to_.version) {
    const Result<Value> value = FieldValue(pager, column, row, page);
    if (!value.ok()) return value.status();
    Result<FieldBytes> encoded = EncodeValue(to_.columns[i], value.value());
    if (!encoded.ok()) return encoded.status();
    field = std::move(encoded.value());
    return {};
  }
  if (column.type == ColumnType::Bool) {
    field.present = row.Has(column);
    return {};
  }
  ByteView bytes;
  const RowView::FieldState state = row.Field(column, bytes);
  if (state == RowView::FieldState::Damaged) {
    return Damaged(page, "a field does not lie within its row");
  }
  field.present = state == RowView::FieldState::Present;
  if (!field.present) return {};
  if (!IsLong(column.type)) {
    field.bytes = AsText(bytes);
    return {};
  }
  Result<std::string> value = ReadLongValue(pager, bytes, page);
  if (!value.ok()) return value.status();
  field.bytes = std::move(value.value());
  return {};
}

Status CheckAllFound(TableStore& from, std::uint32_t rows) {
  const Result<std::uint32_t> counted = from.RowCount();
  if (!counted.ok()) return counted.status();
  if (rows >= counted.value()) return {};
  return Damaged(from.page(), fmt::format("{} rows are found of the {} that the table counts", rows,
                                          counted.value()));
}

}  // namespace zent::jet
