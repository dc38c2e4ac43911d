#include <gtest/gtest.h>

#include <limits>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

TEST(NumberInText, TakesPlainNumbersAlone) {
  const std::pair<const char*, double> numbers[] = {{"5", 5},    {" -1.5 ", -1.5}, {"+2", 2},
                                                    {".5", 0.5}, {"1e3", 1000},    {"2.", 2}};
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(NumberInText(text), std::optional<double>(number)) << text;
  }
  for (const char* text :
       {"", " ", "-", "--1", "+-1", "abc", "5x", "inf", "nan", ".", "1e999", "1 2"}) {
    EXPECT_EQ(NumberInText(text), std::nullopt) << text;
  }
}

TEST(RoundToLong, TakesTheEvenOneOfTwo) {
  EXPECT_EQ(RoundToLong(0.5).value(), 0);
  EXPECT_EQ(RoundToLong(1.5).value(), 2);
  EXPECT_EQ(RoundToLong(-2.5).value(), -2);
  EXPECT_EQ(RoundToLong(2147483647.4).value(), 2147483647);
  EXPECT_EQ(RoundToLong(2147483647.5).number(), kOverflow);
  EXPECT_EQ(RoundToLong(std::numeric_limits<double>::quiet_NaN()).number(), kOverflow);
}

TEST(DoubleOf, KnowsEveryNumber) {
  const std::pair<Value, double> rows[] = {
      {true, -1},           {false, 0},
      {std::uint8_t{9}, 9}, {std::int16_t{-3}, -3},
      {std::int32_t{7}, 7}, {Currency{5000}, .5},
      {1.5F, 1.5},          {2.5, 2.5},
      {Date{3}, 3},         {Decimal{.scale = 1, .magnitude = {0, 0, 0, 15}}, 1.5}};
  for (const auto& [value, number] : rows) {
    EXPECT_TRUE(IsNumber(value));
    EXPECT_EQ(DoubleOf(value), number);
  }
  for (const Value& value : {Value(Null()), Value(Text("1")), Value(Binary{"1"}), Value(Guid())}) {
    EXPECT_FALSE(IsNumber(value));
    EXPECT_EQ(DecimalOf(value), std::nullopt);
  }
}

}  // namespace
}  // namespace zent::jet
