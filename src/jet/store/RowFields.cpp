#include "jet/store/RowFields.h"

#include "jet/format/JetErrors.h"
#include "jet/format/LongValueDescriptor.h"
#include "jet/format/ValueCodec.h"
#include "jet/store/LongValues.h"

namespace zent::jet {
namespace {

/// The value of a field that is present and no bool.
Result<Value> DecodeStored(Pager& pager, const ColumnDefinition& column, ByteView bytes,
                           PageNumber page) {
  if (!IsLong(column.type)) return DecodeField(pager.version(), column, bytes, page);
  const Result<std::string> value = ReadLongValue(pager, bytes, page);
  if (!value.ok()) return value.error();
  return DecodeField(pager.version(), column, AsBytes(value.value()), page);
}

}  // namespace

Result<Value> FieldValue(Pager& pager, const ColumnDefinition& column, const RowView& row,
                         PageNumber page) {
  if (column.type == ColumnType::Bool) return Value(row.Has(column));
  ByteView bytes;
  switch (row.Field(column, bytes)) {
    case RowView::FieldState::Null:
      return Value(Null());
    case RowView::FieldState::Present:
      return DecodeStored(pager, column, bytes, page);
    case RowView::FieldState::Damaged:
      break;
  }
  return Damaged(page, "a field does not lie within its row");
}

Result<Value> FieldValue(Pager& pager, const ColumnDefinition& column, const FieldBytes& field,
                         PageNumber page) {
  if (column.type == ColumnType::Bool) return Value(field.present);
  if (!field.present) return Value(Null());
  const ByteView bytes = AsBytes(field.bytes);
  if (field.stored) return DecodeStored(pager, column, bytes, page);
  return DecodeField(pager.version(), column, bytes, page);
}

Result<RowFields> LoadFields(const TableDefinition& table, ByteView row, PageNumber page) {
  const Result<RowView> view = RowView::Open(table, row, page);
  if (!view.ok()) return view.error();
  RowFields fields(table.columns.size());
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const ColumnDefinition& column = table.columns[i];
    FieldBytes& field = fields[i];
    if (column.type == ColumnType::Bool) {
      field.present = view.value().Has(column);
      continue;
    }
    ByteView bytes;
    const RowView::FieldState state = view.value().Field(column, bytes);
    if (state == RowView::FieldState::Damaged) {
      return Damaged(page, "a field does not lie within its row");
    }
    field.present = state == RowView::FieldState::Present;
    field.stored = IsLong(column.type);
    if (field.present) field.bytes = AsText(bytes);
  }
  return fields;
}

Result<FieldBytes> EncodeValue(const ColumnDefinition& column, const Value& value) {
  FieldBytes field;
  if (column.type == ColumnType::Bool) {
    const bool* const set = std::get_if<bool>(&value);
    if (set == nullptr && !IsNull(value)) return JetError(kDataTypeConversion);
    field.present = set != nullptr && *set;
    return field;
  }
  if (IsNull(value)) return field;
  if (Status encoded = EncodeField(column, value, field.bytes); !encoded.ok()) {
    return encoded.error();
  }
  field.present = true;
  return field;
}

bool MoveApart(const TableDefinition& table, RowFields& fields) {
  bool moved = false;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    FieldBytes& field = fields[i];
    if (!field.present || !IsLong(table.columns[i].type) || field.apart) continue;
    if (field.stored) {
      const Result<LongValueDescriptor> value = ParseLongValue(AsBytes(field.bytes), 0);
      if (!value.ok() || value.value().kind != LongValueKind::Inline) continue;
      field.bytes = std::string(AsText(value.value().data));
      field.stored = false;
    }
    field.apart = !field.bytes.empty();
    moved = moved || field.apart;
  }
  return moved;
}

Result<ByteView> BuildRow(const TableDefinition& table, const RowFields& fields,
                          RowBuilder& builder) {
  const std::size_t longest = LayoutOf(table.version).data.max_inline_value;
  builder.Clear();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const ColumnDefinition& column = table.columns[i];
    const FieldBytes& field = fields[i];
    if (column.type == ColumnType::Bool) {
      builder.SetBool(column, field.present);
    } else if (field.present && IsLong(column.type) && !field.stored) {
      const std::size_t kept = field.apart || field.bytes.size() > longest ? 0 : field.bytes.size();
      builder.Set(column, AsBytes(std::string(kLongValueDescriptorSize + kept, '\0')));
    } else if (field.present) {
      builder.Set(column, AsBytes(field.bytes));
    }
  }
  return builder.Build();
}

}  // namespace zent::jet
