#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/Conversion.h"
#include "dataupdate/DatabaseMachine.h"

namespace zent {
namespace {

using testing::DatabaseMachine;
using ::testing::ElementsAre;

TEST(UserOf, IsTheFirstWordOrEverybody) {
  struct Row {
    const char* owner;
    const char* user;
  };
  for (const Row& row : {Row{"", "(All)"}, Row{"   ", "(All)"}, Row{"jane", "jane"},
                         Row{"  Jane Smith  ", "Jane"}, Row{"Jane Ann Smith", "Jane"}}) {
    EXPECT_EQ(UserOf(row.owner), row.user) << row.owner;
  }
}

struct ReminderCase {
  const char* what;
  const char* before;  ///< RemType, RemField, Categories
  const char* after;   ///< RemType, ApptType, ApptSubType, RemField, Categories
};

TEST(RetypeReminders, FollowsTheOldTypes) {
  const ReminderCase rows[] = {
      {"a call", "'Appt', 'Phone Call', 'c'", "Appointment|Call|null||c"},
      {"a mail", "'Appt', 'EMail', 'c'", "Appointment|EMail|null||c"},
      {"a meeting", "'Appt', 'Meeting', Null", "Appointment|Meeting|null||null"},
      {"another appointment", "'Appt', 'Lunch', 'c'", "Appointment|Other|null||c"},
      {"an appointment of no kind", "'Appt', Null, 'c'", "Appointment|Other|null||c"},
      {"a task", "'Task', 'keep', 'c'", "Appointment|Task|null|keep|c"},
      {"a birthday", "'DayEvent', 'DOB', 'c'", "Appointment|Event|Birthday|DOB|"},
      {"an anniversary", "'DayEvent', 'DOM', 'c'", "Appointment|Event|Anniversary|DOM|"},
      {"an employment date", "'DayEvent', 'DOE', 'c'", "Appointment|Event|Employment Date|DOE|"},
      {"a termination date", "'DayEvent', 'DOT', 'c'", "Appointment|Event|Termination Date|DOT|"},
      {"another event", "'DayEvent', 'XX', 'Fair'", "Appointment|Event|Fair|XX|"},
      {"a type in another case stays", "'appt', 'EMail', 'c'", "appt|null|null|EMail|c"},
      {"another type stays", "'Other', 'EMail', 'c'", "Other|null|null|EMail|c"},
  };
  for (const ReminderCase& row : rows) {
    SCOPED_TRACE(row.what);
    DatabaseMachine machine;
    machine.Execute(*machine.korvo,
                    {"CREATE TABLE Reminders (RemType TEXT(20), RemField TEXT(20), Categories "
                     "TEXT(50), ApptType TEXT(20), ApptSubType TEXT(20))",
                     "INSERT INTO Reminders (RemType, RemField, Categories) VALUES (" +
                         std::string(row.before) + ")"});
    Conversion conversion(machine.run, *machine.source, *machine.korvo);
    RetypeReminders(conversion);
    EXPECT_THAT(machine.Rows("SELECT RemType, ApptType, ApptSubType, RemField, Categories FROM "
                             "Reminders"),
                ElementsAre(row.after));
    EXPECT_THAT(machine.messages(), ElementsAre("Updating Calendar items"));
  }
}

TEST(RetypeReminders, CategoriesThatDoNotFitStayWhereTheyAre) {
  DatabaseMachine machine;
  machine.Execute(*machine.korvo,
                  {"CREATE TABLE Reminders (RemType TEXT(20), RemField TEXT(20), Categories "
                   "TEXT(50), ApptType TEXT(20), ApptSubType TEXT(5))",
                   "INSERT INTO Reminders (RemType, RemField, Categories) VALUES ('DayEvent', "
                   "'XX', 'longer than five')"});
  Conversion conversion(machine.run, *machine.source, *machine.korvo);
  RetypeReminders(conversion);
  EXPECT_EQ(machine.window.questions.size(), 1U);
  EXPECT_THAT(machine.Rows("SELECT RemType, Categories FROM Reminders"),
              ElementsAre("DayEvent|longer than five"));
}

struct UnreadCase {
  const char* type;
  const char* after;  ///< RemType, ApptType
  std::size_t boxes;
};

TEST(RetypeReminders, ReadsOnlyWhatTheTypeNeeds) {
  constexpr UnreadCase kRows[] = {
      {"Task", "Appointment|Task", 0},
      {"Other", "Other|null", 0},
      {"Appt", "Appt|null", 1},
      {"DayEvent", "DayEvent|null", 1},
  };
  for (const UnreadCase& row : kRows) {
    SCOPED_TRACE(row.type);
    DatabaseMachine machine;  // without RemField
    machine.Execute(*machine.korvo,
                    {"CREATE TABLE Reminders (RemType TEXT(20), Categories TEXT(50), ApptType "
                     "TEXT(20), ApptSubType TEXT(20))",
                     "INSERT INTO Reminders (RemType) VALUES ('" + std::string(row.type) + "')"});
    Conversion conversion(machine.run, *machine.source, *machine.korvo);
    RetypeReminders(conversion);
    EXPECT_THAT(machine.Rows("SELECT RemType, ApptType FROM Reminders"), ElementsAre(row.after));
    EXPECT_EQ(machine.window.questions.size(), row.boxes);
  }
}

class Users : public ::testing::Test {
 protected:
  Users() : conversion(machine.run, *machine.source, *machine.korvo) {
    for (const char* table :
         {"Companies", "Contacts", "Consultants", "Requirements", "EMailsLinked"}) {
      machine.Execute(*machine.korvo,
                      {std::string("CREATE TABLE ") + table + " (UserIDs TEXT(50))"});
    }
    machine.Execute(*machine.korvo,
                    {"CREATE TABLE EMailsSent (UserIDs TEXT(50), SentFromName TEXT(50))",
                     "CREATE TABLE Reminders (UserIDs TEXT(50), Owners TEXT(50))"});
  }

  DatabaseMachine machine;
  Conversion conversion;
};

TEST_F(Users, BlankListsAreFilled) {
  machine.Execute(*machine.korvo,
                  {"INSERT INTO Contacts VALUES (Null)", "INSERT INTO Contacts VALUES (',max,')",
                   "INSERT INTO EMailsSent VALUES (Null, ' Jane Smith ')",
                   "INSERT INTO EMailsSent VALUES ('  ', Null)",
                   "INSERT INTO Reminders VALUES (Null, '  First Last  ')"});
  FillUsers(conversion);
  EXPECT_THAT(machine.Rows("SELECT UserIDs FROM Contacts"), ElementsAre(",(All),", ",max,"));
  EXPECT_THAT(machine.Rows("SELECT UserIDs FROM EMailsSent"), ElementsAre(",Jane,", ",(All),"));
  EXPECT_THAT(machine.Rows("SELECT UserIDs FROM Reminders"), ElementsAre(",First,"));
  EXPECT_THAT(machine.messages(),
              ElementsAre("Updating UserIDs in Companies", "Updating UserIDs in Contacts",
                          "Updating UserIDs in Consultants", "Updating UserIDs in Requirements",
                          "Updating UserIDs in EMailsLinked", "Updating UserIDs in EMailsSent",
                          "Updating UserIDs in Reminders"));
}

TEST_F(Users, EveryRowCountsAnewInEachTable) {
  for (int i = 0; i < 199; ++i) {
    const std::string list = i % 2 == 0 ? "',x,'" : "Null";
    machine.Execute(*machine.korvo, {"INSERT INTO Contacts VALUES (" + list + ")",
                                     "INSERT INTO Consultants VALUES (" + list + ")"});
  }
  FillUsers(conversion);
  EXPECT_THAT(machine.observer.progress, ElementsAre(" (100)", " (100)"));
}

TEST_F(Users, AnOwnerThatCannotBeReadLeavesTheRowAsItIs) {
  machine.Execute(
      *machine.korvo,
      {"DROP TABLE Reminders", "CREATE TABLE Reminders (UserIDs TEXT(50))",
       "INSERT INTO Reminders VALUES (Null)", "INSERT INTO Reminders VALUES (',max,')"});
  FillUsers(conversion);
  EXPECT_THAT(machine.Rows("SELECT UserIDs FROM Reminders"), ElementsAre("null", ",max,"));
  EXPECT_EQ(machine.window.questions.size(), 1U);
}

TEST_F(Users, ATableWithoutTheFieldCostsABoxARow) {
  machine.Execute(*machine.korvo,
                  {"DROP TABLE Contacts", "CREATE TABLE Contacts (Name TEXT(10))",
                   "INSERT INTO Contacts VALUES ('a')", "INSERT INTO Contacts VALUES ('b')"});
  FillUsers(conversion);
  EXPECT_EQ(machine.window.questions.size(), 2U);
}

}  // namespace
}  // namespace zent
