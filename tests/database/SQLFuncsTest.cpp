#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "database/SQLFuncs.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

std::string ForSqlServer(std::string_view statement) {
  return TranslateStatement(statement, kSQLServer, false);
}

std::string ForOracle(std::string_view statement) {
  return TranslateStatement(statement, kSQLServer, true);
}

/// The statements of tests/data/sql, each with what both servers get.
nlohmann::json Statements() {
  const std::string path = std::string(ZENT_TEST_DATA) + "/sql/statements.json";
  return nlohmann::json::parse(testing::ReadHostFile(path));
}

TEST(TranslateStatement, GivesBothServersTheirForm) {
  const nlohmann::json statements = Statements();
  EXPECT_GT(statements.size(), 80U);
  for (const nlohmann::json& row : statements) {
    SCOPED_TRACE(row["what"]);
    const auto access = row["access"].get<std::string>();
    EXPECT_EQ(ForSqlServer(access), row["sqlserver"].get<std::string>());
    EXPECT_EQ(ForOracle(access), row["oracle"].get<std::string>());
  }
}

TEST(TranslateStatement, LeavesStatementsForAccessAlone) {
  for (const nlohmann::json& row : Statements()) {
    const auto access = row["access"].get<std::string>();
    EXPECT_EQ(TranslateStatement(access, kMSAccess, false), access);
    EXPECT_EQ(TranslateStatement(access, kMSAccess, true), access);
  }
}

struct NamedCase {
  const char* what;
  const char* access;
  const char* sql_server;
  const char* oracle;
};

// The promises that are easiest to break, as pieces of statements.
constexpr NamedCase kNamedCases[] = {
    {"booleans", "WHERE Active = True AND Closed=False", "WHERE Active = 1 AND Closed=0",
     "WHERE Active = -1 AND Closed=0"},
    {"IsDate survives Date", "IsDate(X) AND D < Date()", "IsDate(X) AND D < GetDate()",
     "IsDate(X) AND D < GetDate()"},
    {"LTrim is cut in two", "LTrim(Name)", "Ldbo.TrimVBA(Name)", "LTrim(Name)"},
    {"a date literal", "WHERE D = #1/2/2005#", "WHERE D = '1/2/2005'", "WHERE D = '1/2/2005'"},
    {"quoting of arguments needs no double quote", "DateAdd('m', 1, D)", "DateAdd(\"m\", 1, D)",
     "DateAdd('m', 1, D)"},
    {"a pattern", "WHERE Name LIKE 'A*'", "WHERE Name LIKE 'A%'", "WHERE Name LIKE 'A%'"},
    {"a count", "SELECT Count(*) FROM T", "SELECT Count(*) FROM T", "SELECT Count(*) FROM T"},
    {"a comma that a UNION's list of columns begins with, here in quotes",
     "SELECT' ,A' FROM T UNION SELECT B FROM U", "SELECT' ,A' FROM T UNION SELECT B FROM U",
     "SELECT' ,A' FROM T UNION SELECT B FROM U"},
    {"=Null at the end", "WHERE X =Null", "WHERE X =Null", "WHERE X =Null"},
};

TEST(TranslateStatement, TranslatesPiecesLikeWholeStatements) {
  for (const NamedCase& row : kNamedCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ForSqlServer(row.access), row.sql_server);
    EXPECT_EQ(ForOracle(row.access), row.oracle);
  }
}

TEST(TranslateStatement, IsIdempotentWhereTheRepairsMakeItSo) {
  for (const char* statement : {"Date() Now() IsDate(A)", "Trim(A)", "IsNull(A)",
                                "SELECT Count(*) FROM T WHERE A LIKE 'x*'"}) {
    EXPECT_EQ(ForSqlServer(ForSqlServer(statement)), ForSqlServer(statement)) << statement;
  }
}

struct TextCase {
  const char* what;
  const char* given;
  const char* expected;
};

constexpr TextCase kQuoteCases[] = {
    {"nothing to do", "SELECT 'a' FROM T", "SELECT 'a' FROM T"},
    {"any case of the name", "DATEADD('m',1,D)", "DATEADD(\"m\",1,D)"},
    {"a longer name that ends alike", "MyFormat(D,'x')", "MyFormat(D,\"x\")"},
    {"a call up to its own parenthesis", "Format(D,'x') & 'y'", "Format(D,\"x\") & 'y'"},
    {"parentheses within texts count", "Format(D,'(') & 'y')", "Format(D,\"(\") & \"y\")"},
    {"a call that is never closed", "Format(D,'x'", "Format(D,'x'"},
    {"the next call is found within one that is never closed", "Format(D,'x', DateAdd('m',1,D)",
     "Format(D,'x', DateAdd(\"m\",1,D)"},
    {"Contains of words", R"(Contains(N, '"a" AND "b"'))", R"(Contains(N, '"a" AND "b"'))"},
    {"Contains of one double quote", "Contains(N, \")", "Contains(N, ')"},
    {"Contains without quotes", "Contains(N, M)", "Contains(N, M)"},
    {"two Contains", "Contains(N, 'a') OR Contains(N, 'b')",
     "Contains(N, 'a') OR Contains(N, 'b')"},
    {"calls of several names", "Format(DateAdd('m',1,D),'d') & DateDiff('d',A,B)",
     "Format(DateAdd(\"m\",1,D),\"d\") & DateDiff(\"d\",A,B)"},
    {"a call behind one that holds a call", "Format(Format(D,'x'),'y') & Format(D,'z')",
     "Format(Format(D,\"x\"),\"y\") & Format(D,\"z\")"},
    {"Contains up to its own parenthesis", "Contains(N, 'a') & 'b' & \"c\"",
     "Contains(N, 'a') & 'b' & \"c\""},
    {"a Contains in a Contains without quotes of its own", "Contains(N, Contains(M, '\"a\"'))",
     "Contains(N, Contains(M, '\"a\"'))"},
    {"a Contains in a Contains that is never closed", "Contains('a', Contains(M, '\"b\"')",
     "Contains('a', Contains(M, '\"b\"')"},
    {"a Format in a Contains", "Contains(Format(N, 'a'), 'b')", "Contains(Format(N, 'a\"), \"b')"},
    {"a Contains in a Contains takes turns with it", "Contains(N, Contains(M, 'a'), 'b')",
     "Contains(N, Contains(M, 'a'), \"b')"},
};

TEST(QuoteFunctionArguments, TurnsQuotesWithinTheCallsAlone) {
  for (const TextCase& row : kQuoteCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(QuoteFunctionArguments(row.given), row.expected);
  }
}

struct WildcardCase {
  const char* what;
  const char* statement;
  bool wildcards;
};

constexpr WildcardCase kWildcardCases[] = {
    {"no star", "SELECT A FROM T", false},
    {"all columns", "SELECT * FROM T", false},
    {"all columns of a table", "SELECT T.*, U.A FROM T, U", false},
    {"a count", "SELECT Count(*) FROM T", false},
    {"a pattern", "SELECT A FROM T WHERE A LIKE 'x*'", true},
    {"a pattern in double quotes", "SELECT A FROM T WHERE A LIKE \"x*\"", true},
    {"a pattern and all columns", "SELECT * FROM T WHERE A LIKE 'x*'", true},
    {"a pattern behind NOT LIKE", "WHERE A Not Like '*x'", true},
    {"a pattern in parentheses", "WHERE A LIKE ('x*')", true},
    {"a pattern that is joined", "WHERE A LIKE B & '*'", true},
    {"a pattern of any case", "where a like 'x*'", true},
    {"equality", "SELECT A FROM T WHERE A = 'x*'", false},
    {"equality behind a pattern without a star", "WHERE A LIKE 'x' AND B = 'y*'", false},
    {"a value behind a pattern in a list", "SELECT A LIKE 'x', '*' FROM T", false},
    {"a text behind the parenthesis around LIKE", "WHERE (A LIKE 'x') = '*'", false},
    {"LIKE in a name", "SELECT Likes FROM T WHERE Likes = '*'", false},
    {"LIKE in a name in brackets", "SELECT [I like] FROM T WHERE A = '*'", false},
    {"a quote in a name in brackets", "SELECT [O'Neil] FROM T WHERE A LIKE 'x*'", true},
    {"a doubled quote in a pattern", "WHERE A LIKE 'O''N*'", true},
    {"a pattern that is not closed", "WHERE A LIKE 'x*", true},
    {"a bracket that is not closed", "SELECT [A * FROM T", false},
    {"a product", "SELECT A*B FROM T", false},
};

TEST(FindWildcards, TellsPatternsFromColumnsAndProducts) {
  for (const WildcardCase& row : kWildcardCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(FindWildcards(row.statement), row.wildcards);
  }
}

constexpr TextCase kStarCases[] = {
    {"columns at every place", "SELECT *, T.*, Count( * ), A, * FROM T WHERE A LIKE '*'",
     "SELECT *, T.*, Count( * ), A, * FROM T WHERE A LIKE '%'"},
    {"columns behind DISTINCT and ALL", "SELECT DISTINCT * FROM T WHERE A LIKE '*'",
     "SELECT DISTINCT * FROM T WHERE A LIKE '%'"},
    {"columns of a subquery", "SELECT A FROM T WHERE A IN (SELECT * FROM U) AND B LIKE 'x*'",
     "SELECT A FROM T WHERE A IN (SELECT * FROM U) AND B LIKE 'x%'"},
    {"an equality beside a pattern is hit", "WHERE A = '*' AND B LIKE '*'",
     "WHERE A = '%' AND B LIKE '%'"},
    {"a count that came as a pattern is repaired", "SELECT Count(%) WHERE A LIKE '*'",
     "SELECT Count(*) WHERE A LIKE '%'"},
    {"without a pattern nothing changes", "SELECT Count(%), A*B FROM T",
     "SELECT Count(%), A*B FROM T"},
};

TEST(TranslateWildcards, KeepsTheStarsOfColumnLists) {
  for (const TextCase& row : kStarCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(TranslateWildcards(row.given), row.expected);
  }
}

constexpr TextCase kSpaceCases[] = {
    {"nothing to do", "SELECT A FROM T", "SELECT A FROM T"},
    {"runs of blanks", "SELECT   A    FROM T", "SELECT A FROM T"},
    {"line breaks", "SELECT A\r\nFROM T\rWHERE\nB", "SELECT A FROM T WHERE B"},
    {"blanks around commas", "SELECT A , B,  C  ,D", "SELECT A,B,C,D"},
    {"quoted text stays", "SELECT 'a  b , c'  ,  \"d  ,e\"", "SELECT 'a  b , c',\"d  ,e\""},
    {"the other quote does not close", "SELECT 'a\"  b'  FROM T", "SELECT 'a\"  b' FROM T"},
    {"a line break in quoted text is two blanks", "SELECT 'a\r\nb'", "SELECT 'a  b'"},
    {"quoted text that is not closed", "SELECT 'a  b", "SELECT 'a  b"},
    {"tabs stay", "SELECT\tA", "SELECT\tA"},
    {"blanks at the ends become one", "   SELECT A   ", " SELECT A "},
};

TEST(NormaliseSpaces, KeepsOneBlankOutsideQuotes) {
  for (const TextCase& row : kSpaceCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(NormaliseSpaces(row.given), row.expected);
  }
}

struct SelectCase {
  const char* what;
  const char* statement;
  std::optional<SelectParts> parts;
};

const SelectCase kSelectCases[] = {
    {"a plain one", "SELECT A, B FROM T WHERE C", SelectParts{"SELECT", "A,B", "FROM T WHERE C"}},
    {"a row count", "select top 10 A FROM T", SelectParts{"select top 10", "A", "FROM T"}},
    {"blanks and line breaks", "  SELECT\r\n A\r\n FROM\r\n T ",
     SelectParts{"SELECT", "A", "FROM T"}},
    {"the first FROM counts", "SELECT A FROM T, (SELECT B FROM U)",
     SelectParts{"SELECT", "A", "FROM T,(SELECT B FROM U)"}},
    {"what stands before stays in the head", "ALL SELECT A FROM T",
     SelectParts{"ALL SELECT", "A", "FROM T"}},
    {"no FROM", "SELECT A", std::nullopt},
    {"no SELECT", "DELETE A FROM T", std::nullopt},
    {"nothing behind the word", "SELECT", std::nullopt},
    {"a FROM before the SELECT", "DELETE FROM T WHERE A IN (SELECT B)", std::nullopt},
    {"an empty statement", "", std::nullopt},
};

TEST(SplitSelect, TakesAStatementApart) {
  for (const SelectCase& row : kSelectCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(SplitSelect(row.statement), row.parts);
  }
}

TEST(TranslateStatement, TakesTimeInProportionToTheStatement) {
  // Each of these would take minutes if it were looked through once for each of its parts.
  for (const std::string piece : {"Format(", "#", "'*", "Contains(A)", "Contains('A)", "Format(A)",
                                  "SELECT * FROM T UNION "}) {
    std::string statement = "SELECT A FROM T WHERE B LIKE '*' ";
    while (statement.size() < 300'000) statement += piece;
    EXPECT_FALSE(ForSqlServer(statement).empty());
    EXPECT_FALSE(ForOracle(statement).empty());
  }
}

TEST(TranslateStatement, TakesTimeInProportionToItsNestedCalls) {
  constexpr std::size_t kDepth = 40'000;
  for (const std::string call : {"Format(", "Contains(", "DateDiff("}) {
    SCOPED_TRACE(call);
    std::string statement = "SELECT ";
    for (std::size_t depth = 0; depth < kDepth; ++depth) statement += call;
    statement.append("'x'").append(kDepth, ')');
    const std::string innermost = call == "Contains(" ? "('x')" : "(\"x\")";
    EXPECT_NE(ForSqlServer(statement).find(innermost), std::string::npos);
    EXPECT_FALSE(ForOracle(statement).empty());
  }
}

}  // namespace
}  // namespace zent
