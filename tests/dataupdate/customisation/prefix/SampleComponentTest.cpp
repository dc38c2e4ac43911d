#include <gtest/gtest.h>

#include "platform/prefix/session/WaitedStart.h"
#include "scenarios/HostProgram.h"
#include "support/TempFolder.h"

/// The component of the sample machine on a real database.
namespace zent {
namespace {

using testing::RunHostProgram;
using testing::TempFolder;

constexpr const char* kDatabase = R"(C:\My Data\Korvo.mdb)";

struct SampleComponent : ::testing::Test {
  SampleComponent() {
    machine.Put("drive_c/My Data/Readme.txt", "");
    std::filesystem::create_directories(machine.path() / "dosdevices");
    std::filesystem::create_symlink("../drive_c", machine.path() / "dosdevices/c:");
    Jetdb({"create", database});
    Jetdb({"sql", database, "CREATE TABLE Lists (Item TEXT(20))"});
  }

  static std::string Jetdb(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), ZENT_JETDB);
    const testing::ProgramEnd end = RunHostProgram(arguments, "/");
    EXPECT_EQ(end.exit_code, 0) << end.output;
    return end.output;
  }
  std::string Items() const {
    return Jetdb({"sql", database, "--format", "csv", "SELECT Item FROM Lists"});
  }
  void PutRecorded(const std::string& name, const std::string& text) const {
    machine.Put("drive_c/My Data/Customize/" + name, text);
  }
  ProgramEnd RunOn(const std::string& path) const {
    const auto started =
        StartWaited({.program = ZENT_SAMPLE_COMPONENT,
                     .arguments = {path, R"(C:\My Data\Customize)", R"(C:\Zent\Temp)"},
                     .folder = machine.path(),
                     .environment = {"WINEPREFIX=" + machine.path().string()}});
    if (!started.ok()) return {251, started.error().description};
    const auto ended = started.value()->Wait(std::chrono::seconds(30));
    return ended.ok() && ended.value() ? *ended.value() : ProgramEnd{251, "it runs on and on"};
  }

  TempFolder machine;
  std::string database = (machine.path() / "drive_c/My Data/Korvo.mdb").string();
};

TEST_F(SampleComponent, RunsTheStatementsOfEveryFileInOrder) {
  PutRecorded("20 Names.SQL", "UPDATE Lists SET Item = Item & ' b'");
  PutRecorded("10 Lists.sql", "-- Ours.\nINSERT INTO Lists VALUES ('a; c');\n");
  PutRecorded("Customize.ini", "[General]\n");

  const ProgramEnd end = RunOn(kDatabase);

  EXPECT_EQ(end.exit_code, 0U) << end.error_text;
  EXPECT_EQ(end.error_text, "");
  EXPECT_EQ(Items(), "Item\na; c b\n");
}

TEST_F(SampleComponent, DoesNothingWhereNothingIsRecorded) {
  EXPECT_EQ(RunOn(kDatabase).exit_code, 0U);
  EXPECT_EQ(Items(), "Item\n");
}

TEST_F(SampleComponent, ChangesNothingWhenAStatementFails) {
  PutRecorded("10.sql", "INSERT INTO Lists VALUES ('a')");
  PutRecorded("20.sql", "INSERT INTO Lists VALUES ('b');\nDELETE FROM Nothing");

  const ProgramEnd end = RunOn(kDatabase);

  EXPECT_EQ(end.exit_code, 1U);
  EXPECT_TRUE(end.error_text.starts_with("3078: ")) << end.error_text;
  EXPECT_TRUE(end.error_text.ends_with(" [statement of line 2] of 20.sql\n")) << end.error_text;
  EXPECT_EQ(Items(), "Item\n");
}

struct UnopenedCase {
  const char* what;
  const char* database;
  const char* number;
};

constexpr UnopenedCase kUnopenedCases[] = {
    {"no such file", R"(C:\My Data\None.mdb)", "3024: "},
    {"no database", R"(C:\My Data\Readme.txt)", "3343: "},
    {"a database of a server", "DSN=Korvo;UID=anna;", "3024: "},
};

TEST_F(SampleComponent, TellsADatabaseThatItCannotOpenFromAnError) {
  for (const UnopenedCase& row : kUnopenedCases) {
    SCOPED_TRACE(row.what);
    const ProgramEnd end = RunOn(row.database);
    EXPECT_EQ(end.exit_code, 2U);
    EXPECT_TRUE(end.error_text.starts_with(row.number)) << end.error_text;
  }
}

}  // namespace
}  // namespace zent
