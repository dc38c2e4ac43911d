#include <gtest/gtest.h>

#include "platform/Wildcard.h"

namespace zent {
namespace {

struct WildcardCase {
  const char* what;
  const char* pattern;
  const char* name;
  bool matches;
};

constexpr WildcardCase kWildcardCases[] = {
    {"a star takes any run", "a*c", "abbbc", true},
    {"a star takes no character", "a*c", "ac", true},
    {"a star takes dots", "a*", "a.b.c", true},
    {"all of the name counts", "a*c", "abcd", false},
    {"two stars are one", "a**c", "abc", true},
    {"case does not count", "*.DLL", "korvo.dll", true},
    {"case of letters beyond ASCII", "\xC3\x9C*", "\xC3\xBCx", true},
    {"a sharp s is one letter", "ss", "\xC3\x9F", false},
    {"one character of two bytes", "?b",
     "\xC3\xBC"
     "b",
     true},
    {"an extension is not cut to three", "*.tmp", "a.tmpx", false},
    {"an extension is not filled up", "*.html", "a.htm", false},
    {"a star before a dot stops at the last dot", "*.dll", "c.dll.bak", false},
    {"a star before a dot takes earlier dots", "*.dll", "c.1.dll", true},
    {"star dot star finds names without a dot", "*.*", "file", true},
    {"a star behind a dot may follow no dot", "file.*", "file", true},
    {"star dot finds names without a dot only", "*.", "file", true},
    {"star dot leaves names with a dot", "*.", "file.a", false},
    {"star dot leaves names with a leading dot", "*.", ".hidden", false},
    {"star dot star dot wants a dot", "*.*.", "file", false},
    {"star dot star dot takes any dot", "*.*.", "a.b", true},
    {"a question mark is one character", "a?c", "abc", true},
    {"a question mark is none before a dot", "a??.txt", "a1.txt", true},
    {"a question mark is none at the end", "file???", "file", true},
    {"a question mark is one within a name", "a?c", "ac", false},
    {"a question mark takes no dot", "a?b", "a.b", false},
    {"question marks behind a dot may follow no dot", "file.???", "file", true},
    {"final dots and blanks do not count", "a.txt. .", "a.txt", true},
    {"a plain name", "a.txt", "A.TXT", true},
    {"brackets are letters", "[1]", "[1]", true},
    {"brackets are no set", "[1]", "1", false},
    {"a blank pattern finds nothing", "  ", "a", false},
    {"an empty pattern finds nothing", "", "a", false},
    {"inner signs of the system are not taken", "<.dll", "a.dll", false},
    {"a quote is not taken for a dot", "a\"b", "a.b", false},
};

TEST(Wildcard, MatchesLikeTheSystem) {
  for (const WildcardCase& row : kWildcardCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Wildcard(row.pattern).Matches(row.name), row.matches);
  }
}

TEST(Wildcard, AHostilePatternTakesNoLongerThanItsLength) {
  std::string pattern;
  for (int i = 0; i < 120; ++i) pattern += "*a";
  const std::string name(255, 'a');

  EXPECT_TRUE(Wildcard(pattern).Matches(name));
  EXPECT_FALSE(Wildcard(pattern + "*b").Matches(name));
  EXPECT_FALSE(Wildcard(pattern + "?.b").Matches(name));
}

TEST(Wildcard, BytesThatAreNoTextDoNotEndTheMatch) {
  EXPECT_TRUE(Wildcard("latin*").Matches("latin\xE4.txt"));
  EXPECT_FALSE(Wildcard("latin\xC3\xA4*").Matches("latin\xE4.txt"));
}

TEST(Wildcard, IsInTellsPatternsFromNames) {
  EXPECT_TRUE(Wildcard::IsIn("*.dll"));
  EXPECT_TRUE(Wildcard::IsIn("a?"));
  EXPECT_FALSE(Wildcard::IsIn("a.dll"));
}

}  // namespace
}  // namespace zent
