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

TEST(EqualsIgnoringCase, ComparesWholeTexts) {
  EXPECT_TRUE(EqualsIgnoringCase("CheckMinVersion", "checkminversion"));
  EXPECT_FALSE(EqualsIgnoringCase("copy", "copyl"));
}

}  // namespace
}  // namespace zent
