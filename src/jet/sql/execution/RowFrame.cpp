#include "jet/sql/execution/RowFrame.h"

#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/format/TextCodec.h"
#include "jet/store/RowFields.h"

namespace zent::jet {

std::size_t RowFrame::AddTable(Table& table) {
  const std::size_t first = fields_.size();
  for (const ColumnDefinition& column : table.definition().columns) {
    fields_.push_back({.table = tables_.size(), .column = &column});
  }
  tables_.push_back({.table = &table, .first_column = first, .stamp = ++last_stamp_});
  return first;
}

Status RowFrame::Set(std::size_t i, RowPointer at, ByteView bytes, PageNumber page) {
  TableRow& row = tables_[i];
  const TableDefinition& definition = row.table->definition();
  if (!row.view.Reset(definition.version, definition.variable_slots > 0, bytes)) {
    return Damaged(page, "a row is shorter than its columns need");
  }
  row.at = at;
  row.page = page;
  row.stamp = ++last_stamp_;
  return {};
}

Status RowFrame::Fetch(std::size_t i, RowPointer at) {
  TableRow& row = tables_[i];
  if (at == RowPointer{}) {
    SetNulls(i);
    return {};
  }
  Result<StoredRow> stored = row.table->store().rows().Fetch(at);
  if (!stored.ok()) return stored.error();
  row.held.emplace(std::move(stored.value()));
  return Set(i, at, row.held->bytes, row.held->page.page());
}

void RowFrame::SetNulls(std::size_t i) {
  tables_[i].at = {};
  tables_[i].held.reset();
  tables_[i].stamp = ++last_stamp_;
}

Result<const Value*> RowFrame::At(std::size_t column) {
  if (column >= fields_.size()) {
    if (outer_ == nullptr) return JetError(kItemNotFound);
    return outer_->At(column - fields_.size());
  }
  FieldPlace& field = fields_[column];
  const std::uint64_t stamp = tables_[field.table].stamp;
  if (field.stamp != stamp) {
    const Status decoded = Decode(field, field.value);
    if (!decoded.ok()) return decoded.error();
    field.stamp = stamp;
  }
  return &field.value;
}

Status RowFrame::Load(std::size_t column, Value& value) {
  if (column < fields_.size() && fields_[column].stamp != tables_[fields_[column].table].stamp) {
    return Decode(fields_[column], value);
  }
  const Result<const Value*> at = At(column);
  if (!at.ok()) return at.error();
  value = *at.value();
  return {};
}

Status RowFrame::Decode(const FieldPlace& field, Value& value) {
  const TableRow& row = tables_[field.table];
  if (row.at == RowPointer{}) {
    value = Null();
    return {};
  }
  if (field.column->type == ColumnType::Text) {
    ByteView bytes;
    if (row.view.Field(*field.column, bytes) == RowView::FieldState::Present) {
      Text* text = std::get_if<Text>(&value);
      if (text == nullptr) text = &value.emplace<Text>();
      DecodeText(row.table->definition().version, bytes, *text);
      return {};
    }
  }
  Result<Value> decoded =
      FieldValue(row.table->store().rows().maps().pager(), *field.column, row.view, row.page);
  if (!decoded.ok()) return decoded.error();
  value = std::move(decoded.value());
  return {};
}

}  // namespace zent::jet
