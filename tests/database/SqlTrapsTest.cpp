#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/SQLFuncs.h"
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
    {"an assignment of Null at the end", "UPDATE T SET A = Null", "", ""},
    {"an assignment of Null before another", "UPDATE T SET A = Null, B = 1 WHERE C", "", ""},
    {"an assignment of what begins like Null", "UPDATE T SET A = Nullable WHERE B", "", ""},
    {"a test at the end behind an assignment", "UPDATE T SET A = Null, B = 1 WHERE C =Null",
     "only with a blank", "only with a blank"},
    {"a test on a line of its own", "UPDATE T SET A = 1\r\nWHERE B =Null", "only with a blank",
     "only with a blank"},
    {"a test for Null in an update", "UPDATE T SET A = 1 WHERE B = Null AND C", "", ""},
    {"<> True", "WHERE A <> True", "True is translated only", "True is translated only"},
    {"a bare False", "WHERE False", "False is translated only", "False is translated only"},
    {"Trueness", "WHERE Trueness > 1", "", ""},
    {"a number sign", "WHERE A = #soon#", "no date", "no date"},
    {"a joined text", "SELECT A & B FROM T", "& is not", "& is not"},
    {"IIf", "SELECT IIf(A,1,2) FROM T", "IIf() is not", "IIf() is not"},
    {"IIf behind a longer name", "SELECT MyIIf(A), IIf(B,1,2) FROM T", "IIf() is not",
     "IIf() is not"},
    {"a name that ends in IIf", "SELECT MyIIf(A) FROM T", "", ""},
    {"a text that is changed", "WHERE A = 'x = True'", "'x = True' is changed to 'x = 1'",
     "'x = True' is changed to 'x = -1'"},
    {"a text that is not", "WHERE A = 'True & #5'", "", ""},
    {"an apostrophe in double quotes", "WHERE A = \"O'Neil\"", "ends the text", "ends the text"},
    {"a call that is not closed", "SELECT DateAdd('m',1,D FROM T", "never closed", ""},
    {"a parenthesis behind a closed call", "SELECT DateAdd('m',1,D), (A FROM T", "", ""},
    {"a later call that is not closed", "SELECT DateAdd('m',1,D)), Format(D,'d' FROM T",
     "never closed", ""},
    {"a call within one that is not closed", "SELECT Format(DateAdd('m',1,D),'d' FROM T",
     "a call of DateAdd, DateDiff, Format or Contains is never closed", ""},
    {"a text of a call that opens a parenthesis", "SELECT Format(D,'(') FROM T", "never closed",
     ""},
    {"the name of a call in a text", "WHERE A = 'Format('", "", ""},
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

// Each of these is a trap just where the translation does what is not meant: it changes an
// assignment, or leaves the quotes of a call.
TEST(FindSqlTraps, WarnsOfWhatTheTranslationReallyDoes) {
  for (const char* assignment : {"UPDATE T SET A = Null", "UPDATE T SET A = Null, B = 1 WHERE C",
                                 "UPDATE T SET A = Nullable WHERE B",
                                 "UPDATE T SET A = Null WHERE B", "UPDATE T SET A =Null WHERE B"}) {
    SCOPED_TRACE(assignment);
    const bool changed = TranslateStatement(assignment, kSQLServer, false) != assignment;
    EXPECT_EQ(!FindSqlTraps(assignment, false).empty(), changed);
  }
  for (const char* call : {"SELECT Format(D,'d') FROM T", "SELECT Format(D,'d' FROM T",
                           "SELECT Format(D,'(') FROM T", "SELECT Format(D,'d'), (A FROM T"}) {
    SCOPED_TRACE(call);
    const bool kept = TranslateStatement(call, kSQLServer, false) == call;
    EXPECT_EQ(!FindSqlTraps(call, false).empty(), kept);
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
