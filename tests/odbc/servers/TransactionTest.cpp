#include "odbc/LoadOdbc.h"
#include "odbc/OdbcRecordset.h"
#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Transactions : public ServerTest {};

TEST_P(Transactions, SaveWhatIsCommittedAndNothingElse) {
  MakeTable("Saved", "(id INT)");
  ASSERT_TRUE(server().Begin().ok());
  Run("INSERT INTO Saved VALUES (1)");
  EXPECT_TRUE(server().InTransaction());
  ASSERT_TRUE(server().Rollback().ok());
  EXPECT_FALSE(server().InTransaction());
  EXPECT_THAT(Rows("SELECT * FROM Saved"), IsEmpty());

  ASSERT_TRUE(server().Begin().ok());
  Run("INSERT INTO Saved VALUES (2)");
  ASSERT_TRUE(server().Commit().ok());
  EXPECT_THAT(Rows("SELECT * FROM Saved"), ElementsAre("2"));
}

TEST_P(Transactions, AreNotNeeded) {
  MakeTable("Alone", "(id INT)");
  Run("INSERT INTO Alone VALUES (1)");
  const auto other = Connect();
  Result<OdbcStatement> seen = other->Query("SELECT * FROM Alone");
  ASSERT_TRUE(seen.ok());
  EXPECT_TRUE(seen.value().Next().value_or(false));
}

TEST_P(Transactions, AreRolledBackWhenTheConnectionGoes) {
  MakeTable("Gone", "(id INT)");
  auto other = Connect();
  ASSERT_TRUE(other->Begin().ok());
  ASSERT_TRUE(other->Execute("INSERT INTO Gone VALUES (1)").ok());
  other.reset();
  EXPECT_THAT(Rows("SELECT * FROM Gone"), IsEmpty());
}

TEST_P(Transactions, SeeWhatOthersHaveCommittedMeanwhile) {
  MakeTable("Seen", "(id INT)");
  const auto other = Connect();
  ASSERT_TRUE(server().Begin().ok());
  EXPECT_THAT(Rows("SELECT * FROM Seen"), IsEmpty());
  ASSERT_TRUE(other->Execute("INSERT INTO Seen VALUES (1)").ok());
  EXPECT_THAT(Rows("SELECT * FROM Seen"), ElementsAre("1"));
  EXPECT_TRUE(server().Rollback().ok());
}

TEST_P(Transactions, AreOneAtATime) {
  EXPECT_EQ(server().Commit().number(), kCallFailed);
  EXPECT_EQ(server().Rollback().number(), kCallFailed);
  ASSERT_TRUE(server().Begin().ok());
  EXPECT_EQ(server().Begin().number(), kCallFailed);
  EXPECT_TRUE(server().Rollback().ok());
}

/// What the server has rolled back in a deadlock must not be followed by a second half.
TEST_P(Transactions, ThatTheServerRolledBackTakeNothingMore) {
  MakeTable("Locked", "(id INT PRIMARY KEY, v INT)");
  Run("INSERT INTO Locked VALUES (1, 0), (2, 0)");
  ASSERT_TRUE(server().Begin().ok());
  Run("UPDATE Locked SET v = 1 WHERE id = 1");
  EXPECT_EQ(server()
                .Execute("SIGNAL SQLSTATE '40001' SET MYSQL_ERRNO = 1213, "
                         "MESSAGE_TEXT = 'Deadlock found'")
                .number(),
            1213);
  EXPECT_FALSE(server().Execute("UPDATE Locked SET v = 2 WHERE id = 2").ok());
  EXPECT_FALSE(server().Commit().ok());
  EXPECT_TRUE(server().InTransaction());
  EXPECT_TRUE(server().Rollback().ok());
  EXPECT_THAT(Rows("SELECT v FROM Locked"), ElementsAre("0", "0"));
}

/// The system's calls, of which no commit succeeds.
SQLRETURN SQL_API RefuseCommits(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT how) {
  if (how == SQL_COMMIT) return SQL_ERROR;
  const Result<std::unique_ptr<OdbcCalls>> calls = LoadOdbc();
  if (!calls.ok()) return SQL_ERROR;
  return calls.value()->end_tran(type, handle, how);
}

/// The system's calls, of which none lets each change be saved alone.
SQLRETURN SQL_API RefuseAutoCommit(SQLHDBC connection, SQLINTEGER attribute, SQLPOINTER value,
                                   SQLINTEGER length) {
  if (attribute == SQL_ATTR_AUTOCOMMIT && value == AsPointer(SQL_AUTOCOMMIT_ON)) return SQL_ERROR;
  const Result<std::unique_ptr<OdbcCalls>> calls = LoadOdbc();
  if (!calls.ok()) return SQL_ERROR;
  return calls.value()->set_connect_attr(connection, attribute, value, length);
}

/// An environment over the system's calls, some of them replaced.
std::unique_ptr<OdbcEnvironment> EnvironmentWith(void (*replace)(OdbcCalls&)) {
  Result<std::unique_ptr<OdbcCalls>> calls = LoadOdbc();
  if (!calls.ok()) return nullptr;
  replace(*calls.value());
  Result<std::unique_ptr<OdbcEnvironment>> made = OdbcEnvironment::Create(std::move(calls.value()));
  return made.ok() ? std::move(made.value()) : nullptr;
}

/// A row without a key is changed in a transaction of its own. Left open it would take in what is
/// saved later, and drop it at the end.
TEST_P(Transactions, OfARowThatCannotBeCommittedDoNotStayOpen) {
  MakeTable("Keyless", "(id INT, name VARCHAR(20))");
  Run("INSERT INTO Keyless VALUES (1, 'Ann'), (2, 'Bob')");
  const auto environment =
      EnvironmentWith([](OdbcCalls& calls) { calls.end_tran = RefuseCommits; });
  ASSERT_NE(environment, nullptr);
  {
    const auto connected = environment->Connect(ConnectTextFor(GetParam()), kLoginSeconds);
    ASSERT_TRUE(connected.ok()) << connected.error().description;
    OdbcConnection& connection = *connected.value();
    {
      const auto rows = OdbcRecordset::Open(connection, "SELECT * FROM Keyless WHERE id = 1");
      ASSERT_TRUE(rows.ok()) << rows.error().description;
      ASSERT_TRUE(rows.value()->Edit().ok());
      ASSERT_TRUE(rows.value()->Set(1, std::string("Eve")).ok());
      EXPECT_FALSE(rows.value()->Update().ok());
    }
    EXPECT_FALSE(connection.InTransaction());
    EXPECT_TRUE(connection.Execute("UPDATE Keyless SET name = 'Dan' WHERE id = 2").ok());
  }
  EXPECT_THAT(Rows("SELECT name FROM Keyless ORDER BY id"), ElementsAre("Ann", "Dan"));
}

/// What is then saved would wait for a commit that never comes.
TEST_P(Transactions, StayOpenUntilEachChangeIsSavedAloneAgain) {
  MakeTable("Waiting", "(id INT)");
  const auto environment =
      EnvironmentWith([](OdbcCalls& calls) { calls.set_connect_attr = RefuseAutoCommit; });
  ASSERT_NE(environment, nullptr);
  {
    const auto connected = environment->Connect(ConnectTextFor(GetParam()), kLoginSeconds);
    ASSERT_TRUE(connected.ok()) << connected.error().description;
    OdbcConnection& connection = *connected.value();
    ASSERT_TRUE(connection.Begin().ok());
    ASSERT_TRUE(connection.Execute("INSERT INTO Waiting VALUES (1)").ok());
    EXPECT_FALSE(connection.Commit().ok());
    EXPECT_TRUE(connection.InTransaction());
  }
  EXPECT_THAT(Rows("SELECT * FROM Waiting"), ElementsAre("1"));
}

ZENT_ON_BOTH_KINDS(Transactions);

}  // namespace
}  // namespace zent::odbc
