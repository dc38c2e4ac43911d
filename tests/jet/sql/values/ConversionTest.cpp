#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Conversion.h"

namespace zent::jet {
namespace {

ColumnDefinition Column(ColumnType type, std::uint16_t length = 0) {
  ColumnDefinition column;
  column.type = type;
  column.length = length;
  if (type == ColumnType::Numeric) column.details = {5, 2, 0, 0};
  return column;
}

struct ConversionCase {
  const char* what;
  ColumnType type;
  Value value;
  Value converted;
};

TEST(ConvertForColumn, GivesTheTypeOfTheColumn) {
  const Date january = {38383};  // 2005-01-31
  const ConversionCase rows[] = {
      {"null", ColumnType::Long, Null(), Null()},
      {"null in a Yes/No column", ColumnType::Bool, Null(), false},
      {"byte", ColumnType::Byte, std::int16_t{255}, std::uint8_t{255}},
      {"yes as a byte", ColumnType::Byte, true, std::uint8_t{255}},
      {"int rounds to even", ColumnType::Int, 2.5, std::int16_t{2}},
      {"yes as an int", ColumnType::Int, true, std::int16_t{-1}},
      {"text as a long", ColumnType::Long, Text(" 42 "), std::int32_t{42}},
      {"date as a long", ColumnType::Long, january, std::int32_t{38383}},
      {"single", ColumnType::Single, 1.5, 1.5F},
      {"double", ColumnType::Double, std::int16_t{2}, 2.0},
      {"text as a double", ColumnType::Double, Text("1e3"), 1000.0},
      {"currency of a double", ColumnType::Currency, 1.03125, Currency{10312}},
      {"currency of a text", ColumnType::Currency, Text("922337203685477.5807"),
       Currency{9223372036854775807}},
      {"currency of a long", ColumnType::Currency, std::int32_t{-3}, Currency{-30000}},
      {"currency of a text with exponent", ColumnType::Currency, Text("1e2"), Currency{1000000}},
      {"decimal of a double", ColumnType::Numeric, 1.255,
       Decimal{.scale = 2, .magnitude = {0, 0, 0, 126}}},
      {"decimal of a text", ColumnType::Numeric, Text("-1.5"),
       Decimal{.negative = true, .scale = 2, .magnitude = {0, 0, 0, 150}}},
      {"decimal of a long", ColumnType::Numeric, std::int32_t{7},
       Decimal{.scale = 2, .magnitude = {0, 0, 0, 700}}},
      {"decimal of a tiny double", ColumnType::Numeric, 1e-20,
       Decimal{.scale = 2, .magnitude = {0, 0, 0, 0}}},
      {"date of a text", ColumnType::Date, Text("1/31/2005"), january},
      {"date of a number", ColumnType::Date, std::int32_t{38383}, january},
      {"date of a text that is a number", ColumnType::Date, Text("38383"), january},
      {"yes of a number", ColumnType::Bool, std::int16_t{5}, true},
      {"no of a number", ColumnType::Bool, 0.0, false},
      {"yes of a text", ColumnType::Bool, Text("Yes"), true},
      {"no of a text", ColumnType::Bool, Text("OFF"), false},
      {"yes of a number in a text", ColumnType::Bool, Text("-1"), true},
      {"text as long as the column", ColumnType::Text, Text("añbcd"), Text("añbcd")},
      {"text of a long", ColumnType::Text, std::int32_t{12}, Text("12")},
      {"empty text", ColumnType::Text, Text(""), Text("")},
      {"memo", ColumnType::Memo, Text(std::string(5000, 'x')), Text(std::string(5000, 'x'))},
      {"memo of a date", ColumnType::Memo, Date{38383.77083333333}, Text("1/31/2005 6:30:00 PM")},
      {"bytes", ColumnType::Binary, Binary{"0123456789"}, Binary{"0123456789"}},
      {"OLE", ColumnType::Ole, Binary{std::string(5000, 'x')}, Binary{std::string(5000, 'x')}},
      {"GUID of a text", ColumnType::Guid, Text("{00000000-0000-0000-0000-000000000000}"), Guid()},
      {"GUID", ColumnType::Guid, Guid{{1}}, Guid{{1}}},
  };
  for (const ConversionCase& row : rows) {
    SCOPED_TRACE(row.what);
    const Result<Value> converted = ConvertForColumn(Column(row.type, 10), row.value);
    ASSERT_TRUE(converted.ok()) << converted.error().description;
    EXPECT_EQ(converted.value(), row.converted);
  }
}

struct ErrorCase {
  const char* what;
  ColumnType type;
  Value value;
  int number;
};

TEST(ConvertForColumn, RefusesWhatTheColumnCannotHold) {
  const ErrorCase rows[] = {
      {"byte too high", ColumnType::Byte, std::int16_t{256}, kNumericOverflow},
      {"byte below 0", ColumnType::Byte, std::int16_t{-1}, kNumericOverflow},
      {"int too high", ColumnType::Int, std::int32_t{32768}, kNumericOverflow},
      {"long too high", ColumnType::Long, 2147483648.0, kNumericOverflow},
      {"single too high", ColumnType::Single, 1e39, kNumericOverflow},
      {"currency too high", ColumnType::Currency, 1e15, kNumericOverflow},
      {"decimal with too many digits", ColumnType::Numeric, std::int32_t{1000}, kNumericOverflow},
      {"decimal of a huge double", ColumnType::Numeric, 1e30, kNumericOverflow},
      {"long of a text", ColumnType::Long, Text("abc"), kDataTypeConversion},
      {"long of an empty text", ColumnType::Long, Text(""), kDataTypeConversion},
      {"double of bytes", ColumnType::Double, Binary{"1"}, kDataTypeConversion},
      {"date of a text", ColumnType::Date, Text("31/31/2005"), kDataTypeConversion},
      {"date beyond the calendar", ColumnType::Date, 1e9, kDataTypeConversion},
      {"yes of a text", ColumnType::Bool, Text("maybe"), kDataTypeConversion},
      {"text too long", ColumnType::Text, Text("123456"), kFieldTooSmall},
      {"text too long in 16-bit units", ColumnType::Text, Text("1234\xF0\x9F\x98\x80"),
       kFieldTooSmall},
      {"text of bytes", ColumnType::Text, Binary{"a"}, kDataTypeConversion},
      {"bytes too long", ColumnType::Binary, Binary{"01234567890"}, kFieldTooSmall},
      {"bytes of a text", ColumnType::Binary, Text("a"), kDataTypeConversion},
      {"GUID of a text", ColumnType::Guid, Text("x"), kDataTypeConversion},
      {"GUID of a number", ColumnType::Guid, 1.0, kDataTypeConversion},
      {"unknown type", ColumnType::Internal, 1.0, kDataTypeConversion},
  };
  for (const ErrorCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ConvertForColumn(Column(row.type, 10), row.value).number(), row.number);
  }
}

TEST(TextOf, ShowsValuesAsPeopleWriteThem) {
  const std::pair<Value, const char*> rows[] = {
      {Null(), ""},
      {true, "-1"},
      {false, "0"},
      {std::uint8_t{7}, "7"},
      {std::int16_t{-7}, "-7"},
      {Currency{12500}, "1.25"},
      {Currency{20000}, "2"},
      {1.5F, "1.5"},
      {0.1, "0.1"},
      {1e20, "1E+20"},
      {Date{38383}, "1/31/2005"},
      {Date{0.5}, "12:00:00 PM"},
      {Text("x"), "x"},
      {Decimal{.scale = 2, .magnitude = {0, 0, 0, 150}}, "1.50"},
      {Date{0}, "12/30/1899"},
  };
  for (const auto& [value, text] : rows) EXPECT_EQ(TextOf(value).value(), text);
  EXPECT_EQ(TextOf(Binary{"a"}).number(), kCriteriaTypeMismatch);
}

}  // namespace
}  // namespace zent::jet
