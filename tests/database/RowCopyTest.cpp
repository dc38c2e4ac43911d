#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/RowCopy.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MemoryRow;
using testing::MemoryTable;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";

/// A table with a text that becomes a number, and an empty copy of it.
struct CopyRun : DatabaseRun {
  CopyRun() {
    tables().Add("T", {"Key", "Number"}, {{"a", "1"}, {"b", "many"}, {"c", "3"}});
    tables().Add("Ttmp", {"Key", "Number"});
    changed.after.type = FieldType::Long;
    changed.after.size = 4;
  }
  testing::MemoryTables& tables() { return access.Put(kPath); }
  std::vector<MemoryRow>& copied() { return tables().Find("Ttmp")->rows; }

  Result<SyncEnd> Copy() {
    const DatabasePtr database = std::move(OpenDatabase(run, kPath).value());
    const auto from = std::move(database->OpenRecordset("T", RecordsetUse::Read).value());
    const auto to = std::move(database->OpenRecordset("Ttmp", RecordsetUse::Change).value());
    return CopyRows(run, "T", *from, *to, {changed});
  }

  ChangedField changed{.before = {.name = "Number", .type = FieldType::Text, .size = 50},
                       .after = {.name = "Number", .type = FieldType::Text, .size = 50}};
};

TEST(CopyRows, CopiesEveryRow) {
  CopyRun given;
  const Result<SyncEnd> end = given.Copy();
  ASSERT_TRUE(end.ok());
  EXPECT_EQ(end.value(), SyncEnd::Done);
  EXPECT_EQ(given.copied(), given.tables().Find("T")->rows);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(CopyRows, AsksAboutAValueThatCannotBeCopied) {
  CopyRun given;
  given.access.world.failures["Set Number=many"] = {.number = 3421, .description = "type"};
  given.window.answers = {Answer::Yes};

  given.run.BeginCommand({.line = 1, .keyword = "stdf"});
  const Result<SyncEnd> end = given.Copy();
  given.run.EndCommand();

  ASSERT_TRUE(end.ok());
  EXPECT_EQ(end.value(), SyncEnd::Done);
  EXPECT_THAT(given.window.boxes, ElementsAre("Error copying field.\r\n"
                                              "Table Name: T\r\n"
                                              "Field Name: Number\r\n"
                                              "Field Value: many\r\n"
                                              "Field Size (Old): 50\r\n"
                                              "Field Size (New): 4\r\n"
                                              "Do you want to continue?"));
  EXPECT_EQ(given.window.questions[0].buttons, BoxButtons::YesNo);
  EXPECT_EQ(given.window.questions[0].icon, BoxIcon::Question);
  EXPECT_THAT(given.copied(),
              ElementsAre(MemoryRow{"a", "1"}, MemoryRow{"b", FieldValue()}, MemoryRow{"c", "3"}))
      << "the row stays, without the value";
  EXPECT_EQ(given.observer.records[0].outcome, Outcome::Warned);
  EXPECT_EQ(given.observer.records[0].reason, "a value of T.Number was left out");
}

TEST(CopyRows, NoStopsIt) {
  CopyRun given;
  given.access.world.failures["Set Number=many"] = {.number = 3421, .description = "type"};
  given.window.answers = {Answer::No};
  const Result<SyncEnd> end = given.Copy();
  ASSERT_TRUE(end.ok());
  EXPECT_EQ(end.value(), SyncEnd::Stopped);
  EXPECT_EQ(given.copied().size(), 1U);
}

TEST(CopyRows, ShowsOnlyTheBeginningOfALongValue) {
  CopyRun given;
  given.tables().Find("T")->rows = {{"a", std::string(300, 'x')}};
  given.access.world.failures["Set Number=" + std::string(300, 'x')] = {.number = 3163,
                                                                        .description = "long"};
  ASSERT_TRUE(given.Copy().ok());
  ASSERT_EQ(given.window.boxes.size(), 1U);
  EXPECT_THAT(given.window.boxes[0],
              HasSubstr("Field Value: " + std::string(255, 'x') + "\r\nField Size"));
}

TEST(CopyRows, ABlankTextIsAnEmptyNumberAndAsksNothing) {
  CopyRun given;
  given.tables().Find("T")->rows = {{"a", ""}, {"b", "  "}, {"c", FieldValue()}};
  ASSERT_TRUE(given.Copy().ok());
  for (const MemoryRow& row : given.copied()) EXPECT_TRUE(row[1].IsNull());
}

TEST(CopyRows, ABlankTextThatStaysATextIsKept) {
  CopyRun given;
  given.changed.after = {.name = "Number", .type = FieldType::Memo};
  given.tables().Find("T")->rows = {{"a", " "}};
  ASSERT_TRUE(given.Copy().ok());
  EXPECT_EQ(given.copied()[0][1], FieldValue(" "));
}

TEST(CopyRows, AFieldThatDoesNotChangeIsNotAskedAbout) {
  CopyRun given;
  given.access.world.failures["Set Key=b"] = {.number = 61, .description = "Disk full"};
  EXPECT_EQ(given.Copy().number(), 61);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

}  // namespace
}  // namespace zent
