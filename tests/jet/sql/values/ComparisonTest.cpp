#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Comparison.h"

namespace zent::jet {
namespace {

struct CompareCase {
  const char* what;
  Value a;
  Value b;
  int order;
};

TEST(CompareValues, ComparesWhatValuesAreWorth) {
  const CompareCase rows[] = {
      {"bytes and longs", std::uint8_t{7}, std::int32_t{7}, 0},
      {"ints and longs", std::int16_t{-1}, std::int32_t{1}, -1},
      {"yes is -1", true, std::int16_t{-1}, 0},
      {"no is 0", false, 0.0, 0},
      {"currency and long", Currency{15000}, std::int32_t{1}, 1},
      {"currency and decimal", Currency{15000}, Decimal{.scale = 1, .magnitude = {0, 0, 0, 15}}, 0},
      {"large currencies differ in the last digit", Currency{9007199254740993},
       Currency{9007199254740992}, 1},
      {"decimal and double", Decimal{.scale = 1, .magnitude = {0, 0, 0, 15}}, 1.5, 0},
      {"digits that say nothing", Decimal{.scale = 18, .magnitude = {0, 0, 0x45639182, 0x44F40000}},
       5.0, 0},
      {"digits beyond those of a double",
       Decimal{.scale = 18, .magnitude = {0, 0, 0x45639182, 0x44F40001}}, 5.0, 1},
      {"single and double", 1.5F, 1.5, 0},
      {"date and number", Date{38383}, std::int32_t{38383}, 0},
      {"dates", Date{1.25}, Date{1.5}, -1},
      {"texts in any case", Text("Korvo"), Text("KORVO"), 0},
      {"texts by the collation", Text("Zebra"), Text("apple"), 1},
      {"blanks at the end", Text("a  "), Text("a"), 0},
      {"accents count", Text("resume"), Text("résumé"), -1},
      {"long texts by all characters", Text(std::string(300, 'a') + "b"),
       Text(std::string(300, 'A') + "c"), -1},
      {"long texts of different length", Text(std::string(300, 'a')), Text(std::string(301, 'a')),
       -1},
      {"long texts that are the same", Text(std::string(600, 'a')), Text(std::string(600, 'A')), 0},
      {"bytes", Binary{"a"}, Binary{"ab"}, -1},
      {"GUIDs", Guid{}, Guid{{1}}, -1},
      {"GUID and its text", Guid{}, Text("{00000000-0000-0000-0000-000000000000}"), 0},
  };
  for (const CompareCase& row : rows) {
    SCOPED_TRACE(row.what);
    const Result<std::optional<int>> order = CompareValues(row.a, row.b);
    ASSERT_TRUE(order.ok());
    EXPECT_EQ(order.value(), std::optional<int>(row.order));
    EXPECT_EQ(CompareValues(row.b, row.a).value(), std::optional<int>(-row.order));
  }
}

TEST(CompareValues, SaysNothingOfNull) {
  EXPECT_EQ(CompareValues(Null(), Null()).value(), std::nullopt);
  EXPECT_EQ(CompareValues(Null(), Text("a")).value(), std::nullopt);
  EXPECT_EQ(CompareValues(1.0, Null()).value(), std::nullopt);
}

TEST(CompareValues, RefusesTypesThatDoNotMeet) {
  const std::pair<Value, Value> rows[] = {{std::int16_t{5}, Text("5")},  {true, Text("True")},
                                          {Date{1}, Text("1/1/2005")},   {Binary{"a"}, Text("a")},
                                          {Guid{}, std::int16_t{1}},     {Guid{}, Text("x")},
                                          {Binary{"a"}, std::int32_t{1}}};
  for (const auto& [a, b] : rows) {
    EXPECT_EQ(CompareValues(a, b).number(), kCriteriaTypeMismatch);
    EXPECT_EQ(CompareValues(b, a).number(), kCriteriaTypeMismatch);
  }
}

}  // namespace
}  // namespace zent::jet
