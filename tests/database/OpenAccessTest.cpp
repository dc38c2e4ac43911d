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
using ::testing::IsEmpty;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";

// Letters with two dots above, in UTF-8.
const std::string kSmallO = "\xC3\xB6";
const std::string kLargeO = "\xC3\x96";
const std::string kLargeU = "\xC3\x9C";

std::string StoredPassword(const DatabaseRun& given) {
  return ScrambleText(given.machine.platform.system,
                      GetAppSetting(given.machine.platform, "Korvo", "General", "Talamu"));
}

void StorePassword(DatabaseRun& given, const std::string& password) {
  ASSERT_TRUE(SaveAppSetting(given.machine.platform, "Korvo", "General", "Talamu",
                             ScrambleText(given.machine.system, password))
                  .ok());
}

std::vector<std::string> Connects(const DatabaseRun& given) {
  std::vector<std::string> connects;
  for (const AccessOpen& open : given.access.opens) connects.push_back(open.connect);
  return connects;
}

TEST(OpenDatabase, OpensAnAccessFileAsAsked) {
  DatabaseRun given;
  given.access.Put(kPath);
  OpenRequest request{.exclusive = true, .read_only = true, .connect = ";x"};

  const Result<DatabasePtr> opened = OpenDatabase(given.run, kPath, request);

  ASSERT_TRUE(opened.ok());
  EXPECT_EQ(opened.value()->Name(), kPath);
  ASSERT_EQ(given.access.opens.size(), 1U);
  EXPECT_TRUE(given.access.opens[0].exclusive);
  EXPECT_TRUE(given.access.opens[0].read_only);
  EXPECT_EQ(given.access.opens[0].connect, ";x");
  EXPECT_EQ(request.password, "");
  EXPECT_EQ(given.run.database.kind, "MSAccess");
  EXPECT_THAT(given.server.calls, IsEmpty());
}

TEST(OpenDatabase, TakesAnExtensionInAnyCaseForAnAccessFile) {
  for (const char* name : {R"(D:\A.MDB)", R"(D:\A.Mdb)", R"(D:\A.B.mdb)"}) {
    DatabaseRun given;
    given.access.Put(name);
    EXPECT_TRUE(OpenDatabase(given.run, name).ok()) << name;
    EXPECT_EQ(given.run.database.kind, kMSAccess);
  }
}

TEST(OpenDatabase, TakesEverythingElseForAServer) {
  for (const char* name : {"DSN=Korvo;", R"(D:\A.mdb2)", R"(D:\A)", ""}) {
    DatabaseRun given;
    EXPECT_TRUE(OpenDatabase(given.run, name).ok()) << name;
    EXPECT_EQ(given.run.database.kind, kSQLServer);
    EXPECT_THAT(given.access.opens, IsEmpty());
    EXPECT_EQ(given.server.calls.back(), std::string("Open ODBC;") + name);
  }
}

TEST(OpenDatabase, TriesTheStoredPasswordBeforeItAsks) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Secret";
  StorePassword(given, "Secret");
  OpenRequest request;

  const Result<DatabasePtr> opened = OpenDatabase(given.run, kPath, request);

  ASSERT_TRUE(opened.ok());
  EXPECT_THAT(Connects(given), ElementsAre("", ";pwd=Secret"));
  EXPECT_EQ(request.connect, ";pwd=Secret");
  EXPECT_EQ(request.password, "Secret");
  EXPECT_EQ(given.run.database.password, "Secret");
  EXPECT_THAT(given.window.inputs, IsEmpty());
}

TEST(OpenDatabase, AsksForThePasswordAndStoresTheOneThatOpens) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Geheim\xC3\xBC";
  StorePassword(given, "old");
  given.window.texts = {"Geheim\xC3\xBC"};
  OpenRequest request;

  const Result<DatabasePtr> opened = OpenDatabase(given.run, kPath, request);

  ASSERT_TRUE(opened.ok());
  EXPECT_THAT(Connects(given), ElementsAre("", ";pwd=old", ";pwd=Geheim\xC3\xBC"));
  ASSERT_EQ(given.window.inputs.size(), 1U);
  EXPECT_EQ(given.window.inputs[0].title, "Enter Password");
  EXPECT_EQ(given.window.inputs[0].prompt,
            "Please Enter Database Password.\r\nPassword is Case Sensitive.");
  EXPECT_TRUE(given.window.inputs[0].hidden);
  EXPECT_EQ(request.password, "Geheim\xC3\xBC");
  EXPECT_EQ(StoredPassword(given), "Geheim\xC3\xBC");
  EXPECT_THAT(given.observer.inputs, ElementsAre("Enter Password: ***"));
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(OpenDatabase, KeepsThePasswordInTheCodePageOfTheMachine) {
  // Bytes 94, 99 and 9A are the complements of "k", "f" and "e".
  DatabaseRun given;
  given.machine.system.letters = {{'\x94', kSmallO}, {'\x99', kLargeO}, {'\x9A', kLargeU}};
  given.access.Put(kPath);
  given.access.password = "kf";
  const Platform& machine = given.machine.platform;
  const auto stored = [&] { return GetAppSetting(machine, "Korvo", "General", "Talamu"); };
  ASSERT_TRUE(SaveAppSetting(machine, "Korvo", "General", "Talamu", kSmallO + kLargeO).ok());

  EXPECT_TRUE(OpenDatabase(given.run, kPath).ok());
  EXPECT_THAT(given.window.inputs, IsEmpty());

  given.access.password = "fe";
  given.window.texts = {"fe"};
  EXPECT_TRUE(OpenDatabase(given.run, kPath).ok());
  EXPECT_EQ(stored(), kLargeO + kLargeU);
}

TEST(OpenDatabase, WithoutAStoredPasswordTriesAnEmptyOneFirst) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Secret";
  given.window.texts = {"Secret"};
  EXPECT_TRUE(OpenDatabase(given.run, kPath).ok());
  EXPECT_THAT(Connects(given), ElementsAre("", ";pwd=", ";pwd=Secret"));
}

TEST(OpenDatabase, RaisesTheThirdWrongPasswordAndStoresNothing) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Secret";
  StorePassword(given, "old");
  given.window.texts = {"wrong"};

  const Result<DatabasePtr> opened = OpenDatabase(given.run, kPath);

  ASSERT_FALSE(opened.ok());
  EXPECT_EQ(opened.error().number, 3031);
  EXPECT_EQ(opened.error().description, "Not a valid password.");
  EXPECT_EQ(opened.error().source, "DAO");
  EXPECT_EQ(given.access.opens.size(), 3U);
  EXPECT_EQ(StoredPassword(given), "old");
}

TEST(OpenDatabase, ACancelledPasswordIsAnEmptyOne) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Secret";
  EXPECT_EQ(OpenDatabase(given.run, kPath).number(), 3031);
  EXPECT_THAT(Connects(given), ElementsAre("", ";pwd=", ";pwd="));
}

struct FailureCase {
  const char* what;
  std::vector<int> numbers;  ///< of the opens, one after the other
  int raised;
};

const FailureCase kFailureCases[] = {
    {"at the first open", {3356}, 3356},
    {"with the stored password", {3031, 3045}, 3045},
    {"with the password that was asked for", {3031, 3031, 3343}, 3343},
};

TEST(OpenDatabase, RaisesAnyOtherFailureAtOnce) {
  for (const FailureCase& row : kFailureCases) {
    SCOPED_TRACE(row.what);
    DatabaseRun given;
    given.access.Put(kPath);
    for (const int number : row.numbers) {
      given.access.failures.push_back({.number = number, .description = "why", .source = "Jet"});
    }

    const Result<DatabasePtr> opened = OpenDatabase(given.run, kPath);

    ASSERT_FALSE(opened.ok());
    EXPECT_EQ(opened.error().number, row.raised);
    EXPECT_EQ(opened.error().source, "DAO");
    EXPECT_EQ(given.access.opens.size(), row.numbers.size());
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_EQ(given.run.database.kind, kMSAccess);
  }
}

TEST(OpenDatabase, OpensTheFileEvenWhenThePasswordCannotBeStored) {
  DatabaseRun given;
  given.access.Put(kPath);
  given.access.password = "Secret";
  given.window.texts = {"Secret"};
  given.machine.registry.log().FailChange(1, StandardError(kPathFileAccess));
  EXPECT_TRUE(OpenDatabase(given.run, kPath).ok());
}

TEST(OpenDatabase, WithoutAnEngineSaysSo) {
  DatabaseRun given;
  given.run.database.access = nullptr;
  EXPECT_EQ(OpenDatabase(given.run, kPath).number(), kCannotCreateObject);
}

}  // namespace
}  // namespace zent
