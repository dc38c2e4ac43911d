#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ui/script/ScriptedAnswers.h"

namespace zent {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::Not;

struct ParseCase {
  const char* what;
  std::string contents;
  std::vector<std::string> answers;  ///< line, name and text of each
};

const ParseCase kParseCases[] = {
    {"an empty file has no answer", "", {}},
    {"each answer",
     "retry\ncancel\nyes\nno\ncontinue\ntext:abc\n",
     {"1 retry ", "2 cancel ", "3 yes ", "4 no ", "5 continue ", "6 text:... abc"}},
    {"any case", "RETRY\nYes\nTEXT:Abc\n", {"1 retry ", "2 yes ", "3 text:... Abc"}},
    {"blanks and tabs around", "  retry \t\n\tno\n", {"1 retry ", "2 no "}},
    {"empty lines and comments", "\n# yes\n   \n  #no\nno\n", {"5 no "}},
    {"CR LF, LF and CR end a line",
     "yes\r\nno\nretry\rcancel",
     {"1 yes ", "2 no ", "3 retry ", "4 cancel "}},
    {"the mark of UTF-8", "\xEF\xBB\xBFyes\n", {"1 yes "}},
    {"the mark alone", "\xEF\xBB\xBF", {}},
    {"a text may be empty", "text:\n", {"1 text:... "}},
    {"a text keeps what is behind the colon", "text: a:b # c\n", {"1 text:...  a:b # c"}},
    {"a text in other letters", "text:\xC3\xA4\n", {"1 text:... \xC3\xA4"}},
    {"a text that looks like an answer", "text:yes\n", {"1 text:... yes"}},
};

TEST(ParseAnswers, TakesOneAnswerALine) {
  for (const ParseCase& row : kParseCases) {
    SCOPED_TRACE(row.what);
    const auto parsed = ParseAnswers(row.contents);
    ASSERT_TRUE(parsed.ok());
    std::vector<std::string> answers;
    for (const ScriptedAnswer& answer : parsed.value()) {
      answers.push_back(fmt::format("{} {} {}", answer.line, NameOf(answer.kind), answer.text));
    }
    EXPECT_THAT(answers, ElementsAreArray(row.answers));
  }
}

struct FaultCase {
  const char* what;
  std::string contents;
  const char* line;
};

const FaultCase kFaultCases[] = {
    {"another word", "yes\nmaybe\n", "line 2 "},
    {"a part of a word", "y\n", "line 1 "},
    {"two answers in a line", "yes no\n", "line 1 "},
    {"a text without its colon", "\n\ntext abc\n", "line 3 "},
    {"a comment behind an answer", "yes # sure\n", "line 1 "},
    {"ok takes no line", "ok\n", "line 1 "},
    {"a text in another encoding", "text:\xE4\n", "line 1 "},
    {"UTF-16", std::string("\xFF\xFEy\0e\0s\0", 8), "line 1 "},
    {"lines are counted at CR LF once", "yes\r\nno\r\nbad\r\n", "line 3 "},
};

TEST(ParseAnswers, NamesTheLineThatIsNone) {
  for (const FaultCase& row : kFaultCases) {
    SCOPED_TRACE(row.what);
    const auto parsed = ParseAnswers(row.contents);
    ASSERT_FALSE(parsed.ok());
    EXPECT_EQ(parsed.number(), kInvalidFileFormat);
    EXPECT_THAT(parsed.error().description, HasSubstr(row.line));
  }
}

TEST(ParseAnswers, DoesNotRepeatALineThatMayBeAPassword) {
  const auto parsed = ParseAnswers("txt:secret\n");
  ASSERT_FALSE(parsed.ok());
  EXPECT_THAT(parsed.error().description, Not(HasSubstr("secret")));
}

}  // namespace
}  // namespace zent
