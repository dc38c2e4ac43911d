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

ZENT_ON_BOTH_KINDS(Transactions);

}  // namespace
}  // namespace zent::odbc
