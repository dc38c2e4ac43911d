#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/AdoConnection.h"
#include "database/DBFuncs.h"
#include "database/SQLFuncs.h"
#include "database/TranslateSQL.h"
#include "database/fakes/DatabaseRun.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordingTrace;

struct TimeoutCase {
  int given;
  int seconds;
};

constexpr TimeoutCase kTimeoutCases[] = {{0, 60},    {5, 15},    {15, 15},   {16, 16},
                                         {300, 300}, {301, 300}, {900, 300}, {-1, 15}};

TEST(LoginTimeout, IsBetweenFifteenAndThreeHundredSeconds) {
  for (const TimeoutCase& row : kTimeoutCases) {
    EXPECT_EQ(LoginTimeout(row.given), row.seconds) << row.given;
  }
}

TEST(MaskPassword, HidesTheValueWithItsKeyInAConnectText) {
  EXPECT_EQ(MaskPassword("DSN=Korvo;PWD=secret;UID=sa"), "DSN=Korvo;***********UID=sa");
  EXPECT_EQ(MaskPassword("DSN=Korvo;UID=sa"), "DSN=Korvo;UID=sa");
  EXPECT_EQ(MaskPassword("DSN=Korvo;pwd=x"), "DSN=Korvo;*****");
  EXPECT_EQ(MaskPassword("PWD=a;PWD=b;"), "******PWD=b;");
  EXPECT_EQ(MaskPassword(""), "");
}

struct OracleCase {
  const char* text;
  bool is_oracle;
};

constexpr OracleCase kOracleCases[] = {{"0", false},  {"1", true},     {"-1", true},
                                       {"", false},   {"True", true},  {"true", true},
                                       {"no", false}, {"False", false}};

TEST(ReadIsOracle, ReadsABooleanWhereTheApplicationKeepsIt) {
  for (const OracleCase& row : kOracleCases) {
    DatabaseRun given;
    given.SetIsOracle(row.text);
    EXPECT_EQ(ReadIsOracle(given.machine.platform), row.is_oracle) << row.text;
  }
}

TEST(ReadIsOracle, IsFalseWithoutTheSettingAndReadAnewEachTime) {
  DatabaseRun given;
  EXPECT_FALSE(ReadIsOracle(given.machine.platform));
  given.SetIsOracle("1");
  EXPECT_TRUE(ReadIsOracle(given.machine.platform));
}

TEST(ReadIsOracle, IsNotReadBesideTheProgram) {
  DatabaseRun given;
  given.machine.files.PutFile(R"(C:\Korvo\Korvo.ini)", "[General]\r\nIsOracle=1\r\n");
  EXPECT_FALSE(ReadIsOracle(given.machine.platform));
}

TEST(TranslateSQL, GoesByTheKindThatWasOpenedLast) {
  DatabaseRun given;
  given.run.database.kind = kMSAccess;
  given.SetIsOracle("1");
  EXPECT_EQ(TranslateSQL(given.run, "A=True"), "A=True");
  given.run.database.kind = kSQLServer;
  EXPECT_EQ(TranslateSQL(given.run, "A=True"), "A=-1");
  given.SetIsOracle("0");
  EXPECT_EQ(TranslateSQL(given.run, "A=True"), "A=1");
}

TEST(DAOErrorText, WritesALineForEachErrorInTheirOrder) {
  const EngineErrors errors = {
      {.number = 18456, .description = "Login failed.", .source = "SQL"},
      {.number = 3146, .description = "ODBC--call failed.", .source = "DAO.Workspace"}};
  EXPECT_EQ(DAOErrorText(1, errors),
            "18456 - Login failed. - SQL\r\n3146 - ODBC--call failed. - DAO.Workspace\r\n");
  EXPECT_EQ(DAOErrorText(0, errors), "");
  EXPECT_EQ(DAOErrorText(1, {}), "");
}

TEST(TraceLine, WritesTimeMessageNumberAndValue) {
  DatabaseRun given;
  RecordingTrace trace;
  given.run.database.trace = &trace;
  TraceLine(given.run, "Begin: something");
  TraceLine(given.run, "half way", 7, "a value");
  TraceLine(given.run, "End: something", 3146);
  EXPECT_EQ(trace.written,
            "\r\n2006-05-04 03:02:01\tBegin: something\t0\r\n"
            "2006-05-04 03:02:01\thalf way\t7\ta value\r\n"
            "2006-05-04 03:02:01\tEnd: something\t3146\r\n");
}

TEST(TraceLine, WritesNothingUnlessAskedFor) {
  DatabaseRun given;
  TraceLine(given.run, "Begin: something");
  EXPECT_THAT(given.messages(), IsEmpty());
}

TEST(TraceLine, FollowsTheOpeningOfAServer) {
  DatabaseRun given;
  RecordingTrace trace;
  given.run.database.trace = &trace;
  given.server.silent_failures = {{.number = 17, .description = "x"}};
  std::string connect = "DSN=Korvo;";
  KVOOpenSQLServerDB(given.run, connect);
  EXPECT_TRUE(KVOOpenSQLServerDBADO(given.run, connect).ok());
  EXPECT_EQ(trace.written,
            "\r\n2006-05-04 03:02:01\tBegin: KVOOpenSQLServerDB\t0\r\n"
            "2006-05-04 03:02:01\tEnd: KVOOpenSQLServerDB\t17\r\n"
            "\r\n2006-05-04 03:02:01\tBegin: KVOOpenSQLServerDBADO\t0\r\n"
            "2006-05-04 03:02:01\tEnd: KVOOpenSQLServerDBADO\t0\r\n");
}

TEST(AdoConnectionText, IsWrittenToTheLetter) {
  EXPECT_EQ(AdoConnectionText(R"(D:\Korvo.mdb)", "x"),
            R"(Provider=Microsoft.Jet.OLEDB.4.0;Data Source=D:\Korvo.mdb;)"
            "Jet OLEDB:Database Password = x");
}

struct AdoCase {
  const char* what;
  const char* text;
  const char* path;
  const char* connect;
};

constexpr AdoCase kAdoCases[] = {
    {"as it is written", R"(Provider=x;Data Source=D:\A.mdb;Jet OLEDB:Database Password = p)",
     R"(D:\A.mdb)", ";pwd=p"},
    {"no password", "Data Source=A.mdb;Jet OLEDB:Database Password = ", "A.mdb", ""},
    {"any case and blanks", "DATA SOURCE = A b.mdb ; jet oledb:database password=p q", "A b.mdb",
     ";pwd=p q"},
    {"a password with an equals sign", "Jet OLEDB:Database Password = a=b", "", ";pwd=a=b"},
    {"a password is cut at a semicolon", "Jet OLEDB:Database Password = a;b", "", ";pwd=a"},
    {"no text at all", "", "", ""},
};

TEST(AccessOpenOf, ReadsAConnectionText) {
  for (const AdoCase& row : kAdoCases) {
    SCOPED_TRACE(row.what);
    const AccessOpen request = AccessOpenOf(row.text);
    EXPECT_EQ(request.path, row.path);
    EXPECT_EQ(request.connect, row.connect);
    EXPECT_FALSE(request.exclusive);
    EXPECT_FALSE(request.read_only);
  }
}

TEST(OpenDatabaseADO, OpensAnAccessFileWithThePasswordGiven) {
  DatabaseRun given;
  given.access.Put(R"(D:\Korvo.MDB)");
  given.access.password = "p";
  EXPECT_TRUE(OpenDatabaseADO(given.run, R"(D:\Korvo.MDB)", "p").ok());
  EXPECT_EQ(given.run.database.kind, kMSAccess);
}

TEST(OpenDatabaseADO, AsksForNothingAndTellsNothing) {
  DatabaseRun given;
  given.access.Put(R"(D:\Korvo.mdb)");
  given.access.password = "p";
  EXPECT_EQ(OpenDatabaseADO(given.run, R"(D:\Korvo.mdb)", "wrong").number(), 3031);
  given.server.silent_failures = {{.number = 17, .description = "x"}};
  EXPECT_EQ(OpenDatabaseADO(given.run, "DSN=Korvo;", "").number(), 17);
  EXPECT_THAT(given.window.inputs, IsEmpty());
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_EQ(given.access.opens.size(), 1U);
}

TEST(OpenDatabaseADO, ConnectsToAServerWithTheLoginTimeout) {
  DatabaseRun given;
  given.run.database.login_timeout = 900;
  EXPECT_TRUE(OpenDatabaseADO(given.run, "DSN=Korvo;UID=sa;", "").ok());
  EXPECT_THAT(given.server.calls, ElementsAre("Connect 300 DSN=Korvo;UID=sa;"));
  EXPECT_EQ(given.run.database.kind, kSQLServer);
  EXPECT_FALSE(given.run.database.is_oracle);
}

TEST(OpenDatabaseADO, ReadsAtEachServerWhetherItIsOracle) {
  DatabaseRun given;
  for (const bool is_oracle : {true, false}) {
    given.SetIsOracle(is_oracle ? "1" : "0");
    EXPECT_TRUE(OpenDatabaseADO(given.run, "DSN=Korvo;UID=sa;", "").ok());
    EXPECT_EQ(given.run.database.is_oracle, is_oracle);
  }
}

TEST(OpenDatabaseADO, WithoutAnEngineSaysSo) {
  DatabaseRun given;
  given.run.database.access = nullptr;
  given.run.database.server = nullptr;
  EXPECT_EQ(OpenDatabaseADO(given.run, "A.mdb", "").number(), kCannotCreateObject);
  EXPECT_EQ(OpenDatabaseADO(given.run, "DSN=A", "").number(), kCannotCreateObject);
}

}  // namespace
}  // namespace zent
