#include <gtest/gtest.h>

#include "jet/sql/execution/SqlFile.h"

namespace zent::jet::testing {
namespace {

constexpr const char* kContactsTable =
    "CREATE TABLE Contacts (Id LONG PRIMARY KEY, Name TEXT(50), Company LONG, Age BYTE, "
    "Active YESNO, Fee CURRENCY, Notes MEMO, Born DATETIME)";

/// Contacts of four companies; one contact without, one company without.
void FillFile(SqlFile& file) {
  file.RunAll({
      "CREATE TABLE Companies (Id LONG PRIMARY KEY, Name TEXT(50), City TEXT(30))",
      kContactsTable,
      "CREATE INDEX ByAge ON Contacts (Age DESC)",
      "CREATE INDEX ByName ON Contacts (Name)",
      "INSERT INTO Companies VALUES (1, 'Acme', 'Bonn')",
      "INSERT INTO Companies VALUES (2, 'Brill', 'Ulm')",
      "INSERT INTO Companies VALUES (3, 'Cato', NULL)",
      "INSERT INTO Contacts VALUES (1, 'Ann', 1, 30, TRUE, 10.5, 'first', #1/2/1975#)",
      "INSERT INTO Contacts VALUES (2, 'bob', 1, 25, FALSE, 20, NULL, #3/4/1980#)",
      "INSERT INTO Contacts VALUES (3, 'Cid', 2, 30, TRUE, NULL, 'third', NULL)",
      "INSERT INTO Contacts VALUES (4, 'Dora', NULL, NULL, FALSE, 0.25, '', NULL)",
      "INSERT INTO Contacts VALUES (5, 'anna', 9, 41, TRUE, 7, NULL, NULL)",
  });
}

void ExpectRows(const std::vector<SqlCase>& cases) {
  SqlFile file;
  FillFile(file);
  for (const SqlCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(file.Rows(row.statement), row.outcome) << row.statement;
  }
}

TEST(Select, GivesTheColumnsAskedFor) {
  ExpectRows({
      {"all columns", "SELECT * FROM Companies", "1|Acme|Bonn / 2|Brill|Ulm / 3|Cato|NULL"},
      {"some, in another order", "SELECT Name, Id FROM Companies", "Acme|1 / Brill|2 / Cato|3"},
      {"all of a table", "SELECT Companies.*, 7 FROM Companies WHERE Id = 2", "2|Brill|Ulm|7"},
      {"expressions", "SELECT Id * 2, Name & '!' FROM Companies WHERE Id < 3",
       "2|Acme! / 4|Brill!"},
      {"names in brackets", "SELECT [Id] FROM [Companies] WHERE [Companies].[Name] = 'acme'", "1"},
      {"an alias of the table", "SELECT c.Name FROM Companies AS c WHERE c.Id = 3", "Cato"},
      {"every type", "SELECT * FROM Contacts WHERE Id = 1", "1|Ann|1|30|Yes|10.5|first|1/2/1975"},
      {"no table", "SELECT 1 + 1, 'x'", "2|x"},
      {"no table, a test", "SELECT 1 WHERE 1 = 2", ""},
      {"no rows", "SELECT * FROM Companies WHERE 1=2 ", ""},
  });
}

TEST(Select, TestsRows) {
  ExpectRows({
      {"equal, in any case", "SELECT Id FROM Contacts WHERE Name = 'BOB'", "2"},
      {"yes/no alone", "SELECT Id FROM Contacts WHERE Active", "1 / 3 / 5"},
      {"yes/no compared", "SELECT Id FROM Contacts WHERE Active=True", "1 / 3 / 5"},
      {"not", "SELECT Id FROM Contacts WHERE NOT Active", "2 / 4"},
      {"null is not found by a comparison", "SELECT Id FROM Contacts WHERE Age = NULL", ""},
      {"nor by its opposite", "SELECT Id FROM Contacts WHERE Age <> 30", "2 / 5"},
      {"is null", "SELECT Id FROM Contacts WHERE Age IS NULL", "4"},
      {"is not null", "SELECT Id FROM Contacts WHERE Born IS NOT NULL", "1 / 2"},
      {"like", "SELECT Id FROM Contacts WHERE Name LIKE 'an*'", "1 / 5"},
      {"like within", "SELECT Id FROM Contacts WHERE Name LIKE '*o*'", "2 / 4"},
      {"in", "SELECT Id FROM Contacts WHERE Id IN (5, 1, 9, NULL)", "1 / 5"},
      {"between", "SELECT Id FROM Contacts WHERE Age BETWEEN 26 AND 35", "1 / 3"},
      {"dates", "SELECT Id FROM Contacts WHERE Born > #12/31/1975#", "2"},
      {"currency", "SELECT Id FROM Contacts WHERE Fee = 10.5", "1"},
      {"memo", "SELECT Id FROM Contacts WHERE Notes = ''", "4"},
      {"two tests", "SELECT Id FROM Contacts WHERE Age = 30 AND Company = 2", "3"},
      {"either", "SELECT Id FROM Contacts WHERE Age = 25 OR Name = 'Dora'", "2 / 4"},
      {"a number beyond the column", "SELECT Id FROM Contacts WHERE Age = 1000", ""},
      {"a number between two", "SELECT Id FROM Contacts WHERE Id > 3.5", "4 / 5"},
  });
}

TEST(Select, PutsRowsInOrder) {
  ExpectRows({
      {"by a column of an index", "SELECT Id FROM Contacts ORDER BY Name", "1 / 5 / 2 / 3 / 4"},
      {"the other way", "SELECT Id FROM Contacts ORDER BY Name DESC", "4 / 3 / 2 / 5 / 1"},
      {"nulls first", "SELECT Id FROM Contacts ORDER BY Age, Id", "4 / 2 / 1 / 3 / 5"},
      {"through a descending index", "SELECT Id FROM Contacts ORDER BY Age DESC",
       "5 / 1 / 3 / 2 / 4"},
      {"by an expression", "SELECT Id FROM Contacts ORDER BY -Id", "5 / 4 / 3 / 2 / 1"},
      {"by number", "SELECT Name, Id FROM Companies ORDER BY 2 DESC", "Cato|3 / Brill|2 / Acme|1"},
      {"by alias", "SELECT Id * -1 AS n FROM Companies ORDER BY n", "-3 / -2 / -1"},
      {"by what is not shown", "SELECT Name FROM Companies ORDER BY City DESC",
       "Brill / Acme / Cato"},
      {"first by yes/no", "SELECT Id FROM Contacts ORDER BY Active, Id DESC", "5 / 3 / 1 / 4 / 2"},
      {"by currency", "SELECT Id FROM Contacts WHERE Fee > 0 ORDER BY Fee", "4 / 5 / 1 / 2"},
      {"a number that is no column", "SELECT Id FROM Companies ORDER BY 2", "error 3075"},
  });
}

TEST(Select, TakesTheFirstRowsAndDistinctOnes) {
  ExpectRows({
      {"top", "SELECT TOP 2 Id FROM Contacts", "1 / 2"},
      {"top in order", "SELECT TOP 2 Id FROM Contacts ORDER BY Id DESC", "5 / 4"},
      {"rows like the last come along", "SELECT TOP 2 Id FROM Contacts ORDER BY Age DESC",
       "5 / 1 / 3"},
      {"more than there are", "SELECT TOP 9 Id FROM Companies", "1 / 2 / 3"},
      {"a share, rounded up", "SELECT TOP 30 PERCENT Id FROM Contacts", "1 / 2"},
      {"distinct", "SELECT DISTINCT Age FROM Contacts WHERE Age > 0 ORDER BY Age", "25 / 30 / 41"},
      {"distinct counts case as the same", "SELECT DISTINCT Left(Name, 1) FROM Contacts",
       "A / b / C / D"},
      {"distinct before top", "SELECT DISTINCT TOP 2 Age FROM Contacts WHERE Age < 41", "30 / 25"},
  });
}

TEST(Select, JoinsTables) {
  ExpectRows({
      {"inner, through the key",
       "SELECT Contacts.Id, Companies.Name FROM Contacts INNER JOIN "
       "Companies ON Contacts.Company = Companies.Id",
       "1|Acme / 2|Acme / 3|Brill"},
      {"inner, without an index",
       "SELECT c.Name, p.Id FROM Companies AS c INNER JOIN Contacts AS p "
       "ON c.Id = p.Company",
       "Acme|1 / Acme|2 / Brill|3"},
      {"left",
       "SELECT c.Name, p.Id FROM Companies AS c LEFT JOIN Contacts AS p ON c.Id = p.Company",
       "Acme|1 / Acme|2 / Brill|3 / Cato|NULL"},
      {"rows without a match",
       "SELECT c.Name FROM Companies AS c LEFT JOIN Contacts AS p ON "
       "c.Id = p.Company WHERE p.Id IS NULL",
       "Cato"},
      {"right",
       "SELECT p.Id, c.Name FROM Contacts AS p RIGHT JOIN Companies AS c ON "
       "p.Company = c.Id",
       "1|Acme / 2|Acme / 3|Brill / NULL|Cato"},
      {"a list of tables",
       "SELECT p.Id, c.Id FROM Contacts p, Companies c WHERE p.Company = c.Id "
       "AND c.City = 'Ulm'",
       "3|2"},
      {"all pairs", "SELECT Count(*) FROM Contacts, Companies", "15"},
      {"a comparison that is no equality",
       "SELECT c.Id, p.Id FROM Companies c INNER JOIN Contacts p "
       "ON p.Id < c.Id",
       "2|1 / 3|1 / 3|2"},
      {"three tables",
       "SELECT p.Id FROM (Contacts p INNER JOIN Companies c ON p.Company = c.Id) "
       "INNER JOIN Companies d ON d.City = c.City WHERE d.Id = 1",
       "1 / 2"},
      {"a table with itself",
       "SELECT a.Id, b.Id FROM Contacts a INNER JOIN Contacts b ON "
       "a.Age = b.Age WHERE a.Id < b.Id",
       "1|3"},
      {"a number with a text", "SELECT * FROM Contacts p INNER JOIN Companies c ON p.Id = c.Name",
       "error 3464"},
      {"a join that reads a later table",
       "SELECT a.Id FROM (Contacts a INNER JOIN Contacts b ON "
       "a.Id = c.Id) INNER JOIN Companies c ON c.Id = b.Id",
       "error 3296"},
  });
}

TEST(Select, GroupsRows) {
  ExpectRows({
      {"count", "SELECT COUNT(*) FROM Contacts", "5"},
      {"count of values", "SELECT COUNT(Age), COUNT(*) FROM Contacts", "4|5"},
      {"count of no rows", "SELECT Count(*), Sum(Age) FROM Contacts WHERE Id > 99", "0|NULL"},
      {"sum, least, most, average", "SELECT SUM(Age), MIN(Name), MAX(Name), AVG(Age) FROM Contacts",
       "126|Ann|Dora|31.5"},
      {"groups", "SELECT Age, COUNT(*) FROM Contacts GROUP BY Age ORDER BY Age",
       "NULL|1 / 25|1 / 30|2 / 41|1"},
      {"an expression of a group", "SELECT Age * 2 FROM Contacts WHERE Age > 29 GROUP BY Age",
       "82 / 60"},
      {"groups by an expression",
       "SELECT UCase(Left(Name, 1)), COUNT(*) FROM Contacts GROUP BY "
       "UCase(Left(Name, 1)) ORDER BY 2 DESC, 1",
       "A|2 / B|1 / C|1 / D|1"},
      {"having", "SELECT Age FROM Contacts GROUP BY Age HAVING COUNT(*) > 1", "30"},
      {"having without groups", "SELECT COUNT(*) FROM Contacts HAVING COUNT(*) > 9", ""},
      {"in the order of an aggregate",
       "SELECT Age FROM Contacts GROUP BY Age ORDER BY MAX(Id) DESC", "41 / NULL / 30 / 25"},
      {"first and last", "SELECT First(Id), Last(Id) FROM Contacts", "1|5"},
      {"groups over a join",
       "SELECT c.Name, COUNT(p.Id) FROM Companies c LEFT JOIN Contacts p ON "
       "c.Id = p.Company GROUP BY c.Name ORDER BY c.Name",
       "Acme|2 / Brill|1 / Cato|0"},
      {"a column that is no group", "SELECT Name, COUNT(*) FROM Contacts GROUP BY Age",
       "error 3122"},
      {"an aggregate in a test", "SELECT Id FROM Contacts WHERE COUNT(*) > 1", "error 3096"},
  });
}

TEST(Select, RunsQueriesWithinExpressions) {
  ExpectRows({
      {"in", "SELECT Id FROM Contacts WHERE Company IN (SELECT Id FROM Companies)", "1 / 2 / 3"},
      {"not in", "SELECT Id FROM Contacts WHERE Company NOT IN (SELECT Id FROM Companies)", "5"},
      {"not in with a null",
       "SELECT Id FROM Companies WHERE Id NOT IN (SELECT Company FROM Contacts)", ""},
      {"exists",
       "SELECT Name FROM Companies WHERE EXISTS (SELECT * FROM Contacts WHERE "
       "Contacts.Company = Companies.Id)",
       "Acme / Brill"},
      {"not exists",
       "SELECT Name FROM Companies c WHERE NOT EXISTS (SELECT * FROM Contacts WHERE "
       "Company = c.Id)",
       "Cato"},
      {"one value", "SELECT Name FROM Contacts WHERE Age = (SELECT MAX(Age) FROM Contacts)",
       "anna"},
      {"one value a row",
       "SELECT Id, (SELECT COUNT(*) FROM Contacts WHERE Company = Companies.Id) "
       "FROM Companies",
       "1|2 / 2|1 / 3|0"},
      {"two levels",
       "SELECT Id FROM Companies c WHERE EXISTS (SELECT * FROM Contacts p WHERE "
       "p.Company = c.Id AND EXISTS (SELECT * FROM Contacts q WHERE q.Id > p.Id AND "
       "q.Company = c.Id))",
       "1"},
      {"several values", "SELECT (SELECT Id FROM Companies)", "error 3354"},
      {"several columns", "SELECT Id FROM Contacts WHERE Id IN (SELECT * FROM Companies)",
       "error 3306"},
      {"an unknown name within", "SELECT Id FROM Contacts WHERE Id IN (SELECT Nope FROM Companies)",
       "error 3061"},
  });
}

TEST(Select, PutsQueriesTogether) {
  ExpectRows({
      {"union drops what is there",
       "SELECT Age FROM Contacts WHERE Age > 26 UNION SELECT 30 FROM "
       "Companies",
       "41 / 30"},
      {"union all keeps it", "SELECT Id FROM Companies UNION ALL SELECT Id FROM Companies",
       "1 / 2 / 3 / 1 / 2 / 3"},
      {"in order", "SELECT Name FROM Companies UNION SELECT Name FROM Contacts ORDER BY Name DESC",
       "Dora / Cid / Cato / Brill / bob / anna / Ann / Acme"},
      {"other numbers of columns", "SELECT Id FROM Companies UNION SELECT Id, Name FROM Contacts",
       "error 3307"},
  });
}

TEST(Select, NamesItsColumns) {
  SqlFile file;
  FillFile(file);
  const SqlCase cases[] = {
      {"as the table has them", "SELECT * FROM Companies", "Id|Name|City"},
      {"as written elsewhere", "SELECT NAME FROM Companies", "Name"},
      {"aliases", "SELECT Id AS Number FROM Companies", "Number"},
      {"expressions by their place", "SELECT Id, 1, Id + 1 FROM Companies", "Id|Expr1001|Expr1002"},
      {"columns of two tables", "SELECT c.Id, p.Id FROM Companies c, Contacts p", "c.Id|p.Id"},
      {"of one table twice", "SELECT c.Id, d.Id, d.City FROM Companies c, Companies d",
       "c.Id|d.Id|City"},
      {"a column twice", "SELECT Id, Id FROM Companies", "Id|Id"},
  };
  for (const SqlCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(file.Columns(row.statement), row.outcome);
  }
}

TEST(Select, RefusesWhatIsNotThere) {
  ExpectRows({
      {"a table", "SELECT * FROM Nope", "error 3078"},
      {"a column", "SELECT Nope FROM Companies", "error 3061"},
      {"a column of two tables", "SELECT Id FROM Companies, Contacts", "error 3079"},
      {"a function", "SELECT Nope(1) FROM Companies", "error 3085"},
      {"a table of a star", "SELECT x.* FROM Companies", "error 3078"},
      {"a star without tables", "SELECT *", "error 3075"},
      {"a text that does not end", "SELECT * FROM Companies WHERE Name='O'Neil'", "error 3075"},
  });
}

TEST(Select, TellsWhereItsRowsAre) {
  SqlFile file;
  FillFile(file);
  SqlSession session = file.session();
  SelectStatement select{.columns = {SelectColumn{}}, .from = {{.source = {"Companies"}}}};
  const auto rows = OpenQuery(session, select);
  ASSERT_TRUE(rows.ok());
  EXPECT_FALSE(rows.value()->base_row().has_value());
  ASSERT_TRUE(rows.value()->Next().value());
  ASSERT_TRUE(rows.value()->base_row().has_value());
  const auto stored = rows.value()->base_table()->store().Fetch(*rows.value()->base_row());
  ASSERT_TRUE(stored.ok());
  EXPECT_EQ(stored.value(), rows.value()->row());

  select.distinct = true;
  EXPECT_EQ(OpenQuery(session, select).value()->base_table(), nullptr);
}

}  // namespace
}  // namespace zent::jet::testing
