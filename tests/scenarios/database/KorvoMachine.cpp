#include "scenarios/database/KorvoMachine.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zent::testing {

namespace fs = std::filesystem;

std::string OldDatabase() {
  return "CREATE TABLE [version] ([Version] TEXT(20));"
         "INSERT INTO [version] VALUES ('3.5');"
         "CREATE TABLE Companies (Name TEXT(20), Staff TEXT(10));"
         "CREATE UNIQUE INDEX PrimaryKey ON Companies (Name) WITH PRIMARY;"
         "INSERT INTO Companies VALUES ('Anvil', '7');"
         "INSERT INTO Companies VALUES ('Br\xC3\xBC"
         "cke', '12');"
         "INSERT INTO Companies VALUES ('O''Neil', NULL);"
         "CREATE TABLE Lookup (LookupFieldName TEXT(20), LookupValue TEXT(20), LookupDesc "
         "TEXT(20), "
         "DisplayOrder TEXT(5));"
         "INSERT INTO Lookup VALUES ('City', 'Ulm', 'ours', '1')";
}

std::string NewTemplate() {
  return "CREATE TABLE [version] ([Version] TEXT(20));"
         "INSERT INTO [version] VALUES ('3.6');"
         "CREATE TABLE Companies (Name TEXT(60), Staff LONG, [Web Page] TEXT(80));"
         "CREATE UNIQUE INDEX PrimaryKey ON Companies (Name) WITH PRIMARY;"
         "CREATE TABLE Lookup (LookupFieldName TEXT(20), LookupValue TEXT(20), LookupDesc "
         "TEXT(20), "
         "DisplayOrder TEXT(5));"
         "INSERT INTO Lookup VALUES ('City', 'Ulm', 'theirs', '1');"
         "INSERT INTO Lookup VALUES ('City', 'Bonn', '', '2');"
         "CREATE TABLE Campaigns (Title TEXT(30))";
}

KorvoMachine::KorvoMachine(const std::vector<std::string>& lines) : machine_(lines) {
  MakeDatabase("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb", OldDatabase());
  MakeDatabase(kTemplate, NewTemplate());
}

void KorvoMachine::MakeDatabase(const std::string& name, const std::string& script,
                                const std::string& password) const {
  const fs::path file = machine_.folder() / name;
  fs::remove(file);
  machine_.Put("script.sql", script);
  std::vector<std::string> create = {ZENT_JETDB, "create", file.string()};
  std::vector<std::string> fill = {ZENT_JETDB, "sql",        file.string(),
                                   "--file",   "script.sql", "--single-transaction"};
  if (!password.empty()) {
    create.insert(create.end(), {"--password", password});
    fill.insert(fill.end(), {"--password", password});
  }
  for (const auto& command : {create, fill}) {
    const ProgramEnd end = RunHostProgram(command, machine_.folder().string());
    ASSERT_EQ(end.exit_code, 0) << end.output;
  }
  fs::remove(machine_.folder() / "script.sql");
}

fs::path KorvoMachine::DataFolder() const {
  return machine_.folder() / "machine/drive_c/users/anna/Documents/Korvo";
}

std::vector<fs::path> KorvoMachine::Backups() const {
  std::vector<fs::path> backups;
  for (const fs::directory_entry& entry : fs::directory_iterator(DataFolder())) {
    if (entry.path().filename().string().rfind("Korvo 2", 0) == 0) backups.push_back(entry.path());
  }
  std::sort(backups.begin(), backups.end());
  return backups;
}

std::string KorvoMachine::Rows(const std::string& query, const std::string& password) const {
  return RowsOf(Korvo(), query, password);
}

std::string KorvoMachine::RowsOf(const fs::path& file, const std::string& query,
                                 const std::string& password) const {
  std::vector<std::string> command = {ZENT_JETDB, "sql", file.string(), query, "--format", "csv"};
  if (!password.empty()) command.insert(command.end(), {"--password", password});
  const ProgramEnd end = RunHostProgram(command, machine_.folder().string());
  if (end.exit_code != 0) return end.output;
  return end.output.substr(end.output.find('\n') + 1);
}

std::string KorvoMachine::Faults(const fs::path& file, const std::string& password) const {
  std::vector<std::string> command = {ZENT_JETDB, "verify", file.string(), "--quiet"};
  if (!password.empty()) command.insert(command.end(), {"--password", password});
  const ProgramEnd end = RunHostProgram(command, machine_.folder().string());
  EXPECT_EQ(end.exit_code, end.output.empty() ? 0 : 1);
  return end.output;
}

std::string KorvoMachine::Run(const std::vector<std::string>& options) const {
  std::vector<std::string> command = machine_.Command();
  command.insert(command.end(), options.begin(), options.end());
  const ProgramEnd end = RunHostProgram(command, machine_.folder().string());
  return std::to_string(end.exit_code) + "\n" + end.output;
}

}  // namespace zent::testing
