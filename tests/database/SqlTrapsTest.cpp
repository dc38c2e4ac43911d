#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/SqlTraps.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct TrapCase {
  const char* what;
  const char* statement;
  const char* sql_server;  ///< a part of the one warning; empty for none
  const char* oracle;
};

constexpr TrapCase kTrapCases[] = {
    {"a plain statement", "SELECT * FROM T WHERE A = True AND D < #1/2/2005#", "", ""},
    {"a pattern beside all columns", "SELECT * FROM T WHERE A LIKE 'x*'", "", ""},
    {"the repaired names", "IsDate(A) AND To_Date(B) AND GetDate() AND DATE()", "", ""},
    {"LTrim", "SELECT LTrim(A) FROM T",
     "the name LTrim() ends like Trim() and is changed to Ldbo.TrimVBA()", ""},
    {"CDate", "SELECT CDate(A) FROM T", "changed to CGetDate()", "changed to CGetDate()"},
    {"a name that ends in Len", "SELECT StrLen(A) FROM T", "", "changed to StrLength()"},
    {"a schema before the name", "SELECT dbo.Trim(A) FROM T", "", ""},
    {"=Null at the end", "WHERE A =Null", "only with a blank", "only with a blank"},
    {"= Null before a parenthesis", "WHERE (A = Null)", "only with a blank", "only with a blank"},
    {"= Null with its blank", "WHERE A = Null AND B", "", ""},
    {"a column that begins like Null", "WHERE A = Nullable", "", ""},
    {"an assignment of Null", "UPDATE T SET A = Null WHERE B", "an assignment", "an assignment"},
    {"a test for Null in an update", "UPDATE T SET A = 1 WHERE B = Null AND C", "", ""},
    {"<> True", "WHERE A <> True", "True is translated only", "True is translated only"},
    {"a bare False", "WHERE False", "False is translated only", "False is translated only"},
    {"Trueness", "WHERE Trueness > 1", "", ""},
    {"a number sign", "WHERE A = #soon#", "no date", "no date"},
    {"a joined text", "SELECT A & B FROM T", "& is not", "& is not"},
    {"IIf", "SELECT IIf(A,1,2) FROM T", "IIf() is not", "IIf() is not"},
    {"a text that is changed", "WHERE A = 'x = True'", "'x = True' is changed to 'x = 1'",
     "'x = True' is changed to 'x = -1'"},
    {"a text that is not", "WHERE A = 'True & #5'", "", ""},
    {"an apostrophe in double quotes", "WHERE A = \"O'Neil\"", "ends the text", "ends the text"},
    {"a call that is not closed", "SELECT DateAdd('m',1,D FROM T", "never closed", ""},
    {"a product beside a pattern", "SELECT A*B FROM T WHERE C LIKE 'x*'", "every *", "every *"},
    {"a product alone", "SELECT A*B FROM T", "", ""},
    {"a UNION of nothing", "SELECT A FROM T UNION B", "", "cannot be taken apart"},
};

void ExpectTrap(const TrapCase& row, const std::string& expected, bool is_oracle) {
  const std::vector<std::string> traps = FindSqlTraps(row.statement, is_oracle);
  if (expected.empty()) {
    EXPECT_THAT(traps, IsEmpty());
  } else {
    EXPECT_THAT(traps, ElementsAre(HasSubstr(expected)));
  }
}

TEST(FindSqlTraps, WarnsOfWhatTheTranslationGetsWrong) {
  for (const TrapCase& row : kTrapCases) {
    SCOPED_TRACE(row.what);
    ExpectTrap(row, row.sql_server, false);
    ExpectTrap(row, row.oracle, true);
  }
}

TEST(FindSqlTraps, TellsEveryTrapOfAStatement) {
  EXPECT_EQ(FindSqlTraps("SELECT LTrim(A) & RTrim(B) FROM T WHERE C <> True", false).size(), 4U);
}

TEST(FindSqlTraps, TakesAnyText) {
  for (const char* statement : {"", "'", "\"", "''", "#", "((", "))", "*", "'*", "= Null"}) {
    EXPECT_LE(FindSqlTraps(statement, false).size(), 2U) << statement;
  }
}

}  // namespace
}  // namespace zent
