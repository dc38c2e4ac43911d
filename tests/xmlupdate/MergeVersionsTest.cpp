#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xmlupdate/XmlMachine.h"

/// The version gate and the version stamp.
namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::XmlMachine;

constexpr const char* kDelete = "<Delete><Node>/Forms/Old</Node></Delete>";

struct VersionCase {
  const char* what;
  const char* system;      ///< what its document element holds
  const char* customised;  ///< the same, before
  const char* afterwards;  ///< nullptr: the entry is skipped
};

const VersionCase kVersionCases[] = {
    {"the same version: skipped", "<Version>3.06.0000</Version>",
     "<Version>3.06.0000</Version><Old/>", nullptr},
    {"blanks around it do not count", "<Version>3.06.0000</Version>",
     "<Version> 3.06.0000 </Version><Old/>", nullptr},
    {"two empty versions are the same", "<Version/>", "<Version></Version><Old/>", nullptr},
    {"another spelling is another version", "<Version>3.06.0000</Version>",
     "<Version>3.6</Version><Old/>", "<Version>3.06.0000</Version>"},
    {"case counts", "<Version>3.6a</Version>", "<Version>3.6A</Version><Old/>",
     "<Version>3.6a</Version>"},
    {"a newer one is stamped back: equality alone counts", "<Version>3.06.0000</Version>",
     "<Version>4.00.0000</Version><Old/>", "<Version>3.06.0000</Version>"},
    {"a tab is no blank", "<Version>3.6</Version>", "<Version>\t3.6</Version><Old/>",
     "<Version>3.6</Version>"},
    {"no version in the system copy: applied, and nothing stamped", "<A/>",
     "<Version>3.06.0000</Version><Old/>", "<Version>3.06.0000</Version>"},
    {"no version in either", "<A/>", "<B/><Old/>", "<B/>"},
    {"no version in the customised copy: it becomes the first child",
     "<A/><Version>3.06.0000</Version>", "<B/><Old/>", "<Version>3.06.0000</Version><B/>"},
    {"the first child is put before a comment too", "<Version>3.06.0000</Version>",
     "<!--own--><Old/>", "<Version>3.06.0000</Version><!--own-->"},
    {"the first child of an element that the operations emptied", "<Version>1</Version>", "<Old/>",
     "<Version>1</Version>"},
    {"at its place, with attributes and all", "<Version by=\"Zent\">2</Version>",
     "<B/><Version>1</Version><Old/>", "<B/><Version by=\"Zent\">2</Version>"},
    {"of several the first counts", "<Version>2</Version><Version>9</Version>",
     "<Version>1</Version><Version>2</Version><Old/>", "<Version>2</Version><Version>2</Version>"},
    {"one that is no child of the document element is none", "<Version>2</Version>",
     "<B><Version>2</Version></B><Old/>", "<Version>2</Version><B><Version>2</Version></B>"},
    {"one in lower case is none", "<Version>2</Version>", "<version>2</version><Old/>",
     "<Version>2</Version><version>2</version>"},
};

std::string Forms(const std::string& content) { return "<Forms>" + content + "</Forms>"; }

TEST(Versions, DecideAndAreStamped) {
  for (const VersionCase& row : kVersionCases) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutSystem("Forms.xml", Forms(row.system));
    given.PutCustomised("Forms.xml", Forms(row.customised));
    given.DescribeForms(kDelete);

    const CommandRecord record = given.Xupd();

    if (row.afterwards == nullptr) {
      EXPECT_THAT(given.MergeMessages(), IsEmpty());
      EXPECT_THAT(given.machine.files.log().changes(), IsEmpty()) << "not even saved again";
      EXPECT_EQ(record.outcome, Outcome::Skipped);
      EXPECT_THAT(record.reason, HasSubstr(R"(up to date already: D:\Data\Customize\Forms.xml)"));
    } else {
      EXPECT_THAT(given.MergeMessages(), ElementsAre(R"(Updating D:\Data\Customize\Forms.xml)"));
      EXPECT_EQ(given.Customised(), Forms(row.afterwards));
      EXPECT_EQ(record.outcome, Outcome::Done);
    }
  }
}

TEST(Versions, ASecondRunFindsTheVersionAndDoesNothing) {
  XmlMachine given;
  given.DescribeForms(
      "<Insert><Node>/Forms/Form</Node><IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert>");
  given.Xupd();
  const std::string once = given.Customised();
  given.machine.files.log().Forget();
  EXPECT_EQ(given.Xupd().outcome, Outcome::Skipped);
  EXPECT_EQ(given.Customised(), once);
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
}

TEST(Versions, OneFileUpToDateDoesNotKeepTheOthersFromTheirUpdate) {
  XmlMachine given;
  given.PutSystem("Menus.xml", "<Menus><Version>1</Version></Menus>");
  given.PutCustomised("Menus.xml", "<Menus><Version>1</Version></Menus>");
  given.Describe(R"(<XMLUpdate FileName="Menus.xml"/><XMLUpdate FileName="Forms.xml"/>)");
  const CommandRecord record = given.Xupd();
  EXPECT_THAT(given.MergeMessages(), ElementsAre(R"(Updating D:\Data\Customize\Forms.xml)"));
  EXPECT_EQ(record.outcome, Outcome::Done) << "a file was updated";
  EXPECT_EQ(record.reason, R"(up to date already: D:\Data\Customize\Menus.xml)");
}

}  // namespace
}  // namespace zent
