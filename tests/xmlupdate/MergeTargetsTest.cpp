#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xmlupdate/MergeTargets.h"
#include "xmlupdate/XmlMachine.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::RunBuilder;
using testing::XmlMachine;

struct TargetCase {
  const char* what;
  const char* file_name;
  std::optional<std::string> other;
  const char* system;
  const char* customised;
};

const TargetCase kTargetCases[] = {
    {"a name lies in both folders",
     "Forms.xml",
     {},
     R"(D:\Data\Sys\Forms.xml)",
     R"(D:\Data\Customize\Forms.xml)"},
    {"a folder is kept below both",
     R"(Forms\Contact.xml)",
     {},
     R"(D:\Data\Sys\Forms\Contact.xml)",
     R"(D:\Data\Customize\Forms\Contact.xml)"},
    {"OFileName counts only in the folder \".\"", "Forms.xml", R"(C:\Other.xml)",
     R"(D:\Data\Sys\Forms.xml)", R"(D:\Data\Customize\Forms.xml)"},
    {"the folder \".\": from the updater's folder into Customize",
     R"(.\Layout.xml)",
     {},
     R"(D:\Package\.\Layout.xml)",
     R"(D:\Data\Customize\Layout.xml)"},
    {"with a slash",
     "./Layout.xml",
     {},
     R"(D:\Package\./Layout.xml)",
     R"(D:\Data\Customize\Layout.xml)"},
    {"a blank OFileName is none", R"(.\Layout.xml)", "  ", R"(D:\Package\.\Layout.xml)",
     R"(D:\Data\Customize\Layout.xml)"},
    {"OFileName with a macro", R"(.\Layout.xml)", R"($(AppPath)\Own\Layout.xml)",
     R"(D:\Package\.\Layout.xml)", R"(C:\Korvo\Own\Layout.xml)"},
    {"OFileName with a drive", R"(.\Layout.xml)", R"(C:\Korvo\L.xml)", R"(D:\Package\.\Layout.xml)",
     R"(C:\Korvo\L.xml)"},
    {"a relative OFileName lies in the package", R"(.\Layout.xml)", "Own.xml",
     R"(D:\Package\.\Layout.xml)", R"(D:\Package\Own.xml)"},
    {"the folder is what stands before the last backslash",
     R"(./Sub\a.xml)",
     {},
     R"(D:\Data\Sys\./Sub\a.xml)",
     R"(D:\Data\Customize\./Sub\a.xml)"},
    {"a folder below \".\" is another folder",
     R"(.\Sub\a.xml)",
     {},
     R"(D:\Data\Sys\.\Sub\a.xml)",
     R"(D:\Data\Customize\.\Sub\a.xml)"},
    {"two dots are another folder",
     R"(..\a.xml)",
     {},
     R"(D:\Data\Sys\..\a.xml)",
     R"(D:\Data\Customize\..\a.xml)"},
    {"an empty name", "", {}, R"(D:\Data\Sys\)", R"(D:\Data\Customize\)"},
};

TEST(ResolveTargets, FindsBothCopies) {
  for (const TargetCase& row : kTargetCases) {
    SCOPED_TRACE(row.what);
    const RunBuilder given;
    const MergeTargets targets = ResolveTargets(given.run, R"(D:\Data\)", row.file_name, row.other);
    EXPECT_EQ(targets.system, row.system);
    EXPECT_EQ(targets.customised, row.customised);
  }
}

TEST(MergeXMLs, TakesAFileOfThePackageIntoTheCustomisedOne) {
  XmlMachine given;
  given.machine.files.PutFile(R"(D:\Package\Layout.xml)", "<L><Version>2</Version><New/></L>");
  given.PutCustomised("Layout.xml", "<L><Version>1</Version></L>");
  given.Describe(R"(<XMLUpdate FileName=".\Layout.xml"><Insert><Node>/L/New</Node>)"
                 "<IfNotFoundAppendTo>/L</IfNotFoundAppendTo></Insert></XMLUpdate>");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Done);
  EXPECT_EQ(given.Customised("Layout.xml"), "<L><Version>2</Version><New/></L>");
}

TEST(MergeXMLs, WritesWhereOFileNameSays) {
  XmlMachine given;
  given.machine.files.PutFile(R"(D:\Package\Layout.xml)", "<L><Version>2</Version></L>");
  given.machine.files.PutFile(R"(C:\Korvo\Own.xml)", "<L/>");
  given.Describe(R"(<XMLUpdate FileName=".\Layout.xml" OFileName="$(apppath)\Own.xml"/>)");
  given.Xupd();
  EXPECT_EQ(testing::Compact(*given.machine.files.Contents(R"(C:\Korvo\Own.xml)")),
            "<L><Version>2</Version></L>");
}

struct OutsideCase {
  const char* what;
  const char* attributes;
};

// Each names files that are there, outside the data folder, the package and the known folders.
const OutsideCase kOutsideCases[] = {
    {"steps up from both folders", R"(FileName="..\..\Elsewhere\a.xml")"},
    {"with slashes", R"(FileName="../../Elsewhere/a.xml")"},
    {"a drive", R"(FileName=".\a.xml" OFileName="D:\Elsewhere\a.xml")"},
    {"steps up from a macro", R"(FileName=".\a.xml" OFileName="$(datapath)\..\Elsewhere\a.xml")"},
    {"steps up from the package", R"(FileName=".\a.xml" OFileName="..\Elsewhere\a.xml")"},
};

void PutElsewhere(XmlMachine& given) {
  given.machine.files.PutFile(R"(D:\Elsewhere\a.xml)", "<A><Old/></A>");
  given.machine.files.PutFile(R"(D:\Package\a.xml)", "<A><Version>1</Version></A>");
}

TEST(MergeXMLs, AFileOutsideTheKnownFoldersIsAWarning) {
  for (const OutsideCase& row : kOutsideCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    PutElsewhere(given);
    given.Describe("<XMLUpdate " + std::string(row.attributes) + "/>");
    const CommandRecord record = given.Xupd();
    EXPECT_EQ(record.outcome, Outcome::Warned);
    EXPECT_THAT(record.reason, HasSubstr("XML file outside the known folders"));
    EXPECT_FALSE(given.run.state.ErrorOccurred);
  }
}

TEST(MergeXMLs, AStrictRunRefusesAFileOutsideTheKnownFolders) {
  for (const OutsideCase& row : kOutsideCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given({.strict = true});
    PutElsewhere(given);
    given.Describe("<XMLUpdate " + std::string(row.attributes) +
                   R"(/><XMLUpdate FileName="Forms.xml"/>)");
    EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
    EXPECT_TRUE(given.run.Refused());
    EXPECT_TRUE(given.run.state.ErrorOccurred) << "xupd must not clear it";
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty()) << "nor any later entry";
  }
}

TEST(MergeXMLs, AStrictRunRefusesABadMacroInOFileName) {
  for (const char* name : {R"($(nosuch)\a.xml)", R"($(apppatha.xml)", R"($(apppath)a.xml)"}) {
    SCOPED_TRACE(name);
    XmlMachine given({.strict = true});
    PutElsewhere(given);
    given.Describe("<XMLUpdate FileName=\".\\a.xml\" OFileName=\"" + std::string(name) + "\"/>");
    EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
    EXPECT_TRUE(given.run.Refused());
  }
}

TEST(MergeXMLs, AnOFileNameThatDoesNotCountIsNotJudged) {
  XmlMachine given({.strict = true});
  given.Describe(R"(<XMLUpdate FileName="Forms.xml" OFileName="$(nosuch)\a.xml"/>)");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Done);
  EXPECT_FALSE(given.run.Refused());
}

TEST(MergeXMLs, AStrictRunWorksInTheKnownFolders) {
  XmlMachine given({.strict = true});
  given.machine.files.PutFile(R"(D:\Package\a.xml)", "<A><Version>1</Version></A>");
  given.machine.files.PutFile(R"(C:\Korvo\a.xml)", "<A/>");
  given.Describe(
      R"(<XMLUpdate FileName=".\a.xml" OFileName="C:\Korvo\a.xml"/><XMLUpdate FileName="Forms.xml"/>)");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Done);
  EXPECT_FALSE(given.run.Refused());
}

struct UnreachableCase {
  const char* what;
  const char* attributes;
  const char* path;  ///< of the message
};

const UnreachableCase kUnreachableCases[] = {
    {"a full path as FileName stays below Sys", R"(FileName="C:\Korvo\a.xml")",
     R"(D:\Data\Sys\C:\Korvo\a.xml)"},
    {"a server as FileName stays below Sys", R"(FileName="\\server\share\a.xml")",
     R"(D:\Data\Sys\\\server\share\a.xml)"},
    {"a server as OFileName", R"(FileName=".\a.xml" OFileName="\\server\share\a.xml")",
     R"(\\server\share\a.xml)"},
    {"a raw device", R"(FileName=".\a.xml" OFileName="\\.\PhysicalDrive0")",
     R"(\\.\PhysicalDrive0)"},
    {"a device name", R"(FileName="NUL")", R"(D:\Data\Sys\NUL)"},
    {"a device name with an extension", R"(FileName=".\a.xml" OFileName="$(datapath)\con.xml")",
     R"(D:\Data\con.xml)"},
    {"a folder", R"(FileName="")", R"(D:\Data\Sys\)"},
    {"a macro alone is a folder", R"x(FileName=".\a.xml" OFileName="$(datapath)")x", R"(D:\Data\)"},
    {"an unknown macro stands for nothing", R"(FileName=".\a.xml" OFileName="$(nosuch)\b.xml")",
     R"(D:\Package\b.xml)"},
};

TEST(MergeXMLs, WhatIsNoFileOfTheMachineIsNotFound) {
  for (const UnreachableCase& row : kUnreachableCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.machine.files.PutFile(R"(D:\Package\a.xml)", "<A/>");
    given.Describe("<XMLUpdate " + std::string(row.attributes) + "/>");
    EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
    EXPECT_THAT(given.MergeMessages(), Contains("File not found - " + std::string(row.path)));
    EXPECT_TRUE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.machine.files.log().changes(), Not(Contains(HasSubstr("Write"))));
  }
}

}  // namespace
}  // namespace zent
