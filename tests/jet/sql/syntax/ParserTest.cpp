#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

using ::testing::EndsWith;

struct StatementCase {
  const char* what;
  const char* statement;
  const char* printed;
};

constexpr StatementCase kStatements[] = {
    // As the application and its updates write them.
    {"no rows, for the columns", "SELECT * FROM Contacts WHERE 1=2 ",
     "SELECT * FROM Contacts WHERE 1 = 2"},
    {"copy into another file", R"(INSERT INTO Lookup IN "C:\Data\Korvo.mdb" SELECT * FROM Lookup)",
     R"(INSERT INTO Lookup IN 'C:\Data\Korvo.mdb' SELECT * FROM Lookup)"},
    {"counter", "SELECT * FROM Counters WHERE TableName='SiteID' ",
     "SELECT * FROM Counters WHERE TableName = 'SiteID'"},
    {"two blanks before a name",
     "Select * FROM Lookup WHERE LookupFieldName='Type' AND  LookupValue='It''s'",
     "SELECT * FROM Lookup WHERE LookupFieldName = 'Type' AND LookupValue = 'It''s'"},
    {"one column", "Select DisplayName From Contacts Where ContactIntID='CN1'",
     "SELECT DisplayName FROM Contacts WHERE ContactIntID = 'CN1'"},
    {"patterns",
     "Select * FROM Links where FromID LIKE 'CS*' AND (ToID LIKE 'CN*' OR ToID LIKE 'RQ*') ",
     "SELECT * FROM Links WHERE FromID LIKE 'CS*' AND (ToID LIKE 'CN*' OR ToID LIKE 'RQ*')"},
    {"column called Name", "Select * FROM Aliases WHERE Name='a' AND  Alias='b'",
     "SELECT * FROM Aliases WHERE Name = 'a' AND Alias = 'b'"},
    {"function and truth", "SELECT Mid(Name,1,3) FROM T WHERE Active=True",
     "SELECT Mid(Name, 1, 3) FROM T WHERE Active = TRUE"},
    {"today", "SELECT * FROM T WHERE IsDate(X) AND D < Date()",
     "SELECT * FROM T WHERE IsDate(X) AND D < Date()"},
    {"count", "SELECT Count(*) FROM T", "SELECT Count(*) FROM T"},
    {"date", "SELECT * FROM T WHERE D = #1/2/2005#", "SELECT * FROM T WHERE D = #2005-01-02#"},
    // Queries.
    {"union", "select a from t union all select b from u union select c from v order by a",
     "SELECT a FROM t UNION ALL SELECT b FROM u UNION SELECT c FROM v ORDER BY a"},
    {"right join", "SELECT * FROM a RIGHT OUTER JOIN b ON a.i=b.i",
     "SELECT * FROM a RIGHT JOIN b ON a.i = b.i"},
    {"a share of the rows", "SELECT TOP 10 percent a FROM t", "SELECT TOP 10 PERCENT a FROM t"},
    {"a new table", "SELECT a INTO b IN 'c.mdb' FROM t", "SELECT a INTO b IN 'c.mdb' FROM t"},
    {"queries within",
     "SELECT (SELECT 1) FROM t WHERE a in (select b from u) OR NOT exists (select 1)",
     "SELECT (SELECT 1) FROM t WHERE a IN (SELECT b FROM u) OR NOT EXISTS (SELECT 1)"},
    {"not in a query", "SELECT a FROM t WHERE a NOT IN (SELECT b FROM u)",
     "SELECT a FROM t WHERE a NOT IN (SELECT b FROM u)"},
    {"foreign keys",
     "CREATE TABLE t (a LONG REFERENCES u, b LONG, CONSTRAINT k FOREIGN KEY (b) REFERENCES v (c) "
     "ON DELETE CASCADE ON UPDATE NO ACTION)",
     "CREATE TABLE t (a LONG, b LONG, FOREIGN KEY (a) REFERENCES u, CONSTRAINT k FOREIGN KEY (b) "
     "REFERENCES v (c) ON DELETE CASCADE)"},
    {"a constraint", "ALTER TABLE t ADD CONSTRAINT k UNIQUE (a, b)",
     "ALTER TABLE t ADD CONSTRAINT k UNIQUE (a, b)"},
    {"no constraint", "ALTER TABLE t DROP CONSTRAINT k", "ALTER TABLE t DROP CONSTRAINT k"},
    {"a column with a strange name", "ALTER TABLE t ADD COLUMN References LONG",
     "ALTER TABLE t ADD COLUMN References LONG"},
    {"semicolon at the end", "SELECT a FROM t;", "SELECT a FROM t"},
    {"no table", "SELECT 1+1 AS two, Now()", "SELECT 1 + 1 AS two, Now()"},
    {"all columns of each", "SELECT t.*, u!* FROM t, u", "SELECT t.*, u.* FROM t, u"},
    {"names in brackets", "SELECT [a b] AS [c d] FROM [Order Details] AS [o d]",
     "SELECT [a b] AS [c d] FROM [Order Details] AS [o d]"},
    {"alias without AS", "SELECT o.a FROM orders o WHERE o.a=1",
     "SELECT o.a FROM orders AS o WHERE o.a = 1"},
    {"distinct, first rows", "SELECT DISTINCT TOP 5 a FROM t ORDER BY a DESC, b ASC, c",
     "SELECT DISTINCT TOP 5 a FROM t ORDER BY a DESC, b, c"},
    {"predicates without effect", "SELECT ALL a FROM t", "SELECT a FROM t"},
    {"distinct rows", "SELECT DISTINCTROW a FROM t", "SELECT a FROM t"},
    {"inner join", "SELECT * FROM a INNER JOIN b ON a.id=b.id WHERE a.x=1",
     "SELECT * FROM a INNER JOIN b ON a.id = b.id WHERE a.x = 1"},
    {"left joins in brackets",
     "SELECT * FROM (a LEFT JOIN b ON a.i=b.i) LEFT OUTER JOIN c AS d ON b.k=d.k",
     "SELECT * FROM a LEFT JOIN b ON a.i = b.i LEFT JOIN c AS d ON b.k = d.k"},
    {"deeper brackets",
     "SELECT * FROM ((a INNER JOIN b ON a.i=b.i) INNER JOIN c ON b.j=c.j) INNER JOIN d ON d.k=c.k",
     "SELECT * FROM a INNER JOIN b ON a.i = b.i INNER JOIN c ON b.j = c.j INNER JOIN d ON d.k = "
     "c.k"},
    {"a name that is a kind of join", "SELECT * FROM a [FULL] JOIN b ON full.i=b.i",
     "SELECT * FROM a AS FULL INNER JOIN b ON full.i = b.i"},
    {"join without kind", "SELECT * FROM a JOIN b ON a.i=b.i",
     "SELECT * FROM a INNER JOIN b ON a.i = b.i"},
    {"groups", "SELECT a, Sum(b) AS total FROM t GROUP BY a HAVING Sum(b)>5 ORDER BY Sum(b) DESC",
     "SELECT a, Sum(b) AS total FROM t GROUP BY a HAVING Sum(b) > 5 ORDER BY Sum(b) DESC"},
    // Changes.
    {"insert values", "INSERT INTO t VALUES (1,'a',NULL,#1/2/2005#,-5)",
     "INSERT INTO t VALUES (1, 'a', NULL, #2005-01-02#, -5)"},
    {"insert into columns", "insert into [t u] (a,[b c]) values (1,2)",
     "INSERT INTO [t u] (a, [b c]) VALUES (1, 2)"},
    {"insert a query", "INSERT INTO t (a,b) SELECT c,d FROM u WHERE c>1",
     "INSERT INTO t (a, b) SELECT c, d FROM u WHERE c > 1"},
    {"file before the columns", "INSERT INTO t IN 'x.mdb' (a) SELECT b FROM u",
     "INSERT INTO t IN 'x.mdb' (a) SELECT b FROM u"},
    {"file behind the columns", "INSERT INTO t (a) IN 'x.mdb' SELECT b FROM u",
     "INSERT INTO t IN 'x.mdb' (a) SELECT b FROM u"},
    {"update", "UPDATE t SET a=1, t.b=b+1 WHERE c IS NULL",
     "UPDATE t SET a = 1, t.b = b + 1 WHERE c IS NULL"},
    {"update all", "UPDATE t AS u SET u.a=NULL", "UPDATE t AS u SET u.a = NULL"},
    {"delete", "DELETE FROM t WHERE a=1", "DELETE * FROM t WHERE a = 1"},
    {"delete with a star", "DELETE * FROM t", "DELETE * FROM t"},
    {"delete with a table's star", "DELETE t.* FROM t", "DELETE * FROM t"},
    // Definitions.
    {"table with a key",
     "CREATE TABLE [My Table] (ID COUNTER CONSTRAINT pk PRIMARY KEY, Name TEXT(50) NOT NULL, "
     "Memo1 MEMO)",
     "CREATE TABLE [My Table] (ID COUNTER, Name TEXT(50) NOT NULL, Memo1 MEMO, CONSTRAINT pk "
     "PRIMARY KEY (ID))"},
    {"constraints of the table",
     "CREATE TABLE t (a LONG, b LONG NULL, CONSTRAINT k PRIMARY KEY (a,b), UNIQUE (b))",
     "CREATE TABLE t (a LONG, b LONG, CONSTRAINT k PRIMARY KEY (a, b), UNIQUE (b))"},
    {"column called Unique", "CREATE TABLE t (Unique TEXT(5) UNIQUE)",
     "CREATE TABLE t (Unique TEXT(5), UNIQUE (Unique))"},
    {"columns called like words of definitions",
     "CREATE TABLE [table] ([index] LONG, [constraint] BIT, [primary] BIT, [date] DATE)",
     "CREATE TABLE table (index LONG, [constraint] YESNO, [primary] YESNO, date DATETIME)"},
    {"index", "CREATE INDEX i ON t (a)", "CREATE INDEX i ON t (a)"},
    {"unique index", "CREATE UNIQUE INDEX i ON t (a DESC, [b c] ASC) WITH DISALLOW NULL",
     "CREATE UNIQUE INDEX i ON t (a DESC, [b c]) WITH DISALLOW NULL"},
    {"primary index", "CREATE UNIQUE INDEX i ON t (a) WITH PRIMARY",
     "CREATE INDEX i ON t (a) WITH PRIMARY"},
    {"index that ignores nulls", "CREATE INDEX i ON t (a) WITH IGNORE NULL",
     "CREATE INDEX i ON t (a) WITH IGNORE NULL"},
    {"add a column", "ALTER TABLE t ADD COLUMN a TEXT(10) NOT NULL",
     "ALTER TABLE t ADD COLUMN a TEXT(10) NOT NULL"},
    {"add without COLUMN", "ALTER TABLE t ADD a LONG CONSTRAINT u UNIQUE",
     "ALTER TABLE t ADD COLUMN a LONG CONSTRAINT u UNIQUE"},
    {"drop a column", "ALTER TABLE t DROP COLUMN [a b]", "ALTER TABLE t DROP COLUMN [a b]"},
    {"drop without COLUMN", "ALTER TABLE t DROP a", "ALTER TABLE t DROP COLUMN a"},
    {"alter a column", "ALTER TABLE t ALTER COLUMN a DOUBLE",
     "ALTER TABLE t ALTER COLUMN a DOUBLE"},
    {"drop a table", "DROP TABLE [t u]", "DROP TABLE [t u]"},
    {"drop an index", "DROP INDEX i ON t", "DROP INDEX i ON t"},
};

TEST(ParseStatement, UnderstandsTheDialect) {
  for (const StatementCase& row : kStatements) {
    SCOPED_TRACE(row.what);
    const Result<Statement> parsed = ParseStatement(row.statement);
    ASSERT_TRUE(parsed.ok()) << parsed.error().description;
    const std::string printed = PrintStatement(parsed.value());
    EXPECT_EQ(printed, row.printed);
    const Result<Statement> again = ParseStatement(printed);
    ASSERT_TRUE(again.ok()) << again.error().description;
    EXPECT_EQ(again.value(), parsed.value());
  }
}

struct TypeCase {
  const char* written;
  const char* printed;
};

constexpr TypeCase kTypes[] = {
    {"TEXT(7)", "TEXT(7)"},
    {"text", "TEXT(255)"},
    {"VARCHAR(255)", "TEXT(255)"},
    {"Char(1)", "TEXT(1)"},
    {"STRING", "TEXT(255)"},
    {"MEMO", "MEMO"},
    {"LONGTEXT", "MEMO"},
    {"NOTE", "MEMO"},
    {"BYTE", "BYTE"},
    {"SHORT", "SHORT"},
    {"SMALLINT", "SHORT"},
    {"INTEGER2", "SHORT"},
    {"LONG", "LONG"},
    {"INTEGER", "LONG"},
    {"INT", "LONG"},
    {"COUNTER", "COUNTER"},
    {"AUTOINCREMENT", "COUNTER"},
    {"SINGLE", "SINGLE"},
    {"REAL", "SINGLE"},
    {"DOUBLE", "DOUBLE"},
    {"FLOAT", "DOUBLE"},
    {"NUMBER", "DOUBLE"},
    {"CURRENCY", "CURRENCY"},
    {"MONEY", "CURRENCY"},
    {"DATETIME", "DATETIME"},
    {"DATE", "DATETIME"},
    {"YESNO", "YESNO"},
    {"BIT", "YESNO"},
    {"LOGICAL", "YESNO"},
    {"GUID", "GUID"},
    {"UNIQUEIDENTIFIER", "GUID"},
    {"BINARY(510)", "BINARY(510)"},
    {"VARBINARY", "BINARY(255)"},
    {"LONGBINARY", "LONGBINARY"},
    {"OLEOBJECT", "LONGBINARY"},
    {"IMAGE", "LONGBINARY"},
    {"DECIMAL(10,2)", "DECIMAL(10, 2)"},
    {"NUMERIC", "DECIMAL(18, 0)"},
    {"DECIMAL(28)", "DECIMAL(28, 0)"},
};

TEST(ParseStatement, KnowsTheTypesAndTheirSynonyms) {
  for (const TypeCase& row : kTypes) {
    SCOPED_TRACE(row.written);
    const Result<Statement> parsed =
        ParseStatement("CREATE TABLE t (a " + std::string(row.written) + ")");
    ASSERT_TRUE(parsed.ok()) << parsed.error().description;
    EXPECT_EQ(PrintStatement(parsed.value()),
              "CREATE TABLE t (a " + std::string(row.printed) + ")");
  }
}

struct ErrorCase {
  const char* what;
  const char* statement;
  const char* end;
};

constexpr ErrorCase kErrors[] = {
    {"nothing", "",
     "(character 1: SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP expected)"},
    {"another word", "EXEC x",
     "(character 1: SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP expected)"},
    {"misspelt FROM", "SELECT a FORM t", "(character 10: end of the statement expected)"},
    {"no column", "SELECT FROM t", "(character 8: expression expected)"},
    {"no table", "SELECT a FROM WHERE b", "(character 15: name of a table expected)"},
    {"text as table", "SELECT a FROM 't'", "(character 15: name of a table expected)"},
    {"two statements", "SELECT a FROM t; SELECT", "(character 18: end of the statement expected)"},
    {"right join behind others", "SELECT * FROM a INNER JOIN b ON a.i=b.i RIGHT JOIN c ON c.i=b.i",
     "(character 41: RIGHT JOIN joins the first two tables alone)"},
    {"more than all", "SELECT TOP 101 PERCENT a FROM t", "(character 24: at most 100 percent)"},
    {"a query that is none", "SELECT * FROM t WHERE EXISTS (a)", "(character 31: SELECT expected)"},
    {"a table to be made, within", "SELECT * FROM t WHERE a IN (SELECT b INTO c FROM d)",
     "(character 51: INTO cannot stand here)"},
    {"full join", "SELECT * FROM a FULL JOIN b ON a.i=b.i",
     "(character 17: INNER, LEFT or RIGHT JOIN expected)"},
    {"full outer join", "SELECT * FROM a full outer join b ON a.i=b.i",
     "(character 17: INNER, LEFT or RIGHT JOIN expected)"},
    {"cross join", "SELECT * FROM a CROSS JOIN b",
     "(character 17: INNER, LEFT or RIGHT JOIN expected)"},
    {"natural join", "SELECT * FROM a NATURAL JOIN b",
     "(character 17: INNER, LEFT or RIGHT JOIN expected)"},
    {"join without ON", "SELECT * FROM a INNER JOIN b", "(character 29: ON expected)"},
    {"join in brackets on the right", "SELECT * FROM a INNER JOIN (b INNER JOIN c ON 1=1) ON 1=1",
     "(character 28: only the first joins stand in brackets)"},
    {"bracket of a join not closed", "SELECT * FROM (a INNER JOIN b ON 1=1 WHERE 1=1",
     "(character 38: ) expected)"},
    {"no first row", "SELECT TOP 0 a FROM t",
     "(character 12: number of rows from 1 to 2147483647 expected)"},
    {"first rows without number", "SELECT TOP a FROM t",
     "(character 12: number of rows from 1 to 2147483647 expected)"},
    {"ORDER without BY", "SELECT a FROM t ORDER a", "(character 23: BY expected)"},
    {"GROUP without BY", "SELECT a FROM t GROUP a", "(character 23: BY expected)"},
    {"alias without name", "SELECT a AS FROM t", "(character 13: name of a column expected)"},
    {"alias of a table without name", "SELECT a FROM t AS WHERE",
     "(character 20: name of a table expected)"},
    {"insert without INTO", "INSERT t VALUES (1)", "(character 8: INTO expected)"},
    {"insert without rows", "INSERT INTO t (a)", "(character 18: VALUES or SELECT expected)"},
    {"fewer values than columns", "INSERT INTO t (a,b) VALUES (1)",
     "(character 31: there are not as many values as columns)"},
    {"file without quotes", "INSERT INTO t IN x SELECT * FROM t",
     "(character 18: path between quotes expected)"},
    {"empty file", "INSERT INTO t IN '' SELECT * FROM t",
     "(character 18: path between quotes expected)"},
    {"update without SET", "UPDATE t a=1", "(character 11: SET expected)"},
    {"assignment without value", "UPDATE t SET a=", "(character 16: expression expected)"},
    {"assignment to a text", "UPDATE t SET 'a'=1", "(character 14: name of a column expected)"},
    {"assignment without equals", "UPDATE t SET a>1", "(character 15: = expected)"},
    {"delete without FROM", "DELETE t", "(character 8: FROM expected)"},
    {"delete of a column", "DELETE t.a FROM t", "(character 10: * expected)"},
    {"create what", "CREATE VIEW v", "(character 8: TABLE or INDEX expected)"},
    {"table without columns", "CREATE TABLE t ()", "(character 17: name of a column expected)"},
    {"table of constraints", "CREATE TABLE t (UNIQUE (a))",
     "(character 28: a table needs a column)"},
    {"unknown type", "CREATE TABLE t (a FOO)", "(character 19: type of the column expected)"},
    {"column without type", "CREATE TABLE t (a)", "(character 18: type of the column expected)"},
    {"size too high", "CREATE TABLE t (a TEXT(256))",
     "(character 24: size from 1 to 255 expected)"},
    {"size zero", "CREATE TABLE t (a TEXT(0))", "(character 24: size from 1 to 255 expected)"},
    {"size of a binary", "CREATE TABLE t (a BINARY(511))",
     "(character 26: size from 1 to 510 expected)"},
    {"size where there is none", "CREATE TABLE t (a LONG(4))", "(character 23: ) expected)"},
    {"precision", "CREATE TABLE t (a DECIMAL(29,2))",
     "(character 27: precision from 1 to 28 expected)"},
    {"scale", "CREATE TABLE t (a DECIMAL(5,6))", "(character 29: scale from 0 to 5 expected)"},
    {"constraint", "CREATE TABLE t (a LONG, CONSTRAINT f CHECK (a > 1))",
     "(character 38: PRIMARY KEY, UNIQUE, FOREIGN KEY or REFERENCES expected)"},
    {"index option", "CREATE INDEX i ON t (a) WITH SPEED",
     "(character 30: PRIMARY, DISALLOW NULL or IGNORE NULL expected)"},
    {"index without table", "CREATE INDEX i (a)", "(character 16: ON expected)"},
    {"index without columns", "CREATE INDEX i ON t", "(character 20: ( expected)"},
    {"alter what", "ALTER TABLE t RENAME a", "(character 15: ADD, ALTER or DROP expected)"},
    {"alter no table", "ALTER INDEX i", "(character 7: TABLE expected)"},
    {"drop what", "DROP DATABASE d", "(character 6: TABLE or INDEX expected)"},
    {"drop index without table", "DROP INDEX i", "(character 13: ON expected)"},
};

TEST(ParseStatement, SaysWhereItStopped) {
  for (const ErrorCase& row : kErrors) {
    SCOPED_TRACE(row.what);
    const Result<Statement> parsed = ParseStatement(row.statement);
    ASSERT_FALSE(parsed.ok());
    EXPECT_EQ(parsed.number(), kSyntaxError);
    EXPECT_THAT(parsed.error().description, EndsWith(row.end));
  }
}

TEST(ParseStatement, WantsNoParameters) {
  EXPECT_EQ(ParseStatement("PARAMETERS p TEXT; SELECT * FROM t").number(), kTooFewParameters);
  EXPECT_EQ(ParseStatement("SELECT * FROM t WHERE a = ?").number(), kTooFewParameters);
}

TEST(ParseStatement, EveryCutOfAStatementEndsWell) {
  for (const StatementCase& row : kStatements) {
    const std::string_view whole = row.statement;
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Result<Statement> parsed = ParseStatement(whole.substr(0, size));
      if (!parsed.ok()) {
        EXPECT_EQ(parsed.number(), kSyntaxError) << whole.substr(0, size);
        continue;
      }
      const std::string printed = PrintStatement(parsed.value());
      EXPECT_EQ(ParseStatement(printed).value_or(Statement()), parsed.value()) << printed;
    }
  }
}

}  // namespace
}  // namespace zent::jet
