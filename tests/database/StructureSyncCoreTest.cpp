#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/StructureSyncCore.h"
#include "database/SyncRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryTable;
using testing::MemoryTables;
using ::testing::Not;
using ::testing::StartsWith;
using testing::SyncRun;

FieldDefinition Field(const char* name, FieldType type = FieldType::Text, int size = 50) {
  return {.name = name, .type = type, .size = size};
}

/// The two databases, opened, and the core over them.
struct CoreRun : SyncRun {
  CoreRun() {
    database() = {};
    pattern() = {};
  }

  Result<SyncEnd> Core(const LookupTopUp& top_up = TopUp) {
    const DatabasePtr source = std::move(OpenDatabase(run, testing::kSyncTemplate).value());
    const DatabasePtr target = std::move(OpenDatabase(run, testing::kSyncDatabase).value());
    return SynchroniseTables(run, *source, *target, top_up);
  }

  /// Runs it and expects it to come to its end.
  void Synchronise() {
    const Result<SyncEnd> end = Core();
    ASSERT_TRUE(end.ok()) << end.error().description;
    EXPECT_EQ(end.value(), SyncEnd::Done);
  }
};

struct RebuildCase {
  const char* what;
  FieldDefinition field;
  FieldDefinition pattern;
  bool is_rebuilt;
};

TEST(NeedsRebuild, GoesByTypeAndRoom) {
  FieldDefinition captioned = Field("A");
  captioned.properties = {{.name = "Caption", .type = FieldType::Text, .value = "N"}};
  captioned.required = true;
  captioned.default_value = "1";
  FieldDefinition decimal = Field("A", FieldType::Decimal, 17);
  decimal.precision = 10;
  decimal.scale = 2;
  FieldDefinition finer = decimal;
  finer.scale = 4;
  FieldDefinition longer = decimal;
  longer.precision = 18;
  const RebuildCase cases[] = {
      {"the same", Field("A"), Field("A"), false},
      {"more room", Field("A"), Field("A", FieldType::Text, 51), true},
      {"less room", Field("A"), Field("A", FieldType::Text, 49), false},
      {"another type", Field("A"), Field("A", FieldType::Memo, 0), true},
      {"captions, rules and defaults do not count", Field("A"), captioned, false},
      {"a decimal with a finer scale", decimal, finer, true},
      {"a decimal with more digits", decimal, longer, true},
      {"a decimal with fewer", longer, decimal, false},
  };
  for (const RebuildCase& row : cases) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(NeedsRebuild(row.field, row.pattern), row.is_rebuilt);
  }
}

TEST(SynchroniseTables, ATableThatIsNewComesWithoutRows) {
  CoreRun given;
  given.pattern().Add("My Table", {"A"}, {{"a row"}});
  given.pattern().Find("My Table")->definition.indexes = {
      {.name = "ByA", .fields = {{.name = "A"}}}};
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(), ElementsAre("My Table: A 10 50; ByA"));
}

TEST(SynchroniseTables, AFieldThatIsMissingIsAddedAndTheRowsStay) {
  CoreRun given;
  given.database().Add("T", {"A"}, {{"1"}, {"2"}});
  given.pattern().Add("t", {"a", "My Field"});
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("T: A 10 50, My Field 10 50", "  1|", "  2|"));
}

TEST(SynchroniseTables, AFieldThatTheTemplateLacksStays) {
  CoreRun given;
  given.database().Add("T", {"A", "Users"}, {{"1", "mine"}});
  given.database().Add("Mine", {"B"}, {{"2"}});
  given.pattern().Add("T", {"A"});
  const std::vector<std::string> before = given.database().Describe();
  given.Synchronise();
  EXPECT_EQ(given.database().Describe(), before);
}

TEST(SynchroniseTables, AFieldThatDiffersIsRebuiltInItsPlaceWithItsDataAndIndexes) {
  CoreRun given;
  given.database().Add("My Table", {"First", "O'Neil", "Last"},
                       {{"1", "12", "x"}, {"2", FieldValue(), "y"}});
  given.database().Find("My Table")->definition.indexes = {
      {.name = "Primary", .fields = {{.name = "First"}}, .primary = true, .unique = true},
      {.name = "ByONeil", .fields = {{.name = "O'Neil"}}}};
  given.pattern().Add("My Table", {"First", "O'Neil", "Last"});
  given.pattern().Find("My Table")->definition.fields[1] = Field("O'Neil", FieldType::Text, 200);
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("My Table: First 10 50, O'Neil 10 200, Last 10 50; Primary; ByONeil",
                          "  1|12|x", "  2||y"));
}

TEST(SynchroniseTables, RowsThatAreCopiedNeedNoValueOfAFieldThatIsNew) {
  CoreRun given;
  given.database().Add("T", {"A"}, {{"1"}});
  given.pattern().Add("T", {"New", "A"});
  given.pattern().Find("T")->definition.fields[1].size = 80;
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(), ElementsAre("T: A 10 80, New 10 50", "  1|"));
  const std::vector<std::string>& calls = given.access.world.calls;
  EXPECT_LT(std::find(calls.begin(), calls.end(), "RenameTable Ttmp"),
            std::find(calls.begin(), calls.end(), "AddField New"));
}

TEST(SynchroniseTables, ARebuiltTableKeepsRowsThatBreakItsRulesAndTheRules) {
  CoreRun given;
  given.database().Add("T", {"A", "B"}, {{"1", FieldValue()}});
  given.pattern().Add("T", {"A", "B"});
  given.pattern().Find("T")->definition.fields[0].size = 80;
  TableDefinition& old = given.database().Find("T")->definition;
  old.validation_rule = "A < 5";
  old.fields[1].required = true;
  old.fields[1].allow_zero_length = false;
  old.fields[1].validation_rule = "Is Not Null";
  old.fields[1].validation_text = "B is wanted";
  const TableDefinition before = old;

  given.Synchronise();

  EXPECT_THAT(given.database().Describe(), ElementsAre("T: A 10 80, B 10 50", "  1|"));
  const TableDefinition& after = given.database().Find("T")->definition;
  EXPECT_EQ(after.fields[1], before.fields[1]);
  EXPECT_EQ(after.validation_rule, before.validation_rule);
  EXPECT_THAT(given.window.boxes, IsEmpty());
}

TEST(SynchroniseTables, ARebuiltTableTakesTheCounterBeforeTheOldOneGoes) {
  CoreRun given;
  given.database().Add("T", {"A"}, {{"1"}});
  given.pattern().Add("T", {"A"});
  given.pattern().Find("T")->definition.fields[0].size = 80;
  given.Synchronise();
  const std::vector<std::string>& calls = given.access.world.calls;
  const auto taken = std::find(calls.begin(), calls.end(), "TakeCounter Ttmp < T");
  ASSERT_NE(taken, calls.end());
  EXPECT_LT(taken, std::find(calls.begin(), calls.end(), "DeleteTable T"));
}

TEST(SynchroniseTables, AValueOfARequiredFieldThatIsLeftOutLeavesTheRow) {
  CoreRun given;
  given.database().Add("T", {"A", "B"}, {{"1", "x"}, {"many", "y"}});
  given.pattern().Add("T", {"A", "B"});
  FieldDefinition& number = given.pattern().Find("T")->definition.fields[0];
  number = Field("A", FieldType::Long, 4);
  number.required = true;
  given.window.answers = {Answer::Yes};

  given.Synchronise();

  EXPECT_THAT(given.database().Describe(), ElementsAre("T: A 4 4, B 10 50", "  1|x", "  |y"));
  EXPECT_TRUE(given.database().Find("T")->definition.fields[0].required);
  EXPECT_THAT(given.window.boxes, ElementsAre(StartsWith("Error copying field.")));
}

TEST(SynchroniseTables, ATableOfTheNameOfTheCopyIsNotTouched) {
  CoreRun given;
  given.database().Add("T", {"A"}, {{"1"}});
  given.database().Add("Ttmp", {"Users"}, {{"mine"}});
  given.pattern().Add("T", {"A"});
  given.pattern().Find("T")->definition.fields[0].size = 80;
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("Ttmp: Users 10 50", "  mine", "T: A 10 80", "  1"));
  EXPECT_THAT(given.access.world.calls, Contains("CreateTable Ttmp2"));
}

TEST(SynchroniseTables, TheNameOfTheCopyIsNeverTooLong) {
  CoreRun given;
  const std::string name(64, 'T');
  given.database().Add(name, {"A"}, {{"1"}});
  given.pattern().Add(name, {"A"});
  given.pattern().Find(name)->definition.fields[0].size = 80;
  given.Synchronise();
  EXPECT_THAT(given.access.world.calls, Contains("CreateTable " + std::string(61, 'T') + "tmp"));
  EXPECT_THAT(given.database().Describe(), ElementsAre(name + ": A 10 80", "  1"));
}

TEST(SynchroniseTables, RelationshipsOfARebuiltTableAreMadeAgainWhenAllIsDone) {
  CoreRun given;
  for (MemoryTables* tables : {&given.database(), &given.pattern()}) {
    tables->Add("Companies", {"ID"});
    tables->Add("Contacts", {"CompanyID"});
    tables->Add("Other", {"ID"});
  }
  const RelationDefinition relation{.name = "Companies_Contacts",
                                    .table = "Companies",
                                    .foreign_table = "Contacts",
                                    .fields = {{.name = "ID", .foreign_name = "CompanyID"}},
                                    .attributes = kRelationDeleteCascade};
  const RelationDefinition other{
      .name = "Other_Other", .table = "Other", .foreign_table = "Other", .fields = {}};
  given.database().relations = {relation, other};
  given.pattern().Find("Companies")->definition.fields[0] = Field("ID", FieldType::Long, 4);
  given.pattern().Find("Contacts")->definition.fields[0] = Field("CompanyID", FieldType::Long, 4);

  given.Synchronise();

  EXPECT_THAT(given.database().relations, ElementsAre(other, relation));
  const std::vector<std::string>& calls = given.access.world.calls;
  EXPECT_GT(std::find(calls.begin(), calls.end(), "CreateRelation Companies_Contacts"),
            std::find(calls.begin(), calls.end(), "RenameTable Contactstmp"))
      << "both sides have their new types by then";
}

TEST(SynchroniseTables, SystemTablesAreSkipped) {
  CoreRun given;
  for (const std::uint32_t attributes : {kTableSystem, kTableSystemOfEngine}) {
    given.pattern().Add(attributes == kTableSystem ? "MSysObjects" : "MSysOther", {"A"});
    given.pattern().tables.back().definition.attributes = attributes;
  }
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(), IsEmpty());
  EXPECT_THAT(given.messages(), ElementsAre("Skipping MSysObjects (system table)",
                                            "Skipping MSysOther (system table)"));
}

TEST(SynchroniseTables, ALinkedTableIsReportedAndSkippedEvenWhenTheTemplatesDiffers) {
  for (const std::uint32_t link : {kTableAttached, kTableAttachedOdbc}) {
    CoreRun given;
    given.database().Add("Mail", {"A"});
    given.database().Find("Mail")->definition.attributes = link;
    given.pattern().Add("Mail", {"A", "New"});
    given.pattern().Find("Mail")->definition.fields[0].size = 200;
    given.Synchronise();
    EXPECT_THAT(given.messages(),
                ElementsAre("Checking Mail (1 of 1)", "Skipping linked table. (Mail)"));
    EXPECT_THAT(given.database().Describe(), ElementsAre("Mail: A 10 50"));
  }
}

TEST(SynchroniseTables, ALinkedTableOfTheTemplateIsSkippedToo) {
  for (const std::uint32_t link : {kTableAttached, kTableAttachedOdbc}) {
    CoreRun given;
    given.database().Add("Present", {"A"});
    for (const char* name : {"Mail", "Present"}) {
      given.pattern().Add(name, {}).definition.attributes = link;
    }
    given.pattern().Add("Zebra", {"A"});
    given.Synchronise();
    EXPECT_THAT(given.messages(),
                ElementsAre("Checking Mail (1 of 3)", "Skipping linked table. (Mail)",
                            "Checking Present (2 of 3)", "Skipping linked table. (Present)",
                            "Checking Zebra (3 of 3)"));
    EXPECT_THAT(given.database().Describe(), ElementsAre("Present: A 10 50", "Zebra: A 10 50"));
  }
}

TEST(SynchroniseTables, ReadsTheListsOfTablesOnce) {
  CoreRun given;
  for (int i = 0; i < 50; ++i) {
    for (MemoryTables* tables : {&given.database(), &given.pattern()}) {
      tables->Add("T" + std::to_string(i), {"A"});
    }
  }
  given.Synchronise();
  const std::vector<std::string>& calls = given.access.world.calls;
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "Tables"), 2);
}

TEST(SynchroniseTables, TheVersionTableAlwaysComesFromTheTemplateAndLast) {
  CoreRun given;
  given.database().Add("VERSION", {"Version", "Old"}, {{"3.5", "x"}});
  given.pattern().Add("Version", {"Version"}, {{"3.6"}});
  given.pattern().Add("Zebra", {"A"});
  given.Synchronise();
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("Zebra: A 10 50", "Version: Version 10 50", "  3.6"));
}

struct LookupCase {
  const char* what;
  const char* table;
  std::uint32_t attributes;
  bool is_topped_up;
};

TEST(SynchroniseTables, LookupItemsAreAddedWhenItsTableWasSynchronised) {
  const LookupCase cases[] = {
      {"the table", "Lookup", 0, true},
      {"in any case", "LOOKUP", 0, true},
      {"a name that only holds it", "MyLookups", 0, false},
      {"a linked one was skipped", "Lookup", kTableAttached, false},
      {"another table", "Companies", 0, false},
  };
  for (const LookupCase& row : cases) {
    SCOPED_TRACE(row.what);
    CoreRun given;
    given.database().Add(row.table, {"A"});
    given.database().Find(row.table)->definition.attributes = row.attributes;
    given.pattern().Add(row.table, {"A"});
    given.Synchronise();
    const auto top_up = Contains(R"(Top-up: D:\Package\KorvoTPL.mdb > D:\Data\Korvo.mdb)");
    if (row.is_topped_up) {
      EXPECT_THAT(given.messages(), top_up);
    } else {
      EXPECT_THAT(given.messages(), Not(top_up));
    }
  }
}

TEST(SynchroniseTables, AnErrorOfTheLookupItemsEndsItBeforeTheVersion) {
  CoreRun given;
  given.database().Add("Lookup", {"A"});
  given.pattern().Add("Lookup", {"A", "B"});
  given.pattern().Add("version", {"Version"}, {{"3.6"}});
  const Result<SyncEnd> end =
      given.Core([](UpdateRun&, OpenedDatabase&, OpenedDatabase&) -> Result<std::size_t> {
        return RuntimeError{.number = 3075, .description = "Syntax error"};
      });
  EXPECT_EQ(end.number(), 3075);
  EXPECT_THAT(given.database().Describe(), ElementsAre("Lookup: A 10 50, B 10 50"))
      << "what was done stays";
}

TEST(SynchroniseTables, IsOneTransaction) {
  CoreRun given;
  given.database().Add("T", {"A"}, {{"1"}});
  given.pattern().Add("T", {"A", "B"});
  given.pattern().Find("T")->definition.fields[0].size = 80;
  given.pattern().Add("U", {"A"});
  given.pattern().Add("version", {"Version"}, {{"3.6"}});
  given.Synchronise();
  const std::vector<std::string>& calls = given.access.world.calls;
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "BeginTransaction"), 1);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "Commit"), 1);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "Rollback"), 0);
}

TEST(SynchroniseTables, StoppedByTheUserKeepsWhatWasDoneAndTheTableAsItWas) {
  CoreRun given;
  given.database().Add("First", {"A"});
  given.database().Add("T", {"A"}, {{"1"}, {"bad"}});
  given.pattern().Add("First", {"A", "B"});
  given.pattern().Add("T", {"A"});
  given.pattern().Find("T")->definition.fields[0] = Field("A", FieldType::Long, 4);
  given.pattern().Add("Last", {"A"});
  given.access.world.failures["Set A=bad"] = {.number = 3421, .description = "type"};
  given.window.answers = {Answer::No};

  const Result<SyncEnd> end = given.Core();

  ASSERT_TRUE(end.ok());
  EXPECT_EQ(end.value(), SyncEnd::Stopped);
  EXPECT_THAT(given.database().Describe(),
              ElementsAre("First: A 10 50, B 10 50", "T: A 10 50", "  1", "  bad"));
}

struct FailureCase {
  const char* what;
  const char* call;
  bool keeps_the_first_table;  ///< what was done before stays
};

TEST(SynchroniseTables, AfterAnErrorNoTableStandsBetweenTwoStates) {
  constexpr FailureCase kCases[] = {
      {"the copy cannot be made", "CreateTable Ttmp", true},
      {"a row cannot be saved", "Update", true},
      {"the rules cannot be set", "SetRules", true},
      {"its counter cannot be taken over", "TakeCounter", true},
      {"an index cannot be made", "CreateIndex", true},
      {"the old table stays", "DeleteTable T", false},
      {"the copy keeps its name", "RenameTable", false},
      {"a relationship cannot be taken off", "DeleteRelation", false},
      {"a relationship cannot be made again", "CreateRelation", false},
      {"the version cannot be replaced", "CreateTable version", false},
      {"nothing can be committed", "Commit", false},
  };
  for (const FailureCase& row : kCases) {
    SCOPED_TRACE(row.what);
    CoreRun given;
    given.database().Add("First", {"A"});
    given.database().Add("T", {"A"}, {{"1"}});
    given.database().Find("T")->definition.indexes = {{.name = "ByA", .fields = {{.name = "A"}}}};
    given.database().relations = {
        {.name = "R", .table = "First", .foreign_table = "T", .fields = {}}};
    const std::vector<std::string> before = given.database().Describe();
    given.pattern().Add("First", {"A", "B"});
    given.pattern().Add("T", {"A"});
    given.pattern().Find("T")->definition.fields[0].size = 80;
    given.pattern().Add("version", {"Version"}, {{"3.6"}});
    given.access.world.failures[row.call] = {.number = 61, .description = "Disk full"};

    EXPECT_EQ(given.Core().number(), 61);

    std::vector<std::string> expected = before;
    if (row.keeps_the_first_table) expected[0] = "First: A 10 50, B 10 50";
    EXPECT_EQ(given.database().Describe(), expected);
  }
}

}  // namespace
}  // namespace zent
