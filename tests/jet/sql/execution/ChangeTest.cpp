#include <gtest/gtest.h>

#include "jet/catalog/Transaction.h"
#include "jet/sql/execution/SqlFile.h"
#include "jet/sql/syntax/Parser.h"

namespace zent::jet::testing {
namespace {

/// Steps of one file: statements, and queries that start with SELECT.
void ExpectSteps(SqlFile& file, const std::vector<SqlCase>& steps) {
  for (const SqlCase& step : steps) {
    SCOPED_TRACE(step.what);
    const bool query = step.statement.starts_with("SELECT") &&
                       step.statement.find(" INTO ") == std::string_view::npos;
    EXPECT_EQ(query ? file.Rows(step.statement) : file.Run(step.statement), step.outcome)
        << step.statement;
  }
}

TEST(Insert, PutsRowsIntoATable) {
  SqlFile file;
  file.RunAll(
      {"CREATE TABLE t (Id COUNTER PRIMARY KEY, Name TEXT(5) NOT NULL, Age BYTE, "
       "Active YESNO, At DATETIME)"});
  ExpectSteps(
      file,
      {{"columns by name", "INSERT INTO t (Name, Age) VALUES ('a', 2 + 3)", "1"},
       {"all columns", "INSERT INTO t VALUES (NULL, 'b', NULL, TRUE, Now())", "1"},
       {"what was not said", "SELECT * FROM t",
        "1|a|5|No|NULL / 2|b|NULL|Yes|1/31/2005 6:00:00 PM"},
       {"a text becomes a number", "INSERT INTO t (Name, Age) VALUES ('c', '7')", "1"},
       {"too few values", "INSERT INTO t (Name, Age) VALUES ('c')", "error 3075"},
       {"too few for all", "INSERT INTO t VALUES (1, 'c')", "error 3346"},
       {"an unknown column", "INSERT INTO t (Nope) VALUES (1)", "error 3127"},
       {"an unknown table", "INSERT INTO u VALUES (1)", "error 3078"},
       {"a text that is too long", "INSERT INTO t (Name) VALUES ('abcdef')", "error 3163"},
       {"a number that is too large", "INSERT INTO t (Name, Age) VALUES ('d', 256)", "error 3349"},
       {"no value where one is required", "INSERT INTO t (Age) VALUES (1)", "error 3314"},
       {"a key that is taken", "INSERT INTO t (Id, Name) VALUES (1, 'd')", "error 3022"},
       {"a name that is no value", "INSERT INTO t (Name) VALUES (x)", "error 3061"},
       {"nothing of these came in", "SELECT Count(*) FROM t", "3"}});
}

TEST(Insert, TakesTheRowsOfAQuery) {
  SqlFile file;
  file.RunAll({"CREATE TABLE a (Id LONG, Name TEXT(9))", "CREATE TABLE b (Name TEXT(9), Id LONG)",
               "INSERT INTO a VALUES (1, 'x')", "INSERT INTO a VALUES (2, 'y')"});
  ExpectSteps(file,
              {{"columns go by their names", "INSERT INTO b SELECT * FROM a", "2"},
               {"as they went", "SELECT * FROM b", "x|1 / y|2"},
               {"into the table itself", "INSERT INTO a SELECT Id + 10 AS Id, Name FROM a", "2"},
               {"once", "SELECT Id FROM a", "1 / 2 / 11 / 12"},
               {"named columns", "INSERT INTO b (Id) SELECT Id FROM a WHERE Id > 10", "2"},
               {"not as many", "INSERT INTO b (Id) SELECT * FROM a", "error 3346"},
               {"a new table", "SELECT Name, Id * 2 AS Twice INTO c FROM a WHERE Id < 3", "2"},
               {"with its rows", "SELECT * FROM c", "x|2 / y|4"},
               {"a table that is there", "SELECT * INTO c FROM a", "error 3010"}});
}

TEST(SelectInto, LosesNothingOfTheValues) {
  SqlFile file;
  file.RunAll({"CREATE TABLE a (Id LONG, d DECIMAL(12, 4))", "INSERT INTO a VALUES (1, NULL)",
               "INSERT INTO a VALUES (2, '12.3456')", "INSERT INTO a VALUES (3, '99999999.5')"});
  ExpectSteps(
      file,
      {{"a decimal column", "SELECT d INTO b FROM a", "3"},
       {"of the same digits", "SELECT * FROM b", "NULL / 12.3456 / 99999999.5000"},
       {"a number that is whole at first", "SELECT IIf(Id < 2, Id, Id / 4) AS n INTO c FROM a",
        "3"},
       {"all of it", "SELECT * FROM c", "1 / 0.5 / 0.75"},
       {"null at first", "SELECT IIf(Id < 2, NULL, Id) AS n INTO d FROM a", "3"},
       {"a number all the same", "SELECT n + 1 FROM d", "NULL / 3 / 4"},
       {"whole numbers that grow", "SELECT IIf(Id < 2, 1, Id * 100000) AS n INTO e FROM a", "3"},
       {"as they are", "SELECT * FROM e", "1 / 200000 / 300000"},
       {"yes and a number", "SELECT IIf(Id < 2, TRUE, CByte(Id)) AS n INTO f FROM a", "3"},
       {"both", "SELECT * FROM f", "-1 / 2 / 3"},
       {"a number and a text", "SELECT IIf(Id < 2, Id, 'x') AS n INTO g FROM a", "3"},
       {"both as text", "SELECT * FROM g", "1 / x / x"}});
}

TEST(Insert, ReachesAnotherFile) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (Id LONG)", "INSERT INTO t VALUES (1)", "INSERT INTO t VALUES (2)"});
  SqlFile& other = file.Other("C:\\Data\\Other.mdb");
  other.RunAll({"CREATE TABLE t (Id LONG)"});

  EXPECT_EQ(file.Run("INSERT INTO t IN \"C:\\Data\\Other.mdb\" SELECT * FROM t"), "2");

  EXPECT_EQ(other.Rows("SELECT * FROM t"), "1 / 2");
  EXPECT_EQ(file.Rows("SELECT * FROM t"), "1 / 2");

  SqlSession alone{.catalog = file.catalog()};
  InsertStatement insert{.table = "t", .database = "C:\\Data\\Other.mdb"};
  EXPECT_EQ(Execute(alone, insert).number(), 3219);
}

TEST(Insert, TakesTheRowsOnceWhenTheOtherFileIsItsOwn) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (Id LONG)", "INSERT INTO t VALUES (1)", "INSERT INTO t VALUES (2)"});
  SqlSession session{.catalog = file.catalog()};
  session.open_other = [&](std::string_view) { return Result<Catalog*>(&file.catalog()); };
  const Result<Statement> insert =
      ParseStatement("INSERT INTO t IN \"C:\\Data\\Own.mdb\" SELECT * FROM t");
  ASSERT_TRUE(insert.ok());

  Result<Transaction> transaction = Transaction::Begin(file.catalog());
  ASSERT_TRUE(transaction.ok());
  EXPECT_EQ(Execute(session, insert.value()).value_or(-1), 2);
  EXPECT_TRUE(transaction.value().Commit().ok());

  EXPECT_EQ(file.Rows("SELECT * FROM t"), "1 / 2 / 1 / 2");
}

TEST(Update, ChangesTheRowsThatPass) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (Id LONG PRIMARY KEY, Name TEXT(9), Size LONG)",
               "CREATE INDEX BySize ON t (Size)", "INSERT INTO t VALUES (1, 'a', 1)",
               "INSERT INTO t VALUES (2, 'b', 2)", "INSERT INTO t VALUES (3, 'c', 3)"});
  ExpectSteps(
      file,
      {{"one column", "UPDATE t SET Name = 'z' WHERE Id = 2", "1"},
       {"from the row's own values", "UPDATE t SET Size = Size + 10, Name = Name & Size", "3"},
       {"each row once, with the values before", "SELECT * FROM t", "1|a1|11 / 2|z2|12 / 3|c3|13"},
       {"rows found by the index that changes", "UPDATE t SET Size = Size + 1 WHERE Size > 0", "3"},
       {"each once", "SELECT Size FROM t ORDER BY Size", "12 / 13 / 14"},
       {"from a query", "UPDATE t SET Size = (SELECT MAX(Id) FROM t) WHERE Id = 1", "1"},
       {"no row", "UPDATE t SET Size = 0 WHERE Id = 9", "0"},
       {"a key that is taken", "UPDATE t SET Id = 2 WHERE Id = 1", "error 3022"},
       {"an unknown column", "UPDATE t SET Nope = 2", "error 3061"},
       {"an unknown table", "UPDATE u SET Id = 2", "error 3078"},
       {"nothing has changed", "SELECT * FROM t WHERE Id = 1", "1|a1|3"}});
}

TEST(Delete, TakesRowsAway) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (Id LONG PRIMARY KEY)", "INSERT INTO t VALUES (1)",
               "INSERT INTO t VALUES (2)", "INSERT INTO t VALUES (3)"});
  ExpectSteps(file, {{"some", "DELETE FROM t WHERE Id > 2", "1"},
                     {"the others stay", "SELECT * FROM t", "1 / 2"},
                     {"all", "DELETE * FROM t", "2"},
                     {"none is left", "SELECT Count(*) FROM t", "0"}});
}

TEST(Definition, MakesAndChangesTables) {
  SqlFile file;
  ExpectSteps(
      file,
      {{"a table",
        "CREATE TABLE t (Id LONG, Name TEXT(20) NOT NULL, CONSTRAINT k PRIMARY KEY (Id))", "0"},
       {"once", "CREATE TABLE t (Id LONG)", "error 3010"},
       {"a row", "INSERT INTO t VALUES (1, 'a')", "1"},
       {"a column", "ALTER TABLE t ADD COLUMN Size LONG", "0"},
       {"null in old rows", "SELECT * FROM t", "1|a|NULL"},
       {"an index", "CREATE UNIQUE INDEX BySize ON t (Size)", "0"},
       {"once", "CREATE INDEX BySize ON t (Size)", "error 3284"},
       {"another size", "INSERT INTO t VALUES (2, 'b', 5)", "1"},
       {"the index is unique", "INSERT INTO t VALUES (3, 'c', 5)", "error 3022"},
       {"without it", "DROP INDEX BySize ON t", "0"},
       {"it is not", "INSERT INTO t VALUES (3, 'c', 5)", "1"},
       {"another type", "ALTER TABLE t ALTER COLUMN Size TEXT(10)", "0"},
       {"the values went along", "SELECT Size FROM t WHERE Size = '5'", "5 / 5"},
       {"without a column", "ALTER TABLE t DROP COLUMN Name", "0"},
       {"it is gone", "SELECT Name FROM t", "error 3061"},
       {"without the table", "DROP TABLE t", "0"},
       {"it is gone", "SELECT * FROM t", "error 3078"}});
}

TEST(Definition, MakesForeignKeys) {
  SqlFile file;
  file.RunAll({"CREATE TABLE a (Id LONG PRIMARY KEY)", "INSERT INTO a VALUES (1)"});
  ExpectSteps(file, {{"of a column",
                      "CREATE TABLE b (Id LONG, A LONG CONSTRAINT ba REFERENCES a (Id))", "0"},
                     {"a row that fits", "INSERT INTO b VALUES (1, 1)", "1"},
                     {"one that does not", "INSERT INTO b VALUES (2, 2)", "error 3201"},
                     {"its partner stays", "DELETE FROM a", "error 3200"},
                     {"taken away", "ALTER TABLE b DROP CONSTRAINT ba", "0"},
                     {"it may go", "DELETE FROM a", "1"}});
}

/// A name of so many characters of three bytes each, between brackets.
std::string LongName(std::string_view begin, std::size_t count) {
  std::string name = "[" + std::string(begin);
  for (std::size_t i = 0; i < count; ++i) name += "\xE2\x82\xAC";
  return name + "]";
}

TEST(Definition, MakesNamesForWhatHasNone) {
  SqlFile file;
  const std::string parent = LongName("pp", 40);
  const std::string child = LongName("c", 40);
  const std::string statements[] = {
      "CREATE TABLE a (Id LONG PRIMARY KEY)",
      "CREATE TABLE b (X LONG REFERENCES a (Id), Y LONG REFERENCES a (Id))",
      "ALTER TABLE b DROP CONSTRAINT ab",
      "ALTER TABLE b DROP CONSTRAINT ab1",
      "CREATE TABLE " + parent + " (Id LONG PRIMARY KEY)",
      "CREATE TABLE " + child + " (X LONG REFERENCES " + parent + ", Y LONG REFERENCES " + parent +
          ")",
      "CREATE TABLE d (" + parent + " LONG, " + child + " LONG, UNIQUE (" + parent + ", " + child +
          "))",
  };
  for (const std::string& statement : statements) {
    EXPECT_EQ(file.Message(statement), "") << statement;
  }
  EXPECT_EQ(file.Run("CREATE INDEX " + LongName("i", 64) + " ON a (Id)"), "error 3125");
}

void SetText(SqlFile& file, std::string_view column, std::string_view name, Text text) {
  Result<Transaction> transaction = Transaction::Begin(file.catalog());
  const Result<Property> property = MakeProperty(name, ColumnType::Memo, false, text);
  EXPECT_TRUE(Schema(file.catalog()).SetProperty("t", column, property.value()).ok());
  EXPECT_TRUE(transaction.value().Commit().ok());
}

TEST(Definition, KeepsWhatStillFitsAnAlteredColumn) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (a LONG, b LONG, c LONG)", "INSERT INTO t VALUES (1, 2, 3)"});
  SetText(file, "a", "DefaultValue", "7");
  SetText(file, "a", "ValidationRule", "<9");
  SetText(file, "a", "Format", "0.00");
  SetText(file, "b", "Description", "The second one.");
  SetText(file, "b", "Format", "0.00");
  ExpectSteps(file, {{"a larger number", "ALTER TABLE t ALTER COLUMN a DOUBLE", "0"},
                     {"in its place", "SELECT * FROM t", "1|2|3"},
                     {"a text", "ALTER TABLE t ALTER COLUMN b TEXT(9)", "0"},
                     {"in its place", "SELECT * FROM t", "1|2|3"},
                     {"the last one", "ALTER TABLE t ALTER COLUMN c TEXT(9)", "0"},
                     {"in its place", "SELECT * FROM t", "1|2|3"},
                     {"a row without the first", "INSERT INTO t (b) VALUES ('x')", "1"},
                     {"it has its default", "SELECT a FROM t WHERE b = 'x'", "7"},
                     {"and its rule", "INSERT INTO t (a) VALUES (9)", "error 3316"}});
  const PropertyBlob& properties = file.catalog().OpenTable("t").value()->properties();
  ASSERT_NE(properties.Find("a"), nullptr);
  EXPECT_NE(properties.Find("a")->Find("Format"), nullptr);
  ASSERT_NE(properties.Find("b"), nullptr);
  EXPECT_NE(properties.Find("b")->Find("Description"), nullptr);
  EXPECT_EQ(properties.Find("b")->Find("Format"), nullptr) << "that of a number";
}

TEST(Definition, AltersColumnsOfAnyName) {
  SqlFile file;
  file.RunAll(
      {"CREATE TABLE t ([\xC3\xA4"
       "b] LONG, Altered LONG)",
       "INSERT INTO t VALUES (1, 2)"});
  ExpectSteps(file, {{"a name that cannot be cut anywhere",
                      "ALTER TABLE t ALTER COLUMN [\xC3\xA4"
                      "b] TEXT(9)",
                      "0"},
                     {"and the one that is used meanwhile",
                      "ALTER TABLE t ALTER COLUMN Altered TEXT(9)", "0"},
                     {"their values",
                      "SELECT [\xC3\xA4"
                      "b], Altered FROM t",
                      "1|2"}});
}

TEST(Definition, MakesACounterOfAColumnWithoutValuesAlone) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (a LONG, b LONG)", "INSERT INTO t VALUES (5, 1)"});
  ExpectSteps(file, {{"with rows", "ALTER TABLE t ALTER COLUMN a COUNTER", "error 3259"},
                     {"nothing has changed", "SELECT * FROM t", "5|1"},
                     {"no row", "DELETE FROM t", "1"},
                     {"without rows", "ALTER TABLE t ALTER COLUMN a COUNTER", "0"},
                     {"a row", "INSERT INTO t (b) VALUES (1)", "1"},
                     {"counted", "SELECT * FROM t", "1|1"}});
}

TEST(Insert, KnowsDefaultValues) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (Id LONG, a LONG, b TEXT(9), c DATETIME, d YESNO, e LONG, f LONG)"});
  SetText(file, "a", "DefaultValue", "=1+1");
  SetText(file, "b", "DefaultValue", "\"new\"");
  SetText(file, "c", "DefaultValue", "Date()");
  SetText(file, "d", "DefaultValue", "Yes");
  SetText(file, "e", "DefaultValue", "Forms!x");
  SetText(file, "f", "DefaultValue", "\"no number\"");
  EXPECT_EQ(file.Run("INSERT INTO t (Id) VALUES (1)"), "1");
  EXPECT_EQ(file.Run("INSERT INTO t (Id, a, b, d) VALUES (2, NULL, 'x', FALSE)"), "1");
  EXPECT_EQ(file.Rows("SELECT * FROM t"),
            "1|2|new|1/31/2005|Yes|NULL|NULL / 2|NULL|x|1/31/2005|No|NULL|NULL");
}

TEST(Insert, KeepsValidationRules) {
  SqlFile file;
  file.RunAll({"CREATE TABLE t (a LONG, b LONG, c TEXT(9))"});
  SetText(file, "a", "ValidationRule", ">0 And <10");
  SetText(file, "a", "ValidationText", "One to nine, please.");
  SetText(file, "c", "ValidationRule", "In (\"x\",\"y\") Or Is Null");
  SetText(file, "", "ValidationRule", "[a]<=[b]");
  ExpectSteps(file, {{"within", "INSERT INTO t VALUES (1, 2, 'X')", "1"},
                     {"beyond", "INSERT INTO t VALUES (10, 11, 'x')", "error 3316"},
                     {"in a list", "INSERT INTO t VALUES (1, 2, 'z')", "error 3316"},
                     {"of the table", "INSERT INTO t VALUES (3, 2, 'x')", "error 3316"},
                     {"null passes", "INSERT INTO t VALUES (NULL, NULL, NULL)", "1"},
                     {"when changed", "UPDATE t SET a = 0", "error 3316"}});
  EXPECT_EQ(file.Message("INSERT INTO t VALUES (0, 1, 'x')"), "One to nine, please.");
}

TEST(Execute, RunsNothingThatOnlyReads) {
  SqlFile file;
  EXPECT_EQ(file.Run("SELECT 1"), "error 3219");
}

}  // namespace
}  // namespace zent::jet::testing
