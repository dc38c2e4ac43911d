#include <gtest/gtest.h>

#include <limits>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Arithmetic.h"

namespace zent::jet {
namespace {

using Kind = ExpressionKind;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kMostMoney = std::numeric_limits<std::int64_t>::max();

struct ArithmeticCase {
  const char* what;
  Kind kind;
  Value a;
  Value b;
  Value result;
};

Value Long(std::int32_t number) { return number; }

TEST(Calculate, FollowsTheTypes) {
  const ArithmeticCase rows[] = {
      {"ints", Kind::Add, std::int16_t{32767}, std::int16_t{1}, Long(32768)},
      {"yes and no", Kind::Add, true, true, Long(-2)},
      {"too large for a long", Kind::Add, Long(kHighest), Long(1), 2147483648.0},
      {"product too large for a long", Kind::Multiply, Long(65536), Long(65536), 4294967296.0},
      {"difference", Kind::Subtract, Long(5), std::uint8_t{7}, Long(-2)},
      {"long and double", Kind::Add, Long(1), 0.5, 1.5},
      {"currencies", Kind::Add, Currency{15000}, Currency{1}, Currency{15001}},
      {"currency times long", Kind::Multiply, Currency{15000}, Long(3), Currency{45000}},
      {"currencies round", Kind::Multiply, Currency{5}, Currency{10001}, Currency{5}},
      {"large currencies", Kind::Multiply, Currency{9000000000000001}, Long(1000),
       Currency{9000000000000001000}},
      {"negative currencies", Kind::Multiply, Currency{-15000}, Currency{15000}, Currency{-22500}},
      {"currency and double", Kind::Multiply, Currency{15000}, 2.0, 3.0},
      {"quotient", Kind::Divide, Long(7), Long(2), 3.5},
      {"whole quotient rounds first", Kind::IntegerDivide, 7.5, 2.5, Long(4)},
      {"whole quotient of negatives", Kind::IntegerDivide, Long(-7), Long(2), Long(-3)},
      {"lowest by -1", Kind::IntegerDivide, Long(kLowest), Long(-1), 2147483648.0},
      {"remainder", Kind::Modulo, Long(-7), Long(3), Long(-1)},
      {"remainder of the lowest", Kind::Modulo, Long(kLowest), Long(-1), Long(0)},
      {"power", Kind::Power, Long(2), Long(10), 1024.0},
      {"date and days", Kind::Add, Date{10}, Long(2), Date{12}},
      {"days and date", Kind::Add, 0.5, Date{10}, Date{10.5}},
      {"date less days", Kind::Subtract, Date{10}, Long(2), Date{8}},
      {"between dates", Kind::Subtract, Date{10}, Date{7.5}, 2.5},
      {"dates added", Kind::Add, Date{10}, Date{7}, Date{17}},
      {"texts join", Kind::Add, Text("5"), Text("6"), Text("56")},
      {"text that is a number", Kind::Add, Text("5"), Long(1), 6.0},
      {"texts that are numbers", Kind::Multiply, Text("5"), Text("1.5"), 7.5},
      {"decimal", Kind::Add, Decimal{.scale = 1, .magnitude = {0, 0, 0, 15}}, Long(1), 2.5},
      {"null", Kind::Add, Null(), Long(1), Null()},
      {"null in a quotient by 0", Kind::Divide, Null(), Long(0), Null()},
      {"null and text", Kind::Add, Text("a"), Null(), Null()},
      {"joined", Kind::Concatenate, Text("a"), Long(5), Text("a5")},
      {"joined with null", Kind::Concatenate, Text("a"), Null(), Text("a")},
      {"null joined", Kind::Concatenate, Null(), Text("a"), Text("a")},
      {"nulls joined", Kind::Concatenate, Null(), Null(), Null()},
  };
  for (const ArithmeticCase& row : rows) {
    SCOPED_TRACE(row.what);
    const Result<Value> result = Calculate(row.kind, row.a, row.b);
    ASSERT_TRUE(result.ok()) << result.error().description;
    EXPECT_EQ(result.value(), row.result);
  }
}

struct ErrorCase {
  const char* what;
  Kind kind;
  Value a;
  Value b;
  int number;
};

TEST(Calculate, RefusesWhatHasNoResult) {
  const ErrorCase rows[] = {
      {"quotient by 0", Kind::Divide, Long(1), Long(0), kDivisionByZero},
      {"whole quotient by 0", Kind::IntegerDivide, Long(1), 0.4, kDivisionByZero},
      {"remainder by 0", Kind::Modulo, Long(1), false, kDivisionByZero},
      {"0 to a negative power", Kind::Power, Long(0), Long(-1), kDivisionByZero},
      {"root of a negative", Kind::Power, Long(-1), 0.5, kOverflow},
      {"too large a power", Kind::Power, 10.0, 400.0, kOverflow},
      {"too large a product", Kind::Multiply, 1e300, 1e300, kOverflow},
      {"too large for whole division", Kind::IntegerDivide, 1e10, Long(2), kOverflow},
      {"too much money", Kind::Add, Currency{kMostMoney}, Currency{1}, kOverflow},
      {"too little money", Kind::Subtract, Currency{-kMostMoney}, Currency{2}, kOverflow},
      {"money times money", Kind::Multiply, Currency{kMostMoney}, Currency{20000}, kOverflow},
      {"text that is no number", Kind::Multiply, Text("a"), Long(1), kCriteriaTypeMismatch},
      {"text that is no number, added", Kind::Add, Long(1), Text("a"), kCriteriaTypeMismatch},
      {"binary", Kind::Add, Binary{"a"}, Long(1), kCriteriaTypeMismatch},
      {"GUID", Kind::Subtract, Guid(), Long(1), kCriteriaTypeMismatch},
      {"joined binary", Kind::Concatenate, Binary{"a"}, Text("b"), kCriteriaTypeMismatch},
  };
  for (const ErrorCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Calculate(row.kind, row.a, row.b).number(), row.number);
  }
}

TEST(Negated, KeepsTheTypeWhereItCan) {
  EXPECT_EQ(Negated(std::int16_t{5}).value(), Long(-5));
  EXPECT_EQ(Negated(Long(kLowest)).value(), Value(2147483648.0));
  EXPECT_EQ(Negated(Currency{5}).value(), Value(Currency{-5}));
  EXPECT_EQ(Negated(Date{1.5}).value(), Value(Date{-1.5}));
  EXPECT_EQ(Negated(Text("5")).value(), Value(-5.0));
  EXPECT_EQ(Negated(Null()).value(), Value(Null()));
  EXPECT_EQ(Negated(Decimal{.magnitude = {0, 0, 0, 5}}).value(),
            Value(Decimal{.negative = true, .magnitude = {0, 0, 0, 5}}));
  EXPECT_EQ(Negated(Text("a")).number(), kCriteriaTypeMismatch);
}

}  // namespace
}  // namespace zent::jet
