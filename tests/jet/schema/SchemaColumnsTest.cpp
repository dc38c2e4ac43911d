#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/schema/SchemaChecks.h"

namespace zent::jet::testing {
namespace {

struct AddCase {
  const char* what;
  NewColumn column;
  Value old_rows;  ///< what rows that were there have
  Value new_row;   ///< a value that fits
};

const std::vector<AddCase>& Adds() {
  static const std::vector<AddCase> rows = {
      {"a number", {.name = "Added"}, Null(), std::int32_t{5}},
      {"yes/no", {.name = "Added", .type = ColumnType::Bool}, false, true},
      {"a text", {.name = "Added", .type = ColumnType::Text}, Null(), Text("new")},
      {"a memo", {.name = "Added", .type = ColumnType::Memo}, Null(), Text(std::string(5000, 'x'))},
      {"a decimal",
       {.name = "Added", .type = ColumnType::Numeric},
       Null(),
       Decimal{.magnitude = {0, 0, 0, 5}}},
      {"required", {.name = "Added", .required = true}, Null(), std::int32_t{5}},
  };
  return rows;
}

TEST(AddColumn, LeavesOldRowsAndServesNewOnes) {
  for (const bool fixed_only : {false, true}) {
    for (const AddCase& row : Adds()) {
      SCOPED_TRACE(std::string(row.what) + (fixed_only ? ", table of fixed columns" : ""));
      SchemaFile given;
      NewTable table{.name = "T", .columns = {{.name = "A"}, {.name = "B"}}};
      if (!fixed_only) table.columns.push_back({.name = "C", .type = ColumnType::Text});
      ExpectNumber(given.schema().CreateTable(table), 0);
      ExpectNumber(given.Insert("T", {{1, 2}, {3, 4}}), 0);
      ExpectNumber(given.schema().AddColumn("t", row.column), 0);
      ExpectRightDatabase(given.file());
      EXPECT_EQ(given.Column("T", "Added"), (std::vector<Value>{row.old_rows, row.old_rows}));
      EXPECT_EQ(given.Column("T", "B"), (std::vector<Value>{2, 4}));
      std::vector<Value> fresh = {5, 6};
      if (!fixed_only) fresh.push_back(Text("c"));
      fresh.push_back(row.new_row);
      ExpectNumber(given.Insert("T", {fresh}), 0);
      EXPECT_EQ(given.Column("T", "Added").back(), row.new_row);
      ExpectRightDatabase(given.file());
    }
  }
}

TEST(AddColumn, NumbersTheRowsOfAnAutoNumber) {
  SchemaFile given;
  NewTable table{.name = "T", .columns = {{.name = "A", .type = ColumnType::Text}}};
  ExpectNumber(given.schema().CreateTable(table), 0);
  ExpectNumber(given.Insert("T", {{Text("x")}, {Text("y")}}), 0);
  ExpectNumber(given.schema().AddColumn("T", {.name = "Id", .auto_number = true}), 0);
  ExpectNumber(
      given.schema().AddColumn("T", {.name = "G", .type = ColumnType::Guid, .auto_number = true}),
      0);
  ExpectNumber(given.Insert("T", {{Text("z")}}), 0);
  EXPECT_EQ(given.Column("T", "Id"), (std::vector<Value>{1, 2, 3}));
  for (const Value& guid : given.Column("T", "G")) EXPECT_FALSE(IsNull(guid));
  ExpectNumber(given.schema().AddColumn("T", {.name = "N", .auto_number = true}),
               kInvalidFieldType);
  ExpectRightDatabase(given.file());
}

TEST(AddColumn, RefusesNamesAndNumbersThatDoNotFit) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.schema().AddColumn("People", {.name = "NAME"}), kFieldDefinedTwice);
  ExpectNumber(given.schema().AddColumn("People", {.name = "a!b"}), kInvalidName);
  ExpectNumber(given.schema().AddColumn("None", {.name = "A"}), kNoSuchTable);
  ExpectNumber(given.schema().AddColumn("MSysACEs", {.name = "A"}), kReadOnly);
  for (int i = 4; i < 255; ++i) {
    ExpectNumber(given.schema().AddColumn(
                     "People", {.name = "C" + std::to_string(i), .type = ColumnType::Memo}),
                 0);
  }
  ExpectNumber(given.schema().AddColumn("People", {.name = "More"}), kTooManyFields);
  ExpectRightDatabase(given.file());
}

TEST(DropColumn, KeepsTheOtherFieldsOfEveryRow) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  const std::string long_text(9000, 'n');
  ExpectNumber(given.Insert("People", {{Null(), Text("Ann"), Date{1}, Text(long_text)},
                                       {Null(), Text("Bob"), Date{2}, Text("short")}}),
               0);
  ExpectNumber(given.schema().DropColumn("People", "Notes"), 0);
  ExpectRightDatabase(given.file());
  ExpectNumber(given.schema().DropColumn("People", "born"), 0);
  ExpectRightDatabase(given.file());
  ExpectNumber(given.schema().AddColumn("People", {.name = "Born", .type = ColumnType::Double}), 0);
  ExpectNumber(given.Insert("People", {{Null(), Text("Cid"), 7.5}}), 0);
  ExpectRightDatabase(given.file());
  EXPECT_EQ(given.Column("People", "Name"),
            (std::vector<Value>{Text("Ann"), Text("Bob"), Text("Cid")}));
  EXPECT_EQ(given.Column("People", "Born"), (std::vector<Value>{Null(), Null(), 7.5}));
  const TableDefinition& table = given.Definition("People");
  EXPECT_EQ(table.max_columns, 5);
  EXPECT_EQ(table.ColumnOf(4)->fixed_offset, 12);  // behind the dropped date of the old rows
  EXPECT_TRUE(table.long_value_maps.empty());
}

TEST(DropColumn, LeavesItsBytesToNoOtherWhereRowsHaveNoVariablePart) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable({.name = "T", .columns = {{.name = "A"}, {.name = "B"}}}),
               0);
  ExpectNumber(given.Insert("T", {{1, 4}}), 0);
  ExpectNumber(given.schema().DropColumn("T", "B"), 0);
  ExpectNumber(given.schema().AddColumn("T", {.name = "C"}), 0);
  EXPECT_EQ(given.Definition("T").ColumnOf(2)->fixed_offset, 8);
  EXPECT_EQ(given.Column("T", "C"), std::vector<Value>{Null()});
  ExpectRightDatabase(given.file());
}

TEST(DropColumn, RefusesWhatIsNeeded) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.schema().DropColumn("People", "Id"), kFieldInIndex);
  ExpectNumber(given.schema().DropColumn("People", "Name"), kFieldInIndex);
  ExpectNumber(given.schema().DropColumn("People", "None"), kItemNotFound);
  ExpectNumber(given.schema().CreateTable({.name = "One", .columns = {{.name = "A"}}}), 0);
  ExpectNumber(given.schema().DropColumn("One", "A"), kInvalidOperation);
}

TEST(RenameColumn, TakesItsPropertiesAlong) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.Insert("People", {{Null(), Text("Ann")}}), 0);
  ExpectNumber(given.schema().RenameColumn("People", "Name", "born"), kFieldDefinedTwice);
  ExpectNumber(given.schema().RenameColumn("People", "Name", ""), kInvalidName);
  ExpectNumber(given.schema().RenameColumn("People", "None", "Other"), kItemNotFound);
  ExpectNumber(given.schema().RenameColumn("People", "name", "Surname"), 0);
  EXPECT_EQ(given.Column("People", "Surname"), std::vector<Value>{Text("Ann")});
  ExpectNumber(given.Insert("People", {{Null(), Null()}}), kValueRequired);
  ExpectRightDatabase(given.file());
}

}  // namespace
}  // namespace zent::jet::testing
