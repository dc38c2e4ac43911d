#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lib/TokenList.h"

namespace zent {
namespace {

using ::testing::ElementsAre;

struct AtCase {
  const char* what;
  std::size_t number;
  const char* token;
  int error;
};

constexpr AtCase kAtCases[] = {
    {"the first token is number 1", 1, "copy", 0},
    {"the last token", 3, "", 0},
    {"there is no token 0", 0, "", kSubscriptOutOfRange},
    {"one behind the last", 4, "", kSubscriptOutOfRange},
    {"far behind the last", std::size_t(-1), "", kSubscriptOutOfRange},
};

TEST(TokenList, CountsFromOneAndReportsAMissingToken) {
  const TokenList tokens({"copy", "a.txt", ""});
  for (const AtCase& row : kAtCases) {
    SCOPED_TRACE(row.what);
    const Result<std::string> token = tokens.At(row.number);
    EXPECT_EQ(token.number(), row.error);
    EXPECT_EQ(token.value_or(""), row.token);
  }
  EXPECT_EQ(tokens.At(4).error().description, "Subscript out of range");
}

TEST(TokenList, IsMadeFromTextsOfAnyKind) {
  EXPECT_THAT(TokenList({"a", "b"}), ElementsAre("a", "b"));
  EXPECT_THAT(TokenList(std::vector<std::string>{"a", "b", "c"}), ElementsAre("a", "b", "c"));
  EXPECT_EQ(TokenList().Count(), 0U);
  EXPECT_EQ(TokenList().At(1).number(), kSubscriptOutOfRange);
}

TEST(TokenList, GrowsAndIsEmptied) {
  TokenList tokens({"a"});
  tokens.Add("b");
  EXPECT_THAT(tokens, ElementsAre("a", "b"));
  EXPECT_EQ(tokens.Count(), 2U);
  tokens.Clear();
  EXPECT_EQ(tokens.Count(), 0U);
}

}  // namespace
}  // namespace zent
