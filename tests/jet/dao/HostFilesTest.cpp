#include <gtest/gtest.h>

#include <optional>

#include "jet/catalog/Catalog.h"
#include "jet/dao/DaoFile.h"
#include "jet/dao/HostFiles.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/StorageErrors.h"
#include "jet/tools/Verify.h"
#include "support/TempFolder.h"

/// Databases on disk, opened by several.
namespace zent::jet::testing {
namespace {

enum class Held : std::uint8_t { No, Exclusively, Shared, ToRead };

WorkspaceOptions Impatient() {
  WorkspaceOptions options;
  options.user = {.computer = "PC1", .name = "Admin"};
  options.lock_attempts = 2;
  return options;
}

/// A folder with two databases that hold People without rows: Korvo.mdb, and Secret.mdb with the
/// password "Secret".
class DaoFolder {
 public:
  DaoFolder() {
    Make("Korvo.mdb", "");
    Make("Secret.mdb", ";PWD=Secret");
  }

  std::string Path(std::string_view name) const { return (folder.path() / name).string(); }
  std::string Bytes(std::string_view name) const { return folder.Get(name); }

  zent::testing::TempFolder folder;
  std::unique_ptr<Storage> storage = HostFiles();
  Workspace workspace{*storage, Impatient()};

 private:
  void Make(std::string_view name, std::string_view connect) {
    const auto made = workspace.CreateDatabase(Path(name), connect);
    ASSERT_TRUE(made.ok()) << Told(made.status());
    TableDef people = PeopleTable();
    const Status appended = made.value()->Append(people);
    ASSERT_TRUE(appended.ok()) << Told(appended);
  }
};

/// How another program has the file open.
std::unique_ptr<Database> Hold(Workspace& workspace, const std::string& path, Held held,
                               std::string_view connect) {
  if (held == Held::No) return nullptr;
  auto opened =
      workspace.OpenDatabase(path, held == Held::Exclusively, held == Held::ToRead, connect);
  EXPECT_TRUE(opened.ok()) << Told(opened.status());
  return opened.ok() ? std::move(opened.value()) : nullptr;
}

struct OpenCase {
  const char* what;
  const char* name;
  Held held;
  bool exclusive;
  bool read_only;
  const char* connect;
  int number;
};

constexpr OpenCase kOpenCases[] = {
    {"exclusively", "Korvo.mdb", Held::No, true, false, "", 0},
    {"shared", "Korvo.mdb", Held::No, false, false, "", 0},
    {"to read", "Korvo.mdb", Held::No, false, true, "", 0},
    {"to read, exclusively", "Korvo.mdb", Held::No, true, true, "", 0},
    {"shared, as others do", "Korvo.mdb", Held::Shared, false, false, "", 0},
    {"shared, while others read", "Korvo.mdb", Held::ToRead, false, false, "", 0},
    {"to read, while others write", "Korvo.mdb", Held::Shared, false, true, "", 0},
    {"to read, as others do", "Korvo.mdb", Held::ToRead, false, true, "", 0},
    {"exclusively, while others write", "Korvo.mdb", Held::Shared, true, false, "", 3045},
    {"exclusively, while others read", "Korvo.mdb", Held::ToRead, true, false, "", 3045},
    {"exclusively, as another has it", "Korvo.mdb", Held::Exclusively, true, false, "", 3045},
    {"shared, while another has it alone", "Korvo.mdb", Held::Exclusively, false, false, "", 3356},
    {"to read, while another has it alone", "Korvo.mdb", Held::Exclusively, false, true, "", 3356},
    {"no such file", "Other.mdb", Held::No, false, false, "", 3024},
    {"no such file, exclusively", "Other.mdb", Held::No, true, false, "", 3024},
    {"no such file, to read", "Other.mdb", Held::No, false, true, "", 3024},
    {"no such folder", "None/Korvo.mdb", Held::No, false, false, "", 3044},
    {"no such folder, to read", "None/Korvo.mdb", Held::No, false, true, "", 3044},
    {"the password", "Secret.mdb", Held::No, true, false, ";PWD=Secret", 0},
    {"the password, to read", "Secret.mdb", Held::No, false, true, ";pwd=Secret", 0},
    {"the password, shared", "Secret.mdb", Held::Shared, false, false, ";PWD=Secret", 0},
    {"no password", "Secret.mdb", Held::No, true, false, "", 3031},
    {"no password, to read", "Secret.mdb", Held::No, false, true, "", 3031},
    {"another password", "Secret.mdb", Held::No, false, false, ";PWD=secret", 3031},
    {"a password for a file without one", "Korvo.mdb", Held::No, false, false, ";PWD=x", 3031},
};

TEST(HostFiles, OpenWithTheNumbersOfDao) {
  DaoFolder given;
  for (const OpenCase& row : kOpenCases) {
    SCOPED_TRACE(row.what);
    const std::string before = given.Bytes(row.name);
    {
      Workspace others(*given.storage, Impatient());
      const auto holder = Hold(others, given.Path(row.name), row.held, row.connect);
      const auto opened = given.workspace.OpenDatabase(given.Path(row.name), row.exclusive,
                                                       row.read_only, row.connect);
      EXPECT_EQ(opened.number(), row.number) << Told(opened.status());
      if (opened.ok()) {
        EXPECT_EQ(opened.value()->updatable(), !row.read_only);
        EXPECT_EQ(opened.value()->OpenRecordset("People").value()->RecordCount().value_or(9), 0);
      } else {
        EXPECT_EQ(opened.error().source, "DAO");
        EXPECT_NE(opened.error().description, "");
      }
    }
    // Windows shows it to nobody before it is closed.
    EXPECT_EQ(given.Bytes(row.name), before);
  }
}

TEST(HostFiles, RefuseWhatIsNoDatabase) {
  DaoFolder given;
  const std::string whole = given.Bytes("Korvo.mdb");
  std::string later = whole;
  later[0x14] = 2;
  struct Case {
    const char* what;
    std::string bytes;
    int number;
  };
  const Case cases[] = {
      {"empty", "", kUnrecognizedFormat},
      {"a text", std::string(9000, 'x'), kUnrecognizedFormat},
      {"zeros", std::string(9000, '\0'), kUnrecognizedFormat},
      {"a later format", later, kUnrecognizedFormat},
      {"less than a page", whole.substr(0, 1000), kUnrecognizedFormat},
      {"the first page alone", whole.substr(0, 4096), kCannotOpenDatabase},
      {"a part of a page too many", whole.substr(0, 10000), kCannotOpenDatabase},
      {"a catalog of zeros", std::string(whole).replace(8192, 4096, 4096, '\0'),
       kCannotOpenDatabase},
  };
  for (const Case& row : cases) {
    for (const bool exclusive : {true, false}) {
      SCOPED_TRACE(row.what);
      given.folder.Put("Bad.mdb", row.bytes);
      const auto opened = given.workspace.OpenDatabase(given.Path("Bad.mdb"), exclusive);
      EXPECT_EQ(opened.number(), row.number) << Told(opened.status());
      EXPECT_EQ(given.Bytes("Bad.mdb"), row.bytes);
    }
  }
}

TEST(HostFiles, AreMadeOnlyWhereNothingIs) {
  struct Case {
    const char* what;
    const char* name;
    int number;
  };
  constexpr Case kCases[] = {
      {"a file is there", "Korvo.mdb", kDatabaseExists},
      {"no such folder", "None/New.mdb", kInvalidPath},
      {"a new one", "New.mdb", 0},
  };
  DaoFolder given;
  const std::string before = given.Bytes("Korvo.mdb");
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(given.workspace.CreateDatabase(given.Path(row.name)).number(), row.number);
  }
  EXPECT_EQ(given.Bytes("Korvo.mdb"), before);
  EXPECT_TRUE(given.workspace.OpenDatabase(given.Path("New.mdb")).ok());
}

TEST(HostFiles, AreCompactedOnlyByWhoHasThemAlone) {
  struct Case {
    const char* what;
    const char* source;
    Held held;
    const char* target;
    int number;
  };
  constexpr Case kCases[] = {
      {"others write", "Korvo.mdb", Held::Shared, "Out.mdb", kDatabaseInUse},
      {"others read", "Korvo.mdb", Held::ToRead, "Out.mdb", kDatabaseInUse},
      {"no such file", "Other.mdb", Held::No, "Out.mdb", kDatabaseNotFound},
      {"no password", "Secret.mdb", Held::No, "Out.mdb", kInvalidPassword},
      {"no such folder", "Korvo.mdb", Held::No, "None/Out.mdb", kInvalidPath},
      {"onto itself", "Korvo.mdb", Held::No, "Korvo.mdb", kDatabaseExists},
      {"nobody has it", "Korvo.mdb", Held::No, "Out.mdb", 0},
      {"once more", "Korvo.mdb", Held::No, "Out.mdb", kDatabaseExists},
  };
  DaoFolder given;
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    Workspace others(*given.storage, Impatient());
    const auto holder = Hold(others, given.Path(row.source), row.held, "");
    const std::string before = given.Bytes(row.source);
    const Status done =
        given.workspace.CompactDatabase(given.Path(row.source), given.Path(row.target));
    EXPECT_EQ(done.number(), row.number) << Told(done);
    EXPECT_EQ(given.Bytes(row.source), before);
    EXPECT_FALSE(given.storage->Exists(given.Path(row.target) + ".zent-new").value_or(true));
  }
  const auto opened = given.workspace.OpenDatabase(given.Path("Out.mdb"));
  ASSERT_TRUE(opened.ok());
  EXPECT_TRUE(opened.value()->FindTableDef("People").ok());
}

TEST(HostFiles, KeepWhatOneWroteForAnother) {
  DaoFolder given;
  Workspace others(*given.storage, Impatient());
  const auto one = std::move(given.workspace.OpenDatabase(given.Path("Korvo.mdb")).value());
  const auto two = std::move(others.OpenDatabase(given.Path("Korvo.mdb")).value());
  ASSERT_TRUE(one->Execute("INSERT INTO People (Name) VALUES ('Ann')").ok());
  ASSERT_TRUE(two->Execute("INSERT INTO People (Name) VALUES ('Bob')").ok());
  ASSERT_TRUE(one->Execute("CREATE TABLE Calls (Id COUNTER PRIMARY KEY, Person LONG)").ok());
  ASSERT_TRUE(two->Execute("INSERT INTO Calls (Person) VALUES (1)").ok());
  EXPECT_EQ(DaoFile::NamesOf(*one->OpenRecordset("SELECT Name FROM People ORDER BY Id").value()),
            "Ann Bob");
  EXPECT_EQ(one->OpenRecordset("Calls").value()->RecordCount().value_or(0), 1);

  ASSERT_TRUE(one->BeginTrans().ok());
  ASSERT_TRUE(one->Execute("DELETE FROM Calls").ok());
  EXPECT_EQ(two->Execute("DELETE FROM People").number(), kCannotLock);
  ASSERT_TRUE(one->Rollback().ok());
  EXPECT_TRUE(two->Execute("DELETE FROM People WHERE Name = 'Ann'").ok());
}

/// What is wrong with the file; nothing should be.
std::string FaultsOf(Database& database) {
  std::string faults;
  const Result<VerifySummary> summary = VerifyDatabase(
      database.catalog()->pager(), [&](const std::string& line) { faults += line + "\n"; });
  EXPECT_TRUE(summary.ok()) << Told(summary.status());
  return faults;
}

/// A database that two have open at once.
class TwoUsers {
 public:
  TwoUsers()
      : others(*given.storage, Impatient()),
        one(Hold(given.workspace, given.Path("Korvo.mdb"), Held::Shared, "")),
        two(Hold(others, given.Path("Korvo.mdb"), Held::Shared, "")) {}

  static void Run(Database& database, std::string_view statement) {
    const Status done = database.Execute(statement);
    EXPECT_TRUE(done.ok()) << statement << ": " << Told(done);
  }

  DaoFolder given;
  Workspace others;
  std::unique_ptr<Database> one;
  std::unique_ptr<Database> two;
};

TEST(HostFiles, KeepIndexesRightThatAnotherMadeOrDroppedMeanwhile) {
  TwoUsers users;
  users.Run(*users.two, "INSERT INTO People (Name) VALUES ('Ann')");

  users.Run(*users.one, "CREATE INDEX ByName ON People (Name)");
  users.Run(*users.two, "INSERT INTO People (Name) VALUES ('Bob')");
  const auto rows = std::move(users.one->OpenRecordset("People").value());
  ASSERT_TRUE(rows->SetIndex("ByName").ok());
  ASSERT_TRUE(rows->Seek("=", std::vector<Value>{Text("Bob")}).ok());
  EXPECT_FALSE(rows->NoMatch());
  EXPECT_EQ(FaultsOf(*users.one), "");

  users.Run(*users.one, "DROP INDEX ByName ON People");
  users.Run(*users.two, "INSERT INTO People (Name) VALUES ('Cid')");
  EXPECT_EQ(FaultsOf(*users.one), "");
  EXPECT_EQ(rows->MoveFirst().number(), kNoCurrentIndex);

  ASSERT_TRUE(users.two->BeginTrans().ok());
  users.Run(*users.two, "INSERT INTO People (Name) VALUES ('Dan')");
  ASSERT_TRUE(users.two->CommitTrans().ok());
  EXPECT_EQ(DaoFile::NamesOf(*users.one->OpenRecordset("SELECT Name FROM People").value()),
            "Ann Bob Cid Dan");
}

TEST(HostFiles, ReadOnWhereAnotherChangedTheTableOfARecordset) {
  TwoUsers users;
  users.Run(*users.two, "INSERT INTO People (Name, Age) VALUES ('Ann', 30)");
  users.Run(*users.two, "INSERT INTO People (Name, Age) VALUES ('Bob', 40)");
  const auto rows = std::move(users.two->OpenRecordset("People").value());
  ASSERT_TRUE(rows->SetIndex("ByAge").ok());

  users.Run(*users.one, "DROP INDEX PrimaryKey ON People");
  users.Run(*users.one, "ALTER TABLE People DROP COLUMN Note");
  users.Run(*users.one, "ALTER TABLE People ADD COLUMN Town TEXT(20)");

  EXPECT_EQ(TextIn(*rows, "Name"), "Bob");
  EXPECT_EQ(rows->Get("Member").value_or(Null()), Value(false));
  EXPECT_EQ(rows->Get("Note").number(), kItemNotFound);
  ASSERT_TRUE(rows->MoveNext().ok());
  EXPECT_EQ(TextIn(*rows, "Name"), "Ann");
  ASSERT_TRUE(rows->Edit().ok());
  ASSERT_TRUE(rows->Put("Name", Text("Amy")).ok());
  const Status updated = rows->Update();
  EXPECT_TRUE(updated.ok()) << Told(updated);
  EXPECT_EQ(DaoFile::NamesOf(*users.one->OpenRecordset("SELECT Name FROM People").value()),
            "Amy Bob");
  EXPECT_EQ(FaultsOf(*users.one), "");
}

TEST(HostFiles, SaveNoRowWhoseColumnsAnotherChangedMeanwhile) {
  TwoUsers users;
  const auto rows = std::move(users.two->OpenRecordset("People").value());
  ASSERT_TRUE(rows->AddNew().ok());
  ASSERT_TRUE(rows->Put("Name", Text("Ann")).ok());

  users.Run(*users.one, "ALTER TABLE People DROP COLUMN Note");
  users.Run(*users.one, "ALTER TABLE People ADD COLUMN Town TEXT(20)");

  EXPECT_EQ(rows->Update().number(), kObjectInvalid);
  EXPECT_EQ(rows->Get("Name").number(), kObjectInvalid);
  ASSERT_TRUE(rows->CancelUpdate().ok());
  EXPECT_EQ(rows->RecordCount().value_or(9), 0);
  ASSERT_TRUE(rows->AddNew().ok());
  ASSERT_TRUE(rows->Put("Name", Text("Bob")).ok());
  const Status saved = rows->Update();
  EXPECT_TRUE(saved.ok()) << Told(saved);
  EXPECT_EQ(FaultsOf(*users.one), "");
}

}  // namespace
}  // namespace zent::jet::testing
