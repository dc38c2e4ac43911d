#include <gtest/gtest.h>

#include <limits>

#include "database/engines/odbc/OdbcValues.h"
#include "odbc/OdbcErrors.h"

namespace zent {
namespace {

constexpr odbc::SqlType kBit{-7, 1};
constexpr odbc::SqlType kByte{-6, 3, 0, true};
constexpr odbc::SqlType kSmall{5, 5};
constexpr odbc::SqlType kInteger{4, 10};
constexpr odbc::SqlType kBig{-5, 19};
constexpr odbc::SqlType kReal{7, 7};
constexpr odbc::SqlType kDouble{8, 15};
constexpr odbc::SqlType kDecimal{3, 10, 2};
constexpr odbc::SqlType kTens{3, 10, -1};
constexpr odbc::SqlType kText{12, 5};
constexpr odbc::SqlType kMemo{-10, 0};
constexpr odbc::SqlType kBinary{-3, 4};
constexpr odbc::SqlType kTimestamp{93, 23, 3};
constexpr odbc::SqlType kGuid{-11, 36};

constexpr Guid kSomeGuid{{0x6F, 0x96, 0x19, 0xFF, 0x8B, 0x86, 0xD0, 0x11, 0xB4, 0x2D, 0x00, 0xC0,
                          0x4F, 0xC9, 0x64, 0xFF}};
constexpr const char* kSomeGuidText = "6F9619FF-8B86-D011-B42D-00C04FC964FF";

struct SetCase {
  const char* what;
  FieldValue value;
  odbc::SqlType type;
  odbc::OdbcValue set;
};

const SetCase kSetCases[] = {
    {"a null", {}, kInteger, {}},
    {"true for a bit", true, kBit, true},
    {"a number for a bit", std::int32_t{-1}, kBit, true},
    {"zero for a bit", "0", kBit, false},
    {"a word for a bit", "TRUE", kBit, true},
    {"true for a number", true, kInteger, std::int64_t{-1}},
    {"true for a byte", true, kByte, std::int64_t{255}},
    {"false for a byte", false, kByte, std::int64_t{0}},
    {"true for a text", true, kText, std::string("True")},
    {"a text for a number", " +42 ", kInteger, std::int64_t{42}},
    {"a half goes to the even number", 2.5, kInteger, std::int64_t{2}},
    {"a half goes to the even number above", "3.5", kSmall, std::int64_t{4}},
    {"an exponent", "1E3", kSmall, std::int64_t{1000}},
    {"a currency for a number", Currency{125000}, kInteger, std::int64_t{12}},
    {"the largest of 64 bits", "9223372036854775807", kBig, std::int64_t{9223372036854775807}},
    {"a date for a number", DateSerial{38354.75}, kDouble, 38354.75},
    {"a single", 0.1F, kDouble, double{0.1F}},
    {"a decimal for a double", DecimalText{"12.5"}, kDouble, 12.5},
    {"a single for a decimal", 0.1F, kDecimal, odbc::Decimal{"0.1"}},
    {"a currency for a decimal", Currency{-15000}, kDecimal, odbc::Decimal{"-1.5"}},
    {"a large number for a decimal", 1e20, kDecimal, odbc::Decimal{"100000000000000000000.00"}},
    {"a large number for a decimal of tens", 1e20, kTens, odbc::Decimal{"100000000000000000000"}},
    {"a number for a text", std::int16_t{7}, kText, std::string("7")},
    {"five characters of ten bytes", "\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4", kText,
     std::string("\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4\xC3\xA4")},
    {"a text of any length for a memo", "123456789", kMemo, std::string("123456789")},
    {"bytes", BinaryBytes{"\x01\x02"}, kBinary, odbc::Bytes{"\x01\x02"}},
    {"a date", DateSerial{38354.25}, kTimestamp, odbc::DateTime{2005, 1, 2, 6, 0, 0, 0}},
    {"a number for a date", std::int32_t{38354}, kTimestamp, odbc::DateTime{2005, 1, 2}},
    {"a text for a date is the server's", "2005-01-02", kTimestamp, std::string("2005-01-02")},
    {"a GUID", kSomeGuid, kGuid, std::string(kSomeGuidText)},
    {"a GUID as text", "{6f9619ff-8b86-d011-b42d-00c04fc964ff}", kGuid, std::string(kSomeGuidText)},
};

TEST(ToOdbc, GivesAColumnTheValueInItsForm) {
  for (const SetCase& row : kSetCases) {
    SCOPED_TRACE(row.what);
    const Result<odbc::OdbcValue> set = ToOdbc(row.value, row.type);
    ASSERT_TRUE(set.ok()) << set.error().description;
    EXPECT_TRUE(set.value() == row.set);
  }
}

struct RefusedCase {
  const char* what;
  FieldValue value;
  odbc::SqlType type;
  int number;
};

const RefusedCase kRefusedCases[] = {
    {"words for a number", "twelve", kInteger, odbc::kDataTypeConversion},
    {"an empty text for a number", "", kInteger, odbc::kDataTypeConversion},
    {"digits and more", "12a", kDouble, odbc::kDataTypeConversion},
    {"the word for no number", "nan", kDouble, odbc::kDataTypeConversion},
    {"the word for infinity", "inf", kDecimal, odbc::kDataTypeConversion},
    {"words for a bit", "maybe", kBit, odbc::kDataTypeConversion},
    {"bytes for a number", BinaryBytes{"1"}, kInteger, odbc::kDataTypeConversion},
    {"bytes for a date", BinaryBytes{"1"}, kTimestamp, odbc::kDataTypeConversion},
    {"a text for bytes", "abc", kBinary, odbc::kDataTypeConversion},
    {"words for a GUID", "no GUID", kGuid, odbc::kDataTypeConversion},
    {"a GUID with a wrong digit", "6X9619FF-8B86-D011-B42D-00C04FC964FF", kGuid,
     odbc::kDataTypeConversion},
    {"a date that is none", DateSerial{1e9}, kTimestamp, odbc::kDataTypeConversion},
    {"a number too large", std::int32_t{32768}, kSmall, odbc::kNumericOverflow},
    {"a number too small", std::int32_t{-1}, kByte, odbc::kNumericOverflow},
    {"a double too large for a number", 1e30, kBig, odbc::kNumericOverflow},
    {"a double too large for a single", 1e300, kReal, odbc::kNumericOverflow},
    {"a text too long", "123456", kText, 3163},
    {"bytes too many", BinaryBytes{"12345"}, kBinary, 3163},
};

TEST(ToOdbc, RefusesWhatAColumnDoesNotTake) {
  for (const RefusedCase& row : kRefusedCases) {
    SCOPED_TRACE(row.what);
    const Result<odbc::OdbcValue> set = ToOdbc(row.value, row.type);
    ASSERT_FALSE(set.ok());
    EXPECT_EQ(set.number(), row.number);
    EXPECT_NE(set.error().description, "");
  }
}

struct ReadCase {
  const char* what;
  odbc::OdbcValue value;
  odbc::SqlType type;
  FieldValue read;
};

const ReadCase kReadCases[] = {
    {"a null", {}, kInteger, {}},
    {"a bit", true, kBit, true},
    {"a byte", std::int64_t{255}, kByte, std::uint8_t{255}},
    {"an integer", std::int64_t{-5}, kSmall, std::int16_t{-5}},
    {"a long", std::int64_t{-5}, kInteger, std::int32_t{-5}},
    {"64 bits", std::int64_t{-5}, kBig, std::int64_t{-5}},
    {"a single", double{0.1F}, kReal, 0.1F},
    {"a double", 0.1, kDouble, 0.1},
    {"a decimal", odbc::Decimal{"12.50"}, kDecimal, DecimalText{"12.50"}},
    {"a text", std::string("x"), kText, "x"},
    {"bytes", odbc::Bytes{"x"}, kBinary, BinaryBytes{"x"}},
    {"a date", odbc::DateTime{2005, 1, 2, 6, 0, 0, 0}, kTimestamp, DateSerial{38354.25}},
    {"a date that is none", odbc::DateTime{2005, 2, 30}, kTimestamp, {}},
    {"a GUID", std::string(kSomeGuidText), kGuid, kSomeGuid},
    {"a GUID that is none", std::string("x"), kGuid, "x"},
};

TEST(FromOdbc, GivesAValueTheTypeOfItsColumn) {
  for (const ReadCase& row : kReadCases) {
    SCOPED_TRACE(row.what);
    EXPECT_TRUE(FromOdbc(row.value, row.type) == row.read);
  }
}

}  // namespace
}  // namespace zent
