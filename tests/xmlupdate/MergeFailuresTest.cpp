#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "driver/run/Messages.h"
#include "xmlupdate/XmlMachine.h"
#include "xmlupdate/modMergeXMLs.h"

/// What cannot be loaded is passed over; a run-time error ends the merge.
namespace zent {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using testing::XmlMachine;

constexpr const char* kFormsDone =
    R"(<Forms><Version>3.06.0000</Version><Form ID="own">o</Form></Forms>)";

// --- Loading ---

TEST(Loading, AMissingDescriptionTouchesNoFile) {
  XmlMachine given;
  const CommandRecord record = given.Xupd();
  EXPECT_THAT(given.MergeMessages(), ElementsAre(R"(File not found - D:\Package\Update.xml)"));
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_EQ(record.reason, R"(not loaded: D:\Package\Update.xml: File not found)");
  EXPECT_TRUE(given.run.state.ErrorOccurred);
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
}

struct LoadCase {
  const char* what;
  const char* system;      ///< of First.xml; nullptr: missing
  const char* customised;  ///< the same
  std::string message;
};

TEST(Loading, AFileThatFailsIsPassedOverAndTheOthersStillRun) {
  const LoadCase rows[] = {
      {"no system copy", nullptr, "<A/>", R"(File not found - D:\Data\Sys\First.xml)"},
      {"no customised copy", "<A/>", nullptr, R"(File not found - D:\Data\Customize\First.xml)"},
      {"neither: only the system copy is looked for", nullptr, nullptr,
       R"(File not found - D:\Data\Sys\First.xml)"},
      {"a system copy that does not parse", "<A>", "<A/>",
       "Error Parsing: D:\\Data\\Sys\\First.xml\r\nError Number: "},
      {"a customised copy that does not parse", "<A/>", "<A></B>",
       "Error Parsing: D:\\Data\\Customize\\First.xml\r\nError Number: "},
      {"an empty file", "<A/>", "",
       "Error Parsing: D:\\Data\\Customize\\First.xml\r\nError Number: "},
  };
  for (const LoadCase& row : rows) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    if (row.system != nullptr) given.PutSystem("First.xml", row.system);
    if (row.customised != nullptr) given.PutCustomised("First.xml", row.customised);
    given.Describe(R"(<XMLUpdate FileName="First.xml"/><XMLUpdate FileName="Forms.xml"/>)");

    const CommandRecord record = given.Xupd();

    EXPECT_THAT(given.MergeMessages(),
                ElementsAre(StartsWith(row.message), R"(Updating D:\Data\Customize\Forms.xml)"));
    EXPECT_EQ(given.Customised(), kFormsDone);
    EXPECT_EQ(record.outcome, Outcome::Failed);
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_TRUE(given.run.state.xml_load_failed);
    EXPECT_THAT(given.window.boxes, IsEmpty());
  }
}

TEST(Loading, AnyOtherDocumentElementIsNoWork) {
  for (const char* text : {"<xmlupdates><XMLUpdate/></xmlupdates>", "<XMLUpdate/>",
                           "<X><XMLUpdates><XMLUpdate/></XMLUpdates></X>", "<XMLUpdates/>",
                           "<XMLUpdates><xmlupdate/></XMLUpdates>"}) {
    SCOPED_TRACE(text);
    XmlMachine given;
    given.machine.files.PutFile(R"(D:\Package\Update.xml)", text);
    const CommandRecord record = given.Xupd();
    EXPECT_THAT(given.MergeMessages(), IsEmpty());
    EXPECT_EQ(record.outcome, Outcome::Skipped);
    EXPECT_EQ(record.reason, "no file was changed");
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

// --- Run-time errors ---

struct ErrorCase {
  const char* what;
  const char* entry;
  int number;  ///< 0: any
};

constexpr ErrorCase kErrorCases[] = {
    {"no FileName", "<XMLUpdate/>", kObjectNotSet},
    {"FileName in lower case", R"(<XMLUpdate filename="Forms.xml"/>)", kObjectNotSet},
    {"no Node in an Insert", R"(<XMLUpdate FileName="Forms.xml"><Insert/></XMLUpdate>)",
     kObjectNotSet},
    {"no Node in a Replace",
     R"(<XMLUpdate FileName="Forms.xml"><Replace><This>/Forms</This></Replace></XMLUpdate>)",
     kObjectNotSet},
    {"no Node in a Delete", R"(<XMLUpdate FileName="Forms.xml"><Delete/></XMLUpdate>)",
     kObjectNotSet},
    {"Node too deep",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><X><Node>/Forms</Node></X></Delete></XMLUpdate>)",
     kObjectNotSet},
    {"an expression that does not compile",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><Node>/Forms[</Node></Delete></XMLUpdate>)", 0},
    {"an empty expression",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><Node/></Delete></XMLUpdate>)", 0},
    {"an expression that gives a number",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><Node>count(/Forms)</Node></Delete></XMLUpdate>)",
     0},
    {"an expression with a prefix",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><Node>/p:Forms</Node></Delete></XMLUpdate>)", 0},
    {"a Before that does not compile",
     R"(<XMLUpdate FileName="Forms.xml"><Insert><Node>/Forms</Node><Before>[</Before></Insert></XMLUpdate>)",
     0},
    {"an empty IfNotFoundAppendTo",
     R"(<XMLUpdate FileName="Forms.xml"><Insert><Node>/Forms/Form</Node><IfNotFoundAppendTo/></Insert></XMLUpdate>)",
     0},
    {"a source that is an attribute",
     R"(<XMLUpdate FileName="Forms.xml"><Insert><Node>/Forms/Form/@ID</Node><IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert></XMLUpdate>)",
     kTypeMismatch},
    {"a source that is text",
     R"(<XMLUpdate FileName="Forms.xml"><Insert><Node>/Forms/Form/text()</Node><IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert></XMLUpdate>)",
     kTypeMismatch},
    {"a source that is the document",
     R"(<XMLUpdate FileName="Forms.xml"><Insert><Node>/</Node><IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert></XMLUpdate>)",
     kTypeMismatch},
    {"a target that is an attribute",
     R"(<XMLUpdate FileName="Forms.xml"><Replace><Node>/Forms/Form</Node><This>/Forms/Form/@ID</This></Replace></XMLUpdate>)",
     kTypeMismatch},
    {"a Delete of an attribute",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><Node>/Forms/Form/@ID</Node></Delete></XMLUpdate>)",
     kTypeMismatch},
    {"an insert beside the document element",
     R"(<XMLUpdate FileName="Forms.xml"><Insert><Node>/Forms/Form</Node><Before>/Forms</Before></Insert></XMLUpdate>)",
     0},
    {"a Replace whose IfNotFoundInsertBefore is not found",
     R"(<XMLUpdate FileName="Forms.xml"><Replace><Node>/Forms/Form</Node><IfNotFoundInsertBefore>/Forms/No</IfNotFoundInsertBefore></Replace></XMLUpdate>)",
     kObjectNotSet},
    {"a Delete of the document element leaves nothing to stamp",
     R"(<XMLUpdate FileName="Forms.xml"><Delete><Node>/Forms</Node></Delete></XMLUpdate>)",
     kObjectNotSet},
};

TEST(RuntimeErrors, EndTheMergeWithoutSavingTheEntryInHand) {
  for (const ErrorCase& row : kErrorCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    for (const char* name : {"First.xml", "Last.xml"}) {
      given.PutSystem(name, "<A><Version>2</Version></A>");
      given.PutCustomised(name, "<A><Version>1</Version></A>");
    }
    const std::string before = given.Customised();
    given.Describe(R"(<XMLUpdate FileName="First.xml"/>)" + std::string(row.entry) +
                   R"(<XMLUpdate FileName="Last.xml"/>)");

    const Status merged = MergeXMLs(given.run, R"(D:\Data\)", R"(D:\Package\Update.xml)");

    EXPECT_FALSE(merged.ok());
    EXPECT_TRUE(row.number == 0 || merged.number() == row.number) << merged.number();
    EXPECT_EQ(given.Customised("First.xml"), "<A><Version>2</Version></A>") << "stays saved";
    EXPECT_EQ(given.Customised(), before);
    EXPECT_EQ(given.Customised("Last.xml"), "<A><Version>1</Version></A>") << "never reached";
    EXPECT_FALSE(given.run.state.xml_load_failed);
  }
}

TEST(RuntimeErrors, AnOperationThatFailsTakesTheOnesBeforeItAlong) {
  XmlMachine given;
  const std::string before = given.Customised();
  given.DescribeForms(
      "<Delete><Node>/Forms/Form</Node></Delete><Delete><Node>/Forms[</Node></Delete>");
  given.Xupd();
  EXPECT_EQ(given.Customised(), before);
}

TEST(RuntimeErrors, PassThroughXupdUnchanged) {
  XmlMachine given;
  given.Describe("<XMLUpdate/>");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
  EXPECT_THAT(given.window.boxes, ElementsAre(AllOf(StartsWith("Error handed back\r\n"),
                                                    HasSubstr("FileName of XMLUpdate is missing"),
                                                    HasSubstr("Number: 91"))));
  EXPECT_TRUE(given.run.state.ErrorOccurred);
}

// --- Saving ---

struct SaveCase {
  const char* what;
  int number;
};

constexpr SaveCase kSaveCases[] = {
    {"a full disk", kDiskFull},
    {"a fault of the disk", kDeviceIoError},
    {"no right to write", kPathFileAccess},
    {"a file in use", kPermissionDenied},
};

TEST(Saving, AFailureIsTheRunTimeErrorOfTheFileSystem) {
  for (const SaveCase& row : kSaveCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    const std::string before = given.Customised();
    given.DescribeForms("<Delete><Node>/Forms/Form</Node></Delete>");
    given.machine.files.log().FailWhere("Write ", StandardError(row.number));
    const Status merged = MergeXMLs(given.run, R"(D:\Data\)", R"(D:\Package\Update.xml)");
    EXPECT_EQ(merged.number(), row.number);
    EXPECT_EQ(merged.error().description,
              StandardError(row.number).description + R"(: D:\Data\Customize\Forms.xml)");
    EXPECT_EQ(given.Customised(), before);
  }
}

TEST(Saving, AReadOnlyCustomisedCopyIsAnErrorAndStays) {
  XmlMachine given;
  const std::string path = R"(D:\Data\Customize\Forms.xml)";
  given.machine.files.PutFile(path, "<Forms/>", kAttributeReadOnly);
  given.DescribeForms("");
  const CommandRecord record = given.Xupd();
  EXPECT_EQ(given.machine.files.Contents(path), "<Forms/>");
  EXPECT_EQ(record.outcome, Outcome::Failed);
  EXPECT_THAT(record.reason, HasSubstr("(75)"));
}

TEST(Saving, ACustomisedCopyInUseIsAnErrorAndStays) {
  XmlMachine given;
  const std::string before = given.Customised();
  given.machine.files.HoldOpen(R"(D:\Data\Customize\Forms.xml)");
  given.DescribeForms("");
  EXPECT_THAT(given.Xupd().reason, HasSubstr("(70)"));
  EXPECT_EQ(given.Customised(), before);
}

TEST(Saving, AFileThatNobodyElseMayReadIsNotLoaded) {
  XmlMachine given;
  given.machine.files.HoldOpen(R"(D:\Data\Customize\Forms.xml)", /*shared_for_reading=*/false);
  given.DescribeForms("");
  given.Xupd();
  EXPECT_THAT(given.MergeMessages(),
              ElementsAre("Error Parsing: D:\\Data\\Customize\\Forms.xml\r\n"
                          "Error Number: 70\r\nError Description: Permission denied\r\n"
                          "Line: 0\r\nColumn: 0"));
  EXPECT_TRUE(given.run.state.xml_load_failed);
}

}  // namespace
}  // namespace zent
