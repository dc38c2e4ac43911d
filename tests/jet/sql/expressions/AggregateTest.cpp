#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/Aggregate.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

struct TotalCase {
  const char* name;
  std::vector<Value> values;
  Value total;
};

TEST(Aggregator, LeavesOutNull) {
  const Value one = std::int32_t{1};
  const Value four = std::int32_t{4};
  const TotalCase rows[] = {
      {"COUNT", {}, std::int32_t{0}},
      {"count", {one, Null(), Text("x")}, std::int32_t{2}},
      {"MIN", {}, Null()},
      {"Min", {four, Null(), one}, one},
      {"MAX", {one, four, Null()}, four},
      {"Max", {Text("b"), Text("C"), Text("a")}, Text("C")},
      {"SUM", {Null()}, Null()},
      {"Sum", {one, four, Null()}, std::int32_t{5}},
      {"SUM", {Currency{5}, Currency{7}}, Currency{12}},
      {"AVG", {}, Null()},
      {"Avg", {one, four, Null()}, 2.5},
  };
  for (const TotalCase& row : rows) {
    SCOPED_TRACE(row.name);
    Aggregator aggregator(row.name);
    for (const Value& value : row.values) ASSERT_TRUE(aggregator.Add(value).ok());
    EXPECT_EQ(aggregator.Total().value(), row.total);
  }
}

TEST(Aggregator, RefusesTextsInSums) {
  EXPECT_EQ(Aggregator("SUM").Add(Text("x")).number(), kCriteriaTypeMismatch);
  Aggregator lowest("MIN");
  ASSERT_TRUE(lowest.Add(1.0).ok());
  EXPECT_EQ(lowest.Add(Text("x")).number(), kCriteriaTypeMismatch);
}

TEST(TakeAggregates, GivesEachAColumn) {
  Expression expression = ParseExpression("Sum(a) / Count(*) + b").value();
  EXPECT_TRUE(HasAggregate(expression));
  std::vector<Expression> taken;
  ASSERT_TRUE(TakeAggregates(expression, 10, taken).ok());
  ASSERT_EQ(taken.size(), 2U);
  EXPECT_EQ(PrintExpression(taken[0]), "Sum(a)");
  EXPECT_EQ(PrintExpression(taken[1]), "Count(*)");
  const Expression& quotient = expression.operands[0];
  EXPECT_EQ(quotient.operands[0].column, 10U);
  EXPECT_EQ(quotient.operands[1].column, 11U);
}

TEST(TakeAggregates, RefusesOneWithinAnother) {
  Expression expression = ParseExpression("Sum(1 + Max(a))").value();
  std::vector<Expression> taken;
  EXPECT_EQ(TakeAggregates(expression, 0, taken).number(), kCriteriaTypeMismatch);
}

TEST(HasAggregate, LooksBelow) {
  EXPECT_FALSE(HasAggregate(ParseExpression("a + Left(b, 1)").value()));
  EXPECT_TRUE(HasAggregate(ParseExpression("Left(Max(b), 1)").value()));
}

}  // namespace
}  // namespace zent::jet
