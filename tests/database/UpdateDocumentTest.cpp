#include <gtest/gtest.h>

#include "database/UpdateDocument.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using testing::DatabaseRun;

constexpr const char* kDocument = R"(D:\Package\db.xml)";

TEST(ComparableVersion, IsCutBeforeADashInTheFourthPlace) {
  struct Case {
    const char* version;
    const char* compared;
  };
  constexpr Case kCases[] = {
      {"3.6-1", "3.6"}, {"3.6-", "3.6"},        {"3.6", "3.6"},     {"3.60-1", "3.60-1"},
      {"3-6", "3-6"},   {"3.6.1-2", "3.6.1-2"}, {"3.6-1-2", "3.6"}, {"", ""},
  };
  for (const Case& row : kCases) EXPECT_EQ(ComparableVersion(row.version), row.compared);
}

TEST(ReadUpdateDocument, ReadsAllOfIt) {
  DatabaseRun given;
  given.machine.files.PutFile(
      kDocument,
      "<UpdateDB><Version> 3.6-2 </Version><SQLServerScript>a\nb</SQLServerScript>"
      "<Table><Name>My Table</Name>"
      "<AddField><Name>One</Name><Type>text</Type><Size>30</Size></AddField>"
      "<AddField><Name>Two</Name><Type>Yes/No</Type><Size>1</Size></AddField>"
      "<AddField><Name>Three</Name><Type>Odd</Type></AddField></Table></UpdateDB>");
  const auto document = ReadUpdateDocument(given.run, kDocument);
  ASSERT_TRUE(document.ok());
  ASSERT_TRUE(document.value().has_value());
  EXPECT_EQ(document.value()->version, "3.6");
  EXPECT_EQ(document.value()->server_script, "a\r\nb");
  EXPECT_EQ(document.value()->table, "My Table");
  const std::vector<NewField>& fields = document.value()->fields;
  ASSERT_EQ(fields.size(), 3U);
  EXPECT_EQ(fields[0].name, "One");
  EXPECT_EQ(fields[0].type, FieldType::Text);
  EXPECT_EQ(fields[0].size, 30);
  EXPECT_EQ(fields[1].type, FieldType::Boolean);
  EXPECT_EQ(fields[1].size, 0) << "only a text has a size of its own";
  EXPECT_EQ(fields[2].type, FieldType::Unknown);
}

TEST(ReadUpdateDocument, ASizeIsANumberThatFits) {
  struct Case {
    const char* text;
    std::int32_t size;
  };
  constexpr Case kCases[] = {
      {"30", 30}, {"30 characters", 30}, {"-5", 0}, {"x", 0}, {"1e99", 2147483647}};
  for (const Case& row : kCases) {
    DatabaseRun given;
    given.machine.files.PutFile(
        kDocument,
        "<UpdateDB><Version>1</Version><Table><AddField><Name>A</Name><Type>Text</Type>"
        "<Size>" +
            std::string(row.text) + "</Size></AddField></Table></UpdateDB>");
    EXPECT_EQ(ReadUpdateDocument(given.run, kDocument).value()->fields[0].size, row.size);
  }
}

TEST(ReadUpdateDocument, TakesNoWhiteSpaceAroundItsWords) {
  DatabaseRun given;
  given.machine.files.PutFile(kDocument,
                              "<UpdateDB>\r\n<Version>\r\n\t3.6-2\r\n</Version>\r\n<Table>"
                              "<Name>\n\tMy Table\n</Name><AddField>\n"
                              "<Name>\n  My Field\n</Name><Type>\tText\n</Type>"
                              "<Size>\n\t30\n</Size></AddField></Table></UpdateDB>");
  const auto document = ReadUpdateDocument(given.run, kDocument);
  ASSERT_TRUE(document.ok());
  EXPECT_EQ(document.value()->version, "3.6");
  EXPECT_EQ(document.value()->table, "My Table");
  ASSERT_EQ(document.value()->fields.size(), 1U);
  EXPECT_EQ(document.value()->fields[0].name, "My Field");
  EXPECT_EQ(document.value()->fields[0].type, FieldType::Text);
  EXPECT_EQ(document.value()->fields[0].size, 30);
}

TEST(ReadUpdateDocument, WithoutItsVersionIsAnError) {
  for (const char* text : {"<UpdateDB/>", "<Other><Version>1</Version></Other>"}) {
    SCOPED_TRACE(text);
    DatabaseRun given;
    given.machine.files.PutFile(kDocument, text);
    EXPECT_EQ(ReadUpdateDocument(given.run, kDocument).number(), kObjectNotSet);
  }
}

TEST(ReadUpdateDocument, KeepsTheErrorOfAFieldThatIsNotWholeForWhoWantsTheFields) {
  for (const char* field :
       {"<Type>Memo</Type>", "<Name>A</Name>", "<Name>A</Name><Type>Text</Type>", ""}) {
    SCOPED_TRACE(field);
    DatabaseRun given;
    given.machine.files.PutFile(
        kDocument,
        "<UpdateDB><Version>1</Version><Table><Name>T</Name>"
        "<AddField><Name>First</Name><Type>Memo</Type></AddField><AddField>" +
            std::string(field) +
            "</AddField><AddField><Name>Last</Name><Type>Memo</Type></AddField></Table>"
            "</UpdateDB>");
    const auto document = ReadUpdateDocument(given.run, kDocument);
    ASSERT_TRUE(document.ok());
    EXPECT_EQ(document.value()->fields_read.number(), kObjectNotSet);
    ASSERT_EQ(document.value()->fields.size(), 1U);
    EXPECT_EQ(document.value()->fields[0].name, "First");
  }
}

TEST(ReadUpdateDocument, OneThatCannotBeLoadedIsNothing) {
  for (const char* text : {"", "<UpdateDB>", "no markup"}) {
    DatabaseRun given;
    given.machine.files.PutFile(kDocument, text);
    const auto document = ReadUpdateDocument(given.run, kDocument);
    ASSERT_TRUE(document.ok());
    EXPECT_FALSE(document.value().has_value());
  }
}

}  // namespace
}  // namespace zent
