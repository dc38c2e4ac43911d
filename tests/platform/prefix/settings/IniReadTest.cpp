#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/settings/IniRead.h"

namespace zent {
namespace {

using std::string_view_literals::operator""sv;

constexpr std::size_t kNoLimit = 60000;

struct QuoteCase {
  const char* what;
  std::string_view value;
  std::string_view stripped;
};

constexpr QuoteCase kQuoteCases[] = {
    {"no quotes", "x", "x"},
    {"double quotes", "\"x\"", "x"},
    {"single quotes", "'x'", "x"},
    {"one pair alone", "\"\"x\"\"", "\"x\""},
    {"unlike quotes", "\"x'", "\"x'"},
    {"one quote alone", "\"", "\""},
    {"a pair round nothing", "''", ""},
    {"blanks inside stay", "\" x \"", " x "},
    {"quotes inside stay", "\"a\" \"b\"", "a\" \"b"},
    {"other equal ends", "xx", "xx"},
    {"nothing", "", ""},
};

TEST(StripIniQuotes, TakesOnePairOfEqualQuotesOff) {
  for (const QuoteCase& row : kQuoteCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(StripIniQuotes(row.value), row.stripped);
  }
}

struct ReadCase {
  const char* what;
  std::string_view file;
  std::string_view section;
  std::string_view key;
  std::optional<std::string_view> value;
};

constexpr ReadCase kReadCases[] = {
    {"first of several keys", "[S]\nA=1\nA=2\n", "S", "A", "1"},
    {"first of several sections", "[S]\nA=1\n[S]\nB=2\n", "S", "B", std::nullopt},
    {"any case", "[General]\nAppName=1\n", "gENERAL", "APPNAME", "1"},
    {"any case outside ASCII", "[Caf\xE9]\nK\xFC=1\n", "CAF\xC3\x89", "k\xC3\x9C", "1"},
    {"capital Y with diaeresis", "[S]\n\xFF=1\n", "S", "\xC5\xB8", "1"},
    {"the sharp s is not a double s",
     "[S]\nStra\xDF"
     "e=1\n",
     "S", "STRASSE", std::nullopt},
    {"a name that begins alike", "[S]\nAB=1\nA=2\n", "S", "A", "2"},
    {"a longer name", "[S]\nA=1\n", "S", "AB", std::nullopt},
    {"a longer name outside ASCII", "[S]\nA\xE4=1\n", "S", "A", std::nullopt},
    {"blanks in the call", "[S]\nA=1\n", " S\t", "\tA ", "1"},
    {"lines before the first section", "A=1\n[S]\nA=2\n", "", "A", "1"},
    {"a header without a name is a later section", "[]\nA=1\n", "", "A", std::nullopt},
    {"a comment has no key", "[S]\n;A=1\n", "S", ";A", std::nullopt},
    {"a line without equals sign has no key", "[S]\nA\n", "S", "A", std::nullopt},
    {"the section ends at the next header", "[S]\n[T]\nA=1\n", "S", "A", std::nullopt},
    {"UTF-8 with mark", "\xEF\xBB\xBF[\xC3\xA4]\nA=\xC3\xB6\n", "\xC3\x84", "A", "\xC3\xB6"},
    {"UTF-16 with mark", "\xFE\xFF\0[\0S\0]\0\n\0A\0=\0\xE4"sv, "S", "A", "\xC3\xA4"},
    {"value up to a NUL", "[S]\nA=a\0b\n"sv, "S", "A", "a"},
    {"a question mark does not match what the code page lacks", "\xEF\xBB\xBF[S]\n\xD0\x96=1\n",
     "S", "?", std::nullopt},
    {"empty file", "", "S", "A", std::nullopt},
    {"binary file", "\0\x01\xFF\xFE[S]\r=\0[S]\nA=1"sv, "S", "A", std::nullopt},
};

TEST(FindIniValue, FindsTheFirstKeyOfTheFirstSection) {
  for (const ReadCase& row : kReadCases) {
    SCOPED_TRACE(row.what);
    const IniText file{std::string(row.file)};
    EXPECT_EQ(FindIniValue(file, row.section, row.key, kNoLimit), row.value);
  }
}

TEST(FindIniValue, CutsCharactersNotBytes) {
  const IniText file{"[S]\nA=\xE4\xF6\xFC\n"};
  EXPECT_EQ(FindIniValue(file, "S", "A", 2), "\xC3\xA4\xC3\xB6");
}

TEST(ListIniKeys, NamesTheKeysInOrderWithANulBehindEach) {
  const IniText file{"[S]\nB=1\n;c=2\nplain\n=3\nA =4\nb=5\n[T]\nX=6\n[S]\nY=7\n"};
  EXPECT_EQ(ListIniKeys(file, "s", kNoLimit), "B\0A\0b\0"sv);
  EXPECT_EQ(ListIniKeys(file, "missing", kNoLimit), "");
  EXPECT_EQ(ListIniKeys(IniText("X=1\n[S]\nA=2\n"), "", kNoLimit), "X\0"sv);
}

TEST(ListIniSections, NamesAllSectionsButNamelessOnes) {
  const IniText file{"A=1\n[S]\n[ T ] x\n[]\n[open\n[s]\n"};
  EXPECT_EQ(ListIniSections(file, kNoLimit), "S\0T\0s\0"sv);
}

TEST(ListIniSections, IsCutToItsLimit) {
  const IniText file{"[\xE4\xF6]\n[T]\n"};
  EXPECT_EQ(ListIniSections(file, 5), "\xC3\xA4\xC3\xB6\0T\0"sv);
  EXPECT_EQ(ListIniSections(file, 4), "\xC3\xA4\xC3\xB6\0T"sv);
  EXPECT_EQ(ListIniSections(file, 3), "\xC3\xA4\xC3\xB6\0"sv);
  EXPECT_EQ(ListIniSections(file, 2), "\xC3\xA4\xC3\xB6"sv);
  EXPECT_EQ(ListIniSections(file, 1), "\xC3\xA4"sv);
  EXPECT_EQ(ListIniSections(file, 0), "");
}

}  // namespace
}  // namespace zent
