#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/run/Messages.h"
#include "xmlupdate/XmlCommands.h"
#include "xmlupdate/XmlMachine.h"

namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::XmlMachine;

constexpr const char* kOneField =
    R"(<UpdateXFields FileName="Contacts.xml" TableName="Contacts"><Version>2</Version>)"
    R"(<Add><XField><ID>F</ID></XField></Add></UpdateXFields>)";

TEST(UpdateXmlFiles, AnnouncesTheStepBeforeAnythingElse) {
  XmlMachine given;
  given.Xupd();
  EXPECT_THAT(given.messages(),
              ElementsAre("", "Updating XML files.", R"(File not found - D:\Package\Update.xml)"));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

TEST(UpdateXmlFiles, ClearsAnEarlierErrorWhenNoFileOfTheRunFailedToLoad) {
  XmlMachine given;
  given.DescribeForms("");
  given.run.state.ErrorOccurred = true;
  EXPECT_EQ(given.Xupd().outcome, Outcome::Done);
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(UpdateXmlFiles, FailsOnceAnyFileOfTheRunFailedToLoad) {
  XmlMachine given;
  given.Xupd();  // its description is missing
  given.run.state.ErrorOccurred = false;
  given.DescribeForms("");
  const CommandRecord record = given.Xupd();
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, "an XML file failed to load earlier in this run");
  EXPECT_THAT(given.Customised(), HasSubstr("3.06.0000")) << "the merge itself is done";
}

TEST(UpdateXmlFiles, AnotherRunOfTheSameProcessDoesNotMeetThatFailure) {
  XmlMachine failed;
  failed.Xupd();
  XmlMachine given;
  given.DescribeForms("");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Done);
  EXPECT_FALSE(given.run.state.ErrorOccurred);
}

TEST(UpdateXmlFiles, TakesItsBaseFromTheDataFolder) {
  XmlMachine given;
  given.run.state.DataPath = R"(C:\Other\)";
  given.machine.files.PutFile(R"(C:\Other\Sys\Forms.xml)", "<F><Version>2</Version></F>");
  given.machine.files.PutFile(R"(C:\Other\Customize\Forms.xml)", "<F/>");
  given.DescribeForms("");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Done);
  EXPECT_THAT(given.machine.files.log().changes(),
              ElementsAre(R"(Write C:\Other\Customize\Forms.xml)"));
}

struct ArgumentCase {
  const char* what;
  const char* argument;
  const char* path;
};

constexpr ArgumentCase kArgumentCases[] = {
    {"a name", "Nosuch.xml", R"(D:\Package\Nosuch.xml)"},
    {"a folder of the package", R"(Xml\Nosuch.xml)", R"(D:\Package\Xml\Nosuch.xml)"},
    {"a macro", R"($(datapath)\Nosuch.xml)", R"(D:\Data\Nosuch.xml)"},
    {"a drive", R"(C:\Korvo\Nosuch.xml)", R"(C:\Korvo\Nosuch.xml)"},
    {"nothing", "", R"(D:\Package\)"},
};

TEST(XmlCommands, TakeTheirDescriptionFromThePackageUnlessAMacroOrADriveSaysOtherwise) {
  for (const ArgumentCase& row : kArgumentCases) {
    SCOPED_TRACE(row.what);
    XmlMachine merge;
    merge.Call(UpdateXmlFiles, {"xupd", row.argument});
    EXPECT_THAT(merge.MergeMessages(), ElementsAre("File not found - " + std::string(row.path)));
    XmlMachine fields;
    fields.Call(UpdateExtraFields, {"updxfields", row.argument});
    EXPECT_THAT(fields.messages(), ElementsAre("File not found - " + std::string(row.path)));
  }
}

TEST(XmlCommands, AMissingArgumentIsAnIndexError) {
  for (Status (*handler)(UpdateRun&, const TokenList&) : {UpdateXmlFiles, UpdateExtraFields}) {
    XmlMachine given;
    EXPECT_EQ(given.Call(handler, {"x"}).outcome, Outcome::Failed);
    EXPECT_THAT(given.window.boxes,
                ElementsAre(ErrorText("Error handed back", StandardError(kSubscriptOutOfRange))));
    EXPECT_THAT(given.messages(), IsEmpty());
  }
}

TEST(XmlCommands, AStrictRunRefusesADescriptionOutsideThePackage) {
  for (Status (*handler)(UpdateRun&, const TokenList&) : {UpdateXmlFiles, UpdateExtraFields}) {
    XmlMachine given({.strict = true});
    given.machine.files.PutFile(R"(D:\Update.xml)", "<XMLUpdates/>");
    given.Call(handler, {"x", R"(..\Update.xml)"});
    EXPECT_TRUE(given.run.Refused());
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.messages(), IsEmpty());
  }
}

TEST(UpdateExtraFields, AFileThatFailsToLoadDoesNotEndTheListButFailsTheNextXupd) {
  XmlMachine given;  // without a layout file
  const CommandRecord fields = given.UpdXFields(kOneField);
  EXPECT_EQ(fields.outcome, Outcome::Failed);
  EXPECT_FALSE(given.run.state.ErrorOccurred);

  given.DescribeForms("");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

}  // namespace
}  // namespace zent
