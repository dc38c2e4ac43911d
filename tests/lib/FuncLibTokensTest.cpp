#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lib/FuncLib.h"

namespace zent {
namespace {

using ::testing::ElementsAreArray;

struct SplitCase {
  const char* what;
  const char* line;
  const char* delimiter;
  const char* quote;
  std::vector<std::string> tokens;
};

const SplitCase kSplitCases[] = {
    {"each delimiter cuts", "copy,a.txt,$(apppath)", ",", "\"", {"copy", "a.txt", "$(apppath)"}},
    {"a line without delimiter is one token", "cdp", ",", "\"", {"cdp"}},
    {"an empty line is one empty token", "", ",", "\"", {""}},
    {"two adjacent delimiters give an empty token", "a,,b", ",", "\"", {"a", "", "b"}},
    {"a delimiter at the start gives an empty token", ",a", ",", "\"", {"", "a"}},
    {"a delimiter at the end gives no token", "a,b,", ",", "\"", {"a", "b"}},
    {"of two at the end one gives a token", "a,,", ",", "\"", {"a", ""}},
    {"a delimiter alone is one empty token", ",", ",", "\"", {""}},
    {"blanks stay", " a , b ", ",", "\"", {" a ", " b "}},
    {"an empty argument is written with quotes", "msg,\"\",x", ",", "\"", {"msg", "\"\"", "x"}},
    {"quotes hold the delimiter and stay", R"(msg,"a,b",c)", ",", "\"", {"msg", R"("a,b")", "c"}},
    {"quotes hold several delimiters", R"("a,,b,",c)", ",", "\"", {R"("a,,b,")", "c"}},
    {"a quote inside a token opens too", R"(k=a"x,y"b,c)", ",", "\"", {R"(k=a"x,y"b)", "c"}},
    {"two quoted texts in one token", R"("a,b"-"c,d",e)", ",", "\"", {R"("a,b"-"c,d")", "e"}},
    {"a doubled quote is even", R"(a"",b)", ",", "\"", {R"(a"")", "b"}},
    {"three quotes are odd", R"(a""",b",c)", ",", "\"", {R"(a""",b")", "c"}},
    {"an open quote takes the rest of the line", R"(a,"b,c,d)", ",", "\"", {"a", R"("b,c,d)"}},
    {"but not a delimiter at its end", R"("a,b,)", ",", "\"", {R"("a,b)"}},
    {"a quoted line that ends with a delimiter", R"("a,b",)", ",", "\"", {R"("a,b")"}},
    {"a quoted delimiter at the end of the line", R"(a,",")", ",", "\"", {"a", R"(",")"}},
    {"without a quote text quotes are nothing", R"("a,b")", ",", "", {"\"a", "b\""}},
    {"a blank quote text is none", "a b,c d", ",", " ", {"a b", "c d"}},
    {"another delimiter",
     R"(HKCU|Software\Korvo|Name)",
     "|",
     "",
     {"HKCU", R"(Software\Korvo)", "Name"}},
    {"another quote", "'a,b',c", ",", "'", {"'a,b'", "c"}},
    {"a long delimiter", "a<>b<><>c", "<>", "", {"a", "b", "", "c"}},
    {"the delimiter is compared with its case", "aXbxc", "x", "", {"aXb", "c"}},
    {"a delimiter that is the quote cuts", R"(a"b"c)", "\"", "\"", {"a", "b", "c"}},
    {"a delimiter that holds the quote counts it", R"("a",b",c)", "\",", "\"", {R"("a",b)", "c"}},
    {"a long quote is counted as a whole", "<<a,b<<,<c,d", ",", "<<", {"<<a,b<<", "<c", "d"}},
};

TEST(GetTokens, CutsTheLine) {
  for (const SplitCase& row : kSplitCases) {
    SCOPED_TRACE(row.what);
    TokenList tokens({"left", "over"});
    const Result<std::size_t> count = GetTokens(row.line, row.delimiter, tokens, row.quote);
    ASSERT_TRUE(count.ok());
    EXPECT_EQ(count.value(), row.tokens.size());
    EXPECT_THAT(tokens, ElementsAreArray(row.tokens));
  }
}

TEST(GetTokens, TakesNoNoticeOfTheClosingQuote) {
  TokenList tokens;
  ASSERT_TRUE(GetTokens("(a,b),c", ",", tokens, "", ")").ok());
  EXPECT_THAT(tokens, ElementsAreArray({"(a", "b)", "c"}));
  ASSERT_TRUE(GetTokens(R"("a,b)", ",", tokens, "\"", ")").ok());
  EXPECT_THAT(tokens, ElementsAreArray({R"("a,b)"}));
}

TEST(GetTokens, RefusesAnEmptyDelimiter) {
  TokenList tokens({"left over"});
  EXPECT_EQ(GetTokens("a,b", "", tokens, "\"").number(), kInvalidProcedureCall);
  EXPECT_EQ(tokens.Count(), 0U);
}

struct LongCase {
  const char* what;
  const char* unit;    ///< repeated
  std::size_t tokens;  ///< 0: too many
};

// 2,000,000 units each: what takes the square of the length takes hours here.
constexpr std::size_t kUnits = 2'000'000;
constexpr LongCase kLongCases[] = {
    {"quotes", "\"", 1},
    {"delimiters", ",", 0},
    {"pairs of quote and delimiter", "\",", 0},
    {"letters", "a", 1},
};

TEST(GetTokens, TakesTimeInProportionToTheLine) {
  for (const LongCase& row : kLongCases) {
    SCOPED_TRACE(row.what);
    std::string line;
    for (std::size_t unit = 0; unit < kUnits; ++unit) line += row.unit;
    TokenList tokens;
    EXPECT_EQ(GetTokens(line, ",", tokens, "\"").value_or(0), row.tokens);
  }
}

TEST(GetTokens, RefusesMoreTokensThanAnyCommandHas) {
  TokenList tokens;
  EXPECT_EQ(GetTokens(std::string(kMaxTokens, ','), ",", tokens).value_or(0), kMaxTokens);
  EXPECT_EQ(GetTokens(std::string(kMaxTokens + 1, ','), ",", tokens).number(), kOutOfStringSpace);
  EXPECT_EQ(tokens.Count(), 0U);
}

TEST(GetTokens, JoinsALongQuotedTextInOneGo) {
  const std::string quoted = '"' + std::string(kUnits, ',') + '"';
  TokenList tokens;
  ASSERT_EQ(GetTokens(quoted + ",x", ",", tokens, "\"").value_or(0), 2U);
  EXPECT_EQ(tokens.At(1).value().size(), quoted.size());
  EXPECT_EQ(tokens.At(2).value(), "x");
}

}  // namespace
}  // namespace zent
