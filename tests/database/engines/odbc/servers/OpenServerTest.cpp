#include "database/DBFuncs.h"
#include "database/SQLFuncs.h"
#include "database/engines/odbc/servers/ServerDatabase.h"
#include "database/fakes/DatabaseRun.h"
#include "lib/AppSettings.h"
#include "lib/FuncLib.h"

namespace zent::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

/// A run whose servers are real.
struct OpeningRun : DatabaseRun {
  OpeningRun() : odbc(MakeOdbcEngine()) { run.database.server = odbc.get(); }
  ~OpeningRun() { run.database.workspace.reset(); }
  OpeningRun(const OpeningRun&) = delete;
  OpeningRun& operator=(const OpeningRun&) = delete;

  void StoreLogin(const std::string& user, const std::string& password) {
    const Platform& at = machine.platform;
    ASSERT_TRUE(SaveAppSetting(at, "Korvo", "General", "SSUN", user).ok());
    const std::string scrambled = ScrambleText(at.system, password);
    ASSERT_TRUE(SaveAppSetting(at, "Korvo", "General", "SSPW", scrambled).ok());
  }
  std::string Stored(const char* key) const {
    return GetAppSetting(machine.platform, "Korvo", "General", key);
  }

  std::unique_ptr<OdbcEngine> odbc;
};

class OpeningServers : public ::testing::TestWithParam<const char*> {
 protected:
  std::string place() const { return "DSN=" + std::string(GetParam()) + ";"; }
};

TEST_P(OpeningServers, OpensWithALoginThatIsRight) {
  OpeningRun given;
  given.SetIsOracle(GetParam() == std::string("KorvoOracle") ? "1" : "0");
  std::string connect = place() + LoginText();
  const DatabasePtr database = KVOOpenSQLServerDB(given.run, connect);
  ASSERT_NE(database, nullptr);
  EXPECT_TRUE(database->Execute("SELECT 1").ok());
  EXPECT_EQ(connect, place() + LoginText());
  EXPECT_EQ(given.run.database.kind, kSQLServer);
  EXPECT_EQ(given.run.database.is_oracle, GetParam() == std::string("KorvoOracle"));
  EXPECT_THAT(given.window.inputs, IsEmpty());
}

TEST_P(OpeningServers, CountsARefusedLoginAs18456) {
  OpeningRun given;
  const auto opened = given.odbc->Connect(place() + "UID=korvo;PWD=not-the-word;", kLoginSeconds);
  EXPECT_EQ(opened.number(), 18456);
  ASSERT_FALSE(given.odbc->Errors().empty());
  EXPECT_EQ(given.odbc->Errors().front().number, 18456);
  EXPECT_EQ(given.odbc->Errors().front().sqlstate, "28000");
}

TEST_P(OpeningServers, TakesTheStoredLoginWhenTheGivenOneIsRefused) {
  OpeningRun given;
  given.StoreLogin(kServerUser, kServerPassword);
  std::string connect = place();
  const DatabasePtr database = KVOOpenSQLServerDB(given.run, connect);
  ASSERT_NE(database, nullptr);
  EXPECT_TRUE(database->Execute("SELECT 1").ok());
  EXPECT_EQ(connect, place() + LoginText());
  EXPECT_EQ(given.run.database.user_name, kServerUser);
  EXPECT_EQ(given.run.database.password, kServerPassword);
  EXPECT_THAT(given.window.inputs, IsEmpty());
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST_P(OpeningServers, AsksWhenTheStoredLoginIsRefusedToo) {
  OpeningRun given;
  given.StoreLogin(kServerUser, "an-old-word");
  given.window.texts = {kServerUser, kServerPassword};
  std::string connect = place();
  const DatabasePtr database = KVOOpenSQLServerDB(given.run, connect);
  ASSERT_NE(database, nullptr);
  EXPECT_EQ(connect, place() + LoginText());
  ASSERT_EQ(given.window.inputs.size(), 2U);
  EXPECT_EQ(given.window.inputs[0].title, "Enter Username");
  EXPECT_EQ(given.window.inputs[1].title, "Enter Password");
  EXPECT_TRUE(given.window.inputs[1].hidden);
  EXPECT_EQ(given.Stored("SSUN"), kServerUser);
  EXPECT_EQ(ScrambleText(given.machine.system, given.Stored("SSPW")), kServerPassword);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST_P(OpeningServers, GivesNoDatabaseWhenTheAnswerIsRefusedToo) {
  OpeningRun given;
  given.StoreLogin(kServerUser, "an-old-word");
  given.window.texts = {kServerUser, "a-wrong-word"};
  std::string connect = place();
  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);
  EXPECT_EQ(connect, place() + "UID=korvo;PWD=a-wrong-word;");
  EXPECT_EQ(ScrambleText(given.machine.system, given.Stored("SSPW")), "an-old-word");
  EXPECT_EQ(given.run.database.kind, kSQLServer);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST_P(OpeningServers, OpensTheOtherKindOfConnectionWithoutAQuestion) {
  OpeningRun given;
  given.StoreLogin(kServerUser, kServerPassword);
  const Result<DatabasePtr> opened = OpenDatabaseADO(given.run, place() + LoginText(), "");
  ASSERT_TRUE(opened.ok()) << opened.error().description;
  EXPECT_TRUE(opened.value()->Execute("SELECT 1").ok());
  EXPECT_EQ(given.run.database.kind, kSQLServer);
  const Result<DatabasePtr> refused =
      KVOOpenSQLServerDBADO(given.run, place() + "UID=korvo;PWD=not-the-word;");
  EXPECT_EQ(refused.number(), 18456);
  EXPECT_EQ(refused.status().error().source, kEngineSource);
  EXPECT_THAT(given.window.inputs, IsEmpty());
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

ZENT_ON_SERVER_KINDS(OpeningServers);

struct UnreachableCase {
  const char* what;
  const char* connect;
  const char* number;
  const char* description;
};

constexpr UnreachableCase kUnreachableCases[] = {
    {"nobody listens", "DSN=Refused;UID=korvo;PWD=not-the-word;", "2002 - ", "127.0.0.1"},
    {"no such host", "DSN=UnknownHost;UID=korvo;PWD=not-the-word;", "2005 - ",
     "no-such-host.invalid"},
    {"no such data source", "DSN=Nowhere;UID=korvo;PWD=not-the-word;", "3146 - ",
     "Data source name not found"},
    {"no such database", "DSN=KorvoServer;DATABASE=nothing;UID=korvo;PWD=Geheim-Wort7;", "1044 - ",
     "nothing"},
};

TEST(UnreachableServers, AreToldInOneBoxWithoutThePassword) {
  for (const UnreachableCase& row : kUnreachableCases) {
    SCOPED_TRACE(row.what);
    OpeningRun given;
    std::string connect = row.connect;
    EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);
    EXPECT_THAT(given.window.inputs, IsEmpty());
    EXPECT_THAT(given.window.boxes,
                ElementsAre(AllOf(StartsWith("Error opening database (DSN="),
                                  HasSubstr(std::string(") \r\n") + row.number),
                                  HasSubstr(row.description), HasSubstr(";*****"),
                                  Not(HasSubstr("not-the-word")), Not(HasSubstr("Geheim")))));
    EXPECT_EQ(given.run.database.kind, kSQLServer);
    EXPECT_EQ(connect, row.connect);
    EXPECT_FALSE(OpenDatabaseADO(given.run, row.connect, "").ok());
    EXPECT_EQ(given.window.boxes.size(), 1U) << "the other way tells nothing";
  }
}

}  // namespace
}  // namespace zent::testing
