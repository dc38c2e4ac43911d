#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::ElementsAre;

class Values : public ServerTest {};

struct TypeCase {
  const char* type;
  OdbcValue value;
  const char* read;
};

DateTime Date(std::int16_t year, std::uint16_t month, std::uint16_t day, std::uint16_t hour = 0,
              std::uint16_t minute = 0, std::uint16_t second = 0, std::uint32_t nanoseconds = 0) {
  return DateTime{year, month, day, hour, minute, second, nanoseconds};
}

/// Null, too, comes back from a column of each type.
TEST_P(Values, OfEveryTypeComeBackAsTheyWereStored) {
  const TypeCase cases[] = {
      {"TINYINT", std::int64_t{-128}, "-128"},
      {"TINYINT UNSIGNED", std::int64_t{255}, "255"},
      {"SMALLINT", std::int64_t{-32768}, "-32768"},
      {"INTEGER", std::int64_t{2147483647}, "2147483647"},
      {"INTEGER UNSIGNED", std::int64_t{4294967295}, "4294967295"},
      {"BIGINT", std::int64_t{-9223372036854775807 - 1}, "-9223372036854775808"},
      {"BIGINT UNSIGNED", Decimal{"18446744073709551615"}, "18446744073709551615"},
      {"BIT", true, "true"},
      {"BIT", false, "false"},
      {"DOUBLE", 0.1, "0.1"},
      {"DOUBLE", -1.7976931348623157e308, "-1.7976931348623157e+308"},
      {"FLOAT", 0.5, "0.5"},
      {"DECIMAL(19,4)", Decimal{"922337203685477.5807"}, "922337203685477.5807"},
      {"DECIMAL(38,10)", Decimal{"-1234567890123456789012345678.0123456789"},
       "-1234567890123456789012345678.0123456789"},
      {"DECIMAL(10,2)", Decimal{"12.50"}, "12.50"},
      {"DECIMAL(10,2)", std::int64_t{7}, "7.00"},
      {"VARCHAR(20)", std::string("plain"), "plain"},
      {"VARCHAR(20)", std::string(), ""},
      {"VARCHAR(20)", std::string("it's \"q\" ; ? {x}"), "it's \"q\" ; ? {x}"},
      {"VARCHAR(20)", std::string("Größe 漢字 Ω"), "Größe 漢字 Ω"},
      {"VARCHAR(5)", std::string("😀😀𝒳😀😀"), "😀😀𝒳😀😀"},
      {"VARCHAR(20)", std::int64_t{42}, "42"},
      {"CHAR(4)", std::string("ab"), "ab"},
      {"LONGTEXT", std::string("memo\r\n😀"), "memo\r\n😀"},
      {"VARBINARY(20)", Bytes{std::string("\0\xff\x80'", 4)}, "00ff8027"},
      {"VARBINARY(20)", Bytes{}, ""},
      {"LONGBLOB", Bytes{std::string("\0\0\x1a", 3)}, "00001a"},
      {"DATE", Date(2005, 1, 2), "2005-01-02 00:00:00.000000"},
      {"DATE", Date(1000, 12, 31), "1000-12-31 00:00:00.000000"},
      {"DATETIME", Date(2024, 2, 29, 23, 59, 59), "2024-02-29 23:59:59.000000"},
      {"DATETIME(3)", Date(1999, 12, 31, 0, 0, 0, 123000000), "1999-12-31 00:00:00.123000"},
      {"DATETIME(6)", Date(9999, 12, 31, 23, 59, 59, 999999000), "9999-12-31 23:59:59.999999"},
      {"TIME", std::string("23:59:58"), "23:59:58"},
  };
  for (const TypeCase& row : cases) {
    SCOPED_TRACE(std::string(row.type) + " " + row.read);
    MakeTable("RoundTrip", "(id INT, v " + std::string(row.type) + ")");
    const std::vector<OdbcParameter> value = {row.value};
    EXPECT_EQ(Run("INSERT INTO RoundTrip VALUES (1, ?)", value), 1);
    const std::vector<OdbcParameter> null = {OdbcValue()};
    EXPECT_EQ(Run("INSERT INTO RoundTrip VALUES (2, ?)", null), 1);
    EXPECT_THAT(Rows("SELECT v FROM RoundTrip ORDER BY id"), ElementsAre(row.read, "null"));
  }
}

ZENT_ON_BOTH_KINDS(Values);

}  // namespace
}  // namespace zent::odbc
