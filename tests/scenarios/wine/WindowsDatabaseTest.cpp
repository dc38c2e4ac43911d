#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "contracts/ContractDatabase.h"
#include "database/engines/jet/JetEngine.h"
#include "jet/host/posix/PosixStorage.h"
#include "scenarios/wine/UpdatedMachine.h"

/// What the program for Windows makes of Access files, as the engine reads them on this machine.
namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

constexpr int kWarnings = 10;
constexpr const char* kSynchronise = R"(stdf,Template.mdb,$(apppath)\Old.mdb,force)";
constexpr const char* kWindowsPath = R"(C:\Program Files\Zent\Old.mdb)";

const std::vector<std::string> kOldDatabase = {
    "CREATE TABLE [version] ([Version] TEXT(20))",
    "INSERT INTO [version] VALUES ('3.5')",
    "CREATE TABLE Companies (Name TEXT(20), Staff TEXT(10))",
    "CREATE UNIQUE INDEX PrimaryKey ON Companies (Name) WITH PRIMARY",
    "INSERT INTO Companies VALUES ('Anvil', '7')",
    "INSERT INTO Companies VALUES ('Br\u00FCcke', '12')",
};

const std::vector<std::string> kTemplate = {
    "CREATE TABLE [version] ([Version] TEXT(20))",
    "INSERT INTO [version] VALUES ('3.6')",
    "CREATE TABLE Companies (Name TEXT(60), Staff LONG, [Web Page] TEXT(80))",
    "CREATE UNIQUE INDEX PrimaryKey ON Companies (Name) WITH PRIMARY",
    "CREATE TABLE Campaigns (Title TEXT(30))",
};

void MakeDatabase(const fs::path& file, const std::vector<std::string>& statements) {
  jet::PosixStorage storage;
  jet::Workspace workspace(storage);
  const auto made = workspace.CreateDatabase(file.string());
  ASSERT_TRUE(made.ok()) << made.error().description;
  for (const std::string& statement : statements) {
    const Status done = made.value()->Execute(statement);
    ASSERT_TRUE(done.ok()) << statement << ": " << done.error().description;
  }
}

std::vector<std::string> RowsIn(const fs::path& file, const char* query) {
  jet::PosixStorage storage;
  JetEngine engine(storage, {});
  const auto database = engine.Open({.path = file.string()});
  if (!database.ok()) return {database.error().description};
  const auto rows = database.value()->OpenRecordset(query, RecordsetUse::Read);
  if (!rows.ok()) return {rows.error().description};
  std::vector<std::string> texts;
  while (!rows.value()->AtEnd()) {
    texts.push_back(RowText(*rows.value()));
    EXPECT_TRUE(rows.value()->MoveNext().ok());
  }
  return texts;
}

/// A machine with a database of version 3.5, and a package with its template of version 3.6.
class WindowsDatabase : public ::testing::Test {
 protected:
  WindowsDatabase() {
    MakeDatabase(given.folder().path() / "package/Template.mdb", kTemplate);
    MakeDatabase(file, kOldDatabase);
  }

  /// What lies beside the database and begins with its name.
  std::vector<fs::path> FilesBesideIt() const {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(file.parent_path())) {
      const std::string name = entry.path().filename().string();
      if (name.rfind("Old", 0) == 0 && name != "Old.mdb") files.push_back(entry.path());
    }
    return files;
  }

  const UpdatedMachine given{{kSynchronise}};
  const fs::path file = given.File("Program Files/Zent/Old.mdb");
};

TEST_F(WindowsDatabase, IsBroughtUpToItsTemplate) {
  const ProgramEnd end = given.Run();

  EXPECT_EQ(end.exit_code, 0) << end.output << given.Log();
  EXPECT_THAT(given.Records(), HasSubstr("4 stdf done"));
  EXPECT_THAT(given.Log(), HasSubstr(std::string("  Sync ") + kWindowsPath + "\n"));
  EXPECT_THAT(RowsIn(file, "SELECT * FROM [version]"), ElementsAre("3.6"));
  EXPECT_THAT(RowsIn(file, "SELECT Name, Staff, [Web Page] FROM Companies ORDER BY Name"),
              ElementsAre("Anvil|7|null", "Br\u00FCcke|12|null"));
  EXPECT_THAT(RowsIn(file, "SELECT Title FROM Campaigns"), SizeIs(0));
  const std::vector<fs::path> beside = FilesBesideIt();
  ASSERT_THAT(beside, SizeIs(1)) << "the backup alone";
  EXPECT_THAT(RowsIn(beside[0], "SELECT * FROM [version]"), ElementsAre("3.5"));
}

TEST_F(WindowsDatabase, ThatAnotherProgramHoldsIsLeftAlone) {
  const std::string bytes = ReadHostFile(file);
  HeldFile held(given, kWindowsPath, false);
  ASSERT_TRUE(held.held());

  const ProgramEnd end = given.Run({"--detailed-exitcode"});

  EXPECT_EQ(end.exit_code, kWarnings) << end.output;
  EXPECT_THAT(given.Records(), HasSubstr("box RetryCancel -> cancel: "));
  EXPECT_THAT(given.Records(), HasSubstr("4 stdf failed"));
  EXPECT_THAT(given.Log(), HasSubstr(std::string("  Could not open database ") + kWindowsPath));
  EXPECT_EQ(ReadHostFile(file), bytes);
  EXPECT_THAT(FilesBesideIt(), SizeIs(0));

  held.Release();
  EXPECT_EQ(given.Run().exit_code, 0);
  EXPECT_THAT(RowsIn(file, "SELECT * FROM [version]"), ElementsAre("3.6"));
}

}  // namespace
}  // namespace zent::testing
