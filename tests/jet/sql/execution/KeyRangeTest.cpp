#include <gtest/gtest.h>

#include "jet/sql/execution/KeyBounds.h"
#include "jet/sql/execution/KeyRange.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/values/Comparison.h"

namespace zent::jet {
namespace {

using Ranges = std::vector<KeyRange>;

TEST(KeyRange, EndsBehindAllThatBeginAlike) {
  EXPECT_FALSE(IsBehind("ab", "ab"));
  EXPECT_FALSE(IsBehind("abz", "ab"));
  EXPECT_FALSE(IsBehind("a", "ab"));
  EXPECT_TRUE(IsBehind("ac", "ab"));
  EXPECT_FALSE(IsBehind("\xFF", ""));
}

struct RangeCase {
  const char* what;
  Ranges a;
  Ranges b;
  Ranges both;
};

TEST(KeyRange, IntersectsRanges) {
  const RangeCase cases[] = {
      {"apart", {{"a", "b"}}, {{"c", "d"}}, {}},
      {"one within", {{"a", "z"}}, {{"c", "d"}}, {{"c", "d"}}},
      {"overlapping", {{"a", "m"}}, {{"k", "z"}}, {{"k", "m"}}},
      {"touching ends", {{"a", "m"}}, {{"m", "z"}}, {{"m", "m"}}},
      {"points", {{"a", "a"}, {"c", "c"}}, {{"b", "c"}}, {{"c", "c"}}},
      {"an open end", {{"b", ""}}, {{"a", "c"}}, {{"b", "c"}}},
      {"nothing", {}, {{"a", "b"}}, {}},
  };
  for (const RangeCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Intersection(row.a, row.b), row.both);
    EXPECT_EQ(Intersection(row.b, row.a), row.both);
  }
}

TEST(KeyRange, TidiesRanges) {
  Ranges ranges = {{"k", "m"}, {"a", "b"}, {"l", "p"}, {"z", "y"}, {"a", "a"}};
  Tidy(ranges);
  EXPECT_EQ(ranges, (Ranges{{"a", "b"}, {"k", "p"}}));
}

struct BoundsCase {
  const char* what;
  ColumnType type;
  Value value;
  std::optional<KeyBounds> bounds;
};

TEST(KeyBounds, LieAroundAValue) {
  const BoundsCase cases[] = {
      {"held", ColumnType::Long, std::int16_t{5}, KeyBounds{5, 5}},
      {"between two", ColumnType::Long, 5.5, KeyBounds{5, 6}},
      {"negative", ColumnType::Int, -1.5, KeyBounds{std::int16_t{-2}, std::int16_t{-1}}},
      {"too large", ColumnType::Byte, 300, std::nullopt},
      {"zero of both signs", ColumnType::Double, 0, KeyBounds{-0.0, 0.0}},
      {"a text", ColumnType::Text, Text("a"), KeyBounds{Text("a"), Text("a")}},
      {"a text for a number", ColumnType::Long, Text("5"), std::nullopt},
      {"a number for a text", ColumnType::Text, 5, std::nullopt},
      {"a memo", ColumnType::Memo, Text("a"), std::nullopt},
      {"yes", ColumnType::Bool, -1, KeyBounds{true, true}},
      {"neither yes nor no", ColumnType::Bool, 2, std::nullopt},
      {"currency", ColumnType::Currency, 3, KeyBounds{Currency{30000}, Currency{30000}}},
      {"a date", ColumnType::Date, Date{2.5}, KeyBounds{Date{2.5}, Date{2.5}}},
  };
  for (const BoundsCase& row : cases) {
    SCOPED_TRACE(row.what);
    const ColumnDefinition column = {.type = row.type};
    const std::optional<KeyBounds> bounds = BoundsOf(column, row.value);
    ASSERT_EQ(bounds.has_value(), row.bounds.has_value());
    if (!bounds) continue;
    EXPECT_EQ(bounds->low, row.bounds->low);
    EXPECT_EQ(bounds->high, row.bounds->high);
  }
}

TEST(KeyBounds, TakesWhatIsSureOfAPrefix) {
  constexpr std::pair<std::string_view, std::string_view> kCases[] = {
      {"abc", "abc"}, {"CS 1", "CS 1"}, {"a-b", "a"}, {"ab ", "ab"}, {"\xC3\xA4x", ""}, {"", ""}};
  for (const auto& [prefix, safe] : kCases) EXPECT_EQ(SafePrefix(prefix), safe);
}

std::string KeyOf(const Value& value, bool descending) {
  std::string key;
  AppendOrderKey(value, descending, key);
  return key;
}

TEST(OrderKey, ComparesAsValuesDo) {
  const std::vector<std::vector<Value>> ordered = {
      {Currency{-50000}, -1.5, -1, true},
      {false, std::int16_t{0}, -0.0},
      {Currency{1000}, 0.1},
      {std::uint8_t{7}, 7, 7.0, Currency{70000}},
      {Currency{9007199254740993}, Currency{9007199254740994}},
  };
  std::vector<Value> values;
  for (const auto& group : ordered) values.insert(values.end(), group.begin(), group.end());
  for (const char* text : {"", "a", "A", "a-b", "ab", "B"}) values.emplace_back(Text(text));
  for (const Value& a : values) {
    for (const Value& b : values) {
      if (KeyClassOf(a) != KeyClassOf(b)) continue;
      const int order = CompareValues(a, b).value().value();
      const int keys = KeyOf(a, false).compare(KeyOf(b, false));
      const int turned = KeyOf(b, true).compare(KeyOf(a, true));
      EXPECT_EQ(order < 0, keys < 0);
      EXPECT_EQ(order == 0, keys == 0);
      EXPECT_EQ(keys < 0, turned < 0);
    }
    EXPECT_LT(KeyOf(Null(), false), KeyOf(a, false));
  }
}

}  // namespace
}  // namespace zent::jet
