#include "database/engines/odbc/OdbcTypes.h"

#include <algorithm>
#include <limits>

namespace zent {
namespace {

// Types by their numbers in the ODBC standard.
constexpr int kTinyInteger = -6;
constexpr int kInteger = 4;
constexpr int kSmallInteger = 5;
constexpr int kReal = 7;
constexpr int kGuid = -11;

/// A whole number without a sign needs the next larger type, but for the smallest, which has none.
FieldType WholeNumberType(const odbc::SqlType& type) {
  switch (type.number) {
    case kTinyInteger:
      return type.is_unsigned ? FieldType::Byte : FieldType::Integer;
    case kSmallInteger:
      return type.is_unsigned ? FieldType::Long : FieldType::Integer;
    case kInteger:
      return type.is_unsigned ? FieldType::BigInt : FieldType::Long;
    default:
      return FieldType::BigInt;
  }
}

std::int32_t Limited(std::uint64_t size) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(size, kMost));
}

struct SizeRow {
  FieldType type;
  std::int32_t bytes;
};

constexpr SizeRow kSizes[] = {
    {FieldType::Boolean, 1},  {FieldType::Byte, 1},   {FieldType::Integer, 2}, {FieldType::Long, 4},
    {FieldType::BigInt, 8},   {FieldType::Single, 4}, {FieldType::Double, 8},  {FieldType::Date, 8},
    {FieldType::Decimal, 16}, {FieldType::Guid, 16},
};

}  // namespace

FieldType FieldTypeOf(const odbc::SqlType& type) {
  switch (odbc::KindOf(type)) {
    case odbc::ColumnKind::Bit:
      return FieldType::Boolean;
    case odbc::ColumnKind::Integer:
      return WholeNumberType(type);
    case odbc::ColumnKind::Double:
      return type.number == kReal ? FieldType::Single : FieldType::Double;
    case odbc::ColumnKind::Decimal:
      return FieldType::Decimal;
    case odbc::ColumnKind::Text:
      return FieldType::Text;
    case odbc::ColumnKind::LongText:
      return FieldType::Memo;
    case odbc::ColumnKind::Binary:
      return FieldType::Binary;
    case odbc::ColumnKind::LongBinary:
      return FieldType::LongBinary;
    case odbc::ColumnKind::DateTime:
      return FieldType::Date;
    case odbc::ColumnKind::Other:
      break;
  }
  return type.number == kGuid ? FieldType::Guid : FieldType::Text;
}

std::int32_t FieldSizeOf(const odbc::SqlType& type) {
  const FieldType field = FieldTypeOf(type);
  if (field == FieldType::Text || field == FieldType::Binary) return Limited(type.size);
  for (const SizeRow& row : kSizes) {
    if (row.type == field) return row.bytes;
  }
  return 0;
}

}  // namespace zent
