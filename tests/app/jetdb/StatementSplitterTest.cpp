#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/jetdb/StatementSplitter.h"

namespace zent {
namespace {

using ::testing::ElementsAreArray;

struct SplitCase {
  const char* what;
  const char* script;
  std::vector<std::string> statements;
};

TEST(SplitScript, EndsAStatementAtASemicolonOfItsOwn) {
  const SplitCase rows[] = {
      {"nothing", "", {}},
      {"blanks and semicolons", " ;\n; ;", {}},
      {"one without a semicolon", "select 1", {"select 1"}},
      {"two", "select 1;\nselect 2;\n", {"select 1", "select 2"}},
      {"within a text", "select 'a;b'; select 2", {"select 'a;b'", "select 2"}},
      {"within a doubled quote", "select 'it''s; so'; b", {"select 'it''s; so'", "b"}},
      {"within double quotes", R"(select "a;b")", {R"(select "a;b")"}},
      {"within a name", "select [a;b]; c", {"select [a;b]", "c"}},
      {"a quote within a name", "select [it's]; c", {"select [it's]", "c"}},
      {"a date", "select #1/1/2003#; c", {"select #1/1/2003#", "c"}},
      {"a text over lines", "select 'a\n;b'; c", {"select 'a\n;b'", "c"}},
      {"a name that does not end", "select [a\n; c", {"select [a", "c"}},
      {"remarks", "-- first\nselect 1; -- no remark\n--last;", {"select 1", "-- no remark"}},
      {"a mark at the start", "\xEF\xBB\xBFselect 1", {"select 1"}},
      {"line ends of Windows", "select 1;\r\nselect 2\r\n", {"select 1", "select 2"}},
  };
  for (const SplitCase& row : rows) {
    SCOPED_TRACE(row.what);
    std::vector<std::string> found;
    for (const ScriptStatement& one : SplitScript(row.script)) found.push_back(one.text);
    EXPECT_THAT(found, ElementsAreArray(row.statements));
  }
}

TEST(SplitScript, TellsTheLineOfEachStatement) {
  const std::vector<ScriptStatement> statements =
      SplitScript("-- remark\n\nselect\n1;\n\n  select 2; select 3");
  ASSERT_EQ(statements.size(), 3U);
  EXPECT_EQ(statements[0].line, 3U);
  EXPECT_EQ(statements[1].line, 6U);
  EXPECT_EQ(statements[2].line, 6U);
}

}  // namespace
}  // namespace zent
