#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xmlupdate/XmlMachine.h"

/// What Insert, Replace and Delete make of the customised copy.
namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::XmlMachine;

constexpr const char* kUpdating = R"(Updating D:\Data\Customize\Forms.xml)";
constexpr const char* kSystem =
    R"(<Forms><Form ID="a"><Field>new</Field></Form><Form ID="b"/></Forms>)";
constexpr const char* kCustomised =
    R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)";

struct OperationCase {
  const char* what;
  const char* operations;
  const char* customised;  ///< afterwards; nullptr: as before
  std::vector<std::string> messages;
  Outcome outcome = Outcome::Done;
};

void ExpectOperations(const std::vector<OperationCase>& rows) {
  for (const OperationCase& row : rows) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutSystem("Forms.xml", kSystem);
    given.PutCustomised("Forms.xml", kCustomised);
    given.DescribeForms(row.operations);

    const CommandRecord record = given.Xupd();

    EXPECT_EQ(given.Customised(), row.customised == nullptr ? kCustomised : row.customised);
    std::vector<std::string> messages = {kUpdating};
    messages.insert(messages.end(), row.messages.begin(), row.messages.end());
    EXPECT_EQ(given.MergeMessages(), messages);
    EXPECT_EQ(record.outcome, row.outcome) << record.reason;
    EXPECT_FALSE(given.run.state.ErrorOccurred);
    EXPECT_THAT(given.window.boxes, ElementsAre());
  }
}

std::string NotFound(const std::string& xpath) {
  return "Not found - " + xpath + " - Ignoring this update.";
}

TEST(Insert, PutsACopyWhereTheDescriptionSays) {
  ExpectOperations({
      {"directly before the element that Before names",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Form[@ID='a']</Before></Insert>",
       R"(<Forms><Form ID="x"/><Form ID="b"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"with all that it holds",
       "<Insert><Node>/Forms/Form[@ID='a']</Node><Before>/Forms/Form[@ID='x']</Before></Insert>",
       R"(<Forms><Form ID="a"><Field>new</Field></Form><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"Before wins over IfNotFoundAppendTo, in whatever order they stand",
       "<Insert><IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo>"
       "<Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Form[@ID='x']</Before></Insert>",
       R"(<Forms><Form ID="b"/><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"Before not found: at the end of IfNotFoundAppendTo",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Nosuch</Before>"
       "<IfNotFoundAppendTo>/Forms/Form[@ID='a']</IfNotFoundAppendTo></Insert>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field><Form ID="b"/></Form><Form ID="y"/></Forms>)",
       {}},
      {"a blank Before is none",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>  </Before>"
       "<IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/><Form ID="b"/></Forms>)",
       {}},
      {"neither found: a message that names IfNotFoundAppendTo",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Nosuch</Before>"
       "<IfNotFoundAppendTo>/Forms/Nowhere</IfNotFoundAppendTo></Insert>",
       nullptr,
       {NotFound("/Forms/Nowhere")},
       Outcome::Warned},
      {"a source that the system copy lacks: a message that names Node",
       "<Insert><Node>/Forms/Form[@ID='x']</Node>"
       "<IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert>",
       nullptr,
       {NotFound("/Forms/Form[@ID='x']")},
       Outcome::Warned},
      {"neither Before nor IfNotFoundAppendTo: nothing, and no message",
       "<Insert><Node>/Forms/Form[@ID='b']</Node></Insert>",
       nullptr,
       {},
       Outcome::Warned},
      {"IfNotFoundInsertBefore is no option of Insert",
       "<Insert><Node>/Forms/Form[@ID='b']</Node>"
       "<IfNotFoundInsertBefore>/Forms/Form[@ID='x']</IfNotFoundInsertBefore></Insert>",
       nullptr,
       {},
       Outcome::Warned},
      {"twice in one description: twice in the file",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Form[@ID='x']</Before></Insert>"
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Form[@ID='x']</Before></Insert>",
       R"(<Forms><Form ID="b"/><Form ID="b"/><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"of several that match the first counts, of sources and of targets",
       "<Insert><Node>//Form</Node><Before>//Form</Before></Insert>",
       R"(<Forms><Form ID="a"><Field>new</Field></Form><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"a relative expression starts at the document",
       "<Insert><Node>Forms/Form[@ID='b']</Node><Before>Forms/Form[@ID='x']</Before></Insert>",
       R"(<Forms><Form ID="b"/><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"only the first option of a name counts",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Node>/Forms/Form[@ID='a']</Node>"
       "<Before>/Forms/Form[@ID='y']</Before><Before>/Forms/Form[@ID='x']</Before></Insert>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="b"/><Form ID="y"/></Forms>)",
       {}},
  });
}

TEST(Insert, AMessageRepeatsTheExpressionAsItStands) {
  XmlMachine given;
  given.DescribeForms("<Insert><Node> /Forms/Nosuch </Node></Insert>");
  given.Xupd();
  EXPECT_THAT(given.MergeMessages(), ElementsAre(kUpdating, NotFound(" /Forms/Nosuch ")));
}

TEST(Insert, AppliedByTwoRunsOfADescriptionWithoutVersionInsertsTwice) {
  XmlMachine given;
  given.PutSystem("Forms.xml", kSystem);
  given.PutCustomised("Forms.xml", "<Forms/>");
  given.DescribeForms(
      "<Insert><Node>/Forms/Form[@ID='b']</Node>"
      "<IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert>");
  given.Xupd();
  given.Xupd();
  EXPECT_EQ(given.Customised(), R"(<Forms><Form ID="b"/><Form ID="b"/></Forms>)");
}

TEST(Replace, PutsACopyInThePlaceOfAnElement) {
  ExpectOperations({
      {"at the same position",
       "<Replace><Node>/Forms/Form[@ID='b']</Node><This>/Forms/Form[@ID='a']</This></Replace>",
       R"(<Forms><Form ID="x"/><Form ID="b"/><Form ID="y"/></Forms>)",
       {}},
      {"twice leaves one element, not two",
       "<Replace><Node>/Forms/Form[@ID='a']</Node><This>/Forms/Form[@ID='a']</This></Replace>"
       "<Replace><Node>/Forms/Form[@ID='a']</Node><This>/Forms/Form[@ID='a']</This></Replace>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>new</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"the document element",
       "<Replace><Node>/Forms</Node><This>/Forms</This></Replace>",
       kSystem,
       {}},
      {"This not found: at the end of IfNotFoundAppendTo, which wins over the other fallback",
       "<Replace><Node>/Forms/Form[@ID='b']</Node><This>/Forms/Nosuch</This>"
       "<IfNotFoundInsertBefore>/Forms/Form[@ID='x']</IfNotFoundInsertBefore>"
       "<IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Replace>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/><Form ID="b"/></Forms>)",
       {}},
      {"no This: the same",
       "<Replace><Node>/Forms/Form[@ID='b']</Node>"
       "<IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Replace>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="y"/><Form ID="b"/></Forms>)",
       {}},
      {"IfNotFoundAppendTo not found: a message, and the other fallback is not tried",
       "<Replace><Node>/Forms/Form[@ID='b']</Node>"
       "<IfNotFoundAppendTo>/Forms/Nowhere</IfNotFoundAppendTo>"
       "<IfNotFoundInsertBefore>/Forms/Form[@ID='x']</IfNotFoundInsertBefore></Replace>",
       nullptr,
       {NotFound("/Forms/Nowhere")},
       Outcome::Warned},
      {"IfNotFoundInsertBefore alone: before that element",
       "<Replace><Node>/Forms/Form[@ID='b']</Node><This>/Forms/Nosuch</This>"
       "<IfNotFoundInsertBefore>/Forms/Form[@ID='y']</IfNotFoundInsertBefore></Replace>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>own</Field></Form><Form ID="b"/><Form ID="y"/></Forms>)",
       {}},
      {"no place at all: nothing, and no message",
       "<Replace><Node>/Forms/Form[@ID='b']</Node><This>/Forms/Nosuch</This></Replace>",
       nullptr,
       {},
       Outcome::Warned},
      {"a source that the system copy lacks",
       "<Replace><Node>/Forms/Nosuch</Node><This>/Forms/Form[@ID='a']</This></Replace>",
       nullptr,
       {NotFound("/Forms/Nosuch")},
       Outcome::Warned},
  });
}

TEST(Delete, TakesTheElementOut) {
  ExpectOperations({
      {"with all that it holds",
       "<Delete><Node>/Forms/Form[@ID='a']</Node></Delete>",
       R"(<Forms><Form ID="x"/><Form ID="y"/></Forms>)",
       {}},
      {"of several the first",
       "<Delete><Node>/Forms/Form</Node></Delete>",
       R"(<Forms><Form ID="a"><Field>own</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"what is gone already: no message",
       "<Delete><Node>/Forms/Form[@ID='b']</Node></Delete>",
       nullptr,
       {}},
  });
}

TEST(Delete, OfAMissingElementStampsAndSavesAllTheSame) {
  XmlMachine given;
  given.DescribeForms("<Delete><Node>/Forms/Nosuch</Node></Delete>");
  const CommandRecord record = given.Xupd();
  EXPECT_EQ(given.Customised(),
            R"(<Forms><Version>3.06.0000</Version><Form ID="own">o</Form></Forms>)");
  EXPECT_EQ(record.outcome, Outcome::Done);
  EXPECT_THAT(record.reason, HasSubstr("nothing to delete: /Forms/Nosuch"));
}

TEST(Operations, AreCarriedOutInOrderAndOthersPassedOver) {
  ExpectOperations({
      {"each sees what those before it did",
       "<Delete><Node>/Forms/Form[@ID='a']</Node></Delete>"
       "<Insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Form[@ID='y']</Before></Insert>"
       "<Replace><Node>/Forms/Form[@ID='a']</Node><This>/Forms/Form[@ID='b']</This></Replace>",
       R"(<Forms><Form ID="x"/><Form ID="a"><Field>new</Field></Form><Form ID="y"/></Forms>)",
       {}},
      {"comments, text and instructions are nothing",
       "<!-- Delete --> text <?Delete me?><Delete><Node>/Forms/Form[@ID='a']</Node></Delete>",
       R"(<Forms><Form ID="x"/><Form ID="y"/></Forms>)",
       {}},
      {"a name in lower case is no operation; nothing is said",
       "<insert><Node>/Forms/Form[@ID='b']</Node><Before>/Forms/Form[@ID='x']</Before></insert>",
       nullptr,
       {},
       Outcome::Warned},
      {"an option in lower case is none",
       "<Insert><Node>/Forms/Form[@ID='b']</Node><before>/Forms/Form[@ID='x']</before></Insert>",
       nullptr,
       {},
       Outcome::Warned},
      {"a not-found operation does not keep the others from their work",
       "<Insert><Node>/Forms/Nosuch</Node></Insert>"
       "<Delete><Node>/Forms/Form[@ID='a']</Node></Delete>",
       R"(<Forms><Form ID="x"/><Form ID="y"/></Forms>)",
       {NotFound("/Forms/Nosuch")},
       Outcome::Warned},
      {"no operation at all", "", nullptr, {}},
  });
}

TEST(Operations, TheSystemCopyIsNeverWritten) {
  XmlMachine given;
  given.DescribeForms("<Delete><Node>/Forms/Form</Node></Delete>");
  given.Xupd();
  EXPECT_THAT(given.machine.files.log().changes(),
              ElementsAre(R"(Write D:\Data\Customize\Forms.xml)"));
}

}  // namespace
}  // namespace zent
