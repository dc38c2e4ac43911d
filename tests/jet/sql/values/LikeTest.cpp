#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Like.h"

namespace zent::jet {
namespace {

struct LikeCase {
  const char* pattern;
  const char* text;
  bool matches;
};

constexpr LikeCase kLikes[] = {
    {"", "", true},
    {"", "a", false},
    {"abc", "ABC", true},
    {"abc", "abcd", false},
    {"abcd", "abc", false},
    {"CS*", "cs123", true},
    {"CS*", "CS", true},
    {"CS*", "CN1", false},
    {"*", "", true},
    {"**", "x", true},
    {"*son", "Johnson", true},
    {"*son", "Johnsons", false},
    {"a*b*c", "a1b2b3c", true},
    {"a*b*c", "a1c2b", false},
    {"*ab*", "xaab", true},
    {"a?c", "abc", true},
    {"a?c", "ac", false},
    {"?", "é", true},
    {"?", "\xF0\x9F\x98\x80", true},
    {"#", "7", true},
    {"#", "x", false},
    {"(###) ###", "(012) 345", true},
    {"[a-c]x", "Bx", true},
    {"[a-c]x", "dx", false},
    {"[abc]", "B", true},
    {"[!a-c]", "d", true},
    {"[!a-c]", "B", false},
    {"[!a-c]", "", false},
    {"[!]", "!", true},
    {"[*]", "*", true},
    {"[*]", "x", false},
    {"50[#]", "50#", true},
    {"a[?]", "ab", false},
    {"[[]", "[", true},
    {"a]", "a]", true},
    {"[a-]", "-", true},
    {"[-a]", "-", true},
    {"[a-]", "b", false},
    {"a[]b", "ab", true},
    {"[0-9][0-9]", "42", true},
    {"[a-c0-3]", "2", true},
    {"é", "É", true},
    {"e", "é", false},
    {"a b", "a b", true},
    {"a ", "a", false},
    {"a%", "ab", false},
    {"a_c", "abc", false},
    {"it's", "IT'S", true},
    {"a-b", "a'b", false},
    {"a\nb", "A\nB", true},
    {"\x01", "\x02", false},
};

TEST(LikePattern, MatchesTheWholeText) {
  for (const LikeCase& row : kLikes) {
    SCOPED_TRACE(std::string(row.pattern) + " : " + row.text);
    const Result<LikePattern> pattern = LikePattern::Compile(row.pattern);
    ASSERT_TRUE(pattern.ok());
    EXPECT_EQ(pattern.value().Matches(row.text), row.matches);
  }
}

TEST(LikePattern, RefusesListsThatAreNone) {
  for (const char* pattern : {"[", "a[bc", "[!", "[z-a]"}) {
    EXPECT_EQ(LikePattern::Compile(pattern).number(), kInvalidPattern) << pattern;
  }
}

TEST(LikePattern, KnowsWhatMatchesStartWith) {
  EXPECT_EQ(LikePattern::Compile("CS*").value().Prefix(), "CS");
  EXPECT_EQ(LikePattern::Compile("abc").value().Prefix(), "abc");
  EXPECT_EQ(LikePattern::Compile("*a").value().Prefix(), "");
  EXPECT_EQ(LikePattern::Compile("a[bc]d").value().Prefix(), "a");
}

TEST(LikePattern, ManyRunsDoNotMultiply) {
  std::string pattern;
  for (int i = 0; i < 50; ++i) pattern += "*a";
  const std::string text(2000, 'a');
  EXPECT_TRUE(LikePattern::Compile(pattern).value().Matches(text));
  EXPECT_FALSE(LikePattern::Compile(pattern + "b").value().Matches(text));
}

}  // namespace
}  // namespace zent::jet
