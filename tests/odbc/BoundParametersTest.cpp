#include <gtest/gtest.h>

#include "odbc/BoundParameters.h"

namespace zent::odbc {
namespace {

struct BindCase {
  const char* what;
  OdbcValue value;
  SqlType type;
  SQLSMALLINT c_type;
  SQLSMALLINT sql_type;
  SQLULEN size;
  int digits;
  SQLLEN length;
};

const SqlType kNone = {};

const BindCase kBindCases[] = {
    {"null", {}, kNone, SQL_C_WCHAR, SQL_WVARCHAR, 1, 0, SQL_NULL_DATA},
    {"null of a column", {}, {SQL_VARBINARY, 16}, SQL_C_WCHAR, SQL_VARBINARY, 16, 0, SQL_NULL_DATA},
    {"null of a huge column",
     {},
     {SQL_WLONGVARCHAR, ~0ULL},
     SQL_C_WCHAR,
     SQL_WLONGVARCHAR,
     4000,
     0,
     SQL_NULL_DATA},
    {"bit", true, kNone, SQL_C_BIT, SQL_BIT, 1, 0, 1},
    {"small number", std::int64_t{-5}, kNone, SQL_C_SLONG, SQL_INTEGER, 10, 0, 4},
    {"large number", std::int64_t{1} << 40U, kNone, SQL_C_SBIGINT, SQL_BIGINT, 19, 0, 8},
    {"number for a decimal",
     std::int64_t{5},
     {SQL_DECIMAL, 12, 2},
     SQL_C_SLONG,
     SQL_DECIMAL,
     12,
     2,
     4},
    {"number for a text", std::int64_t{5}, {SQL_WVARCHAR, 20}, SQL_C_SLONG, SQL_INTEGER, 10, 0, 4},
    {"double", 0.5, kNone, SQL_C_DOUBLE, SQL_DOUBLE, 15, 0, 8},
    {"decimal", Decimal{"-12.50"}, kNone, SQL_C_WCHAR, SQL_DECIMAL, 4, 2, 12},
    {"text", std::string("abc"), kNone, SQL_C_WCHAR, SQL_WVARCHAR, 3, 0, 6},
    {"empty text", std::string(), kNone, SQL_C_WCHAR, SQL_WVARCHAR, 1, 0, 0},
    {"text for a narrow column",
     std::string("abc"),
     {SQL_VARCHAR, 50},
     SQL_C_WCHAR,
     SQL_VARCHAR,
     3,
     0,
     6},
    {"text for a date",
     std::string("1/2/2005"),
     {SQL_TYPE_TIMESTAMP, 19},
     SQL_C_WCHAR,
     SQL_WVARCHAR,
     8,
     0,
     16},
    {"a character of two units", std::string("😀"), kNone, SQL_C_WCHAR, SQL_WVARCHAR, 2, 0, 4},
    {"long text", std::string(4001, 'x'), kNone, SQL_C_WCHAR, SQL_WLONGVARCHAR, 4001, 0, 8002},
    {"bytes", Bytes{"ab"}, kNone, SQL_C_BINARY, SQL_VARBINARY, 2, 0, 2},
    {"many bytes", Bytes{std::string(5000, 'x')}, kNone, SQL_C_BINARY, SQL_LONGVARBINARY, 5000, 0,
     5000},
    {"date", DateTime{2005, 1, 2, 0, 0, 0, 0}, kNone, SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 19,
     0, 16},
    {"milliseconds", DateTime{2005, 1, 2, 0, 0, 0, 5000000}, kNone, SQL_C_TYPE_TIMESTAMP,
     SQL_TYPE_TIMESTAMP, 23, 3, 16},
    {"microseconds", DateTime{2005, 1, 2, 0, 0, 0, 5000}, kNone, SQL_C_TYPE_TIMESTAMP,
     SQL_TYPE_TIMESTAMP, 26, 6, 16},
    {"a column of whole seconds",
     DateTime{2005, 1, 2, 0, 0, 0, 5000},
     {SQL_TYPE_TIMESTAMP, 19, 0},
     SQL_C_TYPE_TIMESTAMP,
     SQL_TYPE_TIMESTAMP,
     19,
     0,
     16},
};

TEST(BoundParameters, HaveTheFormThatEveryDriverTakes) {
  for (const BindCase& row : kBindCases) {
    SCOPED_TRACE(row.what);
    BoundParameter bound = BindableForm(OdbcParameter(row.value, row.type));
    EXPECT_EQ(bound.c_type, row.c_type);
    EXPECT_EQ(bound.sql_type, row.sql_type);
    EXPECT_EQ(bound.size, row.size);
    EXPECT_EQ(bound.digits, row.digits);
    EXPECT_EQ(bound.length, row.length);
    EXPECT_EQ(bound.Data() == nullptr, IsNull(row.value));
  }
}

TEST(BoundParameters, CutSecondsToTheDigitsOfTheColumn) {
  const DateTime date = {2005, 1, 2, 3, 4, 5, 123456789};
  const BoundParameter bound = BindableForm(OdbcParameter(date, {SQL_TYPE_TIMESTAMP, 23, 3}));
  EXPECT_EQ(std::get<SQL_TIMESTAMP_STRUCT>(bound.content).fraction, 123000000U);
}

}  // namespace
}  // namespace zent::odbc
