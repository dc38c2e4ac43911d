#include <gtest/gtest.h>

#include <string>

#include "platform/prefix/settings/IniSection.h"

namespace zent {
namespace {

struct NameCase {
  const char* what;
  std::string_view wanted;  // UTF-8
  std::string_view name;    // ANSI
  bool same;
};

constexpr NameCase kNameCases[] = {
    {"equal", "Name", "Name", true},
    {"case of ASCII", "nAME", "NamE", true},
    {"case of other letters", "\xC3\x84", "\xE4", true},
    {"blanks of the wanted name", "\t Name ", "Name", true},
    {"blanks inside count", "a b", "a  b", false},
    {"shorter", "Nam", "Name", false},
    {"longer", "Names", "Name", false},
    {"shorter by another letter", "a", "a\xE4", false},
    {"longer by another letter", "a\xC3\xA4", "a", false},
    {"both empty", " ", "", true},
    {"another letter", "\xC3\xA4", "a", false},
    {"multiplication and division sign are no pair", "\xC3\x97", "\xF7", false},
};

TEST(IniName, MatchesInAnyCase) {
  const IniText file{""};
  for (const NameCase& row : kNameCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(IniName(row.wanted, file).Matches(row.name), row.same);
  }
}

TEST(IniSection, GivesItsLinesAndNoOthers) {
  const IniText file{"x\n[S] tail\n\nA=1\n[T]\nB=2\n"};
  IniSection section(file, "s");
  ASSERT_TRUE(section.found());
  EXPECT_EQ(section.begin(), 2U);
  EXPECT_EQ(section.behind_header(), 11U);
  EXPECT_EQ(section.Next()->content, "");
  EXPECT_EQ(section.Next()->content, "A=1");
  EXPECT_FALSE(section.Next());
  EXPECT_FALSE(section.Next());
  EXPECT_EQ(section.end(), 16U);
}

TEST(IniSection, TheOneWithoutANameIsWhatStandsBeforeTheFirstHeader) {
  const IniText file{"A=1\n[S]\n"};
  IniSection section(file, "");
  ASSERT_TRUE(section.found());
  EXPECT_EQ(section.begin(), 0U);
  EXPECT_EQ(section.behind_header(), 0U);
  EXPECT_EQ(section.Next()->name, "A");
  EXPECT_FALSE(section.Next());
  EXPECT_EQ(section.end(), 4U);

  const IniText empty{""};
  EXPECT_TRUE(IniSection(empty, "").found());
}

TEST(IniSection, AMissingOneIsNotFoundAndHasNoLines) {
  const IniText file{"[S]\nA=1\n"};
  IniSection section(file, "T");
  EXPECT_FALSE(section.found());
  EXPECT_FALSE(section.Next());
}

}  // namespace
}  // namespace zent
