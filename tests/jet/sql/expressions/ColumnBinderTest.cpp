#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/syntax/Parser.h"

namespace zent::jet {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::vector<ScopeColumn> kScope = {{"o", "ID"}, {"o", "Name"}, {"d", "ID"}, {"d", "Size x"}};

struct BindCase {
  const char* text;
  std::size_t column;
};

constexpr BindCase kColumns[] = {
    {"o.ID", 0}, {"O.id", 0}, {"d.ID", 2}, {"[d]![id]", 2}, {"name", 1}, {"[size X]", 3},
};

TEST(ColumnBinder, FindsColumnsByNameInAnyCase) {
  for (const BindCase& row : kColumns) {
    SCOPED_TRACE(row.text);
    Expression column = ParseExpression(row.text).value();
    ColumnBinder binder(kScope);
    ASSERT_TRUE(binder.Bind(column).ok());
    EXPECT_TRUE(binder.Finish().ok());
    EXPECT_EQ(column.column, row.column);
  }
}

TEST(ColumnBinder, RefusesANameOfSeveralTables) {
  Expression test = ParseExpression("1 + ID").value();
  const Status bound = ColumnBinder(kScope).Bind(test);
  EXPECT_EQ(bound.number(), kAmbiguousField);
  EXPECT_THAT(bound.error().description, HasSubstr("'ID'"));
}

TEST(ColumnBinder, CountsNamesThatAreNoColumnsAsParameters) {
  Expression first = ParseExpression("foo = 1 OR FOO = 2 OR o.bar = 3").value();
  Expression second = ParseExpression("x.ID").value();
  ColumnBinder binder(kScope);
  ASSERT_TRUE(binder.Bind(first).ok());
  ASSERT_TRUE(binder.Bind(second).ok());
  const Status all = binder.Finish();
  EXPECT_EQ(all.number(), kTooFewParameters);
  EXPECT_THAT(all.error().description, StartsWith("Too few parameters. Expected 3."));
  EXPECT_THAT(all.error().description, HasSubstr("foo, o.bar, x.ID"));
}

TEST(ColumnBinder, ChecksFunctions) {
  const std::pair<const char*, int> rows[] = {{"Left(Name, 1)", 0},
                                              {"Left(Name)", kSyntaxError},
                                              {"Left(Name,1,2)", kSyntaxError},
                                              {"Nope(1)", kUndefinedFunction},
                                              {"1 + Nope(1)", kUndefinedFunction}};
  for (const auto& [text, number] : rows) {
    SCOPED_TRACE(text);
    Expression expression = ParseExpression(text).value();
    EXPECT_EQ(ColumnBinder(kScope).Bind(expression).number(), number);
  }
}

}  // namespace
}  // namespace zent::jet
