#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

/// The tree with every operator's operands in brackets: shows what groups with what.
std::string Grouped(const Expression& node) {
  if (node.kind == ExpressionKind::Literal || node.kind == ExpressionKind::Column) {
    return PrintExpression(node);
  }
  std::string operands;
  for (const Expression& operand : node.operands) operands += " " + Grouped(operand);
  const BinaryOperator* const known = FindOperator(node.kind);
  std::string name = known != nullptr ? std::string(known->text) : node.name;
  if (node.kind == ExpressionKind::Not) name = "NOT";
  if (node.kind == ExpressionKind::Negate) name = "NEG";
  if (node.kind == ExpressionKind::In) name = "IN";
  if (node.kind == ExpressionKind::NotIn) name = "NOTIN";
  if (node.kind == ExpressionKind::Between) name = "BETWEEN";
  if (node.kind == ExpressionKind::NotBetween) name = "NOTBETWEEN";
  if (node.kind == ExpressionKind::IsNull) name = "ISNULL";
  if (node.kind == ExpressionKind::IsNotNull) name = "ISNOTNULL";
  return "(" + name + operands + ")";
}

struct ExpressionCase {
  const char* what;
  const char* text;
  const char* grouped;
  const char* printed;
};

constexpr ExpressionCase kExpressions[] = {
    {"multiplication before addition", "1+2*3", "(+ 1 (* 2 3))", "1 + 2 * 3"},
    {"brackets", "(1+2)*3", "(* (+ 1 2) 3)", "(1 + 2) * 3"},
    {"brackets without need", "((1))", "1", "1"},
    {"from the left", "1-2-3", "(- (- 1 2) 3)", "1 - 2 - 3"},
    {"from the right by brackets", "1-(2-3)", "(- 1 (- 2 3))", "1 - (2 - 3)"},
    {"powers group from the left", "2^3^2", "(^ (^ 2 3) 2)", "2 ^ 3 ^ 2"},
    {"power before sign", "-2^2", "(NEG (^ 2 2))", "-2 ^ 2"},
    {"sign within a power", "2^-1", "(^ 2 (NEG 1))", "2 ^ (-1)"},
    {"two signs", "- -1", "(NEG (NEG 1))", "--1"},
    {"plus sign", "+1", "1", "1"},
    {"division, whole division, remainder", "a mod b\\c/d", "(MOD a (\\ b (/ c d)))",
     "a MOD b \\ c / d"},
    {"addition before joining texts", "a&b+c", "(& a (+ b c))", "a & b + c"},
    {"joining before comparing", "a&b=c", "(= (& a b) c)", "a & b = c"},
    {"comparing before NOT", "NOT a=b", "(NOT (= a b))", "NOT a = b"},
    {"NOT before AND", "not a and b", "(AND (NOT a) b)", "NOT a AND b"},
    {"NOT as operand", "a = NOT b AND c", "(AND (= a (NOT b)) c)", "a = (NOT b) AND c"},
    {"AND before OR", "a or b and c", "(OR a (AND b c))", "a OR b AND c"},
    {"OR in brackets", "(a or b) and c", "(AND (OR a b) c)", "(a OR b) AND c"},
    {"the weak ones", "a imp b eqv c xor d or e", "(IMP a (EQV b (XOR c (OR d e))))",
     "a IMP b EQV c XOR d OR e"},
    {"the weak ones from the other end", "a or b xor c eqv d imp e",
     "(IMP (EQV (XOR (OR a b) c) d) e)", "a OR b XOR c EQV d IMP e"},
    {"comparisons from the left", "a=b<>c", "(<> (= a b) c)", "a = b <> c"},
    {"all comparisons", "a<b<=c>d>=e", "(>= (> (<= (< a b) c) d) e)", "a < b <= c > d >= e"},
    {"LIKE", "a like 'x*'", "(LIKE a 'x*')", "a LIKE 'x*'"},
    {"NOT LIKE", "a not like 'x*'", "(NOT LIKE a 'x*')", "a NOT LIKE 'x*'"},
    {"IN", "a in (1,2,b+1)", "(IN a 1 2 (+ b 1))", "a IN (1, 2, b + 1)"},
    {"NOT IN", "a+1 not in (1)", "(NOTIN (+ a 1) 1)", "a + 1 NOT IN (1)"},
    {"BETWEEN", "a between 1 and 2 and b", "(AND (BETWEEN a 1 2) b)", "a BETWEEN 1 AND 2 AND b"},
    {"NOT BETWEEN", "a not between 1+1 and 5", "(NOTBETWEEN a (+ 1 1) 5)",
     "a NOT BETWEEN 1 + 1 AND 5"},
    {"BETWEEN with a test within", "a between (b and c) and 2", "(BETWEEN a (AND b c) 2)",
     "a BETWEEN (b AND c) AND 2"},
    {"IS NULL", "a is null or b", "(OR (ISNULL a) b)", "a IS NULL OR b"},
    {"IS NOT NULL", "not a is not null", "(NOT (ISNOTNULL a))", "NOT a IS NOT NULL"},
    {"constants", "true = false", "(= TRUE FALSE)", "TRUE = FALSE"},
    {"null", "a = null", "(= a NULL)", "a = NULL"},
    {"column of a table", "t.a = [u v]![b c]", "(= t.a [u v].[b c])", "t.a = [u v].[b c]"},
    {"name that is a keyword", "[select]", "[select]", "[select]"},
    {"name with a closing bracket", "`a]b`", "`a]b`", "`a]b`"},
    {"name with letters outside ASCII", "größe", "[größe]", "[größe]"},
    {"call", "Mid(Name,1,3)", "(Mid Name 1 3)", "Mid(Name, 1, 3)"},
    {"call without arguments", "Now()", "(Now)", "Now()"},
    {"functions that are reserved words", "Left(a,1)=right(b,1)", "(= (Left a 1) (right b 1))",
     "Left(a, 1) = right(b, 1)"},
    {"count of rows", "Count(*)", "(Count)", "Count(*)"},
    {"count of a column", "count(a)", "(count a)", "count(a)"},
    {"aggregates", "Min(a)+Max(b)+Sum(c)+Avg(d)", "(+ (+ (+ (Min a) (Max b)) (Sum c)) (Avg d))",
     "Min(a) + Max(b) + Sum(c) + Avg(d)"},
    {"column called like an aggregate", "Count", "Count", "Count"},
    {"text with quotes", R"("it's ""x""")", R"('it''s "x"')", R"('it''s "x"')"},
    {"numbers", "1+1.0+1e3+&HFFFF+3000000000", "(+ (+ (+ (+ 1 1.0) 1000.0) &HFFFF) 3000000000.0)",
     "1 + 1.0 + 1000.0 + &HFFFF + 3000000000.0"},
    {"large numbers", "1e300+&H80000000", "(+ 1e+300 &H80000000)", "1e+300 + &H80000000"},
    {"date", "#1/31/2005 6:30 PM#", "#2005-01-31 18:30:00#", "#2005-01-31 18:30:00#"},
    {"time", "#6:30#", "#06:30:00#", "#06:30:00#"},
};

TEST(ParseExpression, GroupsByTheBindingOfOperators) {
  for (const ExpressionCase& row : kExpressions) {
    SCOPED_TRACE(row.what);
    const Result<Expression> parsed = ParseExpression(row.text);
    ASSERT_TRUE(parsed.ok()) << parsed.error().description;
    EXPECT_EQ(Grouped(parsed.value()), row.grouped);
  }
}

TEST(PrintExpression, GivesTextOfTheSameTree) {
  for (const ExpressionCase& row : kExpressions) {
    SCOPED_TRACE(row.what);
    const Expression parsed = ParseExpression(row.text).value();
    const std::string printed = PrintExpression(parsed);
    EXPECT_EQ(printed, row.printed);
    const Result<Expression> again = ParseExpression(printed);
    ASSERT_TRUE(again.ok()) << again.error().description;
    EXPECT_EQ(again.value(), parsed);
  }
}

TEST(PrintExpression, KeepsEveryPairOfOperatorsInItsGroups) {
  const char* const operators[] = {"IMP", "EQV",  "XOR", "OR", "AND", "=",   "<>", "<", "<=", ">",
                                   ">=",  "LIKE", "&",   "+",  "-",   "MOD", "\\", "*", "/",  "^"};
  for (const char* outer : operators) {
    for (const char* inner : operators) {
      for (const char* form : {"(a {1} b) {0} c", "a {0} (b {1} c)", "NOT (a {0} b)",
                               "-(a {0} b) {1} c", "a {0} (NOT b) {1} c", "a {0} -b {1} c"}) {
        const std::string text = fmt::format(fmt::runtime(form), outer, inner);
        SCOPED_TRACE(text);
        const Result<Expression> parsed = ParseExpression(text);
        ASSERT_TRUE(parsed.ok()) << parsed.error().description;
        EXPECT_EQ(ParseExpression(PrintExpression(parsed.value())).value(), parsed.value());
      }
    }
  }
}

TEST(PrintLiteral, ShowsValuesThatNoLiteralHas) {
  EXPECT_EQ(PrintLiteral(std::uint8_t{7}), "7");
  EXPECT_EQ(PrintLiteral(Currency{12500}), "1.2500");
  EXPECT_EQ(PrintLiteral(1.5F), "1.5");
  EXPECT_EQ(PrintLiteral(Binary{"x"}), "'x'");
  EXPECT_EQ(PrintLiteral(Guid()), "'{00000000-0000-0000-0000-000000000000}'");
  EXPECT_EQ(PrintLiteral(Decimal{.scale = 1, .magnitude = {0, 0, 0, 15}}), "1.5");
}

struct ErrorCase {
  const char* what;
  const char* text;
  const char* end;
};

constexpr ErrorCase kErrors[] = {
    {"nothing", "", "(character 1: expression expected)"},
    {"operator without operand", "a +", "(character 4: expression expected)"},
    {"operand without operator", "a b", "(character 3: operator expected)"},
    {"two operators", "a = = b", "(character 5: expression expected)"},
    {"bracket not closed", "(a", "(character 3: ) expected)"},
    {"bracket not opened", "a)", "(character 2: operator expected)"},
    {"empty brackets", "()", "(character 2: expression expected)"},
    {"IN without list", "a IN 1", "(character 6: ( expected)"},
    {"IN with an empty list", "a IN ()", "(character 7: expression expected)"},
    {"list not closed", "a IN (1", "(character 8: ) expected)"},
    {"BETWEEN without AND", "a BETWEEN 1 OR 2", "(character 13: AND expected)"},
    {"IS without NULL", "a IS 1", "(character 6: NULL expected)"},
    {"NOT without test", "a NOT 1", "(character 7: IN, BETWEEN or LIKE expected)"},
    {"keyword as name", "a = WHERE", "(character 5: expression expected)"},
    {"keyword behind a point", "a.SELECT", "(character 3: name of a column expected)"},
    {"point without name", "a.", "(character 3: name of a column expected)"},
    {"arguments not closed", "Mid(a, 1", "(character 9: ) expected)"},
    {"argument left out", "Mid(a,,1)", "(character 7: expression expected)"},
    {"star in a call", "Sum(*)", "(character 5: expression expected)"},
    {"count of nothing", "Count()", "(character 7: Count has one argument)"},
    {"aggregate of two", "Max(a,b)", "(character 8: Max has one argument)"},
    {"count not closed", "Count(*", "(character 8: ) expected)"},
    {"comma", "a,b", "(character 2: operator expected)"},
};

TEST(ParseExpression, SaysWhereItStopped) {
  for (const ErrorCase& row : kErrors) {
    SCOPED_TRACE(row.what);
    const Result<Expression> parsed = ParseExpression(row.text);
    ASSERT_FALSE(parsed.ok());
    EXPECT_EQ(parsed.number(), kSyntaxError);
    EXPECT_THAT(parsed.error().description, EndsWith(row.end));
  }
}

TEST(ParseExpression, WantsNoParameters) {
  const Result<Expression> parsed = ParseExpression("a = ?");
  EXPECT_EQ(parsed.number(), kTooFewParameters);
  EXPECT_EQ(parsed.error().description, "Too few parameters. Expected 1.");
}

std::string Repeat(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(ParseExpression, EndsHostileNestingInAnError) {
  for (const char* nest : {"(", "NOT ", "- ", "+ ", "f(", "a AND (", "a IN (", "a BETWEEN ("}) {
    SCOPED_TRACE(nest);
    EXPECT_EQ(ParseExpression(Repeat(nest, 100000) + "1").number(), kQueryTooComplex);
  }
  for (const char* chain : {"1 + ", "a OR ", "a & ", "2 ^ "}) {
    SCOPED_TRACE(chain);
    EXPECT_EQ(ParseExpression(Repeat(chain, 100000) + "1").number(), kQueryTooComplex);
  }
  EXPECT_EQ(ParseExpression("1" + Repeat(" IS NULL", 100000)).number(), kQueryTooComplex);
}

TEST(ParseExpression, TakesWhatPeopleWrite) {
  EXPECT_TRUE(ParseExpression(Repeat("(", 90) + "1" + Repeat(")", 90)).ok());
  const Result<Expression> chain = ParseExpression(Repeat("ID = 1 OR ", 400) + "ID = 2");
  ASSERT_TRUE(chain.ok());
  EXPECT_EQ(ParseExpression(PrintExpression(chain.value())).value(), chain.value());
  EXPECT_TRUE(ParseExpression("ID IN (1" + Repeat(", 2", 50000) + ")").ok());
}

}  // namespace
}  // namespace zent::jet
