#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/database/KorvoMachine.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

const std::vector<std::string> kWholePackage = {
    R"(mkdr,$(apppath)\Customize)", R"(copy,Template.mdb,$(apppath)\Customize\KorvoTPL.mdb)",
    R"(stdf,$(apppath)\Customize\KorvoTPL.mdb,$(datapath)\Korvo.mdb)", "upddb,Fields.xml",
    "importlookup,Items.txt"};

/// The rows of a table as a reader tells them that is not ours.
std::string MdbExport(const fs::path& file, const char* table) {
  return RunHostProgram({ZENT_MDB_EXPORT, "-H", file.string(), table}, "/").output;
}

TEST(DatabasePackage, BringsStructureFieldsAndListsAndKeepsTheRows) {
  const KorvoMachine given(kWholePackage);
  given.machine().Put("package/Fields.xml",
                      "<UpdateDB><Version>3.6-1</Version><Table><Name>Companies</Name><AddField>"
                      "<Name>Founded In</Name><Type>Integer</Type></AddField></Table></UpdateDB>");
  // The document's version is that of the template's record: it has nothing to do.
  given.machine().Put("package/Items.txt",
                      "LookupFieldName,LookupValue,LookupDesc,DisplayOrder\r\n"
                      "City,Ulm,not again,1\r\n\"City\",\"K\xF6ln\",\"\",3\r\n");

  const std::string end = given.Run();

  EXPECT_THAT(end,
              AllOf(StartsWith("0\n"), HasSubstr("  Checking DB Version\n  Backing up C:"),
                    HasSubstr("  Sync C:\\users\\anna\\Documents\\Korvo\\Korvo.mdb\n"),
                    HasSubstr("  Updating Lookup items\n  Compacting C:"),
                    HasSubstr("  Importing Lookup Items\n"), Not(HasSubstr("Updating Database"))));
  EXPECT_EQ(given.Rows("SELECT * FROM [version]"), "3.6\n");
  EXPECT_EQ(given.Rows("SELECT Name, Staff FROM Companies ORDER BY Name"), kOldCompanies);
  EXPECT_EQ(given.Rows("SELECT * FROM Lookup ORDER BY DisplayOrder"),
            "City,Ulm,ours,1\nCity,Bonn,,2\nCity,K\xC3\xB6ln,,3\n");
  EXPECT_EQ(MdbExport(given.Korvo(), "Companies"),
            "\"Anvil\",7,\n\"Br\xC3\xBC"
            "cke\",12,\n\"O'Neil\",,\n");
  EXPECT_EQ(given.Faults(given.Korvo()), "");
  ASSERT_THAT(given.Backups(), SizeIs(1));
  EXPECT_EQ(given.RowsOf(given.Backups()[0], "SELECT Name, Staff FROM Companies ORDER BY Name"),
            kOldCompanies);
  EXPECT_EQ(given.RowsOf(given.Backups()[0], "SELECT * FROM [version]"), "3.5\n");
}

TEST(DatabasePackage, AddsFieldsToTheDatabaseAndToTheTemplate) {
  const KorvoMachine given(kWholePackage);
  given.machine().Put("package/Fields.xml",
                      "<UpdateDB><Version>3.7</Version><Table><Name>Companies</Name><AddField>"
                      "<Name>Founded In</Name><Type>Integer</Type></AddField></Table></UpdateDB>");
  given.machine().Put("package/Items.txt", "");
  EXPECT_THAT(given.Run(), AllOf(StartsWith("0\n"), HasSubstr("  Updating Database C:")));
  EXPECT_EQ(given.Rows("SELECT [Founded In] FROM Companies WHERE Name = 'Anvil'"), "\n");
  const fs::path pattern =
      given.machine().folder() / "machine/drive_c/Program Files/Zent/Customize/KorvoTPL.mdb";
  EXPECT_EQ(given.RowsOf(pattern, "SELECT [Founded In] FROM Companies"), "");
  EXPECT_EQ(given.Faults(given.Korvo()), "");
  EXPECT_EQ(given.Faults(pattern), "");
}

TEST(DatabasePackage, LeavesADatabaseOfTheTemplatesVersionAlone) {
  const KorvoMachine given({KorvoMachine::kSynchronise, KorvoMachine::kSynchronise});
  ASSERT_THAT(given.Run(), StartsWith("0\n"));
  const std::string bytes = ReadHostFile(given.Korvo());
  ASSERT_THAT(given.Run(), StartsWith("0\n"));
  EXPECT_EQ(ReadHostFile(given.Korvo()), bytes);
  EXPECT_THAT(given.Backups(), SizeIs(1));
}

// What the template lacks stays: only its version record takes the place of the one that is there.
TEST(DatabasePackage, AnOlderTemplateTakesNothingAway) {
  const KorvoMachine given({KorvoMachine::kSynchronise});
  given.MakeDatabase(KorvoMachine::kTemplate,
                     "CREATE TABLE [version] ([Version] TEXT(20));"
                     "INSERT INTO [version] VALUES ('3.0');"
                     "CREATE TABLE Companies (Name TEXT(5))");
  EXPECT_THAT(given.Run(), StartsWith("0\n"));
  EXPECT_EQ(given.Rows("SELECT * FROM [version]"), "3.0\n");
  EXPECT_EQ(given.Rows("SELECT Name, Staff FROM Companies ORDER BY Name"), kOldCompanies);
  EXPECT_EQ(given.Rows("SELECT COUNT(*) FROM Lookup"), "1\n");
}

// The numbers of rows that are gone may stand in exports and letters.
TEST(DatabasePackage, ARebuiltTableGivesNoNumberTwice) {
  const KorvoMachine given({KorvoMachine::kSynchronise});
  given.MakeDatabase("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb",
                     OldDatabase() +
                         ";CREATE TABLE Calls (Id COUNTER, Subject TEXT(10));"
                         "INSERT INTO Calls (Subject) VALUES ('a');"
                         "INSERT INTO Calls (Subject) VALUES ('b');"
                         "DELETE FROM Calls WHERE Subject = 'b';"
                         "CREATE TABLE Notes (Id COUNTER, Subject TEXT(10));"
                         "INSERT INTO Notes (Subject) VALUES ('a');"
                         "DELETE FROM Notes");
  given.MakeDatabase(KorvoMachine::kTemplate,
                     NewTemplate() +
                         ";CREATE TABLE Calls (Id COUNTER, Subject TEXT(40));"
                         "CREATE TABLE Notes (Id COUNTER, Subject TEXT(40))");
  ASSERT_THAT(given.Run(), StartsWith("0\n"));
  given.Rows("INSERT INTO Calls (Subject) VALUES ('" + std::string(40, 'c') + "')");
  given.Rows("INSERT INTO Notes (Subject) VALUES ('" + std::string(40, 'c') + "')");
  EXPECT_EQ(given.Rows("SELECT Id FROM Calls ORDER BY Id"), "1\n3\n");
  EXPECT_EQ(given.Rows("SELECT Id FROM Notes"), "2\n");
  EXPECT_EQ(given.Faults(given.Korvo()), "");
}

TEST(DatabasePackage, AsksForAPasswordOnceAndKnowsItFromThenOn) {
  const KorvoMachine given({KorvoMachine::kSynchronise, R"(importlookup,Items.txt)"});
  given.MakeDatabase("machine/drive_c/users/anna/Documents/Korvo/Korvo.mdb", OldDatabase(),
                     "s\xC3\xA9same");
  given.machine().Put("package/Items.txt", "City,Bern\r\n");
  given.machine().Put("answers", "text:s\xC3\xA9same\n");
  const std::string answers = (given.machine().folder() / "answers").string();
  const std::string log = (given.machine().folder() / "events").string();

  const std::string end = given.Run({"--answers", answers, "--events", log});

  EXPECT_THAT(end, StartsWith("0\n"));
  EXPECT_THAT(end + ReadHostFile(log), Not(HasSubstr("same\"")));
  EXPECT_EQ(given.Rows("SELECT COUNT(*) FROM Lookup", "s\xC3\xA9same"), "3\n");
  EXPECT_EQ(given.Faults(given.Korvo(), "s\xC3\xA9same"), "");
}

}  // namespace
}  // namespace zent::testing
