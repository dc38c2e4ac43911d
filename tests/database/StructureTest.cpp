#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "database/DBFuncs.h"
#include "database/SQLFuncs.h"
#include "database/Structure.h"
#include "database/fakes/DatabaseRun.h"

namespace zent {
namespace {

using ::testing::Contains;
using testing::DatabaseRun;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::MemoryTable;
using testing::MemoryTables;
using ::testing::Not;

constexpr const char* kPath = R"(D:\Data\Korvo.mdb)";
constexpr const char* kTemplate = R"(C:\Korvo\Customize\KorvoTPL.mdb)";

/// Two databases, both opened; the first has a table of companies.
struct TwoDatabases : DatabaseRun {
  TwoDatabases() {
    access.Put(kTemplate);
    access.Put(kPath).Add("Companies", {"Name", "City"}, {{"Zent", "Ulm"}, {"Korvo", "Bonn"}});
    database = std::move(OpenDatabase(run, kPath).value());
    other = std::move(OpenDatabase(run, kTemplate).value());
  }
  MemoryTables& tables() { return access.Put(kPath); }
  MemoryTables& other_tables() { return access.Put(kTemplate); }
  MemoryTable& companies() { return *tables().Find("Companies"); }

  DatabasePtr database;
  DatabasePtr other;
};

struct NameCase {
  const char* name;
  const char* in_a_statement;
};

constexpr NameCase kNameCases[] = {{"Companies", "Companies"},
                                   {"E_Mails2", "E_Mails2"},
                                   {"My Table", "[My Table]"},
                                   {"2005", "[2005]"},
                                   {"Order", "[Order]"},
                                   {"Values", "[Values]"},
                                   {"Parameters", "[Parameters]"},
                                   {"Value", "Value"},
                                   {"O'Neil", "[O'Neil]"},
                                   {"a-b", "[a-b]"},
                                   {"M\xC3\xBCller", "M\xC3\xBCller"},
                                   {"", "[]"}};

TEST(StatementName, PutsOnlyOddNamesInBrackets) {
  for (const NameCase& row : kNameCases) {
    EXPECT_EQ(StatementName(row.name), row.in_a_statement);
  }
}

TEST(TableExists, FindsATableInAnyCase) {
  TwoDatabases given;
  EXPECT_TRUE(TableExists(given.run, *given.database, "Companies"));
  EXPECT_TRUE(TableExists(given.run, *given.database, "COMPANIES"));
  EXPECT_TRUE(TableExists(given.run, *given.database, given.companies().definition));
  EXPECT_TRUE(TableExists(given.run, *given.database, TableEntry{.name = "companies"}));
  EXPECT_FALSE(TableExists(given.run, *given.database, "Company"));
}

TEST(FieldExists, AsksAQueryOfNoRowsForTheField) {
  TwoDatabases given;
  EXPECT_TRUE(FieldExists(given.run, *given.database, "Companies", "CITY"));
  EXPECT_FALSE(FieldExists(given.run, *given.database, "Companies", "Street"));
  EXPECT_FALSE(FieldExists(given.run, *given.database, "Nowhere", "City"));
  EXPECT_THAT(given.access.world.calls,
              Contains("OpenRecordset SELECT * FROM Companies WHERE 1=2 "));
}

TEST(FieldExists, TakesTablesWithOddNames) {
  TwoDatabases given;
  given.tables().Add("My Table", {"A"});
  EXPECT_TRUE(FieldExists(given.run, *given.database, "My Table", "A"));
}

TEST(Structure, APathIsOpenedAndClosedAgain) {
  DatabaseRun given;
  given.access.Put(kPath).Add("Companies", {"Name"});
  EXPECT_TRUE(TableExists(given.run, kPath, "Companies"));
  EXPECT_TRUE(FieldExists(given.run, kPath, "Companies", "Name"));
  EXPECT_FALSE(IsSystemTable(given.run, kPath, "Companies"));
  EXPECT_TRUE(RenameTable(given.run, kPath, "Companies", "Firms").ok());
  EXPECT_EQ(given.access.opens.size(), 4U);
  EXPECT_EQ(given.access.world.open, 0);
}

TEST(Structure, AnOpenDatabaseStaysOpen) {
  TwoDatabases given;
  EXPECT_TRUE(TableExists(given.run, *given.database, "Companies"));
  EXPECT_EQ(given.access.world.open, 2);
}

TEST(Structure, AnErrorIsNoOrDoesNothing) {
  DatabaseRun given;
  EXPECT_FALSE(TableExists(given.run, kPath, "Companies"));
  EXPECT_FALSE(FieldExists(given.run, kPath, "Companies", "Name"));
  EXPECT_FALSE(IsLinkedTable(given.run, kPath, "Companies"));
  EXPECT_FALSE(IsSystemTable(given.run, kPath, "Companies"));
  EXPECT_EQ(RenameTable(given.run, kPath, "A", "B").number(), kEngineFileNotFound);
  EXPECT_EQ(AddField(given.run, kPath, "A", {.name = "B"}).number(), kEngineFileNotFound);
  EXPECT_EQ(CopyField(given.run, kPath, "A", {.name = "B"}).number(), kEngineFileNotFound);
  EXPECT_EQ(ReplaceField(given.run, kPath, "A", "B", {.name = "B"}).number(), kEngineFileNotFound);
  EXPECT_EQ(CopyTable(given.run, kPath, kPath, "A", kPath, TableData::Copy).number(),
            kEngineFileNotFound);
  EXPECT_THAT(given.window.boxes, IsEmpty());
  EXPECT_THAT(given.messages(), IsEmpty());
}

struct AttributeCase {
  const char* what;
  std::uint32_t attributes;
  bool linked;
  bool system;
};

constexpr AttributeCase kAttributeCases[] = {
    {"a plain table", 0, false, false},
    {"an attached table", 0x40000000, true, false},
    {"an attached table of a server", 0x20000000, true, false},
    {"an attached table, hidden", 0x40000001, true, false},
    {"a system table", 0x80000000, false, true},
    {"a system table with other bits", 0x80000002, false, true},
    {"exactly 2", 2, false, true},
    {"2 and another bit", 3, false, false},
    {"a hidden table", 1, false, false},
};

TEST(IsLinkedTable, GoesByTheAttributesAndSoDoesIsSystemTable) {
  for (const AttributeCase& row : kAttributeCases) {
    SCOPED_TRACE(row.what);
    TwoDatabases given;
    given.companies().definition.attributes = row.attributes;
    EXPECT_EQ(IsLinkedTable(given.run, *given.database, "companies"), row.linked);
    EXPECT_EQ(IsSystemTable(given.run, *given.database, "companies"), row.system);
  }
}

TEST(IsLinkedTable, IsFalseWhileTheKindIsThatOfAServer) {
  TwoDatabases given;
  given.companies().definition.attributes = kTableAttached;
  given.run.database.kind = kSQLServer;
  EXPECT_FALSE(IsLinkedTable(given.run, *given.database, "Companies"));
}

TEST(CopyTable, CopiesFieldsPropertiesAndIndexes) {
  TwoDatabases given;
  TableDefinition& definition = given.companies().definition;
  definition.fields[0].size = 80;
  definition.fields[0].properties = {{.name = "Caption", .type = FieldType::Text, .value = "N"}};
  definition.indexes = {
      {.name = "ByName", .fields = {{.name = "Name", .descending = true}}, .unique = true},
      {.name = "Relation1", .fields = {{.name = "City"}}, .foreign = true}};

  EXPECT_TRUE(
      CopyTable(given.run, *given.database, *given.other, "companies", kTemplate, TableData::Leave)
          .ok());

  const MemoryTable* const copy = given.other_tables().Find("Companies");
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(copy->definition.name, "Companies");
  EXPECT_EQ(copy->definition.fields, definition.fields);
  EXPECT_THAT(copy->definition.indexes, ElementsAre(definition.indexes[0]));
  EXPECT_THAT(copy->rows, IsEmpty());
}

TEST(CopyTable, CopiesTheRowsByAStatementOfTheSource) {
  TwoDatabases given;
  EXPECT_TRUE(
      CopyTable(given.run, *given.database, *given.other, "Companies", kTemplate, TableData::Copy)
          .ok());
  EXPECT_EQ(given.other_tables().Find("Companies")->rows, given.companies().rows);
  EXPECT_THAT(given.access.world.calls,
              Contains(R"(Execute INSERT INTO Companies IN "C:\Korvo\Customize\KorvoTPL.mdb" )"
                       "SELECT * FROM Companies"));
}

TEST(CopyTable, PutsOddNamesInBrackets) {
  TwoDatabases given;
  given.tables().Add("My Table", {"A"}, {{"1"}});
  EXPECT_TRUE(
      CopyTable(given.run, *given.database, *given.other, "My Table", kTemplate, TableData::Copy)
          .ok());
  EXPECT_EQ(given.other_tables().Find("My Table")->rows.size(), 1U);
}

TEST(CopyTable, DoesNothingWhenTheSourceLacksTheTableOrTheTargetHasIt) {
  TwoDatabases given;
  given.other_tables().Add("Companies", {"Old"});
  for (const char* table : {"Companies", "Nowhere"}) {
    EXPECT_TRUE(
        CopyTable(given.run, *given.database, *given.other, table, kTemplate, TableData::Copy)
            .ok());
  }
  EXPECT_EQ(given.other_tables().tables.size(), 1U);
  EXPECT_EQ(given.other_tables().Find("Companies")->definition.fields[0].name, "Old");
}

TEST(CopyTable, MakesALinkATableOfTheTargetsOwn) {
  TwoDatabases given;
  given.companies().definition.attributes = kTableAttached | kTableHidden;
  given.companies().definition.connect = ";DATABASE=x";
  EXPECT_TRUE(
      CopyTable(given.run, *given.database, *given.other, "Companies", kTemplate, TableData::Leave)
          .ok());
  const TableDefinition& copy = given.other_tables().Find("Companies")->definition;
  EXPECT_EQ(copy.attributes, kTableHidden);
  EXPECT_EQ(copy.connect, "");
}

TEST(CopyTable, LeavesNothingBehindWhenAStepFails) {
  for (const char* step : {"CreateTable", "CreateIndex", "Execute"}) {
    SCOPED_TRACE(step);
    TwoDatabases given;
    given.companies().definition.indexes = {{.name = "I", .fields = {{.name = "Name"}}}};
    given.access.world.failures[step] = {.number = 3026, .description = "Not enough space."};
    EXPECT_EQ(
        CopyTable(given.run, *given.database, *given.other, "Companies", kTemplate, TableData::Copy)
            .number(),
        3026);
    EXPECT_THAT(given.other_tables().tables, IsEmpty());
    EXPECT_FALSE(given.other->InTransaction());
  }
}

TEST(CopyTable, IsPartOfATransactionThatIsOpen) {
  TwoDatabases given;
  ASSERT_TRUE(given.other->BeginTransaction().ok());
  EXPECT_TRUE(
      CopyTable(given.run, *given.database, *given.other, "Companies", kTemplate, TableData::Copy)
          .ok());
  EXPECT_TRUE(given.other->InTransaction());
  ASSERT_TRUE(given.other->Rollback().ok());
  EXPECT_THAT(given.other_tables().tables, IsEmpty());
}

TEST(RenameTable, RenamesATableThatExists) {
  TwoDatabases given;
  EXPECT_TRUE(RenameTable(given.run, *given.database, "companies", "Firms").ok());
  EXPECT_NE(given.tables().Find("Firms"), nullptr);
  EXPECT_TRUE(RenameTable(given.run, *given.database, "Nowhere", "Firms2").ok());
  EXPECT_THAT(given.access.world.calls, Not(Contains("RenameTable Nowhere")));
}

TEST(AddField, AddsAFieldWithTheAttributesGiven) {
  TwoDatabases given;
  EXPECT_TRUE(AddField(given.run, *given.database, "companies",
                       {.name = "Street",
                        .type = FieldType::Text,
                        .size = 40,
                        .allow_zero_length = false,
                        .ordinal_position = 7})
                  .ok());
  const FieldDefinition& field = given.companies().definition.fields.back();
  EXPECT_EQ(field.name, "Street");
  EXPECT_EQ(field.type, FieldType::Text);
  EXPECT_EQ(field.size, 40);
  EXPECT_FALSE(field.allow_zero_length);
  EXPECT_EQ(field.ordinal_position, 7);
}

TEST(AddField, DoesNothingWhenTheFieldExistsOrTheTableDoesNot) {
  TwoDatabases given;
  EXPECT_TRUE(AddField(given.run, *given.database, "Companies", {.name = "CITY"}).ok());
  EXPECT_TRUE(AddField(given.run, *given.database, "Nowhere", {.name = "City"}).ok());
  EXPECT_EQ(given.companies().definition.fields.size(), 2U);
}

TEST(CopyField, AddsAFieldLikeItsPattern) {
  TwoDatabases given;
  const FieldDefinition pattern{.name = "Notes",
                                .type = FieldType::Memo,
                                .required = true,
                                .properties = {{.name = "Caption", .value = "Notes"}}};
  EXPECT_TRUE(CopyField(given.run, *given.database, "Companies", pattern).ok());
  EXPECT_EQ(given.companies().definition.fields.back(), pattern);
}

TEST(ReplaceField, DeletesTheFieldAndAddsOneLikeThePattern) {
  TwoDatabases given;
  const FieldDefinition pattern{.name = "City", .type = FieldType::Text, .size = 100};
  EXPECT_TRUE(ReplaceField(given.run, *given.database, "Companies", "City", pattern).ok());
  EXPECT_EQ(given.companies().definition.fields.back(), pattern);
  EXPECT_EQ(given.companies().Text(0, "Name"), "Zent");
  EXPECT_EQ(given.companies().Text(0, "City"), "");
}

TEST(ReplaceField, KeepsTheFieldWithItsValuesWhenTheNewOneFails) {
  TwoDatabases given;
  given.access.world.failures["AddField"] = {.number = 3190, .description = "Too many fields."};
  const FieldDefinition pattern{.name = "City", .type = FieldType::Text, .size = 100};
  EXPECT_EQ(ReplaceField(given.run, *given.database, "Companies", "City", pattern).number(), 3190);
  EXPECT_EQ(given.companies().Text(0, "City"), "Ulm");
}

}  // namespace
}  // namespace zent
