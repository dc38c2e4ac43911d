#include <gmock/gmock.h>

#include "jet/dao/DaoFile.h"
#include "jet/dao/TableDef.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> FieldNames(const TableDef& table) {
  std::vector<std::string> names;
  const Result<Collection<Field>> fields = table.Fields();
  EXPECT_TRUE(fields.ok());
  for (const Field& field : fields.value_or({})) names.push_back(field.name);
  return names;
}

TEST(TableDef, TellsWhatItsFieldsAre) {
  struct Case {
    DataType type;
    std::uint16_t size;  ///< given
    std::uint16_t told;
    std::uint32_t attributes;
  };
  constexpr Case kCases[] = {
      {DataType::Boolean, 0, 1, kFixedField},        {DataType::Byte, 0, 1, kFixedField},
      {DataType::Integer, 0, 2, kFixedField},        {DataType::Long, 0, 4, kFixedField},
      {DataType::Currency, 0, 8, kFixedField},       {DataType::Single, 0, 4, kFixedField},
      {DataType::Double, 0, 8, kFixedField},         {DataType::Date, 0, 8, kFixedField},
      {DataType::Binary, 50, 50, kVariableField},    {DataType::ShortText, 30, 30, kVariableField},
      {DataType::ShortText, 0, 255, kVariableField}, {DataType::LongBinary, 0, 0, kVariableField},
      {DataType::Memo, 0, 0, kVariableField},        {DataType::Guid, 0, 16, kFixedField},
      {DataType::Decimal, 0, 16, kFixedField},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(static_cast<int>(row.type));
    DaoFile given;
    TableDef table = given.db->CreateTableDef("New");
    ASSERT_TRUE(table.Append(CreateField("A", row.type, row.size)).ok());
    const Status appended = given.db->Append(table);
    ASSERT_TRUE(appended.ok()) << appended.error().description;
    const Result<Field> field = table.Fields().value().Find("a");
    ASSERT_TRUE(field.ok());
    EXPECT_EQ(field.value().type, row.type);
    EXPECT_EQ(field.value().size, row.told);
    EXPECT_EQ(field.value().attributes, row.attributes | kUpdatableField);
  }
}

TEST(TableDef, KeepsPropertiesOfFields) {
  DaoFile given;
  const TableDef table = given.db->FindTableDef("people").value();
  EXPECT_EQ(table.name(), "People");
  EXPECT_EQ(table.attributes(), 0U);
  EXPECT_EQ(table.RecordCount().value_or(0), 3);
  EXPECT_EQ(table.date_created(), Date{38718.5});
  EXPECT_THAT(FieldNames(table), ElementsAre("Id", "Name", "Age", "Note", "Born", "Member"));
  const Collection<Field> fields = table.Fields().value();
  EXPECT_TRUE(fields[0].IsAutoNumber());
  EXPECT_TRUE(fields[1].required);
  EXPECT_FALSE(fields[1].allow_zero_length);
  EXPECT_EQ(fields[2].default_value, "18");
  EXPECT_EQ(fields[2].validation_rule, "<200");
  EXPECT_EQ(fields[2].validation_text, "Nobody is that old.");
  EXPECT_FALSE(fields[2].required);
}

TEST(TableDef, TellsItsIndexes) {
  DaoFile given;
  const Collection<Index> indexes = given.db->FindTableDef("People").value().Indexes().value();
  ASSERT_EQ(indexes.count(), 2U);
  const Index primary = indexes.Find("PRIMARYKEY").value();
  EXPECT_TRUE(primary.primary && primary.unique && primary.required);
  EXPECT_FALSE(primary.foreign);
  const Index by_age = indexes.Find("ByAge").value();
  EXPECT_FALSE(by_age.primary || by_age.unique || by_age.required || by_age.ignore_nulls);
  ASSERT_EQ(by_age.fields.size(), 2U);
  EXPECT_EQ(by_age.fields[0].name, "Age");
  EXPECT_TRUE(by_age.fields[0].descending);
  EXPECT_FALSE(by_age.fields[1].descending);
}

TEST(TableDef, ChangesATableAtOnce) {
  DaoFile given;
  TableDef table = given.db->FindTableDef("People").value();
  ASSERT_TRUE(table.Append(CreateField("City", DataType::ShortText, 40)).ok());
  EXPECT_THAT(FieldNames(table),
              ElementsAre("Id", "Name", "Age", "Note", "Born", "Member", "City"));
  given.Run("UPDATE People SET City = 'Rome'");
  ASSERT_TRUE(table.RenameField("City", "Town").ok());
  EXPECT_EQ(TextIn(*given.Rows("People"), "Town"), "Rome");
  EXPECT_EQ(table.DeleteField("Age").number(), kFieldInIndex);
  ASSERT_TRUE(table.DeleteIndex("ByAge").ok());
  ASSERT_TRUE(table.DeleteField("Age").ok());
  Index by_name = CreateIndex("ByName", {"Name"});
  by_name.unique = true;
  ASSERT_TRUE(table.Append(by_name).ok());
  EXPECT_EQ(given.db->Execute("INSERT INTO People (Name) VALUES ('ANN')").number(), kDuplicateKey);
  ASSERT_TRUE(table.SetName("Persons").ok());
  EXPECT_EQ(given.db->OpenRecordset("People").number(), kNoSuchTable);
  EXPECT_EQ(DaoFile::NamesOf(*given.Rows("Persons")), "Ann Bob Cid");
  ASSERT_TRUE(given.db->DeleteTable("Persons").ok());
  EXPECT_EQ(given.db->FindTableDef("Persons").number(), kItemNotFound);
}

TEST(TableDef, SaysWhatIsNotThereOrThereAlready) {
  DaoFile given;
  TableDef table = given.db->FindTableDef("People").value();
  EXPECT_EQ(given.db->FindTableDef("Other").number(), kItemNotFound);
  EXPECT_EQ(given.db->DeleteTable("Other").number(), kItemNotFound);
  EXPECT_EQ(table.DeleteField("Size").number(), kItemNotFound);
  EXPECT_EQ(table.DeleteIndex("Size").number(), kItemNotFound);
  EXPECT_EQ(table.RenameField("Size", "Height").number(), kItemNotFound);
  EXPECT_EQ(table.Append(CreateField("name", DataType::Long)).number(), kFieldDefinedTwice);
  EXPECT_EQ(table.Append(CreateIndex("byage", {"Age"})).number(), kIndexExists);
  EXPECT_EQ(table.Append(CreateField("a.b", DataType::Long)).number(), kInvalidName);
  EXPECT_EQ(table.Append(CreateField("A", static_cast<DataType>(13))).number(), kInvalidFieldType);
  TableDef again = PeopleTable();
  EXPECT_EQ(again.Append(CreateField("name", DataType::Long)).number(), kFieldDefinedTwice);
  EXPECT_EQ(given.db->Append(again).number(), kTableExists);
  EXPECT_EQ(given.db->Append(table).number(), kTableExists);
  EXPECT_EQ(given.Names(), "Ann Bob Cid");
}

TEST(TableDefs, AreTheTablesOfTheFile) {
  DaoFile given;
  const Collection<TableDef> tables = given.db->TableDefs().value();
  EXPECT_TRUE(tables.Has("people"));
  const TableDef system = tables.Find("MSysObjects").value();
  EXPECT_EQ(system.attributes() & 0x80000000U, 0x80000000U);
  EXPECT_FALSE(system.IsLinked());
  EXPECT_EQ(tables.Find("Other").number(), kItemNotFound);
  EXPECT_EQ(tables.Find(tables.count()).number(), kItemNotFound);
}

TEST(Relations, AreMadeAndKept) {
  DaoFile given;
  given.Run("CREATE TABLE Calls (Id COUNTER CONSTRAINT pk PRIMARY KEY, Person LONG)");
  const Relation relation{.name = "PersonCalls",
                          .table = "People",
                          .foreign_table = "Calls",
                          .attributes = kRelationDeleteCascade,
                          .fields = {{.name = "Id", .foreign_name = "Person"}}};
  const Status appended = given.db->Append(relation);
  ASSERT_TRUE(appended.ok()) << appended.error().description;
  given.Run("INSERT INTO Calls (Person) VALUES (1)");
  EXPECT_EQ(given.db->Execute("INSERT INTO Calls (Person) VALUES (9)").number(), kNoRelatedRecord);
  EXPECT_EQ(given.db->DeleteTable("People").number(), kTableInUse);
  const Relation found = given.db->Relations().value().Find("personcalls").value();
  EXPECT_EQ(found.table, "People");
  EXPECT_EQ(found.foreign_table, "Calls");
  EXPECT_EQ(found.attributes, kRelationDeleteCascade);
  ASSERT_EQ(found.fields.size(), 1U);
  EXPECT_EQ(found.fields[0].name, "Id");
  EXPECT_EQ(found.fields[0].foreign_name, "Person");
  const Collection<Index> indexes = given.db->FindTableDef("Calls").value().Indexes().value();
  EXPECT_TRUE(indexes.Find("PersonCalls").value().foreign);
  given.Run("DELETE FROM People WHERE Id = 1");
  EXPECT_TRUE(given.Rows("SELECT * FROM Calls")->AtEnd());
  ASSERT_TRUE(given.db->DeleteRelation("PersonCalls").ok());
  EXPECT_EQ(given.db->Relations().value().count(), 0U);
}

}  // namespace
}  // namespace zent::jet::testing
