#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/DataConversion.h"
#include "dataupdate/DatabaseMachine.h"

namespace zent {
namespace {

using testing::DatabaseMachine;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// An installation of an older version with a few rows in every table.
class OldDatabase : public ::testing::Test {
 protected:
  OldDatabase() {
    for (OpenedDatabase* database : {machine.korvo.get(), machine.source.get()}) {
      machine.Execute(*database,
                      {R"(CREATE TABLE Lookup (LookupFieldName TEXT(50), LookupValue TEXT(50),
            LookupDesc TEXT(50), DisplayOrder TEXT(10)))",
                       "CREATE TABLE Aliases (Name TEXT(30), Alias TEXT(30))"});
    }
    machine.Execute(
        *machine.korvo,
        {"CREATE TABLE Links (FromID TEXT(12), ToID TEXT(12), Type SHORT, SubType SHORT)",
         R"(CREATE TABLE Reminders (RemIntID TEXT(12), ItemIntID TEXT(12),
            RemType TEXT(20), ApptType TEXT(20), ApptSubType TEXT(20),
            RemField TEXT(20), Categories TEXT(50), Owners TEXT(50),
            UserIDs TEXT(50)))",
         R"(CREATE TABLE EMailsSent (EMSentIntID TEXT(12), SentToIntID TEXT(12),
            MailType TEXT(20), Info MEMO, SentToDisplayName TEXT(50),
            SentFromName TEXT(50), UserIDs TEXT(50)))",
         R"(CREATE TABLE Consultants (ConsultantID TEXT(20), ConsIntID TEXT(12),
            DisplayName TEXT(50), UserIDs TEXT(50)))",
         "CREATE TABLE Contacts (ContactIntID TEXT(12), DisplayName TEXT(50), UserIDs TEXT(50))",
         "CREATE TABLE Companies (UserIDs TEXT(50))",
         "CREATE TABLE Requirements (UserIDs TEXT(50))",
         "CREATE TABLE EMailsLinked (UserIDs TEXT(50))",
         R"(CREATE TABLE Classifications (TableName TEXT(30),
            ClassificationType TEXT(30), ClassificationName TEXT(60)))",
         "CREATE TABLE Counters (TableName TEXT(30), CurCount TEXT(12))",
         R"(CREATE TABLE MLinkInfo (MLinkIntID TEXT(12), FromID TEXT(12),
            ToID TEXT(12), Type SHORT, SubType SHORT, MLinkType TEXT(20),
            MLinkSubType TEXT(20), Subject TEXT(50), Notes MEMO, [DateTime] DATETIME,
            CreateDate DATETIME, EditDate DATETIME, UserIDs TEXT(50)))",
         "INSERT INTO Reminders (RemIntID, ItemIntID, RemType) VALUES ('RM1', 'CN1', 'Task')",
         "INSERT INTO EMailsSent (EMSentIntID, SentToIntID) VALUES ('ES1', 'CN1')",
         "INSERT INTO Contacts VALUES ('CN1', 'Jane Smith', Null)",
         "INSERT INTO Classifications VALUES ('Contacts', 'Kind', 'Friend')",
         "INSERT INTO Links VALUES ('CS1', 'CN1', 1, 1)"});
    machine.Execute(*machine.source, {"INSERT INTO Lookup VALUES ('City', 'Rome', Null, Null)",
                                      "INSERT INTO Aliases VALUES ('Robert', 'Bob')"});
  }
  void Convert() { ConvertData(machine.run, *machine.source, *machine.korvo); }

  DatabaseMachine machine;
};

TEST_F(OldDatabase, RunsAllSectionsInTheirOrder) {
  Convert();
  EXPECT_THAT(machine.messages(),
              ElementsAre("Updating Calender Links ", "Updating Sent Mail Links ",
                          "Updating Classifications", "Updating Calendar items",
                          "Updating Lookup items", "Updating Aliases",
                          "Updating UserIDs in Companies", "Updating UserIDs in Contacts",
                          "Updating UserIDs in Consultants", "Updating UserIDs in Requirements",
                          "Updating UserIDs in EMailsLinked", "Updating UserIDs in EMailsSent",
                          "Updating UserIDs in Reminders", "Updating Manual Links "));
  EXPECT_THAT(machine.window.questions, SizeIs(0));
  EXPECT_THAT(machine.Rows("SELECT * FROM Links"), SizeIs(3));
  EXPECT_THAT(machine.Rows("SELECT * FROM Lookup"), SizeIs(2));
  EXPECT_THAT(machine.Rows("SELECT * FROM MLinkInfo"), SizeIs(1));
}

TEST_F(OldDatabase, ASecondTimeAddsTheLinksAgainAndNothingElse) {
  Convert();
  machine.Execute(*machine.korvo, {"UPDATE Contacts SET UserIDs = ',max,'"});
  Convert();
  EXPECT_THAT(machine.Rows("SELECT * FROM Links"), SizeIs(5));
  EXPECT_THAT(machine.Rows("SELECT * FROM MLinkInfo"), SizeIs(2));
  EXPECT_THAT(machine.Rows("SELECT * FROM Lookup"), SizeIs(2));
  EXPECT_THAT(machine.Rows("SELECT * FROM Aliases"), SizeIs(1));
  EXPECT_THAT(machine.Rows("SELECT UserIDs FROM Contacts"), ElementsAre(",max,"));
}

TEST_F(OldDatabase, RunsToItsEndOverADatabaseThatCannotBeWritten) {
  machine.korvo.reset();
  machine.korvo =
      std::move(machine.engine.Open({.path = DatabaseMachine::kKorvo, .read_only = true}).value());
  Convert();
  EXPECT_EQ(machine.messages().back(), "Updating Manual Links ");
  EXPECT_THAT(machine.window.boxes, Each(HasSubstr("read-only")));
  EXPECT_THAT(machine.window.boxes.front(), StartsWith("Error creating links \r\nDescription: "));
  EXPECT_THAT(machine.window.boxes.back(), StartsWith("Fatal Error - Could not get the Next "));
  EXPECT_THAT(machine.Rows("SELECT * FROM Links"), SizeIs(1));
}

}  // namespace
}  // namespace zent
