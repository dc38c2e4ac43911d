#include <gmock/gmock.h>

#include "jet/dao/DaoFile.h"
#include "jet/dao/Workspace.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet::testing {
namespace {

TEST(OpenDatabase, FailsWithTheNumbersOfDao) {
  struct Case {
    const char* what;
    const char* connect_made;  ///< of the file as it was made
    bool still_open;           ///< by the one who made it, who has it exclusively
    const char* name;
    bool exclusive;
    const char* connect;
    int number;
  };
  const Case cases[] = {
      {"right", "", false, kFile.data(), true, "", 0},
      {"right, shared", "", false, kFile.data(), false, "", 0},
      {"no such file", "", false, "C:\\Data\\Other.mdb", false, "", 3024},
      {"opened exclusively by another", "", true, kFile.data(), false, "", 3356},
      {"in use, wanted exclusively", "", true, kFile.data(), true, "", 3045},
      {"password missing", ";pwd=Secret", false, kFile.data(), false, "", 3031},
      {"password wrong", ";pwd=Secret", false, kFile.data(), false, ";PWD=secret", 3031},
      {"password right", ";pwd=Secret", false, kFile.data(), false, ";PWD=Secret", 0},
      {"password given for a file without", "", false, kFile.data(), false, ";PWD=x", 3031},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    DaoFile given(row.connect_made);
    if (!row.still_open) given.db.reset();
    const auto opened = given.workspace.OpenDatabase(row.name, row.exclusive, false, row.connect);
    EXPECT_EQ(opened.number(), row.number);
    if (!opened.ok()) {
      EXPECT_EQ(opened.error().source, "DAO");
      continue;
    }
    EXPECT_EQ(opened.value()->name(), row.name);
    EXPECT_EQ(opened.value()->version(), "4.0");
  }
}

TEST(OpenDatabase, RefusesWhatIsNoDatabase) {
  struct Case {
    const char* what;
    std::string bytes;
    int number;
  };
  std::string later = MakeDatabase(8);
  later[0x14] = 2;
  const Case cases[] = {
      {"a text", std::string(5000, 'x'), kUnrecognizedFormat},
      {"a later format", later, kUnrecognizedFormat},
      {"empty", "", kUnrecognizedFormat},
      {"no catalog", MakeDatabase(8), kCannotOpenDatabase},
      {"the end is missing", MakeDatabase(8).substr(0, 9000), kCannotOpenDatabase},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    storage.Put(kFile, row.bytes);
    Workspace workspace(storage);
    EXPECT_EQ(workspace.OpenDatabase(kFile).number(), row.number);
    EXPECT_EQ(storage.Bytes(kFile), row.bytes);
  }
}

TEST(OpenDatabase, ChangesNothingThatIsOpenedToBeRead) {
  for (const bool exclusive : {false, true}) {
    DaoFile given;
    given.db.reset();
    const std::string before = given.storage.Bytes(kFile);
    given.db = std::move(given.workspace.OpenDatabase(kFile, exclusive, true).value());
    EXPECT_FALSE(given.db->updatable());
    EXPECT_EQ(given.db->Execute("DELETE FROM People").number(), kReadOnly);
    EXPECT_EQ(given.db->BeginTrans().number(), kReadOnly);
    TableDef table("New");
    ASSERT_TRUE(table.Append(CreateField("A", DataType::Long)).ok());
    EXPECT_EQ(given.db->Append(table).number(), kReadOnly);
    const auto rows = given.Rows("People");
    EXPECT_FALSE(rows->updatable());
    EXPECT_EQ(rows->Edit().number(), kReadOnly);
    EXPECT_EQ(rows->AddNew().number(), kReadOnly);
    EXPECT_EQ(rows->Delete().number(), kReadOnly);
    EXPECT_EQ(given.Names(), "Ann Bob Cid");
    given.db.reset();
    EXPECT_TRUE(given.storage.Bytes(kFile) == before);
  }
}

TEST(OpenDatabase, LetsTwoShareAFile) {
  DaoFile given;
  given.db.reset();
  given.db = std::move(given.workspace.OpenDatabase(kFile).value());
  const auto other = std::move(given.workspace.OpenDatabase(kFile).value());
  EXPECT_EQ(given.workspace.OpenDatabase(kFile, true).number(), kDatabaseInUse);
  given.Run("INSERT INTO People (Name) VALUES ('Dan')");
  const auto rows = std::move(other->OpenRecordset("People").value());
  EXPECT_EQ(DaoFile::NamesOf(*rows), "Ann Bob Cid Dan");
}

TEST(CreateDatabase, LeavesAFileThatIsThere) {
  DaoFile given;
  EXPECT_EQ(given.workspace.CreateDatabase(kFile).number(), kDatabaseExists);
  EXPECT_EQ(given.Names(), "Ann Bob Cid");
}

TEST(PasswordOf, FindsThePasswordAmongTheParts) {
  struct Case {
    const char* what;
    const char* connect;
    const char* password;
  };
  constexpr Case kCases[] = {
      {"alone", ";PWD=abc", "abc"},
      {"in any case", ";pwd=Abc", "Abc"},
      {"without the first semicolon", "PWD=abc", "abc"},
      {"among others", "MS Access;PWD=abc;DATABASE=x", "abc"},
      {"empty", ";PWD=", ""},
      {"with an equals sign", ";PWD=a=b", "a=b"},
      {"with blanks, which count", ";PWD= a ", " a "},
      {"none", ";DATABASE=PWD", ""},
      {"nothing", "", ""},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(PasswordOf(row.connect), row.password);
  }
}

TEST(Close, EndsWhatIsLeftOfADatabase) {
  DaoFile given;
  const auto rows = given.Rows("People");
  TableDef table = std::move(given.db->FindTableDef("People").value());
  ASSERT_TRUE(given.db->Close().ok());
  EXPECT_EQ(rows->MoveNext().number(), kObjectInvalid);
  EXPECT_EQ(rows->Get("Name").number(), kObjectInvalid);
  EXPECT_EQ(rows->AddNew().number(), kObjectInvalid);
  EXPECT_EQ(table.Fields().number(), kObjectInvalid);
  EXPECT_EQ(given.db->TableDefs().number(), kObjectInvalid);
  EXPECT_EQ(given.db->Execute("DELETE FROM People").number(), kObjectInvalid);
  EXPECT_EQ(given.db->Close().number(), kObjectInvalid);
  EXPECT_TRUE(given.workspace.OpenDatabase(kFile, true).ok());
}

TEST(CompactDatabase, KeepsRowsAndGivesThePasswordThatIsWanted) {
  struct Case {
    const char* what;
    std::optional<std::string_view> new_connect;
    const char* opens;
  };
  const Case cases[] = {
      {"the old one", std::nullopt, ";PWD=old"},
      {"another one", ";PWD=new", ";PWD=new"},
      {"none", "", ""},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    DaoFile given(";PWD=old");
    EXPECT_EQ(given.workspace.CompactDatabase(kFile, "new.mdb", ";PWD=old").number(), 3045);
    given.db.reset();
    EXPECT_EQ(given.workspace.CompactDatabase(kFile, "new.mdb", ";PWD=x").number(), 3031);
    EXPECT_EQ(given.workspace.CompactDatabase(kFile, kFile, ";PWD=old").number(), kDatabaseExists);
    const Status done =
        given.workspace.CompactDatabase(kFile, "new.mdb", ";PWD=old", row.new_connect);
    ASSERT_TRUE(done.ok()) << done.error().description;
    auto opened = given.workspace.OpenDatabase("new.mdb", true, false, row.opens);
    ASSERT_TRUE(opened.ok());
    given.db = std::move(opened.value());
    EXPECT_EQ(given.Names(), "Ann Bob Cid");
    given.Run("INSERT INTO People (Name) VALUES ('Dan')");
    EXPECT_EQ(given.Rows("SELECT Id FROM People WHERE Name = 'Dan'")->Get("Id").value(),
              Value(std::int32_t{4}));
  }
}

}  // namespace
}  // namespace zent::jet::testing
