#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xmlupdate/XmlMachine.h"

namespace zent {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;
using testing::XmlMachine;

constexpr const char* kPath = R"(D:\Data\Customize\Contacts.xml)";
constexpr const char* kUpdating = R"(Updating XFields - D:\Data\Customize\Contacts.xml)";

std::string Description(const std::string& add, const std::string& version = "2") {
  return R"(<UpdateXFields FileName="Contacts.xml" TableName="Contacts"><Version>)" + version +
         "</Version><Add>" + add + "</Add></UpdateXFields>";
}

std::string Field(const std::string& id, const std::string& control, const std::string& label) {
  return "<XField><ID>" + id + "</ID><Control><TabNumber>" + control +
         "</TabNumber></Control><Label><TabNumber>" + label + "</TabNumber></Label></XField>";
}

std::string MainTab(const std::string& captions) {
  return "<XField><ID>MainTab</ID><Control><Caption>" + captions + "</Caption></Control></XField>";
}

std::string Layout(const std::string& fields, const std::string& version = "1") {
  const std::string all = fields.empty() ? "<XFields/>" : "<XFields>" + fields + "</XFields>";
  return "<Contacts>" + all + "<Version>" + version + "</Version></Contacts>";
}

struct FieldCase {
  const char* what;
  std::string layout;
  std::string description;
  std::string afterwards;
};

TEST(UpdateXFields, AddsTabsAndFields) {
  const FieldCase rows[] = {
      {"a third tab, and fields that are to go on it", Layout(MainTab("General|Notes")),
       Description("<XTab>Skills</XTab>" + Field("F1", "NewTab", "NewTab")),
       Layout(MainTab("General|Notes | Skills") + Field("F1", "3", "3"), "2")},
      {"captions parted with blanks, as they are written", Layout(MainTab("General | Notes")),
       Description("<XTab>Skills</XTab>" + Field("F1", "NewTab", "2")),
       Layout(MainTab("General | Notes | Skills") + Field("F1", "3", "2"), "2")},
      {"one tab", Layout(MainTab("General")),
       Description("<XTab>Skills</XTab>" + Field("F1", "1", "NewTab")),
       Layout(MainTab("General | Skills") + Field("F1", "1", "2"), "2")},
      {"no tab yet: number 1, and the separator is kept", Layout(MainTab("")),
       Description("<XTab>Skills</XTab>" + Field("F1", "NewTab", "NewTab")),
       Layout(MainTab(" | Skills") + Field("F1", "1", "1"), "2")},
      {"a separator at the end parts off an empty caption", Layout(MainTab("General|")),
       Description("<XTab>Skills</XTab>" + Field("F1", "NewTab", "NewTab")),
       Layout(MainTab("General| | Skills") + Field("F1", "3", "3"), "2")},
      {"marked fields without a new tab get number 0", Layout(MainTab("General")),
       Description(Field("F1", "NewTab", "NewTab")),
       Layout(MainTab("General") + Field("F1", "0", "0"), "2")},
      {"only exactly \"NewTab\" is a mark", Layout(MainTab("General")),
       Description("<XTab>S</XTab>" + Field("F1", " NewTab", "newtab")),
       Layout(MainTab("General | S") + Field("F1", " NewTab", "newtab"), "2")},
      {"fields in the order of the description, behind those that are there",
       Layout(Field("F0", "1", "1")), Description(Field("F2", "1", "1") + Field("F1", "2", "2")),
       Layout(Field("F0", "1", "1") + Field("F2", "1", "1") + Field("F1", "2", "2"), "2")},
      {"a field that is there already is there twice", Layout(Field("F1", "1", "1")),
       Description(Field("F1", "2", "2")),
       Layout(Field("F1", "1", "1") + Field("F1", "2", "2"), "2")},
      {"a field without tab numbers, with whatever it holds", Layout(""),
       Description("<XField a=\"1\"><ID>F</ID><!--c--><Any>x</Any></XField>"),
       Layout("<XField a=\"1\"><ID>F</ID><!--c--><Any>x</Any></XField>", "2")},
      {"a tab alone", Layout(MainTab("General")), Description("<XTab>Skills</XTab>"),
       Layout(MainTab("General | Skills"), "2")},
      {"only the version", Layout(""), Description(""), Layout("", "2")},
      {"a first update of another maker", Layout(""), Description("", "ABC-1.00.0000"),
       "<Contacts><XFields/><ABCVersion>ABC-1.00.0000</ABCVersion>"
       "<Version>1</Version></Contacts>"},
  };
  for (const FieldCase& row : rows) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutCustomised("Contacts.xml", row.layout);
    const CommandRecord record = given.UpdXFields(row.description);
    XmlMachine wanted;
    wanted.PutCustomised("Contacts.xml", row.afterwards);
    EXPECT_EQ(given.Customised("Contacts.xml"), wanted.Customised("Contacts.xml"));
    EXPECT_THAT(given.messages(), ElementsAre(kUpdating));
    EXPECT_EQ(record.outcome, Outcome::Done);
    EXPECT_THAT(given.machine.files.log().changes(), ElementsAre("Write " + std::string(kPath)));
  }
}

TEST(UpdateXFields, ASecondRunFindsTheVersionAndSaysNothing) {
  for (const char* version : {"2", "ABC-1.00.0000", " 2 "}) {
    SCOPED_TRACE(version);
    XmlMachine given;
    given.PutCustomised("Contacts.xml", Layout(MainTab("General")));
    const std::string description =
        Description("<XTab>S</XTab>" + Field("F1", "NewTab", "NewTab"), version);
    given.UpdXFields(description);
    const std::string once = given.Customised("Contacts.xml");
    const CommandRecord second = given.UpdXFields(description);
    EXPECT_EQ(given.Customised("Contacts.xml"), once);
    EXPECT_THAT(given.messages(), ElementsAre(kUpdating)) << "only the first run";
    EXPECT_EQ(second.outcome, Outcome::Skipped);
    EXPECT_EQ(second.reason, "up to date already: " + std::string(kPath));
  }
}

TEST(UpdateXFields, APlainUpdateDoesNotDisturbAPrefixedVersion) {
  XmlMachine given;
  given.PutCustomised("Contacts.xml", Layout(""));
  given.UpdXFields(Description("", "ABC-1"));
  given.UpdXFields(Description("", "2"));
  EXPECT_THAT(given.Customised("Contacts.xml"),
              HasSubstr("<ABCVersion>ABC-1</ABCVersion><Version>2</Version>"));
  EXPECT_EQ(given.UpdXFields(Description("", "ABC-1")).outcome, Outcome::Skipped);
}

// --- Failures ---

struct LoadCase {
  const char* what;
  const char* description;  ///< nullptr: the layout is what fails
  std::string message;
};

TEST(UpdateXFields, WhatDoesNotLoadIsShownAndNothingIsWritten) {
  const LoadCase rows[] = {
      {"a description that does not parse", "<UpdateXFields>",
       "Error Parsing: D:\\Package\\Fields.xml\r\n"},
      {"a missing layout", nullptr, "File not found - " + std::string(kPath)},
  };
  for (const LoadCase& row : rows) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    const CommandRecord record =
        given.UpdXFields(row.description == nullptr ? Description("") : row.description);
    EXPECT_THAT(given.messages(), ElementsAre(StartsWith(row.message)));
    EXPECT_TRUE(given.run.state.xml_load_failed);
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_THAT(given.window.boxes, IsEmpty());
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
  }
}

struct HeadCase {
  const char* what;
  const char* description;
};

constexpr HeadCase kHeadCases[] = {
    {"another document element", "<X FileName='a' TableName='b'><Version>1</Version></X>"},
    {"no FileName", "<UpdateXFields TableName='Contacts'><Version>2</Version></UpdateXFields>"},
    {"no TableName", "<UpdateXFields FileName='Contacts.xml'><Version>2</Version></UpdateXFields>"},
    {"no Version", "<UpdateXFields FileName='Contacts.xml' TableName='Contacts'/>"},
    {"a Version in the wrong place",
     "<UpdateXFields FileName='Contacts.xml' TableName='Contacts'><Add><Version>2</Version></Add>"
     "</UpdateXFields>"},
};

TEST(UpdateXFields, AnErrorInTheHeadOfADescriptionGoesToTheInterpreter) {
  for (const HeadCase& row : kHeadCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutCustomised("Contacts.xml", Layout(""));
    EXPECT_EQ(given.UpdXFields(row.description).outcome, Outcome::Failed);
    EXPECT_THAT(given.window.boxes,
                ElementsAre(AllOf(StartsWith("Error handed back\r\n"), HasSubstr("Number: 91"))));
    EXPECT_THAT(given.messages(), IsEmpty());
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
  }
}

struct WorkCase {
  const char* what;
  std::string layout;
  std::string description;
};

TEST(UpdateXFields, ALaterErrorIsABoxAndLeavesTheLayoutAsItWas) {
  const WorkCase rows[] = {
      {"a new tab without a main tab", Layout(Field("F0", "1", "1")),
       Description("<XTab>Skills</XTab>")},
      {"a main tab without a caption", Layout("<XField><ID>MainTab</ID><Control/></XField>"),
       Description("<XTab>Skills</XTab>")},
      {"no XFields for a field", "<Contacts><Version>1</Version></Contacts>",
       Description(Field("F1", "1", "1"))},
      {"XFields of another table", "<Other><XFields/><Version>1</Version></Other>",
       Description(Field("F1", "1", "1"))},
      {"a prefixed version without a plain one", "<Contacts><XFields/></Contacts>",
       Description(Field("F1", "1", "1"), "ABC-1.00.0000")},
      {"a plain version without a plain one", "<Contacts><XFields/></Contacts>",
       Description(Field("F1", "1", "1"))},
      {"a prefix that is no name of an element", Layout(""), Description("", "a b-1")},
  };
  for (const WorkCase& row : rows) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutCustomised("Contacts.xml", row.layout);
    const CommandRecord record = given.UpdXFields(row.description);

    ASSERT_EQ(given.window.questions.size(), 1U);
    const MessageQuestion& box = given.window.questions[0];
    EXPECT_THAT(box.text, StartsWith("Error updating XFields \r\nDescription: "));
    EXPECT_THAT(box.text, HasSubstr("\r\nNumber: "));
    EXPECT_EQ(box.icon, BoxIcon::Information);
    EXPECT_EQ(box.title, "ZentUpdate");
    EXPECT_EQ(box.buttons, BoxButtons::Ok);
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_FALSE(given.run.state.xml_load_failed);
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_THAT(given.messages(), ElementsAre(kUpdating));
    EXPECT_EQ(given.machine.files.Contents(kPath), row.layout);
  }
}

TEST(UpdateXFields, ATableNameThatIsNoExpressionIsABox) {
  for (const char* table : {"Con tacts", "p:Contacts", "Contacts[", "Contacts'"}) {
    SCOPED_TRACE(table);
    XmlMachine given;
    given.PutCustomised("Contacts.xml", Layout(""));
    given.UpdXFields("<UpdateXFields FileName=\"Contacts.xml\" TableName=\"" + std::string(table) +
                     "\"><Version>2</Version><Add><XField/></Add></UpdateXFields>");
    EXPECT_THAT(given.window.boxes, ElementsAre(StartsWith("Error updating XFields ")));
    EXPECT_EQ(given.Customised("Contacts.xml"), Layout(""));
  }
}

TEST(UpdateXFields, ALayoutThatCannotBeSavedIsABoxAndStays) {
  XmlMachine given;
  given.machine.files.PutFile(kPath, Layout(""), kAttributeReadOnly);
  given.UpdXFields(Description(""));
  EXPECT_THAT(given.window.boxes, ElementsAre(AllOf(StartsWith("Error updating XFields "),
                                                    HasSubstr(kPath), HasSubstr("Number: 75"))));
  EXPECT_EQ(given.machine.files.Contents(kPath), Layout(""));
}

TEST(UpdateXFields, AStrictRunRefusesALayoutOutsideTheKnownFolders) {
  XmlMachine given({.strict = true});
  given.machine.files.PutFile(R"(D:\a.xml)", Layout(""));
  given.UpdXFields(
      R"(<UpdateXFields FileName="..\..\a.xml" TableName="Contacts"><Version>2</Version></UpdateXFields>)");
  EXPECT_TRUE(given.run.Refused());
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
}

TEST(UpdateXFields, TellsEachStep) {
  XmlMachine given;
  given.PutCustomised("Contacts.xml", Layout(MainTab("General")));
  given.UpdXFields(Description("<XTab>Skills</XTab>" + Field("F1", "NewTab", "1") + "<XField/>"));

  const std::vector<XmlOperation>& told = given.observer.xml;
  ASSERT_EQ(told.size(), 5U);
  EXPECT_EQ(told[0].action, XmlAction::Tab);
  EXPECT_EQ(told[0].node, "Skills");
  EXPECT_EQ(told[0].outcome, XmlOutcome::Appended);
  EXPECT_EQ(told[1].action, XmlAction::Field);
  EXPECT_EQ(told[1].node, "F1");
  EXPECT_EQ(told[1].place, "/Contacts/XFields");
  EXPECT_EQ(told[2].node, "") << "a field without an ID";
  EXPECT_EQ(told[3].action, XmlAction::Stamp);
  EXPECT_EQ(told[3].node, "2");
  EXPECT_EQ(told[4].action, XmlAction::Save);
  EXPECT_EQ(told[4].file, kPath);
}

TEST(UpdateXFields, TellsAStepThatFailsAndNoSave) {
  XmlMachine given;
  given.PutCustomised("Contacts.xml", "<Contacts><Version>1</Version></Contacts>");
  given.UpdXFields(Description(Field("F1", "1", "1")));
  ASSERT_EQ(given.observer.xml.size(), 1U);
  EXPECT_EQ(given.observer.xml[0].outcome, XmlOutcome::Failed);
  EXPECT_THAT(given.observer.xml[0].reason, HasSubstr("/Contacts/XFields is missing"));
}

}  // namespace
}  // namespace zent
