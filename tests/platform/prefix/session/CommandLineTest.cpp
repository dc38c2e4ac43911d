#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/prefix/session/CommandLine.h"

namespace zent {
namespace {

struct SplitCase {
  const char* what;
  const char* line;
  std::vector<std::string> arguments;
};

const std::vector<SplitCase> kSplitCases = {
    {"an empty line has no argument", "", {}},
    {"blanks alone are no argument", "  \t ", {}},
    {"blanks and tabs separate", "a b\tc   d", {"a", "b", "c", "d"}},
    {"blanks at the ends do not count", "  a ", {"a"}},
    {"quotes group", R"(/s "C:\Program Files\a.dll")", {"/s", R"(C:\Program Files\a.dll)"}},
    {"two quotes are an empty argument", R"(a "" b)", {"a", "", "b"}},
    {"a group may stand inside a word", R"(PROP="a b"c)", {"PROP=a bc"}},
    {"a group left open ends with the line", R"("a b)", {"a b"}},
    {"a quote behind a backslash is text", R"(a\"b)", {R"(a"b)"}},
    {"two backslashes before a quote are one", R"("a b\\" c)", {R"(a b\)", "c"}},
    {"three backslashes before a quote are one and a quote", R"(a\\\"b)", {R"(a\"b)"}},
    {"backslashes elsewhere are text",
     R"(\\server\share\ a\\b)",
     {R"(\\server\share\)", R"(a\\b)"}},
    {"backslashes at the end are text", R"(a\\)", {R"(a\\)"}},
    {"two quotes in a group are a quote", R"("a""b c")", {R"(a"b c)"}},
    {"a path that ends in a backslash swallows the quote", R"("C:\a\" b)", {R"(C:\a" b)"}},
    {"a line break does not separate", "a\nb", {"a\nb"}},
    {"nothing is meant for a shell", "$(id) `id` ; | > *", {"$(id)", "`id`", ";", "|", ">", "*"}},
    {"single quotes are text", "'a b'", {"'a", "b'"}},
};

TEST(SplitArguments, FollowsTheRulesOfWindowsPrograms) {
  for (const SplitCase& row : kSplitCases) {
    SCOPED_TRACE(row.what);
    EXPECT_THAT(SplitArguments(row.line), ::testing::ElementsAreArray(row.arguments));
  }
}

}  // namespace
}  // namespace zent
