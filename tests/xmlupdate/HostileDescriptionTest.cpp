#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "xmlupdate/XmlMachine.h"

/// Descriptions and files made to harm: they are refused, and nothing is written.
namespace zent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using testing::XmlMachine;

std::string Nested(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<a>";
  for (int i = 0; i < levels; ++i) text += "</a>";
  return text;
}

/// Ten entities, each ten times the one before.
std::string Bomb(const std::string& root) {
  std::string text = "<!DOCTYPE " + root + " [<!ENTITY e0 \"lol\">";
  for (int i = 1; i < 10; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    text += "<!ENTITY e" + std::to_string(i) + " \"";
    for (int n = 0; n < 10; ++n) text += inner;
    text += "\">";
  }
  return text + "]><" + root + ">&e9;</" + root + ">";
}

struct HostileCase {
  const char* what;
  std::string text;
};

std::vector<HostileCase> HostileFiles() {
  return {
      {"an entity bomb", Bomb("XMLUpdates")},
      {"an entity that refers to itself",
       "<!DOCTYPE a [<!ENTITY e \"&e;\">]><XMLUpdates>&e;</XMLUpdates>"},
      {"nesting without end", Nested(100'000)},
      {"a file that breaks off", "<XMLUpdates><XMLUpdate FileName=\"Forms.xml\"><Delete><No"},
      {"bytes that are no text", std::string("<a>\0\x01\xFF</a>", 10)},
      {"no XML", "[setup]\r\nxupd,Update.xml\r\n"},
      {"nothing", ""},
  };
}

TEST(HostileFiles, AsDescriptionAreRefused) {
  for (const HostileCase& row : HostileFiles()) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.machine.files.PutFile(R"(D:\Package\Update.xml)", row.text);
    EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
    EXPECT_THAT(given.MergeMessages(),
                ElementsAre(StartsWith("Error Parsing: D:\\Package\\Update.xml\r\n")));
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
  }
}

TEST(HostileFiles, AsCustomisedCopyAreLeftAlone) {
  for (const HostileCase& row : HostileFiles()) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutCustomised("Forms.xml", row.text);
    given.DescribeForms("<Delete><Node>/Forms/Form</Node></Delete>");
    EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
  }
}

TEST(HostileFiles, AsLayoutAreLeftAlone) {
  for (const HostileCase& row : HostileFiles()) {
    SCOPED_TRACE(row.what);
    XmlMachine given;
    given.PutCustomised("Contacts.xml", row.text);
    given.UpdXFields(
        R"(<UpdateXFields FileName="Contacts.xml" TableName="C"><Version>2</Version></UpdateXFields>)");
    EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
    EXPECT_TRUE(given.run.state.xml_load_failed);
  }
}

TEST(HostileDescription, AFileThatADocumentNamesIsNeverFetched) {
  XmlMachine given;
  given.machine.files.PutFile(R"(D:\Package\secret.txt)", "secret");
  given.PutSystem("Forms.xml",
                  "<!DOCTYPE Forms [<!ENTITY e SYSTEM \"file:///D:/Package/secret.txt\">]>"
                  "<Forms><Form>&e;</Form></Forms>");
  given.DescribeForms(
      "<Insert><Node>/Forms/Form</Node><IfNotFoundAppendTo>/Forms</IfNotFoundAppendTo></Insert>");
  const std::string before = given.Customised();
  given.Xupd();
  EXPECT_EQ(given.Customised(), before);
}

TEST(HostileDescription, AnExpressionThatCostsTooMuchEndsTheMerge) {
  XmlMachine given;
  std::string forms = "<Forms>";
  for (int i = 0; i < 2000; ++i) forms += "<Form/>";
  given.PutCustomised("Forms.xml", forms + "</Forms>");
  given.DescribeForms(
      "<Delete><Node>//*[count(//*[count(//*[count(//*) &gt; 1]) &gt; 1]) &gt; "
      "1]/No</Node></Delete>");
  EXPECT_EQ(given.Xupd().outcome, Outcome::Failed);
  EXPECT_THAT(given.machine.files.log().changes(), IsEmpty());
}

TEST(HostileDescription, ThousandsOfMissesKeepTheRecordShort) {
  XmlMachine given;
  std::string operations;
  for (int i = 0; i < 5000; ++i) {
    operations += "<Insert><Node>/Forms/No" + std::to_string(i) + "</Node></Insert>";
  }
  given.DescribeForms(operations);
  const CommandRecord record = given.Xupd();
  EXPECT_EQ(given.MergeMessages().size(), 5001U);
  EXPECT_EQ(record.outcome, Outcome::Warned);
  EXPECT_LT(record.reason.size(), 2500U);
}

}  // namespace
}  // namespace zent
