#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/database/OldRecords.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

std::string OldData() {
  return "CREATE TABLE Links (FromID TEXT(12), ToID TEXT(12), [Type] SHORT, SubType SHORT);"
         "CREATE TABLE Reminders (RemIntID TEXT(12), ItemIntID TEXT(12), RemType TEXT(20), "
         "ApptType "
         "TEXT(20), ApptSubType TEXT(30), RemField TEXT(20), Categories TEXT(50), Owners TEXT(50), "
         "UserIDs TEXT(50));"
         "INSERT INTO Reminders VALUES ('RM1', 'CN1', 'DayEvent', NULL, NULL, 'DOE', 'x', ' Ada "
         "L', "
         "NULL);"
         "CREATE TABLE Lookup (LookupFieldName TEXT(20), LookupValue TEXT(20), LookupDesc "
         "TEXT(20), "
         "DisplayOrder TEXT(5))";
}

std::string Convert(const KorvoMachine& given, std::vector<std::string> more) {
  more.insert(more.begin(), {ZENT_PROGRAM, "convert"});
  more.insert(more.end(), {"--console", "--unattended"});
  const ProgramEnd end = RunHostProgram(more, given.machine().folder().string());
  return std::to_string(end.exit_code) + "\n" + end.output;
}

class ConvertVerb : public ::testing::Test {
 protected:
  ConvertVerb() { given.MakeDatabase("Old.mdb", OldData()); }
  fs::path Old() const { return given.machine().folder() / "Old.mdb"; }
  KorvoMachine given{{}};
};

TEST_F(ConvertVerb, RestatesADatabaseOfTheHostAndGoesOnAfterErrors) {
  const std::string end =
      Convert(given, {KorvoMachine::kTemplate, "Old.mdb", "--detailed-exitcode"});
  // Tables that this database lacks cost a box each.
  EXPECT_THAT(
      end, AllOf(StartsWith("10\n"), HasSubstr("Error creating links"),
                 HasSubstr("  Updating Manual Links \n"), HasSubstr("  Conversion completed.\n")));
  EXPECT_EQ(given.RowsOf(Old(), "SELECT FromID, ToID FROM Links"), "RM1,CN1\n");
  EXPECT_EQ(given.RowsOf(Old(),
                         "SELECT RemType, ApptType, ApptSubType, Categories, UserIDs FROM "
                         "Reminders"),
            "Appointment,Event,Employment Date,,\",Ada,\"\n");
  EXPECT_EQ(given.RowsOf(Old(), "SELECT LookupValue FROM Lookup ORDER BY DisplayOrder"),
            "Ulm\nBonn\n");
  EXPECT_EQ(given.Faults(Old()), "");
}

struct ConvertedCase {
  const char* what;
  const char* query;
  const char* rows;
};

constexpr ConvertedCase kConvertedCases[] = {
    {"a calendar link", "SELECT ToID, [Type], SubType FROM Links WHERE FromID = 'RM00000001'",
     "CN00000002,1,1\n"},
    {"the link of a mail", "SELECT ToID FROM Links WHERE FromID = 'ES00000030'", "CS00000010\n"},
    {"the consultants of resumes",
     "SELECT ToID, FromID FROM Links WHERE ToID LIKE 'ES*' ORDER BY ToID, FromID",
     "ES00000010,CS00000001\nES00000010,CS00000011\nES00000020,CS00000002\n"
     "ES00000020,CS00000012\nES00000030,CS00000003\nES00000030,CS00000013\n"},
    {"the names of receivers",
     "SELECT SentToDisplayName FROM EMailsSent WHERE EMSentIntID > 'ES00000028' ORDER BY "
     "EMSentIntID",
     "Contact 29\nConsultant 10\n"},
    {"a value that was there",
     "SELECT LookupDesc, DisplayOrder FROM Lookup WHERE LookupFieldName = 'Contacts.Kind' AND "
     "LookupValue = 'Kind 1'",
     "ours,7\n"},
    {"kinds of calendar items",
     "SELECT ApptType, COUNT(*) FROM Reminders WHERE RemType = 'Appointment' GROUP BY ApptType "
     "ORDER BY ApptType",
     "Call,3\nEMail,4\nEvent,15\nMeeting,4\nOther,4\nTask,15\n"},
    {"kinds of events",
     "SELECT ApptSubType, COUNT(*) FROM Reminders WHERE ApptType = 'Event' GROUP BY ApptSubType "
     "ORDER BY ApptSubType",
     "Anniversary,3\nBirthday,3\nEmployment Date,3\nTermination Date,3\nTrade,3\n"},
    {"other calendar items", "SELECT COUNT(*) FROM Reminders WHERE RemType = 'Note'", "15\n"},
    {"a value that came", "SELECT DisplayOrder FROM Lookup WHERE LookupValue = 'Town 30'", "30\n"},
    {"an alias that came", "SELECT Alias FROM Aliases WHERE Name = 'Name 12'", "Alias 12\n"},
    {"who sees a contact",
     "SELECT UserIDs, COUNT(*) FROM Contacts GROUP BY UserIDs ORDER BY UserIDs",
     "\",(All),\",30\n\",max,\",10\n"},
    {"who sees a mail",
     "SELECT UserIDs, COUNT(*) FROM EMailsSent GROUP BY UserIDs ORDER BY UserIDs",
     "\",(All),\",15\n\",Ada,\",15\n"},
    {"who sees a reminder",
     "SELECT UserIDs, COUNT(*) FROM Reminders GROUP BY UserIDs ORDER BY UserIDs",
     "\",(All),\",30\n\",Grace,\",30\n"},
    {"the described links",
     "SELECT MLinkIntID, FromID, ToID, [Type], SubType, UserIDs FROM MLinkInfo ORDER BY MLinkIntID",
     "ML00000001,CS00000001,CN00000001,1,2,\",(All),\"\n"
     "ML00000002,CS00000002,RQ00000001,3,4,\",(All),\"\n"},
    {"the counter", "SELECT CurCount FROM Counters WHERE TableName = 'MLinkInfo'", "ML00000002\n"},
};

TEST_F(ConvertVerb, RestatesEverythingOfAWholeDatabaseWithoutABox) {
  given.MakeDatabase("Old.mdb", OldRecords());
  given.MakeDatabase("New.mdb", NewLists());

  EXPECT_THAT(
      Convert(given, {"New.mdb", "Old.mdb", "--detailed-exitcode"}),
      AllOf(StartsWith("0\n"), Not(HasSubstr("Error")), HasSubstr("  Conversion completed.\n")));

  const std::vector<std::string> counts = SectionCountsOf(given, Old());
  ASSERT_EQ(counts.size(), std::size(kSectionCounts));
  for (std::size_t i = 0; i < counts.size(); ++i) {
    EXPECT_EQ(counts[i], std::to_string(kSectionCounts[i].after)) << kSectionCounts[i].counted;
  }
  for (const ConvertedCase& row : kConvertedCases) {
    EXPECT_EQ(given.RowsOf(Old(), row.query), row.rows) << row.what;
  }
  EXPECT_EQ(given.Faults(Old()), "");
}

TEST_F(ConvertVerb, TellsADatabaseThatIsNotThere) {
  EXPECT_THAT(Convert(given, {"Nowhere.mdb", "Old.mdb"}),
              AllOf(StartsWith("1\n"), HasSubstr("Error converting "), HasSubstr("Number: 3024"),
                    HasSubstr("  Conversion failed.\n")));
  EXPECT_EQ(given.RowsOf(Old(), "SELECT * FROM Links"), "");
}

TEST_F(ConvertVerb, HidesEveryPasswordOfAServer) {
  const std::string server = "DSN=Nowhere;PWD=Geheim1;UID=anna;PWD={Ge;heim2};";
  const std::string events = (given.machine().folder() / "events").string();
  const std::string end = Convert(given, {"Old.mdb", server, "--events", events});
  EXPECT_THAT(end, HasSubstr("  Converting DSN=Nowhere;************UID=anna;***************\n"));
  EXPECT_THAT(ReadHostFile(events), HasSubstr("DSN=Nowhere;************UID=anna;***************"));
}

TEST_F(ConvertVerb, TakesTheStoredPasswordOfAMachine) {
  given.MakeDatabase("Locked.mdb", OldData(), "secret");
  given.machine().Put("answers", "text:secret\n");
  const std::string machine = (given.machine().folder() / "machine").string();
  const std::string answers = (given.machine().folder() / "answers").string();
  // Asked for once, and kept by the machine.
  EXPECT_THAT(Convert(given, {KorvoMachine::kTemplate, "Locked.mdb", "--machine", machine,
                              "--answers", answers}),
              StartsWith("0\n"));
  EXPECT_THAT(Convert(given, {KorvoMachine::kTemplate, "Locked.mdb", "--machine", machine}),
              StartsWith("0\n"));
  EXPECT_THAT(Convert(given, {KorvoMachine::kTemplate, "Locked.mdb"}), StartsWith("1\n"));
}

}  // namespace
}  // namespace zent::testing
