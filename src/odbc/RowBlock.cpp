#include "odbc/RowBlock.h"

#include <algorithm>
#include <utility>

#include "odbc/OdbcErrors.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kBlockBytes = 256U << 10U;
constexpr std::size_t kMostRows = 100;
constexpr std::size_t kFewestRows = 4;  // below it a block saves nothing
constexpr std::size_t kDecimalUnits = 128;

bool IsShort(const OdbcColumn& column) {
  switch (KindOf(column.type)) {
    case ColumnKind::LongText:
    case ColumnKind::LongBinary:
    case ColumnKind::Other:
      return false;
    default:
      return true;
  }
}

/// Bytes of one value. The sizes of short columns are at most some thousands; a character takes up
/// to two units.
std::size_t RoomFor(const OdbcColumn& column) {
  const ValueForm form = FormOf(column.type);
  if (form.bytes != 0) return form.bytes;
  const auto size = static_cast<std::size_t>(column.type.size);
  if (form.c_type == SQL_C_BINARY) return size;
  const std::size_t units = form.kind == ColumnKind::Decimal ? kDecimalUnits : 2 * size;
  return (units + 1) * sizeof(SQLWCHAR);
}

}  // namespace

std::size_t RowBlock::RowsFor(const std::vector<OdbcColumn>& columns) {
  std::size_t bytes = 1;
  for (const OdbcColumn& column : columns) {
    if (!IsShort(column)) return 0;
    bytes += RoomFor(column) + sizeof(SQLLEN);
  }
  const std::size_t rows = std::min(kBlockBytes / bytes, kMostRows);
  return rows < kFewestRows ? 0 : rows;
}

RowBlock::RowBlock(const std::vector<OdbcColumn>& columns, std::size_t rows) : states_(rows) {
  for (const OdbcColumn& column : columns) {
    const std::size_t room = RoomFor(column);
    columns_.push_back({FormOf(column.type), room, std::vector<unsigned char>(room * rows),
                        std::vector<SQLLEN>(rows)});
  }
}

Status RowBlock::BindTo(OdbcSession& session, const OdbcHandle& statement) {
  const struct {
    SQLINTEGER attribute;
    SQLPOINTER value;
  } attributes[] = {{SQL_ATTR_ROW_ARRAY_SIZE, AsPointer(states_.size())},
                    {SQL_ATTR_ROW_STATUS_PTR, states_.data()},
                    {SQL_ATTR_ROWS_FETCHED_PTR, &fetched_}};
  for (const auto& row : attributes) {
    const SQLRETURN code =
        session.calls.set_stmt_attr(statement.get(), row.attribute, row.value, SQL_IS_POINTER);
    if (Status set = session.Check(statement, code); !set.ok()) return set;
  }
  SQLUSMALLINT number = 0;
  for (BoundColumn& column : columns_) {
    const SQLRETURN code =
        session.calls.bind_col(statement.get(), ++number, column.form.c_type, column.data.data(),
                               static_cast<SQLLEN>(column.room), column.lengths.data());
    if (Status bound = session.Check(statement, code); !bound.ok()) return bound;
  }
  return {};
}

Result<bool> RowBlock::Next(OdbcSession& session, const OdbcHandle& statement) {
  if (row_ >= fetched_) {
    fetched_ = 0;
    row_ = 0;
    const SQLRETURN code = session.calls.fetch(statement.get());
    if (code == SQL_NO_DATA) return false;
    if (Status read = session.Check(statement, code); !read.ok()) return read.error();
    fetched_ = std::min<SQLULEN>(fetched_, states_.size());
    if (fetched_ == 0) return false;
  }
  const SQLUSMALLINT state = states_[row_++];
  if (state == SQL_ROW_ERROR) {
    session.errors = ReadErrors(session.calls, statement, session.connect_text);
    return ErrorOf(session.errors);
  }
  return true;
}

Result<OdbcValue> RowBlock::Value(std::size_t column) const {
  const BoundColumn& bound = columns_[column];
  const SQLLEN told = bound.lengths[row_ - 1];
  if (told == SQL_NULL_DATA) return OdbcValue();
  std::size_t length = bound.form.bytes;
  if (length == 0) {
    const std::size_t zero = bound.form.c_type == SQL_C_WCHAR ? sizeof(SQLWCHAR) : 0;
    if (told < 0 || static_cast<std::size_t>(told) > bound.room - zero) {
      return EngineError(kCallFailed, "The server sent a value that is longer than its column.");
    }
    length = static_cast<std::size_t>(told);
  }
  return DecodeValue(bound.form, bound.data.data() + (row_ - 1) * bound.room, length);
}

}  // namespace zent::odbc
