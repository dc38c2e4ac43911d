#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/expressions/Evaluator.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

const EvaluationContext kContext = {.now = {38383.75}};  // 2005-01-31 18:00

class FixedRow : public RowValues {
 public:
  explicit FixedRow(std::vector<Value> values) : values_(std::move(values)) {}
  Result<const Value*> At(std::size_t column) override {
    if (column >= values_.size()) return JetError(kItemNotFound);
    return &values_[column];
  }

 private:
  std::vector<Value> values_;
};

/// Columns a = 5, t = "Korvo", n = null, y = Yes, d = 2005-01-31.
Result<Value> Evaluated(std::string_view text) {
  Result<Expression> expression = ParseExpression(text);
  if (!expression.ok()) return expression.error();
  ColumnBinder binder({{"r", "a"}, {"r", "t"}, {"r", "n"}, {"r", "y"}, {"r", "d"}});
  const Status bound = binder.Bind(expression.value());
  if (!bound.ok()) return bound.error();
  const Status all = binder.Finish();
  if (!all.ok()) return all.error();
  FixedRow row({std::int32_t{5}, Text("Korvo"), Null(), true, Date{38383}});
  return Evaluator(kContext).Evaluate(expression.value(), row);
}

struct EvaluateCase {
  const char* text;
  const char* result;  ///< as PrintLiteral
};

constexpr EvaluateCase kTests[] = {
    {"a", "5"},
    {"R.A + 1", "6"},
    {"-a * 2", "&HFFFFFFF6"},
    {"a = 5", "TRUE"},
    {"a <> 5", "FALSE"},
    {"a < 6 AND a >= 5", "TRUE"},
    {"a <= 4 OR a > 5", "FALSE"},
    {"1 = 2", "FALSE"},
    {"t = 'KORVO'", "TRUE"},
    {"n = n", "NULL"},
    {"n = NULL", "NULL"},
    {"n IS NULL", "TRUE"},
    {"a IS NOT NULL", "TRUE"},
    {"NOT n", "NULL"},
    {"NOT y", "FALSE"},
    {"y = TRUE", "TRUE"},
    {"y = -1", "TRUE"},
    {"n = 1 OR a = 5", "TRUE"},
    {"n = 1 AND a = 5", "NULL"},
    {"y XOR y", "FALSE"},
    {"y EQV y", "TRUE"},
    {"y IMP FALSE", "FALSE"},
    {"FALSE AND 1 / 0 = 1", "FALSE"},
    {"TRUE OR 1 / 0 = 1", "TRUE"},
    {"a IN (1, 5)", "TRUE"},
    {"a IN (1, 2)", "FALSE"},
    {"a IN (1, n)", "NULL"},
    {"a IN (n, 5)", "TRUE"},
    {"a NOT IN (1, 2)", "TRUE"},
    {"a NOT IN (1, n)", "NULL"},
    {"a BETWEEN 5 AND 6", "TRUE"},
    {"DateAdd('m', 1, d)", "#2005-02-28#"},
    {"DateAdd('d', -31, d)", "#2004-12-31#"},
    {"DateAdd('h', 36, d)", "#2005-02-01 12:00:00#"},
    {"DateAdd('yyyy', 1, n)", "NULL"},
    {"DateDiff('m', d, #2005-02-01#)", "1"},
    {"DateDiff('d', #2005-01-01#, d)", "30"},
    {"DateDiff('ww', #2005-01-29#, #2005-01-30#)", "1"},
    {"DateDiff('n', d, Now())", "1080"},
    {"DatePart('q', d)", "1"},
    {"DatePart('y', #2005-02-01#)", "32"},
    {"DatePart('ww', #2005-01-02#)", "2"},
    {"Weekday(d)", "2"},
    {"Hour(Now()) + Minute(Now())", "18"},
    {"Switch(a = 4, 'four', a = 5, 'five')", "'five'"},
    {"Switch(a = 4, 'four')", "NULL"},
    {"Choose(2, 'a', 'b')", "'b'"},
    {"Choose(3, 'a', 'b')", "NULL"},
    {"a BETWEEN 6 AND 7", "FALSE"},
    {"a NOT BETWEEN 6 AND 7", "TRUE"},
    {"a BETWEEN n AND 4", "FALSE"},
    {"a BETWEEN n AND 6", "NULL"},
    {"t LIKE 'ko*'", "TRUE"},
    {"t NOT LIKE 'ko*'", "FALSE"},
    {"a LIKE '#'", "TRUE"},
    {"n LIKE '*'", "NULL"},
    {"t LIKE t", "TRUE"},
    {"d = #1/31/2005#", "TRUE"},
    {"d < Date()", "FALSE"},
    {"d < Now()", "TRUE"},
    {"d + 1", "#2005-02-01#"},
    {"a \\ 2 + a MOD 2", "3"},
    {"2 ^ 3", "8.0"},
    {"t & '-' & a & n", "'Korvo-5'"},
    {"t + n", "NULL"},
    {"IIf(a = 5, 'yes', 'no')", "'yes'"},
    {"IIf(n, 1, 2)", "2"},
    {"IIf(TRUE, 1, 1 / 0)", "1"},
    {"IsNull(n)", "TRUE"},
    {"IsDate('1/31/2005')", "TRUE"},
    {"IsDate('x')", "FALSE"},
    {"IsNumeric('1.5') AND NOT IsNumeric(d)", "TRUE"},
    {"Nz(n, 7)", "7"},
    {"Nz(n)", "''"},
    {"Nz(a, 7)", "5"},
    {"Left(t, 2)", "'Ko'"},
    {"Left(t, 99)", "'Korvo'"},
    {"Left(n, 1)", "NULL"},
    {"Right(t, 2)", "'vo'"},
    {"Right(t, 99)", "'Korvo'"},
    {"Mid(t, 2)", "'orvo'"},
    {"Mid(t, 2, 3)", "'orv'"},
    {"Mid(t, 9, 1)", "''"},
    {"Len(t)", "5"},
    {"Len('ñé')", "2"},
    {"Len(n)", "NULL"},
    {"Trim('  a b  ')", "'a b'"},
    {"LTrim('  a ')", "'a '"},
    {"RTrim(' a  ')", "' a'"},
    {"Trim('   ')", "''"},
    {"UCase('añ÷b')", "'AÑ÷B'"},
    {"LCase('AÑ×B')", "'añ×b'"},
    {"UCase(n)", "NULL"},
    {"InStr(t, 'V')", "4"},
    {"InStr(t, 'x')", "0"},
    {"InStr(3, 'abcabc', 'b')", "5"},
    {"InStr(99, 'abc', 'b')", "0"},
    {"Year(d) * 100 + Month(d)", "200501"},
    {"Day('2/3/2005')", "3"},
    {"Year(n)", "NULL"},
    {"CStr(a)", "'5'"},
    {"CInt(2.5)", "2"},
    {"CLng('70000')", "70000"},
    {"CDbl('1.5')", "1.5"},
    {"CCur(1.5)", "1.5000"},
    {"CDate('1/31/2005') = d", "TRUE"},
    {"CBool('Yes')", "TRUE"},
    {"Val('12 3abc')", "123.0"},
    {"Val('1.5.2')", "1.5"},
    {"Val('abc')", "0.0"},
    {"Abs(-a)", "5.0"},
    {"Int(-1.5)", "-2.0"},
    {"Abs(n)", "NULL"},
    {"Int(n)", "NULL"},
};

TEST(Evaluator, WorksOutExpressions) {
  for (const EvaluateCase& row : kTests) {
    SCOPED_TRACE(row.text);
    const Result<Value> value = Evaluated(row.text);
    ASSERT_TRUE(value.ok()) << value.error().description;
    EXPECT_EQ(PrintLiteral(value.value()), row.result);
  }
}

struct ErrorCase {
  const char* text;
  int number;
};

constexpr ErrorCase kErrors[] = {
    {"a = 'x'", kCriteriaTypeMismatch},
    {"t = 5", kCriteriaTypeMismatch},
    {"a IN (1, 'x')", kCriteriaTypeMismatch},
    {"a BETWEEN 1 AND 'x'", kCriteriaTypeMismatch},
    {"t AND y", kCriteriaTypeMismatch},
    {"NOT t", kCriteriaTypeMismatch},
    {"-t", kCriteriaTypeMismatch},
    {"1 / 0", kDivisionByZero},
    {"a + 1 / 0", kDivisionByZero},
    {"1E300 * 1E300", kOverflow},
    {"t LIKE '['", kInvalidPattern},
    {"Foo(1)", kUndefinedFunction},
    {"Left(t)", kSyntaxError},
    {"Now(1)", kSyntaxError},
    {"Left(t, -1)", kInvalidArgument},
    {"Mid(t, 0)", kInvalidArgument},
    {"Mid(t, 1, -1)", kInvalidArgument},
    {"Left(t, 'x')", kCriteriaTypeMismatch},
    {"InStr(0, t, 'x')", kInvalidArgument},
    {"CInt(70000)", kNumericOverflow},
    {"CLng(n)", kDataTypeConversion},
    {"CDate('x')", kDataTypeConversion},
    {"Val(n)", kDataTypeConversion},
    {"Abs(t)", kCriteriaTypeMismatch},
    {"IIf(t, 1, 2)", kCriteriaTypeMismatch},
    {"b = 1", kTooFewParameters},
    {"Count(a)", kTooFewParameters},
};

TEST(Evaluator, GivesErrorsTheirNumbers) {
  for (const ErrorCase& row : kErrors) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(Evaluated(row.text).number(), row.number);
  }
}

TEST(Evaluator, TakesNullAsNo) {
  FixedRow row({});
  Evaluator evaluator(kContext);
  EXPECT_TRUE(evaluator.Test(ParseExpression("1 = 1").value(), row).value());
  EXPECT_FALSE(evaluator.Test(ParseExpression("NULL").value(), row).value());
  EXPECT_EQ(evaluator.Test(ParseExpression("'x'").value(), row).number(), kCriteriaTypeMismatch);
}

bool PassesFor(Evaluator& evaluator, const Expression& test, Text text) {
  FixedRow row({std::move(text)});
  return evaluator.Test(test, row).value();
}

TEST(Evaluator, KeepsAPatternForTheNextRow) {
  Expression test = ParseExpression("t LIKE 'a*'").value();
  ASSERT_TRUE(ColumnBinder({ScopeColumn{"r", "t"}}).Bind(test).ok());
  Evaluator evaluator(kContext);
  EXPECT_TRUE(PassesFor(evaluator, test, Text("abc")));
  EXPECT_FALSE(PassesFor(evaluator, test, Text("xyz")));
  EXPECT_TRUE(PassesFor(evaluator, test, Text("A")));
}

TEST(Evaluator, HandsOnAnErrorOfTheRow) {
  Expression test = ParseExpression("t = 'a'").value();
  ASSERT_TRUE(ColumnBinder({ScopeColumn{"r", "t"}}).Bind(test).ok());
  FixedRow row({});
  EXPECT_EQ(Evaluator(kContext).Evaluate(test, row).number(), kItemNotFound);
}

}  // namespace
}  // namespace zent::jet
