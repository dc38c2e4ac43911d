#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Statements : public ServerTest {};

TEST_P(Statements, CountTheRowsThatTheyAffect) {
  MakeTable("Affected", "(id INT, v VARCHAR(10))");
  EXPECT_EQ(Run("INSERT INTO Affected VALUES (1, 'a'), (2, 'b'), (3, 'b')"), 3);
  EXPECT_EQ(Run("UPDATE Affected SET v = 'c' WHERE v = 'b'"), 2);
  EXPECT_EQ(Run("UPDATE Affected SET v = 'c' WHERE v = 'nothing'"), 0);
  EXPECT_EQ(Run("DELETE FROM Affected WHERE id > 1"), 2);
  EXPECT_EQ(Run("DELETE FROM Affected WHERE id > 1"), 0);
  EXPECT_EQ(Run("ALTER TABLE Affected ADD w INT"), 0);
}

TEST_P(Statements, BindValuesInTheirOrder) {
  MakeTable("Bound", "(a INT, b VARCHAR(40), c DOUBLE)");
  const std::vector<OdbcParameter> row = {OdbcValue(std::int64_t{7}),
                                          OdbcValue(std::string("'; DROP TABLE Bound; --")),
                                          OdbcValue(2.5)};
  EXPECT_EQ(Run("INSERT INTO Bound (a, b, c) VALUES (?, ?, ?)", row), 1);
  EXPECT_THAT(Rows("SELECT * FROM Bound WHERE a = ? AND b = ? AND c = ?", row),
              ElementsAre("7|'; DROP TABLE Bound; --|2.5"));
  EXPECT_THAT(Rows("SELECT '?', \"a\" FROM Bound"), ElementsAre("?|7"));
}

TEST_P(Statements, DescribeTheirColumns) {
  MakeTable(
      "Described",
      "(id INT NOT NULL, name VARCHAR(40), memo LONGTEXT, price DECIMAL(12,3), day DATETIME)");
  Result<OdbcStatement> query = server().Query("SELECT * FROM Described");
  ASSERT_TRUE(query.ok());
  struct {
    const char* name;
    ColumnKind kind;
    std::uint64_t size;
    int digits;
    bool nullable;
  } expected[] = {{"id", ColumnKind::Integer, 10, 0, false},
                  {"name", ColumnKind::Text, 40, 0, true},
                  {"memo", ColumnKind::LongText, 1073741823, 0, true},
                  {"price", ColumnKind::Decimal, 12, 3, true},
                  {"day", ColumnKind::DateTime, 19, 0, true}};
  ASSERT_EQ(query.value().columns().size(), std::size(expected));
  for (std::size_t at = 0; at < std::size(expected); ++at) {
    const OdbcColumn& column = query.value().columns()[at];
    SCOPED_TRACE(expected[at].name);
    EXPECT_EQ(column.name, expected[at].name);
    EXPECT_EQ(KindOf(column.type), expected[at].kind);
    EXPECT_EQ(column.nullable, expected[at].nullable);
    EXPECT_EQ(column.type.digits, expected[at].digits);
    if (expected[at].kind != ColumnKind::LongText) {
      EXPECT_EQ(column.type.size, expected[at].size);
    }
  }
  EXPECT_FALSE(query.value().Next().value_or(true));
}

TEST_P(Statements, RunBesideTheRowsThatAreRead) {
  MakeTable("Walked", "(id INT PRIMARY KEY, v INT)");
  Run("INSERT INTO Walked VALUES (1, 10), (2, 20), (3, 30)");
  Result<OdbcStatement> walk = server().Query("SELECT id, v FROM Walked ORDER BY id");
  ASSERT_TRUE(walk.ok());
  std::vector<std::string> met;
  while (walk.value().Next().value_or(false)) {
    met.push_back(RowText(walk.value()));
    EXPECT_EQ(Run("UPDATE Walked SET v = v + 1"), 3);
  }
  EXPECT_THAT(met, ElementsAre("1|10", "2|20", "3|30"));
  EXPECT_THAT(Rows("SELECT v FROM Walked ORDER BY id"), ElementsAre("13", "23", "33"));
}

TEST_P(Statements, ReadNothingOutsideTheRows) {
  Result<OdbcStatement> query = server().Query("SELECT 1 AS a");
  ASSERT_TRUE(query.ok());
  EXPECT_EQ(query.value().Value(0).number(), kNoCurrentRecord);
  EXPECT_TRUE(query.value().Next().value_or(false));
  EXPECT_EQ(query.value().Value(1).number(), kItemNotFound);
  EXPECT_FALSE(query.value().Next().value_or(true));
  EXPECT_EQ(query.value().Value(0).number(), kNoCurrentRecord);
}

TEST_P(Statements, ThatGiveNoRowsAreNoQueries) {
  EXPECT_EQ(server().Query("SET @a = 1").number(), kCallFailed);
}

struct FaultCase {
  const char* what;
  const char* sql;
  int number;
  const char* sqlstate;
};

constexpr FaultCase kFaultCases[] = {
    {"syntax", "SELEKT 1", 1064, "42000"},
    {"no such table", "SELECT * FROM NoSuchTable", 1146, "42S02"},
    {"no such column", "SELECT nothing FROM Counters", 1054, "42S22"},
    {"duplicate key", "INSERT INTO Counters VALUES ('SiteID', '1')", 1062, "23000"},
};

TEST_P(Statements, TellTheServersOwnError) {
  for (const FaultCase& row : kFaultCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(server().Execute(row.sql).number(), row.number);
    ASSERT_FALSE(environment().errors().empty());
    EXPECT_EQ(environment().errors().front().number, row.number);
    EXPECT_EQ(environment().errors().front().sqlstate, row.sqlstate);
    EXPECT_THAT(environment().errors().front().message, testing::Not(IsEmpty()));
  }
  // Of these the driver itself has no number of the server's.
  EXPECT_EQ(server().Execute("").number(), kCallFailed);
  EXPECT_EQ(server().Execute("  ").number(), kCallFailed);
  // The connection is as good as before.
  EXPECT_THAT(Rows("SELECT 1"), ElementsAre("1"));
}

TEST_P(Statements, RefuseTooFewValues) {
  const std::vector<OdbcParameter> one = {OdbcValue(std::int64_t{1})};
  EXPECT_FALSE(server().Execute("INSERT INTO Counters VALUES (?, ?)", one).ok());
}

ZENT_ON_BOTH_KINDS(Statements);

}  // namespace
}  // namespace zent::odbc
