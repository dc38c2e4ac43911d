#include <gtest/gtest.h>

#include <vector>

#include "base/CodePage.h"
#include "platform/ErrorOutput.h"

namespace zent {
namespace {

constexpr std::size_t kLimit = ErrorOutput::kLimit;

struct OutputCase {
  const char* what;
  std::vector<std::string> pieces;
  std::string text;
};

TEST(ErrorOutput, KeepsTheBeginningAsText) {
  const std::string full(kLimit, 'x');
  const std::string but_one(kLimit - 1, 'x');
  const OutputCase rows[] = {
      {"nothing", {}, ""},
      {"pieces follow each other", {"Error", "", " 3044\n"}, "Error 3044\n"},
      {"UTF-8 stays", {"M\xC3\xBCller"}, "M\xC3\xBCller"},
      {"a character in two pieces", {"M\xC3", "\xBCller"}, "M\xC3\xBCller"},
      {"other bytes are ANSI", {"M\xFCller"}, "M\xC3\xBCller"},
      {"up to the limit", {full}, full},
      {"what is too much goes", {full, "y"}, full},
      {"the piece that passes the limit is cut", {but_one, "yz"}, but_one + "y"},
      {"no half character at the limit", {but_one, "\xC3\xBC"}, but_one},
      {"nor a third of one", {but_one, "\xE2\x82\xAC"}, but_one},
      {"a half character at the very end is ANSI", {"M\xC3"}, "M\xC3\x83"},
      {"ANSI that is too much", {"\xFC", full}, "\xC3\xBC" + but_one},
  };
  for (const OutputCase& row : rows) {
    SCOPED_TRACE(row.what);
    ErrorOutput output;
    for (const std::string& piece : row.pieces) output.Add(piece);
    EXPECT_EQ(output.Text(FromAnsi), row.text);
  }
}

TEST(ErrorOutput, ThatNeverEndsIsBounded) {
  ErrorOutput output;
  for (int i = 0; i < 100000; ++i) output.Add("the same line again\n");
  EXPECT_EQ(output.Text(FromAnsi).size(), kLimit);
}

}  // namespace
}  // namespace zent
