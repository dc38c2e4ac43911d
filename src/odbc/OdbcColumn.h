#pragma once

#include <cstdint>
#include <string>

namespace zent::odbc {

/// What the values of a column are, and which OdbcValue they are read as.
enum class ColumnKind {
  Bit,
  Integer,
  Double,
  Decimal,  ///< also whole numbers too large for 64 bits with a sign
  Text,
  LongText,
  Binary,
  LongBinary,
  DateTime,
  Other,  ///< read as text
};

/// A type as ODBC describes it. Nothing is allocated by a size: servers may say anything.
struct SqlType {
  std::int16_t number = 0;  ///< SQL_VARCHAR ...; 0 is unknown
  std::uint64_t size = 0;   ///< characters, bytes or digits; 0 where the driver knows none
  std::int16_t digits = 0;  ///< behind the point, or of the seconds
  bool is_unsigned = false;
  bool operator==(const SqlType&) const = default;
};

/// A column of a result, or of a table.
struct OdbcColumn {
  std::string name;
  SqlType type;
  bool nullable = true;
  std::string type_name = {};      ///< the server's own; columns of tables only
  std::string default_value = {};  ///< an expression; columns of tables only
  bool operator==(const OdbcColumn&) const = default;
};

ColumnKind KindOf(const SqlType& type);

}  // namespace zent::odbc
