#pragma once

#include <algorithm>
#include <optional>

#include "base/ErrorNumbers.h"
#include "contracts/ContractDatabase.h"

/// What a database tells of its structure, and changes of it where they are offered.
namespace zent::testing {

/// "Name(10) City(10) Age(4)": fields with the numbers of their types.
inline std::string FieldsText(OpenedDatabase& database, std::string_view table) {
  const Result<std::optional<TableDefinition>> found = database.Table(table);
  if (!found.ok()) return "error: " + found.error().description;
  if (!found.value()) return "no table";
  std::string text;
  for (const FieldDefinition& field : found.value()->fields) {
    if (!text.empty()) text += " ";
    text += field.name + "(" + std::to_string(static_cast<int>(field.type)) + ")";
  }
  return text;
}

/// "ByCity: City, PrimaryKey: Name" in the order of the names.
inline std::string IndexesText(OpenedDatabase& database, std::string_view table) {
  std::vector<std::string> texts;
  const auto found = database.Table(table).value_or(std::nullopt).value_or(TableDefinition());
  for (const IndexDefinition& index : found.indexes) {
    texts.push_back(index.name + ": " + index.fields.at(0).name);
  }
  std::sort(texts.begin(), texts.end());
  std::string text;
  for (const std::string& one : texts) text += (text.empty() ? "" : ", ") + one;
  return text;
}

TEST_P(DatabaseContract, ListsItsTables) {
  MakePeople();
  MakeTable({.name = "Two words", .fields = {{.name = "A", .type = FieldType::Long}}});
  const Result<std::vector<TableEntry>> tables = database().Tables();
  ASSERT_TRUE(tables.ok()) << tables.error().description;
  EXPECT_THAT(tables.value(), ::testing::Contains(TableEntry{.name = "People"}));
  EXPECT_THAT(tables.value(), ::testing::Contains(TableEntry{.name = "Two words"}));
}

TEST_P(DatabaseContract, DescribesATableInAnyCase) {
  MakePeople();
  EXPECT_EQ(FieldsText(database(), "Nowhere"), "no table");
  for (const char* name : {"People", "PEOPLE"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(FieldsText(database(), name), "Name(10) City(10) Age(4)");
    const auto found = database().Table(name).value_or(std::nullopt);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "People");
    EXPECT_EQ(found->attributes, 0U);
    EXPECT_EQ(found->fields[0].size, 20);
    EXPECT_EQ(found->fields[1].size, 10);
    EXPECT_TRUE(found->fields[0].required);
    EXPECT_FALSE(found->fields[1].required);
  }
}

TEST_P(DatabaseContract, DescribesTheIndexesOfATable) {
  MakePeople();
  const auto found = database().Table("People").value_or(std::nullopt);
  ASSERT_TRUE(found);
  ASSERT_EQ(found->indexes.size(), 2U);
  const bool primary_first = found->indexes[0].primary;
  const IndexDefinition& key = found->indexes[primary_first ? 0 : 1];
  const IndexDefinition& other = found->indexes[primary_first ? 1 : 0];
  EXPECT_TRUE(key.primary && key.unique);
  ASSERT_EQ(key.fields.size(), 1U);
  EXPECT_EQ(key.fields[0], (IndexField{.name = "Name"}));
  EXPECT_FALSE(other.primary || other.unique || other.foreign);
  EXPECT_EQ(other.name, "ByCity");
  ASSERT_EQ(other.fields.size(), 1U);
  EXPECT_EQ(other.fields[0], (IndexField{.name = "City"}));
}

/// One change after the other, and what the table is like behind it.
struct StructureStep {
  const char* what;
  Status (*change)(OpenedDatabase&);
  const char* table;
  const char* fields;
  const char* indexes;
};

inline const StructureStep kStructureSteps[] = {
    {"a table is made",
     [](OpenedDatabase& database) {
       return database.CreateTable(
           {.name = "Made", .fields = {{.name = "A", .type = FieldType::Long}}});
     },
     "Made", "A(4)", ""},
    {"a field is added",
     [](OpenedDatabase& database) {
       return database.AddField("made", {.name = "B", .type = FieldType::Text, .size = 5});
     },
     "Made", "A(4) B(10)", ""},
    {"an index is made",
     [](OpenedDatabase& database) {
       return database.CreateIndex("Made", {.name = "ByB", .fields = {{.name = "B"}}});
     },
     "Made", "A(4) B(10)", "ByB: B"},
    {"the table is renamed",
     [](OpenedDatabase& database) { return database.RenameTable("Made", "New name"); }, "New name",
     "A(4) B(10)", "ByB: B"},
    {"the index is deleted",
     [](OpenedDatabase& database) { return database.DeleteIndex("New name", "BYB"); }, "New name",
     "A(4) B(10)", ""},
    {"a field is deleted",
     [](OpenedDatabase& database) { return database.DeleteField("New name", "a"); }, "New name",
     "B(10)", ""},
    {"the table is deleted",
     [](OpenedDatabase& database) { return database.DeleteTable("NEW NAME"); }, "New name",
     "no table", ""},
};

TEST_P(DatabaseContract, ChangesItsStructureOrSaysThatItDoesNot) {
  MakePeople();
  for (const StructureStep& step : kStructureSteps) {
    SCOPED_TRACE(step.what);
    const Status changed = step.change(database());
    if (!GetParam().changes_structure) {
      ExpectFault(changed, kActionNotSupported);
      EXPECT_EQ(FieldsText(database(), "Made"), "no table");
      continue;
    }
    EXPECT_TRUE(changed.ok()) << changed.error().description;
    EXPECT_EQ(FieldsText(database(), step.table), step.fields);
    EXPECT_EQ(IndexesText(database(), step.table), step.indexes);
  }
  EXPECT_EQ(FieldsText(database(), "People"), "Name(10) City(10) Age(4)");
  EXPECT_THAT(Rows("People"), ::testing::SizeIs(4));
}

TEST_P(DatabaseContract, TakesRulesThatItsRowsBreakAlready) {
  constexpr int kFaultValueRequired = 3314;
  TableDefinition table = PeopleTable();
  if (!GetParam().changes_structure) {
    ExpectFault(database().SetRules("People", table), kActionNotSupported);
    return;
  }
  ASSERT_TRUE(database().CreateTable(table).ok());
  {
    const auto rows = OpenToChange("People");
    ASSERT_TRUE(rows->AddNew().ok());
    Set(*rows, "Name", "Ann");
    ASSERT_TRUE(rows->Update().ok());
  }
  table.fields[1].required = true;

  const Status ruled = database().SetRules("PEOPLE", table);

  ASSERT_TRUE(ruled.ok()) << ruled.error().description;
  const auto found = database().Table("People").value_or(std::nullopt);
  ASSERT_TRUE(found);
  EXPECT_TRUE(found->fields[0].required && found->fields[1].required);
  EXPECT_FALSE(found->fields[2].required);
  {
    const auto rows = OpenToChange("People");
    ASSERT_TRUE(rows->AddNew().ok());
    Set(*rows, "Name", "Bob");
    ExpectFault(rows->Update(), kFaultValueRequired);
  }
  EXPECT_THAT(Rows("People"), ::testing::ElementsAre("Ann|null|null"));
  table.fields[1].required = false;
  EXPECT_TRUE(database().SetRules("People", table).ok());
  Add("Bob", "Bonn", 2);
}

TEST_P(DatabaseContract, KeepsATableHidden) {
  if (!GetParam().changes_structure) return;
  const std::vector<FieldDefinition> fields = {{.name = "A", .type = FieldType::Long}};
  ASSERT_TRUE(database().CreateTable({.name = "Shown", .fields = fields}).ok());
  ASSERT_TRUE(
      database().CreateTable({.name = "New", .attributes = kTableHidden, .fields = fields}).ok());
  ASSERT_TRUE(database().RenameTable("New", "Hidden").ok());
  for (const TableEntry& table : database().Tables().value_or({})) {
    if (table.name == "Hidden") {
      EXPECT_EQ(table.attributes & kTableHidden, kTableHidden);
    }
    if (table.name == "Shown") {
      EXPECT_EQ(table.attributes, 0U);
    }
  }
  const auto hidden = database().Table("Hidden").value_or(std::nullopt);
  ASSERT_TRUE(hidden);
  EXPECT_EQ(hidden->attributes & kTableHidden, kTableHidden);
}

TEST_P(DatabaseContract, UndoesChangesOfStructureWithTheirTransaction) {
  if (!GetParam().changes_structure) {
    EXPECT_EQ(database().Relations().number(), kActionNotSupported);
    return;
  }
  MakePeople();
  ASSERT_TRUE(database().BeginTransaction().ok());
  ASSERT_TRUE(database().AddField("People", {.name = "Zip", .type = FieldType::Long}).ok());
  ASSERT_TRUE(database().Execute("UPDATE People SET City='Rom'").ok());
  ASSERT_TRUE(database().Rollback().ok());
  EXPECT_EQ(FieldsText(database(), "People"), "Name(10) City(10) Age(4)");
  EXPECT_THAT(Rows("SELECT * FROM People WHERE City='Rom'"), ::testing::IsEmpty());
}

}  // namespace zent::testing
