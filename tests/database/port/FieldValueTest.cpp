#include <gtest/gtest.h>

#include <limits>

#include "database/port/FieldValue.h"

namespace zent {
namespace {

struct TextCase {
  const char* what;
  FieldValue value;
  const char* text;
};

const TextCase kTextCases[] = {
    {"null is empty", {}, ""},
    {"a literal is text", "abc", "abc"},
    {"true", true, "True"},
    {"false", false, "False"},
    {"a byte is a number", std::uint8_t{65}, "65"},
    {"a negative integer", std::int16_t{-12}, "-12"},
    {"a long", std::int32_t{70000}, "70000"},
    {"the lowest 64-bit number", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
    {"a whole double has no point", 3.0, "3"},
    {"a fraction has a zero before the point", -0.5, "-0.5"},
    {"fifteen digits of a double", 1.0 / 3, "0.333333333333333"},
    {"small numbers that need few places", 0.00001, "0.00001"},
    {"small numbers that need many", 1.0 / 3e6, "3.33333333333333E-07"},
    {"no exponent up to fifteen digits", 999999999999999.0, "999999999999999"},
    {"an exponent above", 1e15, "1E+15"},
    {"an exponent with a fraction", -1.25e300, "-1.25E+300"},
    {"minus zero", -0.0, "0"},
    {"seven digits of a single", 0.1F, "0.1"},
    {"a large single", 16777216.0F, "1.677722E+07"},
    {"money without needless zeros", Currency{125000}, "12.5"},
    {"whole money", Currency{-70000}, "-7"},
    {"four places of money", Currency{-1}, "-0.0001"},
    {"the lowest amount", Currency{std::numeric_limits<std::int64_t>::min()},
     "-922337203685477.5808"},
    {"a decimal as it is", DecimalText{"-12.50"}, "-12.50"},
    {"a date without a time", DateSerial{38353}, "1/1/2005"},
    {"a date with a time", DateSerial{38353.5}, "1/1/2005 12:00:00 PM"},
    {"a time alone", DateSerial{0.75}, "6:00:00 PM"},
    {"midnight of day 0", DateSerial{0}, "12:00:00 AM"},
    {"a time before day 0 counts away from it", DateSerial{-1.25}, "12/29/1899 6:00:00 AM"},
    {"the last second rounds into the next day", DateSerial{38352.9999999}, "1/1/2005"},
    {"no date at all", DateSerial{1e9}, "1000000000"},
    {"bytes are UTF-16", BinaryBytes{std::string("A\0B\0C", 5)}, "AB"},
    {"a GUID",
     Guid{{0, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE,
           0xFF}},
     "{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}"},
};

TEST(FieldValue, ReadsAsTextLikeTheClassicLanguage) {
  for (const TextCase& row : kTextCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.value.AsText(), row.text);
  }
}

TEST(FieldValue, IsBlankWhenNullEmptyOrOfBlanks) {
  EXPECT_TRUE(FieldValue().IsBlank());
  EXPECT_TRUE(FieldValue("").IsBlank());
  EXPECT_TRUE(FieldValue("   ").IsBlank());
  EXPECT_FALSE(FieldValue(" a ").IsBlank());
  EXPECT_FALSE(FieldValue(false).IsBlank());
  EXPECT_FALSE(FieldValue(std::int32_t{0}).IsBlank());
}

TEST(FieldValue, TellsNullFromAnEmptyText) {
  EXPECT_TRUE(FieldValue().IsNull());
  EXPECT_FALSE(FieldValue("").IsNull());
  EXPECT_NE(FieldValue(), FieldValue(""));
  EXPECT_NE(FieldValue(std::int32_t{1}), FieldValue(std::int16_t{1}));
}

}  // namespace
}  // namespace zent
