#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::HasSubstr;

class LostServers : public ServerTest {
 protected:
  /// Lets the server end the connection, as it does when it is shut down.
  void Cut() {
    const std::vector<std::string> id = Rows("SELECT CONNECTION_ID()");
    const auto other = Connect();
    ASSERT_TRUE(other->Execute("KILL CONNECTION " + id.front()).ok());
  }
};

TEST_P(LostServers, AreReportedOnceAndForAll) {
  Cut();
  const Result<std::int64_t> run = server().Execute("UPDATE Counters SET CurCount = CurCount");
  ASSERT_FALSE(run.ok());
  EXPECT_THAT(run.error().description, HasSubstr("connection to the server was lost"));
  EXPECT_EQ(environment().errors().front().sqlstate, "08S01");
  EXPECT_TRUE(server().lost());

  const Result<std::int64_t> again = server().Execute("SELECT 1");
  EXPECT_EQ(again.number(), kConnectionFailed);
  EXPECT_EQ(server().Begin().number(), kConnectionFailed);
  EXPECT_EQ(environment().errors().size(), 1U);
}

TEST_P(LostServers, EndATransactionWithoutSavingAnything) {
  MakeTable("LostRows", "(id INT)");
  ASSERT_TRUE(server().Begin().ok());
  Run("INSERT INTO LostRows VALUES (1)");
  Cut();
  EXPECT_FALSE(server().Execute("INSERT INTO LostRows VALUES (2)").ok());
  EXPECT_FALSE(server().Commit().ok());
  EXPECT_FALSE(server().Rollback().ok());
  const auto other = Connect();
  Result<OdbcStatement> rows = other->Query("SELECT * FROM LostRows");
  ASSERT_TRUE(rows.ok());
  EXPECT_FALSE(rows.value().Next().value_or(true));
}

TEST_P(LostServers, ALaterConnectionWorks) {
  Cut();
  EXPECT_FALSE(server().Execute("SELECT 1").ok());
  const auto again = Connect();
  ASSERT_NE(again, nullptr);
  EXPECT_TRUE(again->Execute("SELECT 1").ok());
}

ZENT_ON_BOTH_KINDS(LostServers);

}  // namespace
}  // namespace zent::odbc
