#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "differential/Explanations.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct PatternCase {
  const char* pattern;
  const char* text;
  bool fits;
};

constexpr PatternCase kPatterns[] = {
    {"a", "a", true},
    {"a", "ab", false},
    {"a", "A", false},
    {"*", "", true},
    {"*", "abc", true},
    {"a*", "abc", true},
    {"*c", "abc", true},
    {"a*c", "abc", true},
    {"a*d", "abc", false},
    {"*b*", "abc", true},
    {"*b", "abc", false},
    {"a**c", "ac", true},
    {"f: *.lnk", "f: x.lnk", true},
    {"f: *.lnk", "f: x.ini", false},
    {"", "a", false},
};

TEST(FitsPattern, KnowsTheStarAlone) {
  for (const PatternCase& row : kPatterns) {
    SCOPED_TRACE(std::string(row.pattern) + " on " + row.text);
    EXPECT_EQ(FitsPattern(row.pattern, row.text), row.fits);
  }
}

TEST(Judge, ReportsEveryDifferenceBelowItsReason) {
  const auto reasons =
      ReadExplanations("# Links are laid out\n# in two ways.\nfile: *.lnk\n\n# Why b.\nb\nc\n");
  const Judgement judged = Judge({"b", "file: x.lnk", "c"}, reasons);
  EXPECT_EQ(
      judged.report,
      "Links are laid out in two ways.\n    file: x.lnk\n\nWhy b.\n    b\n\nWhy b.\n    c\n\n");
  EXPECT_THAT(judged.unexplained, IsEmpty());
  EXPECT_THAT(judged.unused, IsEmpty());
}

TEST(Judge, NamesWhatNothingExplains) {
  const Judgement judged = Judge({"a", "b"}, ReadExplanations("# Why b.\nb\n"));
  EXPECT_THAT(judged.unexplained, ElementsAre("a"));
  EXPECT_THAT(judged.report, HasSubstr("Unexplained:\n    a\n"));
}

TEST(Judge, TakesNoExplanationWithoutAReason) {
  EXPECT_THAT(Judge({"a"}, ReadExplanations("a\n")).unexplained, ElementsAre("a"));
  EXPECT_THAT(Judge({"a"}, ReadExplanations("#\na\n")).unexplained, ElementsAre("a"));
}

TEST(Judge, NamesExplanationsOfNothing) {
  const Judgement judged = Judge({"a"}, ReadExplanations("# Why.\na\nold: *\n"));
  EXPECT_THAT(judged.unused, ElementsAre("old: *"));
  EXPECT_THAT(judged.report, HasSubstr("Explanations that explain nothing:\n    old: *\n"));
}

TEST(Judge, SaysThatThereIsNothingToSay) { EXPECT_EQ(Judge({}, {}).report, "No difference.\n"); }

}  // namespace
}  // namespace zent::testing
