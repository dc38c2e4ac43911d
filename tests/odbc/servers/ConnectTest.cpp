#include "odbc/Identifiers.h"
#include "odbc/servers/ServerTest.h"

namespace zent::odbc {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::Not;

class Connecting : public ServerTest {};

TEST_P(Connecting, TellsWhatTheServerIs) {
  const ServerFacts& facts = server().facts();
  EXPECT_THAT(facts.dbms_name, HasSubstr("MariaDB"));
  EXPECT_THAT(facts.dbms_version, Not(testing::IsEmpty()));
  EXPECT_THAT(facts.driver_name, HasSubstr("maodbc"));
  EXPECT_EQ(facts.database, GetParam() == std::string("KorvoServer") ? "korvo" : "korvo_oracle");
  EXPECT_THAT(facts.user, HasSubstr("korvo"));
  EXPECT_EQ(facts.data_source, GetParam());
  EXPECT_TRUE(facts.has_transactions);
  EXPECT_FALSE(server().lost());
}

TEST_P(Connecting, QuotesNamesAsTheServerReadsThem) {
  const std::string_view quote = server().facts().identifier_quote;
  const std::string name = QuoteIdentifier("a \"quoted\" `name`", quote);
  EXPECT_THAT(Rows("SELECT 1 AS " + name), ElementsAre("1"));
}

TEST_P(Connecting, ReachesTheFunctionsOfTheApplication) {
  EXPECT_THAT(Rows("SELECT dbo.TrimVBA('  two words '), dbo.TrimVBA(NULL), dbo.IsNullVBA(NULL), "
                   "dbo.IsNullVBA('')"),
              ElementsAre("two words||1|0"));
  EXPECT_THAT(Rows("SELECT CASE WHEN GetDate() > '2020-01-01' THEN 'now' ELSE 'then' END"),
              ElementsAre("now"));
}

TEST_P(Connecting, TakesDoubleQuotesAsNames) {
  EXPECT_THAT(Rows("SELECT \"TableName\" FROM \"Counters\" WHERE \"TableName\" = 'SiteID'"),
              ElementsAre("SiteID"));
}

TEST_P(Connecting, SeveralConnectionsAreThereAtOnce) {
  const auto other = Connect();
  ASSERT_NE(other, nullptr);
  EXPECT_THAT(Rows("SELECT 1"), ElementsAre("1"));
  EXPECT_TRUE(other->Execute("SELECT 1").ok());
}

ZENT_ON_BOTH_KINDS(Connecting);

TEST(ConnectText, KeepsAPasswordInBraces) {
  const auto environment = MakeEnvironment();
  const auto connected =
      environment->Connect("DSN=KorvoServer;UID=braces;PWD={Geheim;{7}}};", kLoginSeconds);
  EXPECT_TRUE(connected.ok()) << connected.status().error().description;
}

struct RefusedCase {
  const char* what;
  const char* connect_text;
  int number;
  const char* sqlstate;
  const char* description;
};

// A server that is not there has no SQLSTATE of its own in every driver.
constexpr RefusedCase kRefusedCases[] = {
    {"wrong password", "DSN=KorvoServer;UID=korvo;PWD=not-the-word;", kLoginFailed, "28000",
     "Access denied for user 'korvo'"},
    {"no password", "DSN=KorvoServer;UID=korvo;", kLoginFailed, "28000", "Access denied"},
    {"unknown user", "DSN=KorvoServer;UID=nobody;PWD=not-the-word;", kLoginFailed, "28000",
     "Access denied for user 'nobody'"},
    {"no such data source", "DSN=Nowhere;UID=korvo;PWD=not-the-word;", kCallFailed, "IM002",
     "Data source name not found"},
    {"no such driver", "DSN=NoDriver;UID=korvo;PWD=not-the-word;", kCallFailed, "IM002",
     "Data source name not found"},
    {"nobody listens", "DSN=Refused;UID=korvo;PWD=not-the-word;", 2002, "HY000", "127.0.0.1"},
    {"unknown host", "DSN=UnknownHost;UID=korvo;PWD=not-the-word;", 2005, "HY000",
     "no-such-host.invalid"},
    {"unknown database", "DSN=KorvoServer;UID=korvo;PWD=Geheim-Wort7;DATABASE=nothing;", 1044,
     "42000", "nothing"},
};

TEST(ConnectText, ThatLeadsNowhereIsAClearErrorWithoutThePassword) {
  const auto environment = MakeEnvironment();
  ASSERT_NE(environment, nullptr);
  for (const RefusedCase& row : kRefusedCases) {
    SCOPED_TRACE(row.what);
    const auto connected = environment->Connect(row.connect_text, kLoginSeconds);
    ASSERT_FALSE(connected.ok());
    EXPECT_EQ(connected.number(), row.number);
    EXPECT_THAT(connected.error().description, HasSubstr(row.description));
    EXPECT_EQ(connected.error().source, "ODBC");
    ASSERT_FALSE(environment->errors().empty());
    EXPECT_EQ(environment->errors().front().sqlstate, row.sqlstate);
    for (const OdbcError& error : environment->errors()) {
      EXPECT_THAT(error.message, AllOf(Not(HasSubstr("not-the-word")), Not(HasSubstr("Geheim"))));
      EXPECT_THAT(error.source, testing::StartsWith("["));
    }
  }
}

TEST(ConnectText, ThatWorksForgetsTheErrorsBefore) {
  const auto environment = MakeEnvironment();
  EXPECT_FALSE(environment->Connect("DSN=Nowhere;", kLoginSeconds).ok());
  EXPECT_FALSE(environment->errors().empty());
  EXPECT_TRUE(environment->Connect(ConnectTextFor("KorvoServer"), kLoginSeconds).ok());
  EXPECT_TRUE(environment->errors().empty());
}

}  // namespace
}  // namespace zent::odbc
