#pragma once

#include "contracts/ContractDatabase.h"

/// Values of each type, there and back.
namespace zent::testing {

struct ValueCase {
  const char* what;
  FieldType type;
  std::int32_t size;
  FieldValue value;
};

inline std::vector<ValueCase> ContractValues() {
  const std::string odd_text = "it's \"q\" ; ? {x} [y] \\ % _ #";
  const std::string bytes("\0\xFF\x80'\x1A\0", 6);
  return {
      {"true", FieldType::Boolean, 0, true},
      {"false", FieldType::Boolean, 0, false},
      {"the least byte", FieldType::Byte, 0, std::uint8_t{0}},
      {"the largest byte", FieldType::Byte, 0, std::uint8_t{255}},
      {"the least integer", FieldType::Integer, 0, std::int16_t{-32768}},
      {"the largest integer", FieldType::Integer, 0, std::int16_t{32767}},
      {"the least long", FieldType::Long, 0, std::int32_t{-2147483647 - 1}},
      {"the largest long", FieldType::Long, 0, std::int32_t{2147483647}},
      {"the largest of 64 bits", FieldType::BigInt, 0, std::int64_t{9223372036854775807}},
      {"the least of 64 bits", FieldType::BigInt, 0, std::int64_t{-9223372036854775807 - 1}},
      {"a currency", FieldType::Currency, 0, Currency{-12345678901}},
      {"a single", FieldType::Single, 0, 0.1F},
      {"a double", FieldType::Double, 0, 0.1},
      {"a large double", FieldType::Double, 0, -1.7976931348623157e308},
      {"a decimal", FieldType::Decimal, 0, DecimalText{"-12345678901234.25"}},
      {"a day", FieldType::Date, 0, DateSerial{38354}},
      {"a day and a time", FieldType::Date, 0, DateSerial{38354 + 11045 / 86400.0}},
      {"the last second before noon", FieldType::Date, 0, DateSerial{45000 + 43199 / 86400.0}},
      {"a time of day alone", FieldType::Date, 0, DateSerial{0.25}},
      {"a time before the first day", FieldType::Date, 0, DateSerial{-1.25}},
      {"a far day", FieldType::Date, 0, DateSerial{2958465}},
      {"a text", FieldType::Text, 50, "plain"},
      {"an empty text", FieldType::Text, 50, ""},
      {"a text of odd characters", FieldType::Text, 50, odd_text},
      {"a text of many alphabets", FieldType::Text, 50,
       "Gr\xC3\xB6\xC3\x9F"
       "e \xE6\xBC\xA2\xE5\xAD\x97 \xCE\xA9 \xF0\x9F\x98\x80"},
      {"a text with blanks at its ends", FieldType::Text, 50, "  a b  "},
      {"the longest text", FieldType::Text, 255, std::string(255, 'x')},
      {"a memo", FieldType::Memo, 0, "line\r\nline"},
      {"a long memo", FieldType::Memo, 0, std::string(100'000, 'm')},
      {"bytes", FieldType::Binary, 50, BinaryBytes{bytes}},
      {"long bytes", FieldType::LongBinary, 0, BinaryBytes{bytes + std::string(100'000, '\0')}},
      {"a GUID", FieldType::Guid, 0,
       Guid{{0x6F, 0x96, 0x19, 0xFF, 0x8B, 0x86, 0xD0, 0x11, 0xB4, 0x2D, 0x00, 0xC0, 0x4F, 0xC9,
             0x64, 0xFF}}},
  };
}

inline void AddValue(Recordset& rows, std::int32_t id, const FieldValue& value) {
  ASSERT_TRUE(rows.AddNew().ok());
  ASSERT_TRUE(rows.Set("Id", id).ok());
  const Status set = rows.Set("V", value);
  ASSERT_TRUE(set.ok()) << set.error().description;
  const Status added = rows.Update();
  ASSERT_TRUE(added.ok()) << added.error().description;
}

TEST_P(DatabaseContract, GivesValuesBackAsTheyWereStored) {
  int number = 0;
  for (const ValueCase& row : ContractValues()) {
    if (!GetParam().types.contains(row.type)) continue;
    SCOPED_TRACE(row.what);
    const std::string table = "Values" + std::to_string(++number);
    MakeTable({.name = table,
               .fields = {{.name = "Id", .type = FieldType::Long},
                          {.name = "V",
                           .type = row.type,
                           .size = row.size,
                           .precision = std::uint8_t{18},
                           .scale = std::uint8_t{2}}}});
    AddValue(*OpenToChange(table), 1, row.value);
    const auto first = OpenToRead(table);
    const Result<FieldValue> read = first->Get("V");
    ASSERT_TRUE(read.ok()) << read.error().description;
    EXPECT_TRUE(read.value() == row.value) << read.value().AsText().substr(0, 80);
    EXPECT_EQ(first->Fields()[1].type, row.type);

    AddValue(*OpenToChange(table), 2, read.value());
    const auto rows = OpenToChange(table);
    for (int met = 0; met < 2; ++met) {
      ASSERT_FALSE(rows->AtEnd());
      EXPECT_TRUE(rows->Get("V").value_or({}) == row.value);
      ASSERT_TRUE(rows->MoveNext().ok());
    }
    EXPECT_TRUE(rows->AtEnd());
  }
  EXPECT_GE(number, 20);
}

TEST_P(DatabaseContract, GivesNullsBackAsNulls) {
  int number = 0;
  for (const FieldType type : GetParam().types) {
    if (type == FieldType::Boolean && !GetParam().has_null_booleans) continue;
    SCOPED_TRACE(static_cast<int>(type));
    const std::string table = "Nulls" + std::to_string(++number);
    MakeTable({.name = table,
               .fields = {{.name = "Id", .type = FieldType::Long},
                          {.name = "V",
                           .type = type,
                           .size = type == FieldType::Text || type == FieldType::Binary ? 50 : 0,
                           .precision = std::uint8_t{18},
                           .scale = std::uint8_t{2}}}});
    AddValue(*OpenToChange(table), 1, FieldValue());
    EXPECT_THAT(Rows(table), ::testing::ElementsAre("1|null"));
  }
}

}  // namespace zent::testing
