#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/prefix/registry/FileTime.h"
#include "platform/prefix/registry/KeyPath.h"
#include "platform/prefix/registry/RegistryOrder.h"

namespace zent {
namespace {

struct PathCase {
  const char* what;
  std::string path;
  KeyPath names;
};

const PathCase kPathCases[] = {
    {"names between backslashes", R"(Software\Korvo\Settings)", {"Software", "Korvo", "Settings"}},
    {"an empty path has no names", "", {}},
    {"a trailing backslash", R"(Software\)", {"Software"}},
    {"doubled backslashes", R"(Software\\\Korvo\\)", {"Software", "Korvo"}},
    {"slashes are characters", "a/b", {"a/b"}},
    {"blanks are characters", R"( a \ b )", {" a ", " b "}},
    {"broken UTF-8 is mended", "a\xff", {"a\ufffd"}},
};

TEST(KeyPath, SplitsAtBackslashes) {
  for (const PathCase& row : kPathCases) {
    SCOPED_TRACE(row.what);
    const Result<KeyPath> names = ParseKeyPath(row.path);
    ASSERT_TRUE(names.ok());
    EXPECT_EQ(names.value(), row.names);
  }
}

TEST(KeyPath, RefusesALeadingBackslash) {
  EXPECT_EQ(ParseKeyPath(R"(\)").number(), kPathFileAccess);
  EXPECT_EQ(ParseKeyPath(R"(\\Software)").number(), kPathFileAccess);
}

TEST(KeyPath, BoundsTheLengthOfAName) {
  EXPECT_TRUE(HasValidNames({std::string(255, 'k'), std::string(255, 'k')}));
  EXPECT_FALSE(HasValidNames({"a", std::string(256, 'k')}));
  std::string umlauts;
  for (int i = 0; i < 255; ++i) umlauts += "\u00e4";
  EXPECT_TRUE(HasValidNames({umlauts}));
  EXPECT_FALSE(HasValidNames({umlauts + "x"}));
}

TEST(KeyPath, TellsWhatLiesBelow) {
  EXPECT_TRUE(IsAtOrBelow({"A", "b", "c"}, {"a", "B"}));
  EXPECT_TRUE(IsAtOrBelow({"A"}, {"a"}));
  EXPECT_TRUE(IsAtOrBelow({"A"}, {}));
  EXPECT_FALSE(IsAtOrBelow({"A"}, {"A", "b"}));
  EXPECT_FALSE(IsAtOrBelow({"Ab"}, {"A"}));
}

TEST(RegistryOrder, SortsByNameInSmallLetters) {
  const std::vector<std::string> values = {"",   "10", "2", "_", "a", "A1",
                                           "aa", "b",  "C", "x", "Z", "z1"};
  const std::vector<std::string> keys = {" lead and trail ",
                                         "#hash",
                                         ";semi",
                                         "_u",
                                         "A",
                                         "a2",
                                         "b",
                                         "deep",
                                         "k\u00e4se",
                                         "tab\tx",
                                         "with\"quote",
                                         "with/slash",
                                         "with[open",
                                         "with]bracket",
                                         "Z"};
  for (const std::vector<std::string>& sorted : {values, keys}) {
    std::vector<std::string> shuffled(sorted.rbegin(), sorted.rend());
    std::sort(shuffled.begin(), shuffled.end(), ComesBefore);
    EXPECT_EQ(shuffled, sorted);
  }
}

TEST(RegistryOrder, ComparesInAnyCase) {
  EXPECT_FALSE(ComesBefore("KORVO", "korvo"));
  EXPECT_FALSE(ComesBefore("korvo", "KORVO"));
  EXPECT_FALSE(ComesBefore("\u00c4", "\u00e4"));
  EXPECT_TRUE(ComesBefore("z", "\u00c4"));
  EXPECT_TRUE(ComesBefore("\U0001f600", "\ufffd")) << "by UTF-16 units, surrogates first";
}

TEST(FileTime, CountsFrom1601) {
  constexpr std::uint64_t kYear2020 = 132'223'104'000'000'000;
  EXPECT_GT(SystemFileTime(), kYear2020);
  EXPECT_LT(SystemFileTime(), 2 * kYear2020);
}

}  // namespace
}  // namespace zent
