#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xmlupdate/XmlMachine.h"

/// The steps of a merge, as the observer of the run hears them.
namespace zent {
namespace {

using ::testing::HasSubstr;
using testing::XmlMachine;

constexpr const char* kFile = R"(D:\Data\Customize\Forms.xml)";

void ExpectStep(const XmlOperation& told, const XmlOperation& wanted) {
  EXPECT_EQ(told.file, wanted.file);
  EXPECT_EQ(told.action, wanted.action);
  EXPECT_EQ(told.node, wanted.node);
  EXPECT_EQ(told.place, wanted.place);
  EXPECT_EQ(told.outcome, wanted.outcome);
  EXPECT_EQ(told.reason, wanted.reason);
}

XmlOperation Step(XmlAction action, std::string node, std::string place, XmlOutcome outcome) {
  return {.file = kFile,
          .action = action,
          .node = std::move(node),
          .place = std::move(place),
          .outcome = outcome};
}

struct StepCase {
  const char* what;
  const char* operation;
  XmlOperation told;
};

TEST(MergeEvents, TellWhatBecameOfEachOperation) {
  const std::string source = "/Forms/Form[@ID='new']";
  const std::string own = "/Forms/Form[@ID='own']";
  const StepCase rows[] = {
      {"inserted",
       "<Insert><Node>/Forms/Form[@ID='new']</Node><Before>/Forms/Form[@ID='own']</Before></"
       "Insert>",
       Step(XmlAction::Insert, source, own, XmlOutcome::InsertedBefore)},
      {"appended",
       "<Insert><Node>/Forms/Form[@ID='new']</Node><Before>/No</Before>"
       "<IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert>",
       Step(XmlAction::Insert, source, "/Forms", XmlOutcome::Appended)},
      {"a source not found", "<Insert><Node>/No</Node></Insert>",
       Step(XmlAction::Insert, "/No", "", XmlOutcome::NotFound)},
      {"a place not found",
       "<Insert><Node>/Forms/Form[@ID='new']</Node><IfNotFoundAppendTo>/No</IfNotFoundAppendTo>"
       "</Insert>",
       Step(XmlAction::Insert, source, "/No", XmlOutcome::NotFound)},
      {"no place", "<Insert><Node>/Forms/Form[@ID='new']</Node></Insert>",
       Step(XmlAction::Insert, source, "", XmlOutcome::Nothing)},
      {"replaced",
       "<Replace><Node>/Forms/Form[@ID='new']</Node><This>/Forms/Form[@ID='own']</This></Replace>",
       Step(XmlAction::Replace, source, own, XmlOutcome::Replaced)},
      {"the last fallback of a Replace",
       "<Replace><Node>/Forms/Form[@ID='new']</Node><IfNotFoundInsertBefore>"
       "/Forms/Form[@ID='own']</IfNotFoundInsertBefore></Replace>",
       Step(XmlAction::Replace, source, own, XmlOutcome::InsertedBefore)},
      {"deleted", "<Delete><Node>/Forms/Form[@ID='own']</Node></Delete>",
       Step(XmlAction::Delete, own, "", XmlOutcome::Done)},
      {"gone already", "<Delete><Node>/Forms/Form[@ID='new']</Node></Delete>",
       Step(XmlAction::Delete, source, "", XmlOutcome::Nothing)},
  };
  for (const StepCase& row : rows) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.DescribeForms(row.operation);
    given.Xupd();
    const std::vector<XmlOperation>& told = given.observer.xml;
    ASSERT_EQ(told.size(), 3U);
    ExpectStep(told[0], row.told);
    ExpectStep(told[1], Step(XmlAction::Stamp, "3.06.0000", "", XmlOutcome::Replaced));
    ExpectStep(told[2], Step(XmlAction::Save, "", "", XmlOutcome::Done));
  }
}

TEST(MergeEvents, AFileThatIsUpToDateIsSkipped) {
  XmlMachine given;
  given.PutCustomised("Forms.xml", "<Forms><Version>3.06.0000</Version></Forms>");
  given.DescribeForms("");
  given.Xupd();
  ASSERT_EQ(given.observer.xml.size(), 1U);
  ExpectStep(given.observer.xml[0], Step(XmlAction::Skip, "", "", XmlOutcome::Nothing));
}

TEST(MergeEvents, AMergeThatEndsEarlyTellsTheStepAndNoSave) {
  XmlMachine given;
  given.DescribeForms("<Delete><Node>/Forms/Form</Node></Delete><Delete/>");
  given.Xupd();
  const std::vector<XmlOperation>& told = given.observer.xml;
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[0].outcome, XmlOutcome::Done);
  EXPECT_EQ(told[1].outcome, XmlOutcome::Failed);
  EXPECT_THAT(told[1].reason, HasSubstr("Node of Delete is missing"));
}

TEST(MergeEvents, AFailedSaveHasItsReason) {
  XmlMachine given;
  given.DescribeForms("");
  given.machine.files.log().FailWhere("Write ", StandardError(kDiskFull));
  given.Xupd();
  const XmlOperation& told = given.observer.xml.back();
  EXPECT_EQ(told.action, XmlAction::Save);
  EXPECT_EQ(told.outcome, XmlOutcome::Failed);
  EXPECT_THAT(told.reason, HasSubstr("(61)"));
}

}  // namespace
}  // namespace zent
