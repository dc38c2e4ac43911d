#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/SQLFuncs.h"
#include "database/fakes/DatabaseRun.h"
#include "lib/AppSettings.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::string Setting(const DatabaseRun& given, const char* key) {
  return GetAppSetting(given.machine.platform, "Korvo", "General", key);
}

void StoreLogin(DatabaseRun& given, const std::string& user, const std::string& password) {
  const Platform& machine = given.machine.platform;
  ASSERT_TRUE(SaveAppSetting(machine, "Korvo", "General", "SSUN", user).ok());
  const std::string scrambled = ScrambleText(machine.system, password);
  ASSERT_TRUE(SaveAppSetting(machine, "Korvo", "General", "SSPW", scrambled).ok());
}

EngineErrors Refused(int number, const std::string& sqlstate = {}) {
  return {
      {.number = number, .description = "Login failed.", .source = "ODBC", .sqlstate = sqlstate}};
}

/// The connect texts that were opened, in their order.
std::vector<std::string> Opened(const DatabaseRun& given) {
  std::vector<std::string> texts;
  for (const std::string& call : given.server.calls) {
    if (call.starts_with("Open ")) texts.push_back(call.substr(5));
  }
  return texts;
}

TEST(KVOOpenSQLServerDB, OpensTheServerWithoutAQuestion) {
  DatabaseRun given;
  std::string connect = "DSN=Korvo;";

  const DatabasePtr opened = KVOOpenSQLServerDB(given.run, connect);

  ASSERT_NE(opened, nullptr);
  EXPECT_EQ(opened->Kind(), DatabaseKind::Server);
  EXPECT_THAT(given.server.calls, ElementsAre("CreateWorkspace NewODBCDirect 60",
                                              "SetLoginTimeout 60", "Open ODBC;DSN=Korvo;"));
  EXPECT_EQ(connect, "DSN=Korvo;");
  EXPECT_EQ(given.run.database.kind, kSQLServer);
  EXPECT_FALSE(given.run.database.is_oracle);
  EXPECT_THAT(given.window.inputs, IsEmpty());
}

TEST(KVOOpenSQLServerDB, MakesItsWorkspaceAtTheFirstOpenOfARunOnly) {
  DatabaseRun given;
  given.access.Put(R"(D:\A.mdb)");
  ASSERT_TRUE(OpenDatabase(given.run, R"(D:\A.mdb)").ok());
  EXPECT_THAT(given.server.calls, IsEmpty());
  std::string connect = "DSN=Korvo;";
  for (int i = 0; i < 3; ++i) EXPECT_NE(KVOOpenSQLServerDB(given.run, connect), nullptr);
  EXPECT_THAT(given.server.calls,
              ElementsAre("CreateWorkspace NewODBCDirect 60", "SetLoginTimeout 60",
                          "Open ODBC;DSN=Korvo;", "SetLoginTimeout 60", "Open ODBC;DSN=Korvo;",
                          "SetLoginTimeout 60", "Open ODBC;DSN=Korvo;"));
}

struct LoginCase {
  const char* what;
  int number;
  const char* sqlstate;
};

constexpr LoginCase kLoginCases[] = {
    {"not associated with a trusted connection", 18452, ""},
    {"login failed", 18456, "28000"},
    {"Oracle's own", 1005, ""},
    {"the driver manager's", 3001, ""},
    {"any driver by its state", 1045, "28000"},
};

TEST(KVOOpenSQLServerDB, TriesTheStoredLoginAfterARefusedOne) {
  for (const LoginCase& row : kLoginCases) {
    SCOPED_TRACE(row.what);
    DatabaseRun given;
    StoreLogin(given, "sa", "Secret");
    given.server.failures = {Refused(row.number, row.sqlstate), {}};
    std::string connect = "DSN=Korvo;";

    EXPECT_NE(KVOOpenSQLServerDB(given.run, connect), nullptr);

    EXPECT_THAT(Opened(given), ElementsAre("ODBC;DSN=Korvo;", "ODBC;DSN=Korvo;UID=sa;PWD=Secret;"));
    EXPECT_EQ(connect, "DSN=Korvo;UID=sa;PWD=Secret;");
    EXPECT_EQ(given.run.database.user_name, "sa");
    EXPECT_EQ(given.run.database.password, "Secret");
    EXPECT_THAT(given.window.inputs, IsEmpty());
    EXPECT_THAT(given.window.boxes, IsEmpty());
  }
}

TEST(KVOOpenSQLServerDB, AsksOnceForTheLoginAndStoresTheOneThatOpens) {
  DatabaseRun given;
  StoreLogin(given, "old", "older");
  given.server.failures = {Refused(18456), Refused(18456), {}};
  given.window.texts = {"anna", "Pass word"};
  std::string connect = "DSN=Korvo;";

  EXPECT_NE(KVOOpenSQLServerDB(given.run, connect), nullptr);

  EXPECT_THAT(Opened(given), ElementsAre("ODBC;DSN=Korvo;", "ODBC;DSN=Korvo;UID=old;PWD=older;",
                                         "ODBC;DSN=Korvo;UID=anna;PWD=Pass word;"));
  EXPECT_EQ(connect, "DSN=Korvo;UID=anna;PWD=Pass word;");
  ASSERT_EQ(given.window.inputs.size(), 2U);
  EXPECT_EQ(given.window.inputs[0].title, "Enter Username");
  EXPECT_EQ(given.window.inputs[0].prompt,
            "Please Enter Database Username.\r\nUsername is Case Sensitive.");
  EXPECT_FALSE(given.window.inputs[0].hidden);
  EXPECT_EQ(given.window.inputs[1].title, "Enter Password");
  EXPECT_TRUE(given.window.inputs[1].hidden);
  EXPECT_EQ(Setting(given, "SSUN"), "anna");
  EXPECT_EQ(ScrambleText(given.machine.system, Setting(given, "SSPW")), "Pass word");
  EXPECT_NE(Setting(given, "SSPW"), "Pass word");
}

TEST(KVOOpenSQLServerDB, KeepsThePasswordInTheCodePageOfTheMachine) {
  // Bytes 94 and 99 are the complements of "k" and "f".
  DatabaseRun given;
  given.machine.system.letters = {{'\x94', "\xC3\xB6"}, {'\x99', "\xC3\x96"}};
  const Platform& machine = given.machine.platform;
  ASSERT_TRUE(SaveAppSetting(machine, "Korvo", "General", "SSUN", "old").ok());
  ASSERT_TRUE(SaveAppSetting(machine, "Korvo", "General", "SSPW", "\xC3\xB6\xC3\x96").ok());
  given.server.failures = {Refused(18456), Refused(18456), {}};
  given.window.texts = {"anna", "fk"};
  std::string connect = "DSN=Korvo;";

  EXPECT_NE(KVOOpenSQLServerDB(given.run, connect), nullptr);

  EXPECT_THAT(Opened(given), ElementsAre("ODBC;DSN=Korvo;", "ODBC;DSN=Korvo;UID=old;PWD=kf;",
                                         "ODBC;DSN=Korvo;UID=anna;PWD=fk;"));
  EXPECT_EQ(Setting(given, "SSPW"), "\xC3\x96\xC3\xB6");
}

TEST(KVOOpenSQLServerDB, TellsNothingOfALoginThatIsRefusedTheThirdTime) {
  DatabaseRun given;
  StoreLogin(given, "old", "older");
  given.server.failures = {Refused(18456), Refused(18456), Refused(18456)};
  given.window.texts = {"anna", "wrong"};
  std::string connect = "DSN=Korvo;";

  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);

  EXPECT_EQ(Opened(given).size(), 3U);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_EQ(connect, "DSN=Korvo;UID=anna;PWD=wrong;");
  EXPECT_EQ(Setting(given, "SSUN"), "old");
  EXPECT_EQ(given.run.database.kind, kSQLServer);
}

struct LastFailureCase {
  const char* what;
  EngineErrors errors;
  const char* recorded;
};

TEST(KVOOpenSQLServerDB, RecordsWhyTheLastLoginFailed) {
  const LastFailureCase cases[] = {
      {"refused", Refused(18456), "the server was not opened: Login failed. (18456)"},
      {"no server any more",
       {{.number = 17, .description = "No server for DSN=Korvo;PWD=wrong;", .source = "ODBC"}},
       "the server was not opened: No server for DSN=Korvo;********** (17)"},
  };
  for (const LastFailureCase& row : cases) {
    SCOPED_TRACE(row.what);
    DatabaseRun given;
    given.server.failures = {Refused(18456), Refused(18456), row.errors};
    given.window.texts = {"anna", "wrong"};
    std::string connect = "DSN=Korvo;";
    given.run.BeginCommand({.line = 1, .keyword = "upddb"});
    EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);
    given.run.EndCommand();
    ASSERT_EQ(given.observer.records.size(), 1U);
    EXPECT_EQ(given.observer.records[0].reason, row.recorded);
    EXPECT_THAT(given.window.boxes, IsEmpty());
  }
}

TEST(KVOOpenSQLServerDB, RunsTheLoginTogetherWithATextThatDoesNotEndWithASemicolon) {
  DatabaseRun given;
  StoreLogin(given, "sa", "x");
  given.server.failures = {Refused(18456), {}};
  std::string connect = "DSN=Korvo";
  EXPECT_NE(KVOOpenSQLServerDB(given.run, connect), nullptr);
  EXPECT_EQ(connect, "DSN=KorvoUID=sa;PWD=x;");
}

TEST(KVOOpenSQLServerDB, OnlyTheFirstEngineErrorMakesALoginFailure) {
  DatabaseRun given;
  given.server.failures = {{{.number = 17, .description = "No server.", .source = "ODBC"},
                            {.number = 18456, .description = "Login failed.", .source = "ODBC"}}};
  std::string connect = "DSN=Korvo;";
  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);
  EXPECT_EQ(Opened(given).size(), 1U);
  EXPECT_EQ(given.window.boxes.size(), 1U);
}

TEST(KVOOpenSQLServerDB, TellsAnyOtherFailureWithThePasswordMasked) {
  DatabaseRun given;
  given.server.failures = {
      {{.number = 17, .description = "Server not found.", .source = "Driver"},
       {.number = 3146, .description = "DSN=x;PWD=Secret;", .source = "DAO.Workspace"}}};
  std::string connect = "DSN=Korvo;PWD=Secret;UID=sa";

  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);

  ASSERT_EQ(given.window.questions.size(), 1U);
  EXPECT_EQ(given.window.boxes[0],
            "Error opening database (DSN=Korvo;***********UID=sa) \r\n"
            "17 - Server not found. - Driver\r\n"
            "3146 - DSN=x;*********** - DAO.Workspace\r\n");
  EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Critical);
  EXPECT_EQ(given.run.database.kind, kSQLServer);
  EXPECT_THAT(given.window.inputs, IsEmpty());
}

TEST(KVOOpenSQLServerDB, TellsAFailureThatTheEngineKnowsNothingOf) {
  DatabaseRun given;
  given.server.silent_failures = {{.number = 429, .description = "no driver for PWD=Secret"}};
  std::string connect = "DSN=Korvo;PWD=Secret";

  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);

  ASSERT_EQ(given.window.boxes.size(), 1U);
  EXPECT_EQ(given.window.boxes[0],
            "Error opening database (DSN=Korvo;**********) \r\n429 - no driver for **********");
  EXPECT_THAT(given.window.boxes[0], Not(HasSubstr("Secret")));
}

TEST(KVOOpenSQLServerDB, WithoutAnEngineSaysSo) {
  DatabaseRun given;
  given.run.database.server = nullptr;
  std::string connect = "DSN=Korvo;";
  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);
  ASSERT_EQ(given.window.boxes.size(), 1U);
  EXPECT_THAT(given.window.boxes[0], HasSubstr("\r\n429 - "));
}

TEST(KVOOpenSQLServerDB, ReadsWhetherItIsOracleEachTimeAlsoWhenTheOpenFails) {
  DatabaseRun given;
  given.SetIsOracle("1");
  given.server.failures = {{{.number = 17, .description = "No server.", .source = "ODBC"}}};
  std::string connect = "DSN=Korvo;";
  EXPECT_EQ(KVOOpenSQLServerDB(given.run, connect), nullptr);
  EXPECT_TRUE(given.run.database.is_oracle);
  given.SetIsOracle("0");
  EXPECT_NE(KVOOpenSQLServerDB(given.run, connect), nullptr);
  EXPECT_FALSE(given.run.database.is_oracle);
}

TEST(KVOOpenSQLServerDB, PasswordsReachNeitherMessagesNorTraces) {
  DatabaseRun given;
  testing::RecordingTrace trace;
  given.run.database.trace = &trace;
  StoreLogin(given, "old", "Topsecret1");
  given.server.failures = {Refused(18456), Refused(18456), Refused(18456)};
  given.window.texts = {"anna", "Topsecret2"};
  std::string connect = "DSN=Korvo;PWD=Topsecret3;";
  KVOOpenSQLServerDB(given.run, connect);
  std::string told = trace.written + given.window.log;
  for (const std::string& text : given.window.boxes) told += text;
  for (const std::string& text : given.observer.inputs) told += text;
  EXPECT_THAT(told, Not(HasSubstr("Topsecret")));
}

}  // namespace
}  // namespace zent
