#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "dataupdate/Conversion.h"
#include "dataupdate/DatabaseMachine.h"

namespace zent {
namespace {

using ::testing::Contains;
using testing::DatabaseMachine;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

struct LineCase {
  const char* what;
  std::string line;
  const char* consultant;
};

TEST(ConsultantOn, IsBetweenTheTenthCharacterAndTheSemicolon) {
  const LineCase rows[] = {
      {"as it is written", "ConsultantC-17;more text", "C-17"},
      {"another first word of ten characters", "Jane Smith42;", "42"},
      {"ten characters that are not ten bytes", "J\u00fcrgen B\u00f6l7;", "7"},
      {"CC", "CC        C-17;", ""},
      {"BCC", "BCC       C-17;", ""},
      {"an attachment", "AttachmentC-17;", ""},
      {"cc in small letters is a name", "cc        C-17;", "C-17"},
      {"a semicolon before the eleventh character alone", "Cons;ultantC-17", ""},
      {"one before and one behind", "Cons;ultant7;", "t7"},
      {"nothing between", "Consultant;", ""},
      {"no semicolon", "ConsultantC-17", ""},
      {"blanks at the start", "          C-17;", ""},
      {"a short line", "x;", ""},
      {"an empty line", "", ""},
  };
  for (const LineCase& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(ConsultantOn(row.line), row.consultant);
  }
}

constexpr const char* kMailTable =
    "CREATE TABLE EMailsSent (EMSentIntID TEXT(12), SentToIntID TEXT(12), MailType TEXT(20), Info "
    "MEMO, SentToDisplayName TEXT(50))";

class LinkSections : public ::testing::Test {
 protected:
  LinkSections() : conversion(machine.run, *machine.source, *machine.korvo) {
    Execute({"CREATE TABLE Links (FromID TEXT(12), ToID TEXT(12), Type SHORT, SubType SHORT)",
             R"(CREATE TABLE Reminders (RemIntID TEXT(12) CONSTRAINT K PRIMARY KEY,
            ItemIntID TEXT(30)))",
             kMailTable,
             R"(CREATE TABLE Consultants (ConsultantID TEXT(20), ConsIntID TEXT(12),
            DisplayName TEXT(50)))",
             "CREATE TABLE Contacts (ContactIntID TEXT(12), DisplayName TEXT(50))",
             "CREATE TABLE Counters (TableName TEXT(30), CurCount TEXT(12))",
             R"(CREATE TABLE MLinkInfo (MLinkIntID TEXT(12), FromID TEXT(12),
            ToID TEXT(12), Type SHORT, SubType SHORT, MLinkType TEXT(20),
            MLinkSubType TEXT(20), Subject TEXT(50), Notes MEMO, [DateTime] DATETIME,
            CreateDate DATETIME, EditDate DATETIME, UserIDs TEXT(50)))"});
  }
  void Execute(const std::vector<std::string>& statements) {
    machine.Execute(*machine.korvo, statements);
  }
  std::vector<std::string> Links() { return machine.Rows("SELECT * FROM Links"); }

  DatabaseMachine machine;
  Conversion conversion;
};

TEST_F(LinkSections, AReminderOfAnItemGetsOneLink) {
  Execute({"INSERT INTO Reminders VALUES ('RM1', 'CN7')",
           "INSERT INTO Reminders VALUES ('RM2', '  ')",
           "INSERT INTO Reminders VALUES ('RM3', Null)"});
  LinkReminders(conversion);
  EXPECT_THAT(Links(), ElementsAre("RM1|CN7|1|1"));
  EXPECT_THAT(machine.messages(), ElementsAre("Updating Calender Links "));
  EXPECT_EQ(conversion.count, 1U);
}

TEST_F(LinkSections, EveryHundredthLinkIsToldAndTheCountGoesOnWithTheMails) {
  for (int i = 0; i < 150; ++i) {
    Execute({"INSERT INTO Reminders VALUES ('RM" + std::to_string(i) + "', 'CN1')"});
  }
  for (int i = 0; i < 70; ++i) {
    Execute({"INSERT INTO EMailsSent (EMSentIntID) VALUES ('ES" + std::to_string(i) + "')"});
  }
  LinkReminders(conversion);
  LinkSentMail(conversion);
  EXPECT_THAT(machine.messages(), ElementsAre("Updating Calender Links ", "    Processed 100",
                                              "Updating Sent Mail Links "));
  EXPECT_THAT(machine.observer.progress, ElementsAre("      200 Links"));
  EXPECT_THAT(machine.window.log, HasSubstr("Sent Mail Links \r\n      200 Links"));
  EXPECT_EQ(Links().size(), 220U);
}

TEST_F(LinkSections, ALinkThatDoesNotFitCostsABoxAndItselfAlone) {
  Execute({"INSERT INTO Reminders VALUES ('RM1', 'longer than twelve')",
           "INSERT INTO Reminders VALUES ('RM2', 'CN2')"});
  LinkReminders(conversion);
  EXPECT_THAT(Links(), ElementsAre("RM2|CN2|1|1"));
  ASSERT_EQ(machine.window.questions.size(), 1U);
  EXPECT_THAT(machine.window.boxes[0], HasSubstr("Error creating links \r\nDescription: "));
  EXPECT_THAT(machine.window.boxes[0], HasSubstr("\r\nNumber: 3163"));
  EXPECT_EQ(machine.window.questions[0].title, "ZentUpdate");
  EXPECT_EQ(machine.window.questions[0].buttons, BoxButtons::Ok);
  EXPECT_EQ(machine.window.questions[0].icon, BoxIcon::None);
}

TEST_F(LinkSections, ASentMailIsLinkedToItsReceiver) {
  Execute({"INSERT INTO Contacts VALUES ('CN1', 'Jane Smith')",
           "INSERT INTO Consultants VALUES ('7', 'CS7', 'Max Weber')",
           "INSERT INTO EMailsSent VALUES ('ES1', 'CN1', 'Mail', Null, 'old')",
           "INSERT INTO EMailsSent VALUES ('ES2', 'CS7', 'Mail', Null, Null)",
           "INSERT INTO EMailsSent VALUES ('ES3', 'XX9', 'Mail', Null, 'old')"});
  LinkSentMail(conversion);
  EXPECT_THAT(Links(), ElementsAre("ES1|CN1|1|1", "ES2|CS7|1|1", "ES3|XX9|1|1"));
  EXPECT_THAT(machine.Rows("SELECT SentToDisplayName FROM EMailsSent"),
              ElementsAre("Jane Smith", "Max Weber", ""));
}

TEST_F(LinkSections, ASentResumeIsLinkedToItsConsultants) {
  const std::string info =
      "ConsultantC-1;a\r\nCC        C-2;b\r\nConsultantC-9;none\r\nConsultantC-2;";
  Execute({"INSERT INTO Consultants VALUES ('C-1', 'CS1', 'A')",
           "INSERT INTO Consultants VALUES ('C-2', 'CS2', 'B')",
           "INSERT INTO EMailsSent VALUES ('ES1', 'CN1', 'Resume', '" + info + "', Null)",
           "INSERT INTO EMailsSent VALUES ('ES2', 'CN1', 'resume', '" + info + "', Null)"});
  LinkSentMail(conversion);
  EXPECT_THAT(Links(),
              UnorderedElementsAre("ES1|CN1|1|1", "CS1|ES1|1|1", "CS2|ES1|1|1", "ES2|CN1|1|1"));
  EXPECT_EQ(conversion.count, 4U);
}

TEST_F(LinkSections, AQuoteInAKeyBreaksItsQuery) {
  Execute({"INSERT INTO EMailsSent VALUES ('ES1', 'a''b', 'Mail', Null, 'old')",
           "INSERT INTO EMailsSent VALUES ('ES2', 'CN1', 'Mail', Null, 'old')"});
  LinkSentMail(conversion);
  EXPECT_EQ(machine.window.questions.size(), 1U);
  EXPECT_EQ(Links().size(), 2U);
}

struct UnreadCase {
  const char* what;
  const char* type;
  const char* missing;  ///< the field
  std::vector<std::string> links;
  const char* name;
  std::size_t boxes;
};

TEST_F(LinkSections, AFieldOfAMailThatCannotBeReadCostsWhatNeedsIt) {
  const UnreadCase rows[] = {
      {"the text of a resume", "Resume", "Info", {"ES1|CN1|1|1"}, "Jane Smith", 1},
      {"the text of another mail", "Mail", "Info", {"ES1|CN1|1|1"}, "Jane Smith", 0},
      {"the type", "Resume", "MailType", {"ES1|CN1|1|1"}, "Jane Smith", 1},
      {"the receiver", "Resume", "SentToIntID", {"CS1|ES1|1|1"}, "old", 1},
      {"the key", "Resume", "EMSentIntID", {}, "Jane Smith", 1},
  };
  Execute({"INSERT INTO Contacts VALUES ('CN1', 'Jane Smith')",
           "INSERT INTO Consultants VALUES ('C-1', 'CS1', 'A')"});
  for (const UnreadCase& row : rows) {
    SCOPED_TRACE(row.what);
    Execute({"DELETE FROM Links", "DROP TABLE EMailsSent", kMailTable,
             "INSERT INTO EMailsSent VALUES ('ES1', 'CN1', '" + std::string(row.type) +
                 "', 'ConsultantC-1;', 'old')",
             "ALTER TABLE EMailsSent DROP COLUMN " + std::string(row.missing)});
    machine.window.questions.clear();
    LinkSentMail(conversion);
    EXPECT_EQ(Links(), row.links);
    EXPECT_THAT(machine.Rows("SELECT SentToDisplayName FROM EMailsSent"), ElementsAre(row.name));
    EXPECT_EQ(machine.window.questions.size(), row.boxes);
  }
}

TEST_F(LinkSections, LinksOfConsultantsAreDescribed) {
  Execute({"INSERT INTO Links VALUES ('CS1', 'CN1', 1, 2)",
           "INSERT INTO Links VALUES ('CS1', 'RQ1', 3, 4)",
           "INSERT INTO Links VALUES ('CN1', 'CS1', 1, 1)",
           "INSERT INTO Links VALUES ('CS1', 'CM1', 1, 1)"});
  DescribeLinks(conversion);
  EXPECT_THAT(
      machine.Rows("SELECT MLinkIntID, FromID, ToID, Type, SubType, MLinkType, "
                   "MLinkSubType, Subject, Notes, UserIDs FROM MLinkInfo"),
      ElementsAre("ML00000001|CS1|CN1|1|2|||||,(All),", "ML00000002|CS1|RQ1|3|4|||||,(All),"));
  EXPECT_THAT(machine.Rows("SELECT COUNT(*) FROM MLinkInfo WHERE [DateTime] = CreateDate AND "
                           "CreateDate = EditDate AND EditDate > #1/1/2000#"),
              ElementsAre("2"));
  EXPECT_EQ(Links().size(), 4U) << "the links stay";
  EXPECT_THAT(machine.Rows("SELECT CurCount FROM Counters"), ElementsAre("ML00000002"));
}

TEST_F(LinkSections, ALinkWithoutAKeyIsNotDescribed) {
  Execute({"DROP TABLE Counters", "INSERT INTO Links VALUES ('CS1', 'CN1', 1, 1)",
           "INSERT INTO Links VALUES ('CS2', 'RQ1', 1, 1)"});
  DescribeLinks(conversion);
  EXPECT_THAT(machine.Rows("SELECT * FROM MLinkInfo"), IsEmpty());
  EXPECT_THAT(machine.window.boxes, SizeIs(2));
  EXPECT_THAT(machine.window.boxes, Each(StartsWith("Fatal Error - Could not get the Next ")));
  EXPECT_EQ(Links().size(), 2U);
}

TEST_F(LinkSections, ATableThatIsMissingCostsOneBox) {
  Execute({"DROP TABLE Reminders", "DROP TABLE MLinkInfo"});
  LinkReminders(conversion);
  DescribeLinks(conversion);
  EXPECT_EQ(machine.window.questions.size(), 2U);
  EXPECT_THAT(Links(), IsEmpty());
}

}  // namespace
}  // namespace zent
