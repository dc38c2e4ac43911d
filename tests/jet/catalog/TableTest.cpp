#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "jet/catalog/Table.h"
#include "jet/fakes/CatalogFile.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

enum Position : std::uint8_t { Id, Name, Note, City };

/// A table with a rule of each kind.
struct People {
  explicit People(const std::vector<GivenProperty>& properties = {
                      {"name", "Required"},
                      {"Name", "AllowZeroLength"},
                      {"Note", "AllowZeroLength"},
                      {"City", "Required", ColumnType::Bool, false},
                      {"City", "AllowZeroLength", ColumnType::Bool, false}}) {
    TableBuilder table(file.file());
    table.AutoNumber("Id")
        .Column("Name", ColumnType::Text, 100)
        .Column("Note", ColumnType::Memo)
        .Column("City", ColumnType::Text, 60)
        .Index({Id}, kUniqueIndex, true);
    file.AddTable("People", table, properties);
  }
  Table& table() { return file.table("People"); }
  std::vector<Value> Fetch(RowPointer at) { return table().store().Fetch(at).value_or({}); }

  CatalogFile file;
};

TEST(Table, KeepsTheRulesOfItsColumns) {
  struct Row {
    const char* what;
    Value name, note, city;
    int number;
    Value name_after, note_after, city_after;
  };
  const Row rows[] = {
      {"all given", "Ada", "n", "London", 0, "Ada", "n", "London"},
      {"null where a value is required", Null(), "n", "x", kValueRequired, {}, {}, {}},
      {"an empty text is a value", "", "n", "x", 0, "", "n", "x"},
      {"an empty memo where it is allowed", "A", "", "x", 0, "A", "", "x"},
      {"an empty text where it is not", "A", "n", "", 0, "A", "n", Null()},
      {"null where it may be", "A", Null(), Null(), 0, "A", Null(), Null()},
      {"a text that is too long", "A", "n", Text(31, 'x'), kFieldTooSmall, {}, {}, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    People people;
    std::vector<Value> values = {Null(), row.name, row.note, row.city};
    const std::vector<Value> given = values;
    const Result<RowPointer> at = people.table().Insert(values);
    ASSERT_EQ(at.number(), row.number) << (at.ok() ? "" : at.error().description);
    if (row.number != 0) {
      EXPECT_EQ(values, given);
      continue;
    }
    EXPECT_EQ(values[Id], Value(std::int32_t{1}));
    const std::vector<Value> stored = people.Fetch(at.value());
    EXPECT_THAT(stored, ElementsAre(values[Id], row.name_after, row.note_after, row.city_after));
  }
}

TEST(Table, RequiredAndEmptyIsNotEnough) {
  People people(std::vector<GivenProperty>{{"City", "Required"}});
  std::vector<Value> values = {Null(), "A", Null(), ""};
  const Result<RowPointer> at = people.table().Insert(values);
  ASSERT_EQ(at.number(), kValueRequired);
  EXPECT_THAT(at.error().description, HasSubstr("'City'"));
}

TEST(Table, FindsColumnsInAnyCase) {
  People people;
  EXPECT_EQ(people.table().PositionOf("nOTE").value_or(99), Note);
  EXPECT_EQ(people.table().PositionOf("Id").value_or(99), Id);
  const Result<std::size_t> none = people.table().PositionOf("Street");
  EXPECT_EQ(none.number(), kItemNotFound);
  EXPECT_THAT(none.error().description, HasSubstr("Street"));
}

TEST(Table, ListsColumnsByTheirPlaceThenTheirNumber) {
  CatalogFile file;
  TableBuilder table(file.file());
  for (const char* const name : {"A", "B", "C", "D"}) table.Column(name, ColumnType::Long);
  table.definition().columns[0].ordinal = 7;
  table.definition().columns[1].ordinal = 2;
  table.definition().columns[2].ordinal = 2;
  table.definition().columns[3].ordinal = 0;
  file.AddTable("Mixed", table);
  EXPECT_THAT(file.table("Mixed").display_order(), ElementsAre(3, 1, 2, 0));
}

TEST(Table, WithUnreadableRulesIsReadAndNotWritten) {
  People people;
  TableBuilder table(people.file.file());
  const PageNumber page = table.Column("X", ColumnType::Long).Write();
  people.file.Add({.name = "Odd",
                   .id = static_cast<std::int32_t>(page),
                   .properties = std::string("MR2\0\xFF\xFF\xFF\x7F\x80\0", 10)});
  Table& odd = people.file.table("Odd");
  std::vector<Value> values = {std::int32_t{1}};
  EXPECT_EQ(odd.store().RowCount().value_or(9), 0U);
  EXPECT_EQ(odd.Insert(values).number(), kCannotOpenDatabase);
  EXPECT_EQ(odd.Writable().number(), kCannotOpenDatabase);
  EXPECT_EQ(odd.Delete({page, 0}).number(), kCannotOpenDatabase);
  EXPECT_EQ(odd.Update({page, 0}, {}).number(), kCannotOpenDatabase);
}

TEST(Table, RefusesTooFewValues) {
  People people;
  std::vector<Value> values = {Null()};
  EXPECT_EQ(people.table().Insert(values).number(), kInvalidArgument);
}

/// Gives bytes that count up, 0 first.
RandomSource Counting() {
  return [next = std::uint8_t{0}](std::span<std::uint8_t> bytes) mutable {
    std::fill(bytes.begin(), bytes.end(), next++);
  };
}

TEST(Table, MakesGuidsFromTheSourceItIsGiven) {
  CatalogFile file;
  TableBuilder table(file.file());
  table.Column("Id", ColumnType::Guid, 16, kGuidAutoNumberColumn)
      .Column("Other", ColumnType::Guid)
      .Index({0}, kUniqueIndex, true);
  file.AddTable("Marked", table);
  file.catalog().SetRandom(Counting());
  std::vector<Value> made = {Null(), Null()};
  ASSERT_TRUE(file.table("Marked").Insert(made).ok());
  Guid expected;
  expected.bytes[6] = 0x40;
  expected.bytes[8] = 0x80;
  EXPECT_EQ(made[0], Value(expected));
  EXPECT_EQ(made[1], Value(Null()));
  const Guid own{.bytes = {1, 2, 3}};
  std::vector<Value> given = {own, own};
  ASSERT_TRUE(file.table("Marked").Insert(given).ok());
  EXPECT_EQ(given[0], Value(own));
}

TEST(Table, MakesRandomNumbersThatAreNotTaken) {
  CatalogFile file;
  TableBuilder table(file.file());
  table.AutoNumber("Id").Index({0}, kUniqueIndex, true);
  file.AddTable("Random", table, {{"Id", "DefaultValue", ColumnType::Memo, "GenUniqueID()"}});
  file.catalog().SetRandom(Counting());
  std::vector<Value> taken = {std::int32_t{0x01010101}};
  ASSERT_TRUE(file.table("Random").Insert(taken).ok());
  for (const std::int32_t expected : {1, 0x02020202, 0x03030303}) {
    std::vector<Value> row = {Null()};
    ASSERT_TRUE(file.table("Random").Insert(row).ok());
    EXPECT_EQ(row[0], Value(expected));
  }
  file.catalog().SetRandom([](std::span<std::uint8_t> bytes) {
    std::fill(bytes.begin(), bytes.end(), std::uint8_t{2});
  });
  std::vector<Value> row = {Null()};
  EXPECT_EQ(file.table("Random").Insert(row).number(), kDuplicateKey);
  EXPECT_TRUE(IsNull(row[0]));
}

TEST(Table, AsksItsRowCheck) {
  People people;
  std::vector<Value> row = {Null(), "Ada", Null(), "London"};
  const Result<RowPointer> at = people.table().Insert(row);
  ASSERT_TRUE(at.ok());
  std::vector<std::vector<Value>> seen;
  people.table().SetRowCheck([&](std::span<const Value> values) -> Status {
    seen.emplace_back(values.begin(), values.end());
    const bool good = values[City] != Value("Nowhere");
    return good ? Status() : Status(JetError(kValidationFailed, "Where?"));
  });
  std::vector<Value> refused = {Null(), "Bob", Null(), "Nowhere"};
  EXPECT_EQ(people.table().Insert(refused).number(), kValidationFailed);
  const ColumnChange away{.position = City, .value = "Nowhere"};
  EXPECT_EQ(people.table().Update(at.value(), std::span(&away, 1)).number(), kValidationFailed);
  EXPECT_EQ(people.Fetch(at.value()), row);
  const ColumnChange home{.position = City, .value = "Paris"};
  EXPECT_TRUE(people.table().Update(at.value(), std::span(&home, 1)).ok());
  ASSERT_EQ(seen.size(), 3U);
  EXPECT_EQ(seen[0][Id], Value(std::int32_t{2}));
  EXPECT_THAT(seen[2], ElementsAre(row[Id], "Ada", Null(), "Paris"));
  EXPECT_TRUE(people.table().Delete(at.value()).ok());
}

}  // namespace
}  // namespace zent::jet::testing
