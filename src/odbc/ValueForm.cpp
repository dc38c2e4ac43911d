#include "odbc/ValueForm.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "base/Text.h"
#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

/// Out of a buffer in which it may lie anywhere.
template <typename T>
T Take(const unsigned char* data) {
  T value = {};
  std::memcpy(&value, data, sizeof(T));
  return value;
}

OdbcValue DateOf(const SQL_TIMESTAMP_STRUCT& stamp) {
  if (stamp.month == 0 || stamp.day == 0) return std::monostate();
  DateTime date;
  date.year = stamp.year;
  date.month = stamp.month;
  date.day = stamp.day;
  date.hour = stamp.hour;
  date.minute = stamp.minute;
  date.second = stamp.second;
  date.nanoseconds = stamp.fraction;
  return date;
}

}  // namespace

ValueForm FormOf(const SqlType& type) {
  const ColumnKind kind = KindOf(type);
  switch (kind) {
    case ColumnKind::Bit:
      return {kind, SQL_C_BIT, 1};
    case ColumnKind::Integer:
      // Not every driver gives numbers of 64 bits: they are asked for only where they may come.
      if (type.number == SQL_BIGINT || type.is_unsigned) {
        return {kind, SQL_C_SBIGINT, sizeof(SQLBIGINT)};
      }
      return {kind, SQL_C_SLONG, sizeof(SQLINTEGER)};
    case ColumnKind::Double:
      return {kind, SQL_C_DOUBLE, sizeof(double)};
    case ColumnKind::DateTime:
      return {kind, SQL_C_TYPE_TIMESTAMP, sizeof(SQL_TIMESTAMP_STRUCT)};
    case ColumnKind::Binary:
    case ColumnKind::LongBinary:
      return {kind, SQL_C_BINARY, 0};
    case ColumnKind::Decimal:
    case ColumnKind::Text:
    case ColumnKind::LongText:
    case ColumnKind::Other:
      break;
  }
  return {kind, SQL_C_WCHAR, 0};
}

OdbcValue ValueOfText(ColumnKind kind, std::string text) {
  if (kind == ColumnKind::Binary || kind == ColumnKind::LongBinary) return Bytes{std::move(text)};
  if (kind != ColumnKind::Decimal) return text;
  // A driver may write numbers as its user does.
  std::replace(text.begin(), text.end(), ',', '.');
  return Decimal{std::string(TrimBlanks(text))};
}

OdbcValue DecodeValue(const ValueForm& form, const unsigned char* data, std::size_t length) {
  switch (form.c_type) {
    case SQL_C_BIT:
      return Take<unsigned char>(data) != 0;
    case SQL_C_SLONG:
      return static_cast<std::int64_t>(Take<SQLINTEGER>(data));
    case SQL_C_SBIGINT:
      return static_cast<std::int64_t>(Take<SQLBIGINT>(data));
    case SQL_C_DOUBLE:
      return Take<double>(data);
    case SQL_C_TYPE_TIMESTAMP:
      return DateOf(Take<SQL_TIMESTAMP_STRUCT>(data));
    case SQL_C_BINARY:
      return ValueOfText(form.kind, std::string(data, data + length));
    default:
      break;
  }
  std::vector<SQLWCHAR> units(length / sizeof(SQLWCHAR));
  if (!units.empty()) std::memcpy(units.data(), data, units.size() * sizeof(SQLWCHAR));
  return ValueOfText(form.kind, FromWide(units, units.size()));
}

}  // namespace zent::odbc
