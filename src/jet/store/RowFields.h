#pragma once

#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/RowCodec.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"
#include "jet/storage/Pager.h"

namespace zent::jet {

/// One field of a row, as bytes.
struct FieldBytes {
  bool present = false;  ///< not null; for bool columns the value
  bool stored = false;   ///< memo and OLE: `bytes` are the row's field, not the value itself
  bool apart = false;    ///< memo and OLE: goes outside of the row, however short it is
  std::string bytes = {};
};

/// All fields of a row, at the positions of their columns in the definition.
using RowFields = std::vector<FieldBytes>;

/// The value of a column; long values are read.
Result<Value> FieldValue(Pager& pager, const ColumnDefinition& column, const RowView& row,
                         PageNumber page);
Result<Value> FieldValue(Pager& pager, const ColumnDefinition& column, const FieldBytes& field,
                         PageNumber page);

/// Copies the fields of a stored row.
Result<RowFields> LoadFields(const TableDefinition& table, ByteView row, PageNumber page);

/// The bytes of `value` for `column`. kDataTypeConversion, kFieldTooSmall.
Result<FieldBytes> EncodeValue(const ColumnDefinition& column, const Value& value);

/// For a row that does not fit a page: long values that lie in it, or would, go outside of it; they
/// are to be stored then. False when there is none.
bool MoveApart(const TableDefinition& table, RowFields& fields);

/// The row. A long value that is not stored yet is taken to be: its place is held when it is too
/// long to be kept in the row. kRecordTooLarge when it does not fit a page.
Result<ByteView> BuildRow(const TableDefinition& table, const RowFields& fields,
                          RowBuilder& builder);

}  // namespace zent::jet
