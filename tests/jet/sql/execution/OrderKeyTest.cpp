#include <gtest/gtest.h>

#include "jet/format/ValueText.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/values/Comparison.h"

namespace zent::jet {
namespace {

Value Exact(std::string_view text) { return ParseDecimal(text).value_or(Decimal()); }

int Sign(int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

// What is equal when rows are compared one by one must be found by keys as well.
TEST(OrderKey, OrdersNumbersAsComparisonsDo) {
  const Value numbers[] = {std::int32_t{5},
                           Exact("5"),
                           Exact("5.000000000000000000"),
                           Currency{50000},
                           5.0,
                           5.0F,
                           Exact("4.999999999999999999999999999"),
                           Exact("5.000000000000000000000000001"),
                           Exact("-4.999999999999999999999999999"),
                           -5.0,
                           Exact("-5.00000000000000000000"),
                           0.1,
                           0.1F,
                           Exact("0.1"),
                           Exact("0.1000000000000000000000"),
                           Currency{1000},
                           Currency{9007199254740993},
                           Currency{9007199254740992},
                           Exact("900719925474.0993"),
                           Exact("900719925474.09930"),
                           900719925474.0993,
                           Currency{9223372036854775807},
                           Exact("922337203685477.5807"),
                           922337203685477.5807,
                           Exact("9999999999999999999999999999"),
                           1e28,
                           -1e28,
                           1e27,
                           Exact("1000000000000000000000000000"),
                           Exact("0.0000000000000000000000000001"),
                           1e-28,
                           0.0,
                           -0.0,
                           Exact("0.000"),
                           false,
                           true,
                           Date{5}};
  for (const Value& a : numbers) {
    for (const Value& b : numbers) {
      std::string a_key;
      std::string b_key;
      AppendOrderKey(a, false, a_key);
      AppendOrderKey(b, false, b_key);
      EXPECT_EQ(Sign(a_key.compare(b_key)), CompareValues(a, b).value().value())
          << &a - numbers << " and " << &b - numbers;
    }
  }
}

}  // namespace
}  // namespace zent::jet
