#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/schema/SchemaChecks.h"

namespace zent::jet::testing {
namespace {

TEST(CreateTable, TakesRowsOfEveryType) {
  SchemaFile given;
  NewTable table{.name = "All"};
  table.columns = {{.name = "Flag", .type = ColumnType::Bool},
                   {.name = "Byte", .type = ColumnType::Byte},
                   {.name = "Int", .type = ColumnType::Int},
                   {.name = "Count", .auto_number = true},
                   {.name = "Money", .type = ColumnType::Currency},
                   {.name = "Single", .type = ColumnType::Single},
                   {.name = "Double", .type = ColumnType::Double},
                   {.name = "Day", .type = ColumnType::Date},
                   {.name = "Bytes", .type = ColumnType::Binary, .size = 16},
                   {.name = "Text", .type = ColumnType::Text},
                   {.name = "Fixed", .type = ColumnType::Text, .size = 5, .fixed = true},
                   {.name = "Object", .type = ColumnType::Ole},
                   {.name = "Memo", .type = ColumnType::Memo, .hyperlink = true},
                   {.name = "Guid", .type = ColumnType::Guid, .auto_number = true},
                   {.name = "Dec", .type = ColumnType::Numeric, .precision = 10, .scale = 2}};
  ExpectNumber(given.schema().CreateTable(table), 0);
  const std::string big(10000, 'm');
  const std::vector<Value> row = {
      true,         std::uint8_t{7}, std::int16_t{-3},
      Null(),       Currency{12345}, 1.5F,
      2.25,         Date{38000},     Binary{"abc"},
      Text("Text"), Text("12345"),   Binary{big},
      Text(big),    Null(),          Decimal{.scale = 2, .magnitude = {0, 0, 0, 150}}};
  ExpectNumber(given.Insert("all", {row, row}), 0);
  ExpectRightDatabase(given.file());
  const std::vector<NamedRow> rows = given.Rows("ALL");
  ASSERT_EQ(rows.size(), 2U);
  for (std::size_t i = 0; i < row.size(); ++i) {
    SCOPED_TRACE(table.columns[i].name);
    if (IsNull(row[i])) continue;  // an AutoNumber
    EXPECT_EQ(rows[1].at(table.columns[i].name), row[i]);
  }
  EXPECT_EQ(rows[1].at("Count"), Value(std::int32_t{2}));
  EXPECT_NE(rows[0].at("Guid"), rows[1].at("Guid"));
}

TEST(CreateTable, ListsItInTheCatalogWithRightsForEveryone) {
  SchemaFile given;
  NewTable table = People();
  table.flags = kHiddenObject;
  ExpectNumber(given.schema().CreateTable(table), 0);
  const auto object = given.catalog().FindIn(kTablesId, "people");
  ASSERT_TRUE(object.ok() && object.value());
  EXPECT_EQ(object.value()->name, "People");
  EXPECT_EQ(object.value()->created, Date{39000});
  EXPECT_TRUE(object.value()->IsHidden());
  std::vector<std::int32_t> rights;
  for (const NamedRow& row : RowsOf(given.file(), kAcesPage)) {
    if (row.at("ObjectId") == Value(object.value()->id)) {
      EXPECT_EQ(row.at("FInheritable"), Value(false));
      rights.push_back(std::get<std::int32_t>(row.at("ACM")));
    }
  }
  EXPECT_EQ(rights, (std::vector<std::int32_t>{0xF00FE, 0xFFEFF}));
}

TEST(CreateTable, KeepsColumnsAndIndexesInTheOrderOfAccess) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  const TableDefinition& table = given.Definition("People");
  ASSERT_EQ(table.columns.size(), 4U);
  for (std::uint16_t i = 0; i < 4; ++i) EXPECT_EQ(table.columns[i].number, i);
  ASSERT_EQ(table.logical_indexes.size(), 2U);
  EXPECT_EQ(table.logical_indexes[0].name, "ByName");
  EXPECT_EQ(table.logical_indexes[1].kind, IndexKind::Primary);
  EXPECT_EQ(table.real_indexes[table.logical_indexes[1].real].flags, 0x89);
  EXPECT_TRUE(table.columns[1].IsCompressed());
}

TEST(CreateTable, EnforcesWhatColumnsAsk) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.Insert("People", {{Null(), Null()}}), kValueRequired);
  ExpectNumber(given.Insert("People", {{Null(), Text("")}}), 0);
  EXPECT_EQ(given.Column("People", "Name"), std::vector<Value>{Text("")});
}

NewTable WithColumns(std::size_t count) {
  NewTable table{.name = "Wide"};
  for (std::size_t i = 0; i < count; ++i) {
    table.columns.push_back({.name = "Column" + std::to_string(i), .type = ColumnType::Memo});
  }
  return table;
}

NewTable WithColumn(const NewColumn& column) { return {.name = "T", .columns = {column}}; }

NewTable WithIndexes(const std::vector<NewIndex>& indexes) {
  return {.name = "T", .columns = {{.name = "A"}, {.name = "B"}}, .indexes = indexes};
}

struct Refusal {
  const char* what;
  NewTable table;
  int number;
};

NewTable WithFixedTexts(int count) {
  NewTable table = {.name = "T"};
  for (int i = 0; i < count; ++i) {
    table.columns.push_back(
        {.name = "C" + std::to_string(i), .type = ColumnType::Text, .fixed = true});
  }
  return table;
}

NewTable WithIndexCount(std::size_t count) {
  std::vector<NewIndex> indexes(count);
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    indexes[i] = {.name = "I" + std::to_string(i), .columns = {{.name = "A"}}};
  }
  return WithIndexes(indexes);
}

NewTable WithIndexOn(std::size_t count) {
  NewTable table = WithColumns(count);
  table.indexes = {{.name = "I"}};
  for (const NewColumn& column : table.columns) table.indexes[0].columns.push_back({column.name});
  return table;
}

std::vector<Refusal> RefusedColumns() {
  return {
      {"no name", {.name = "", .columns = {{.name = "A"}}}, kInvalidName},
      {"a name with a dot", {.name = "a.b", .columns = {{.name = "A"}}}, kInvalidName},
      {"a name that is taken", {.name = "PEOPLE", .columns = {{.name = "A"}}}, kTableExists},
      {"the name of a system table",
       {.name = "MSysACEs", .columns = {{.name = "A"}}},
       kTableExists},
      {"no columns", {.name = "T"}, kInvalidArgument},
      {"256 columns", WithColumns(256), kTooManyFields},
      {"a column twice",
       {.name = "T", .columns = {{.name = "A"}, {.name = "a"}}},
       kFieldDefinedTwice},
      {"a column with a bad name", WithColumn({.name = " A"}), kInvalidName},
      {"text of size 0", WithColumn({.name = "A", .type = ColumnType::Text, .size = 0}),
       kFieldTooSmall},
      {"text of 256", WithColumn({.name = "A", .type = ColumnType::Text, .size = 256}),
       kFieldTooSmall},
      {"29 digits", WithColumn({.name = "A", .type = ColumnType::Numeric, .precision = 29}),
       kInvalidFieldType},
      {"a type of no file", WithColumn({.name = "A", .type = static_cast<ColumnType>(13)}),
       kInvalidFieldType},
      {"a text that counts",
       WithColumn({.name = "A", .type = ColumnType::Text, .auto_number = true}), kInvalidFieldType},
      {"two AutoNumbers",
       {.name = "T",
        .columns = {{.name = "A", .auto_number = true}, {.name = "B", .auto_number = true}}},
       kInvalidFieldType},
      {"rows longer than a page", WithFixedTexts(20), kRecordTooLarge},
  };
}

std::vector<Refusal> RefusedIndexes() {
  return {
      {"33 indexes", WithIndexCount(33), kTooManyIndexes},
      {"two primary keys",
       WithIndexes({{.name = "P", .columns = {{.name = "A"}}, .primary = true},
                    {.name = "Q", .columns = {{.name = "B"}}, .primary = true}}),
       kPrimaryKeyExists},
      {"an index twice",
       WithIndexes(
           {{.name = "I", .columns = {{.name = "A"}}}, {.name = "i", .columns = {{.name = "B"}}}}),
       kIndexExists},
      {"an index on no column", WithIndexes({{.name = "I", .columns = {{.name = "C"}}}}),
       kItemNotFound},
      {"an index without columns", WithIndexes({{.name = "I"}}), kInvalidArgument},
      {"an index on a column twice",
       WithIndexes({{.name = "I", .columns = {{.name = "A"}, {.name = "a"}}}}), kFieldDefinedTwice},
      {"an index on 11 columns", WithIndexOn(11), kTooManyIndexFields},
      {"an index on pictures",
       {.name = "T",
        .columns = {{.name = "A", .type = ColumnType::Ole}},
        .indexes = {{.name = "I", .columns = {{.name = "A"}}}}},
       kInvalidFieldType},
  };
}

TEST(CreateTable, RefusesWhatNoFileMayHoldAndTouchesNothing) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  given.file().Commit();
  const std::string before = given.file().Bytes();
  for (const std::vector<Refusal>& refusals : {RefusedColumns(), RefusedIndexes()}) {
    for (const Refusal& row : refusals) {
      SCOPED_TRACE(row.what);
      ExpectNumber(given.schema().CreateTable(row.table), row.number);
      given.file().Commit();
      EXPECT_TRUE(given.file().Bytes() == before);
    }
  }
}

TEST(CreateTable, TakesTheMostThatAFileMayHold) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(WithColumns(255)), 0);
  NewTable indexed = WithIndexes({});
  for (int i = 0; i < 32; ++i) {
    indexed.indexes.push_back({.name = "I" + std::to_string(i), .columns = {{.name = "A"}}});
  }
  ExpectNumber(given.schema().CreateTable(indexed), 0);
  ExpectNumber(given.Insert("Wide", {{Text("x"), Text("y")}}), 0);
  ExpectNumber(given.Insert("T", {{1, 2}, {1, 3}}), 0);
  ExpectRightDatabase(given.file());
}

TEST(CreateTable, NeedsATransaction) {
  SchemaFile given;
  EXPECT_TRUE(given.file().pager().Commit().ok());
  ExpectNumber(given.schema().CreateTable(People()), kInvalidOperation);
  EXPECT_TRUE(given.file().pager().Begin().ok());
}

TEST(DropTable, GivesBackEveryPage) {
  SchemaFile given;
  const std::vector<PageNumber> before = given.file().UsedPages();
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.schema().CreateTable(WithColumns(200)), 0);
  const std::vector<std::vector<Value>> rows(
      100, {Null(), Text("Name"), Null(), Text(std::string(9000, 'n'))});
  ExpectNumber(given.Insert("People", rows), 0);
  ExpectRightDatabase(given.file());
  ExpectNumber(given.schema().DropTable("people"), 0);
  ExpectNumber(given.schema().DropTable("Wide"), 0);
  ExpectRightDatabase(given.file());
  EXPECT_EQ(given.file().UsedPages(), before);
  ExpectNumber(given.schema().DropTable("People"), kNoSuchTable);
  ExpectNumber(given.schema().DropTable("MSysObjects"), kReadOnly);
  ExpectNumber(given.schema().CreateTable(People()), 0);
}

struct RenameCase {
  const char* what;
  const char* from;
  const char* to;
  int number;
};
constexpr RenameCase kRenames[] = {
    {"no such table", "None", "Other", kNoSuchTable},
    {"a system table", "MSysQueries", "Other", kReadOnly},
    {"a bad name", "People", "a]b", kInvalidName},
    {"a name that is taken", "People", "things", kTableExists},
    {"another case", "people", "PEOPLE", 0},
    {"another name", "People", "Persons", 0},
};

TEST(RenameTable, ChangesTheNameAlone) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  NewTable things = People();
  things.name = "Things";
  ExpectNumber(given.schema().CreateTable(things), 0);
  ExpectNumber(given.Insert("People", {{Null(), Text("Ann")}}), 0);
  for (const RenameCase& row : kRenames) {
    SCOPED_TRACE(row.what);
    ExpectNumber(given.schema().RenameTable(row.from, row.to), row.number);
    ExpectRightDatabase(given.file());
  }
  EXPECT_EQ(given.Column("Persons", "Name"), std::vector<Value>{Text("Ann")});
  EXPECT_FALSE(given.catalog().OpenTable("People").ok());
}

}  // namespace
}  // namespace zent::jet::testing
