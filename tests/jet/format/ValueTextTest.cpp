#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

struct CurrencyCase {
  const char* what;
  std::int64_t value;
  const char* text;
};

constexpr CurrencyCase kCurrencies[] = {
    {"nothing", 0, "0.0000"},
    {"whole", 35000, "3.5000"},
    {"negative", -1, "-0.0001"},
    {"the highest", std::numeric_limits<std::int64_t>::max(), "922337203685477.5807"},
    {"the lowest", std::numeric_limits<std::int64_t>::min(), "-922337203685477.5808"},
};

TEST(Currency, HasFourDecimals) {
  for (const CurrencyCase& row : kCurrencies) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(CurrencyText({row.value}), row.text);
    const Result<Currency> parsed = ParseCurrency(row.text);
    ASSERT_TRUE(parsed.ok());
    EXPECT_EQ(parsed.value().ten_thousandths, row.value);
  }
  EXPECT_EQ(ParseCurrency("+12").value().ten_thousandths, 120000);
  EXPECT_EQ(ParseCurrency(".5").value().ten_thousandths, 5000);
}

TEST(Currency, RefusesWhatItCannotHold) {
  for (const char* text :
       {"", "-", ".", "1.23456", "1,5", "1e3", "abc", "1.2.3", "922337203685477.5808",
        "-922337203685477.5809", "99999999999999999999999", "123456789012345678901234567890"}) {
    EXPECT_EQ(ParseCurrency(text).number(), kDataTypeConversion) << text;
  }
}

TEST(Guid, IsWrittenInBracesAndReadInAnyForm) {
  const char* const text = "{00112233-4455-6677-8899-AABBCCDDEEFF}";
  const Result<Guid> guid = ParseGuid(text);
  ASSERT_TRUE(guid.ok());
  EXPECT_EQ(guid.value().bytes[15], 0xFF);
  EXPECT_EQ(GuidText(guid.value()), text);
  EXPECT_EQ(ParseGuid("00112233-4455-6677-8899-aabbccddeeff").value(), guid.value());
  for (const char* wrong :
       {"", "{}", "{00112233-4455-6677-8899-AABBCCDDEEFF", "00112233-4455-6677-8899-AABBCCDDEEFG",
        "00112233x4455-6677-8899-AABBCCDDEEFF", "0011223344556677-8899-AABBCCDDEEFF--"}) {
    EXPECT_EQ(ParseGuid(wrong).number(), kDataTypeConversion) << wrong;
  }
}

struct DateCase {
  const char* what;
  double days;
  DateParts parts;
  const char* text;
};

constexpr DateCase kDates[] = {
    {"the first day", 0.0, {1899, 12, 30, 0, 0, 0, 0}, "1899-12-30T00:00:00"},
    {"a day", 27293.0, {1974, 9, 21, 0, 0, 0, 0}, "1974-09-21T00:00:00"},
    {"noon", 1.5, {1899, 12, 31, 12, 0, 0, 0}, "1899-12-31T12:00:00"},
    {"a time before the first day goes forward",
     -1.25,
     {1899, 12, 29, 6, 0, 0, 0},
     "1899-12-29T06:00:00"},
    {"a time alone", 0.25, {1899, 12, 30, 6, 0, 0, 0}, "1899-12-30T06:00:00"},
    {"the lowest", -657434.0, {100, 1, 1, 0, 0, 0, 0}, "0100-01-01T00:00:00"},
    {"the highest", 2958465.0, {9999, 12, 31, 0, 0, 0, 0}, "9999-12-31T00:00:00"},
    {"a leap day", 36585.0, {2000, 2, 29, 0, 0, 0, 0}, "2000-02-29T00:00:00"},
    {"milliseconds", 1.0 + 1.0 / 86400000, {1899, 12, 31, 0, 0, 0, 1}, "1899-12-31T00:00:00.001"},
};

TEST(Date, HasADayAndATime) {
  for (const DateCase& row : kDates) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(SplitDate({row.days}), row.parts);
    EXPECT_EQ(DateText({row.days}), row.text);
    const std::optional<Date> joined = JoinDate(row.parts);
    ASSERT_TRUE(joined.has_value());
    EXPECT_DOUBLE_EQ(joined->days, row.days);
  }
}

TEST(Date, RoundsUpToTheNextDay) {
  EXPECT_EQ(DateText({std::nextafter(2.0, 1.0)}), "1900-01-01T00:00:00");
  EXPECT_EQ(DateText({std::nextafter(-2.0, -3.0)}), "1899-12-28T00:00:00");
}

TEST(Date, HasNoPartsOutsideTheCalendar) {
  for (const double days : {3e6, -1e6, 1e300, -1e300, std::nan(""), HUGE_VAL, -HUGE_VAL}) {
    EXPECT_EQ(SplitDate({days}), std::nullopt) << days;
    EXPECT_EQ(DateText({days}), "") << days;
  }
}

TEST(JoinDate, RefusesWhatDoesNotExist) {
  const DateParts wrong[] = {
      {2001, 2, 29, 0, 0, 0, 0}, {2001, 4, 31, 0, 0, 0, 0},   {2001, 13, 1, 0, 0, 0, 0},
      {2001, 0, 1, 0, 0, 0, 0},  {99, 1, 1, 0, 0, 0, 0},      {10000, 1, 1, 0, 0, 0, 0},
      {2001, 1, 1, 24, 0, 0, 0}, {2001, 1, 1, 0, 60, 0, 0},   {2001, 1, 1, 0, 0, 60, 0},
      {2001, 1, 0, 0, 0, 0, 0},  {2001, 1, 1, 0, 0, 0, 1000}, {2001, 1, 1, -1, 0, 0, 0},
  };
  for (const DateParts& parts : wrong) {
    EXPECT_EQ(JoinDate(parts), std::nullopt)
        << parts.year << "-" << parts.month << "-" << parts.day;
  }
}

TEST(Date, IsEqualWhenItsBitsAre) {
  EXPECT_EQ(Date{std::nan("")}, Date{std::nan("")});
  EXPECT_FALSE(Date{0.0} == Date{-0.0});
}

struct DecimalCase {
  const char* what;
  Decimal value;
  const char* text;
};

constexpr DecimalCase kDecimals[] = {
    {"nothing", {}, "0"},
    {"nothing with decimals", {.scale = 2}, "0.00"},
    {"whole", {.magnitude = {0, 0, 0, 42}}, "42"},
    {"decimals", {.scale = 2, .magnitude = {0, 0, 0, 150}}, "1.50"},
    {"below one", {.scale = 4, .magnitude = {0, 0, 0, 5}}, "0.0005"},
    {"negative", {.negative = true, .scale = 1, .magnitude = {0, 0, 0, 5}}, "-0.5"},
    {"over one word", {.magnitude = {0, 0, 1, 0}}, "4294967296"},
    {"the longest",
     {.magnitude = {0, 0x204FCE5E, 0x3E250261, 0x0FFFFFFF}},
     "9999999999999999999999999999"},
};

TEST(Decimal, IsWrittenAndRead) {
  for (const DecimalCase& row : kDecimals) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(DecimalText(row.value), row.text);
    const Result<Decimal> parsed = ParseDecimal(row.text);
    ASSERT_TRUE(parsed.ok());
    EXPECT_EQ(parsed.value(), row.value);
  }
}

TEST(Decimal, ANegativeNothingIsNothing) {
  EXPECT_EQ(DecimalText({.negative = true}), "0");
  EXPECT_FALSE(ParseDecimal("-0.0").value().negative);
}

TEST(Decimal, RefusesWhatIsNone) {
  for (const char* text : {"", "-", "+", ".", "1-", "1 ", " 1", "1e1", "0x1",
                           "99999999999999999999999999999", "0.00000000000000000000000000001"}) {
    EXPECT_EQ(ParseDecimal(text).number(), kDataTypeConversion) << text;
  }
}

struct RescaleCase {
  const char* from;
  std::uint8_t precision;
  std::uint8_t scale;
  const char* to;  ///< null: refused
};

constexpr RescaleCase kRescaled[] = {
    {"1.5", 10, 2, "1.50"},   {"1.25", 10, 1, "1.3"},     {"1.24", 10, 1, "1.2"},
    {"-1.25", 10, 1, "-1.3"}, {"0.449", 10, 0, "0"},      {"0.5", 10, 0, "1"},
    {"9.99", 2, 1, nullptr},  {"9.94", 2, 1, "9.9"},      {"-0.4", 10, 0, "0"},
    {"12345", 4, 0, nullptr}, {"12345", 28, 28, nullptr}, {"99999", 5, 0, "99999"},
};

TEST(Rescale, RoundsHalfAwayFromZeroAndKeepsToThePrecision) {
  for (const RescaleCase& row : kRescaled) {
    SCOPED_TRACE(row.from);
    const Result<Decimal> scaled =
        Rescale(ParseDecimal(row.from).value(), row.precision, row.scale);
    ASSERT_EQ(scaled.ok(), row.to != nullptr);
    if (row.to != nullptr) {
      EXPECT_EQ(DecimalText(scaled.value()), row.to);
    } else {
      EXPECT_EQ(scaled.number(), kDataTypeConversion);
    }
  }
}

TEST(Compare, LooksAtTheNumberNotAtItsScale) {
  const char* const ascending[] = {"-100", "-2.5", "-0.01", "0", "0.01",
                                   "0.1",  "1.49", "1.5",   "20"};
  for (std::size_t i = 0; i < std::size(ascending); ++i) {
    for (std::size_t k = 0; k < std::size(ascending); ++k) {
      const int order = i < k ? -1 : i > k ? 1 : 0;
      EXPECT_EQ(Compare(ParseDecimal(ascending[i]).value(), ParseDecimal(ascending[k]).value()),
                order)
          << ascending[i] << " " << ascending[k];
    }
  }
  EXPECT_EQ(Compare(ParseDecimal("1.50").value(), ParseDecimal("1.5").value()), 0);
  EXPECT_EQ(Compare({.negative = true, .scale = 3}, {}), 0);
}

TEST(ToDouble, IsTheNearestNumber) {
  EXPECT_EQ(ToDouble(ParseDecimal("0.1").value()), 0.1);
  EXPECT_EQ(ToDouble(ParseDecimal("-12345.678").value()), -12345.678);
}

}  // namespace
}  // namespace zent::jet
