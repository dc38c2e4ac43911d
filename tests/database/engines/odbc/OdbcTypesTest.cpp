#include <gtest/gtest.h>

#include "database/engines/odbc/OdbcTypes.h"

namespace zent {
namespace {

struct TypeCase {
  const char* what;
  odbc::SqlType type;
  FieldType field;
  std::int32_t size;
};

constexpr TypeCase kTypeCases[] = {
    {"SQL_BIT", {-7, 1}, FieldType::Boolean, 1},
    {"SQL_TINYINT of SQL Server", {-6, 3, 0, true}, FieldType::Byte, 1},
    {"SQL_TINYINT with a sign", {-6, 3}, FieldType::Integer, 2},
    {"SQL_SMALLINT", {5, 5}, FieldType::Integer, 2},
    {"SQL_SMALLINT without a sign", {5, 5, 0, true}, FieldType::Long, 4},
    {"SQL_INTEGER", {4, 10}, FieldType::Long, 4},
    {"SQL_INTEGER without a sign", {4, 10, 0, true}, FieldType::BigInt, 8},
    {"SQL_BIGINT", {-5, 19}, FieldType::BigInt, 8},
    {"SQL_BIGINT without a sign", {-5, 20, 0, true}, FieldType::Decimal, 16},
    {"SQL_REAL", {7, 7}, FieldType::Single, 4},
    {"SQL_FLOAT", {6, 15}, FieldType::Double, 8},
    {"SQL_DOUBLE", {8, 15}, FieldType::Double, 8},
    {"SQL_DECIMAL", {3, 19, 4}, FieldType::Decimal, 16},
    {"SQL_NUMERIC", {2, 38}, FieldType::Decimal, 16},
    {"SQL_CHAR", {1, 4}, FieldType::Text, 4},
    {"SQL_VARCHAR", {12, 50}, FieldType::Text, 50},
    {"SQL_WVARCHAR", {-9, 255}, FieldType::Text, 255},
    {"SQL_VARCHAR without a size", {12, 0}, FieldType::Memo, 0},
    {"SQL_WLONGVARCHAR", {-10, 1073741823}, FieldType::Memo, 0},
    {"SQL_VARBINARY", {-3, 16}, FieldType::Binary, 16},
    {"SQL_LONGVARBINARY", {-4, 2147483647}, FieldType::LongBinary, 0},
    {"SQL_TYPE_DATE", {91, 10}, FieldType::Date, 8},
    {"SQL_TYPE_TIMESTAMP", {93, 23, 3}, FieldType::Date, 8},
    {"SQL_GUID", {-11, 36}, FieldType::Guid, 16},
    {"a time of day", {92, 8}, FieldType::Text, 8},
    {"a type that nobody knows", {-4711, 99}, FieldType::Text, 99},
    {"an unknown type of an unknown size", {-4711, 0}, FieldType::Text, 0},
    {"an unknown type of an absurd size", {-4711, 1ULL << 60U}, FieldType::Text, 2147483647},
};

TEST(OdbcTypes, AreTheFieldsThatHoldTheirValues) {
  for (const TypeCase& row : kTypeCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(static_cast<int>(FieldTypeOf(row.type)), static_cast<int>(row.field));
    EXPECT_EQ(FieldSizeOf(row.type), row.size);
  }
}

}  // namespace
}  // namespace zent
