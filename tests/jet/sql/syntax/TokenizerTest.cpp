#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/syntax/DateLiteral.h"
#include "jet/sql/syntax/Keywords.h"
#include "jet/sql/syntax/Tokenizer.h"

namespace zent::jet {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

std::string ShowLiteral(const Value& value) {
  if (const auto* text = std::get_if<Text>(&value)) return "'" + *text + "'";
  if (const auto* number = std::get_if<std::int16_t>(&value)) return fmt::format("int:{}", *number);
  if (const auto* number = std::get_if<std::int32_t>(&value))
    return fmt::format("long:{}", *number);
  if (const auto* number = std::get_if<double>(&value)) return fmt::format("double:{}", *number);
  if (const auto* date = std::get_if<Date>(&value)) return "date:" + PlainDateText(*date);
  return "?";
}

/// The tokens with blanks between: words as they are, names in brackets.
std::string Show(const std::vector<Token>& tokens) {
  std::string text;
  for (const Token& token : tokens) {
    if (!text.empty()) text += ' ';
    switch (token.kind) {
      case TokenKind::Word:
      case TokenKind::Mark:
        text += token.text;
        break;
      case TokenKind::Name:
        text += "[" + token.text + "]";
        break;
      case TokenKind::Literal:
        text += ShowLiteral(token.value);
        break;
      case TokenKind::End:
        text += "end";
        break;
    }
  }
  return text;
}

struct TokenCase {
  const char* what;
  const char* statement;
  const char* tokens;
};

constexpr TokenCase kTokens[] = {
    {"nothing", "", "end"},
    {"blanks", " \t\r\n", "end"},
    {"words keep their case", "Select _a1 FROM t$", "Select _a1 FROM t$ end"},
    {"letters outside ASCII", "Größe=ñ", "Größe = ñ end"},
    {"name with a blank", "[Order Details]", "[Order Details] end"},
    {"name with a dot and quotes", "[a.b 'c' \"d\"]", "[a.b 'c' \"d\"] end"},
    {"name that is a keyword", "[Select]", "[Select] end"},
    {"name in back quotes", "`a]b`", "[a]b] end"},
    {"name behind a dot", "t.[a b]", "t . [a b] end"},
    {"name behind an exclamation mark", "[t]![a]", "[t] ! [a] end"},
    {"single quotes", "'it''s \"x\"'", "'it's \"x\"' end"},
    {"double quotes", R"("say ""x"" it's")", "'say \"x\" it's' end"},
    {"empty texts", R"('' "")", "'' '' end"},
    {"doubled quote alone", "''''", "''' end"},
    {"line break within a text", "'a\nb'", "'a\nb' end"},
    {"path", R"("C:\a\b.mdb"SELECT)", R"('C:\a\b.mdb' SELECT end)"},
    {"int", "32767", "int:32767 end"},
    {"long", "32768 2147483647", "long:32768 long:2147483647 end"},
    {"too high for a long", "2147483648", "double:2147483648 end"},
    {"too high for 64 bits", "99999999999999999999", "double:1e+20 end"},
    {"decimals", "1.5 .25 2.", "double:1.5 double:0.25 double:2 end"},
    {"exponents", "1e3 1.5E-2 2e+1", "double:1000 double:0.015 double:20 end"},
    {"hexadecimal", "&HFF &h10", "int:255 int:16 end"},
    {"hexadecimal, highest bit of 16", "&HFFFF", "int:-1 end"},
    {"hexadecimal, 32 bits", "&H10000 &HFFFFFFFF", "long:65536 long:-1 end"},
    {"minus is a mark", "-5", "- int:5 end"},
    {"date", "#1/31/2005#", "date:2005-01-31 end"},
    {"date and time", "#1/31/2005 6:30 PM#", "date:2005-01-31 18:30:00 end"},
    {"comparisons", "= <> < <= > >=", "= <> < <= > >= end"},
    {"comparisons without blanks", "a<=b<>c>=d", "a <= b <> c >= d end"},
    {"arithmetic", "+-*/\\^&", "+ - * / \\ ^ & end"},
    {"marks", "(a,b.*);?", "( a , b . * ) ; ? end"},
    {"join of texts before a name", "a&b", "a & b end"},
};

TEST(Tokenize, SplitsAStatement) {
  for (const TokenCase& row : kTokens) {
    SCOPED_TRACE(row.what);
    const Result<std::vector<Token>> tokens = Tokenize(row.statement);
    ASSERT_TRUE(tokens.ok()) << tokens.error().description;
    EXPECT_EQ(Show(tokens.value()), row.tokens);
  }
}

struct ErrorCase {
  const char* what;
  const char* statement;
  const char* piece;
  const char* end;
};

constexpr ErrorCase kErrors[] = {
    {"text without end", "SELECT 'abc", "''abc'", "(character 8: the text does not end)"},
    {"text that ends in a doubled quote", "'a''", "''a'''", "(character 1: the text does not end)"},
    {"double quote without end", "a = \"b", "'\"b'", "(character 5: the text does not end)"},
    {"name without end", "SELECT [a FROM t", "'[a FROM t'", "(character 8: the name does not end)"},
    {"empty name", "a = []", "'[]'", "(character 5: the name is empty)"},
    {"blank name", "[ ]", "'[ ]'", "(character 1: the name is empty)"},
    {"date without end", "D < #1/2/2005", "'#1/2/2005'", "(character 5: the date does not end)"},
    {"no date", "D < #31/31/2005#", "'#31/31/2005#'", "(character 5: this is no date)"},
    {"number into word", "12abc", "'12abc'", "(character 1: this is no number)"},
    {"exponent without digits", "1e+", "'1e+'", "(character 1: this is no number)"},
    {"number without bounds", "1e999", "'1e999'",
     "(character 1: the number is too large or too small)"},
    {"hexadecimal without digits", "&Hxyz", "'&Hxyz'", "(character 1: this is no number)"},
    {"hexadecimal above 32 bits", "&H100000000", "'&H100000000'",
     "(character 1: this is no number)"},
    {"character without meaning", "a @ b", "'@ b'", "(character 3: unexpected character)"},
    {"bracket that closes nothing", "a]", "']'", "(character 2: unexpected character)"},
    {"characters are counted, not bytes", "ñé @", "'@'", "(character 4: unexpected character)"},
    {"a long rest is cut", "@123456789 123456789 123456789 123456789 123456789",
     "'@123456789 123456789 123456789 123456789'", "(character 1: unexpected character)"},
};

TEST(Tokenize, SaysWhereItStopped) {
  for (const ErrorCase& row : kErrors) {
    SCOPED_TRACE(row.what);
    const Result<std::vector<Token>> tokens = Tokenize(row.statement);
    ASSERT_FALSE(tokens.ok());
    EXPECT_EQ(tokens.number(), kSyntaxError);
    EXPECT_EQ(tokens.error().source, "DAO");
    EXPECT_THAT(tokens.error().description,
                HasSubstr(std::string("query expression ") + row.piece + "."));
    EXPECT_THAT(tokens.error().description, EndsWith(row.end));
  }
}

TEST(Tokenize, RefusesAZeroByte) {
  EXPECT_EQ(Tokenize(std::string_view("a\0b", 3)).number(), kSyntaxError);
}

TEST(Tokenize, KeepsWhereEachTokenStarts) {
  const Result<std::vector<Token>> tokens = Tokenize(" a = 'b' ");
  ASSERT_TRUE(tokens.ok());
  ASSERT_EQ(tokens.value().size(), 4U);
  EXPECT_EQ(tokens.value()[0].at, 1U);
  EXPECT_EQ(tokens.value()[1].at, 3U);
  EXPECT_EQ(tokens.value()[2].at, 5U);
  EXPECT_EQ(tokens.value()[3].at, 9U);
}

TEST(IsReservedWord, KnowsTheWordsThatNeedBrackets) {
  for (const char* word : {"add", "SELECT", "Where", "xor", "Imp", "distinct", "values"}) {
    EXPECT_TRUE(IsReservedWord(word)) << word;
  }
  for (const char* word : {"", "Date", "Text", "Name", "Index", "Key", "Count", "selects"}) {
    EXPECT_FALSE(IsReservedWord(word)) << word;
  }
}

}  // namespace
}  // namespace zent::jet
