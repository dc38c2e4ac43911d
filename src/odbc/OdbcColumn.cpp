#include "odbc/OdbcColumn.h"

#include "odbc/OdbcCalls.h"

namespace zent::odbc {
namespace {

/// Beyond it, and where the driver knows no size, a value is fetched as a long one.
constexpr std::uint64_t kLongestFetchedWhole = 8000;

bool IsLong(const SqlType& type) { return type.size == 0 || type.size > kLongestFetchedWhole; }

}  // namespace

ColumnKind KindOf(const SqlType& type) {
  switch (type.number) {
    case SQL_BIT:
      return ColumnKind::Bit;
    case SQL_TINYINT:
    case SQL_SMALLINT:
    case SQL_INTEGER:
      return ColumnKind::Integer;
    case SQL_BIGINT:
      return type.is_unsigned ? ColumnKind::Decimal : ColumnKind::Integer;
    case SQL_REAL:
    case SQL_FLOAT:
    case SQL_DOUBLE:
      return ColumnKind::Double;
    case SQL_DECIMAL:
    case SQL_NUMERIC:
      return ColumnKind::Decimal;
    case SQL_CHAR:
    case SQL_VARCHAR:
    case SQL_WCHAR:
    case SQL_WVARCHAR:
      return IsLong(type) ? ColumnKind::LongText : ColumnKind::Text;
    case SQL_LONGVARCHAR:
    case SQL_WLONGVARCHAR:
      return ColumnKind::LongText;
    case SQL_BINARY:
    case SQL_VARBINARY:
      return IsLong(type) ? ColumnKind::LongBinary : ColumnKind::Binary;
    case SQL_LONGVARBINARY:
      return ColumnKind::LongBinary;
    case SQL_TYPE_DATE:
    case SQL_TYPE_TIMESTAMP:
    case SQL_DATETIME:   // the number of dates
    case SQL_TIMESTAMP:  // and of timestamps in the second version of the interface
      return ColumnKind::DateTime;
    default:
      return ColumnKind::Other;
  }
}

}  // namespace zent::odbc
