#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "contracts/LinkSamples.h"
#include "scenarios/compare/Comparable.h"

namespace zent::testing {
namespace {

struct PairCase {
  const char* what;
  const char* name;
  std::string one;
  std::string other;
  bool equal;
};

const PairCase kPairs[] = {
    {"settings: empty lines and indents", "a.ini", "[S]\r\n  K = v\r\n\r\n[T]\r\n",
     "[S]\nK=v\n[T]\n", true},
    {"settings: comments", "A.INI", "; old\n[S]\nK=v\n", "[S]\nK=v\n", true},
    {"settings: a name that is all extension", "x/.ini", "[S]\r\nK=v\r\n", "[S]\nK=v\n", true},
    {"settings: another value", "a.ini", "[S]\nK=v\n", "[S]\nK=w\n", false},
    {"settings: another section", "a.ini", "[S]\nK=v\n", "[T]\nK=v\n", false},
    {"settings: a missing key", "a.ini", "[S]\nK=v\nL=v\n", "[S]\nK=v\n", false},
    {"settings: another order", "a.ini", "[S]\nK=v\nL=v\n", "[S]\nL=v\nK=v\n", false},
    {"settings: another case of a key", "a.ini", "[S]\nK=v\n", "[S]\nk=v\n", false},
    {"other files: every byte", "a.txt", "a\r\n", "a\n", false},
    {"other files: equal", "a.dll", std::string("a\0b", 3), std::string("a\0b", 3), true},
    {"links that are none", "a.lnk", "x", "y", false},
};

TEST(Comparable, IsEqualForWhatIsTheSameOnBothSystems) {
  for (const PairCase& row : kPairs) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Comparable(row.name, row.one) == Comparable(row.name, row.other), row.equal);
  }
}

TEST(Comparable, SaysWhatALinkSays) {
  const std::vector<LinkSample> samples = LoadLinkSamples(ZENT_TEST_DATA "/links/recorded.txt");
  ASSERT_FALSE(samples.empty());
  for (const LinkSample& sample : samples) {
    SCOPED_TRACE(sample.name);
    const std::string text = Comparable("a.lnk", sample.bytes);
    EXPECT_NE(text.find("target " + sample.target + "\n"), std::string::npos) << text;
    EXPECT_NE(text.find("arguments " + sample.arguments + "\n"), std::string::npos) << text;
    EXPECT_NE(text.find("folder " + sample.working_folder + "\n"), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace zent::testing
