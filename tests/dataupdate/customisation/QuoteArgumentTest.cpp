#include <gtest/gtest.h>

#include "dataupdate/customisation/QuoteArgument.h"

namespace zent {
namespace {

struct QuoteCase {
  const char* what;
  const char* text;
  const char* quoted;
};

constexpr QuoteCase kQuoteCases[] = {
    {"a path", R"(D:\Data\Korvo.mdb)", R"("D:\Data\Korvo.mdb")"},
    {"blanks", R"(D:\My Data)", R"("D:\My Data")"},
    {"nothing", "", R"("")"},
    {"a backslash at the end", R"(D:\)", R"("D:\\")"},
    {"two of them", R"(D:\\)", R"("D:\\\\")"},
    {"a quote", R"(a"b)", R"("a\"b")"},
    {"a quote behind a backslash", R"(a\"b)", R"("a\\\"b")"},
    {"a quote at the end", R"(a")", R"("a\"")"},
    {"an argument put in", R"(x" "y)", R"("x\" \"y")"},
    {"what a shell would take", "a & b | c > d %PATH% ^", R"("a & b | c > d %PATH% ^")"},
    {"a tab", "a\tb", "\"a\tb\""},
};

TEST(QuoteArgument, MakesOneArgumentOfAnyText) {
  for (const QuoteCase& row : kQuoteCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(QuoteArgument(row.text), row.quoted);
  }
}

}  // namespace
}  // namespace zent
