#include <gtest/gtest.h>

#include "base/Text.h"

namespace zent {
namespace {

struct ReplaceCase {
  const char* what;
  const char* text;
  const char* pattern;
  const char* replacement;
  const char* replaced;
};

constexpr ReplaceCase kReplaceCases[] = {
    {"any case is found", "SQL server, sql SERVER", "SQL Server", "X", "X, X"},
    {"the replacement is not searched again", "aa", "a", "aa", "aaaa"},
    {"an absent pattern changes nothing", "abc", "d", "x", "abc"},
    {"an empty pattern changes nothing", "abc", "", "x", "abc"},
    {"matches do not overlap", "aaa", "aa", "b", "ba"},
};

TEST(ReplaceAllIgnoringCase, ReplacesEachOccurrenceOnce) {
  for (const ReplaceCase& row : kReplaceCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ReplaceAllIgnoringCase(row.text, row.pattern, row.replacement), row.replaced);
  }
}

TEST(FindIgnoringCase, FindsFromAPositionOn) {
  EXPECT_EQ(FindIgnoringCase("xDSN=a;dsn=b", "dsn="), 1U);
  EXPECT_EQ(FindIgnoringCase("xDSN=a;dsn=b", "dsn=", 2), 7U);
  EXPECT_EQ(FindIgnoringCase("abc", "bcd"), std::string_view::npos);
  EXPECT_EQ(FindIgnoringCase("abc", "a", 4), std::string_view::npos);
}

TEST(TrimBlanks, TakesBlanksButNotTabs) {
  EXPECT_EQ(TrimBlanks("  a b "), "a b");
  EXPECT_EQ(TrimBlanks("\ta "), "\ta");
  EXPECT_EQ(TrimBlanks("   "), "");
}

TEST(Characters, AreCountedNotBytes) {
  EXPECT_EQ(CountCharacters("a\xC3\xA4\xE2\x82\xAC"), 3U);
  EXPECT_EQ(SkipCharacters("a\xC3\xA4\xE2\x82\xAC", 2), 3U);
  EXPECT_EQ(SkipCharacters("ab", 5), 2U);
  EXPECT_EQ(FirstCharacters("\xC3\xA4"
                            "bc",
                            2),
            "\xC3\xA4"
            "b");
}

struct LineCase {
  const char* what;
  std::string text;
  const char* line;
};

TEST(OneLine, HasNoControls) {
  const LineCase rows[] = {
      {"plain", "a b", "a b"},
      {"breaks and tabs", "a\r\nb\tc", "a\\r\\nb\\tc"},
      {"escape", "\x1B[0m", "\\x1b[0m"},
      {"zero and delete", std::string("a\0b\x7F", 4), "a\\x00b\\x7f"},
      {"the escape of one byte and others like it", "\xC2\x9B[0m\xC2\x80", "\\x9b[0m\\x80"},
      {"characters behind them", "\xC2\xA0\xC3\x9B\xE2\x82\x9B", "\xC2\xA0\xC3\x9B\xE2\x82\x9B"},
      {"half of a character", "a\xC2", "a\xC2"},
  };
  for (const LineCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(OneLine(row.text), row.line);
  }
}

TEST(EqualsIgnoringCase, ComparesWholeTexts) {
  EXPECT_TRUE(EqualsIgnoringCase("CheckMinVersion", "checkminversion"));
  EXPECT_FALSE(EqualsIgnoringCase("copy", "copyl"));
}

}  // namespace
}  // namespace zent
