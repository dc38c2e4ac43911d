#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/catalog/Relationship.h"
#include "jet/fakes/CatalogFile.h"
#include "jet/format/JetErrors.h"

namespace zent::jet::testing {
namespace {

using ::testing::HasSubstr;

Value Number(int number) { return static_cast<std::int32_t>(number); }

std::vector<Value> Row(const char* name, int flags, int count, int position, const char* table,
                       const char* column, const char* referenced = "One",
                       const char* referenced_column = "Id") {
  return {name,  Number(flags), Number(count), Number(position),
          table, column,        referenced,    referenced_column};
}

TEST(Relationships, AreGatheredFromTheirRows) {
  CatalogFile file;
  file.AddRelationshipRow(Row("Pair", 0x1100, 2, 1, "Many", "B", "One", "Y"));
  file.AddRelationshipRow(Row("Single", kNotEnforced, 1, 0, "Other", "C"));
  file.AddRelationshipRow(Row("pair", 0x1100, 2, 0, "many", "A", "ONE", "X"));
  const Result<std::vector<Relationship>> all = file.catalog().Relationships();
  ASSERT_TRUE(all.ok()) << all.error().description;
  const std::vector<Relationship> expected = {
      {"Pair", "Many", "One", {{"A", "X"}, {"B", "Y"}}, 0x1100},
      {"Single", "Other", "One", {{"C", "Id"}}, kNotEnforced}};
  EXPECT_EQ(all.value(), expected);
  EXPECT_TRUE(expected[0].enforced() && expected[0].cascades_updates());
  EXPECT_TRUE(expected[0].cascades_deletes() && !expected[0].sets_null_on_delete());
  EXPECT_FALSE(expected[1].enforced() || expected[1].cascades_updates());
}

TEST(Relationships, AreThoseOfEitherSide) {
  CatalogFile file;
  file.AddRelationshipRow(Row("First", 0, 1, 0, "Many", "A"));
  file.AddRelationshipRow(Row("Second", 0, 1, 0, "Other", "A", "Many"));
  file.AddRelationshipRow(Row("Third", 0, 1, 0, "Other", "B"));
  struct Wanted {
    const char* table;
    std::size_t count;
  };
  constexpr Wanted kRows[] = {{"many", 2}, {"Other", 2}, {"ONE", 2}, {"Nobody", 0}};
  for (const Wanted& row : kRows) {
    SCOPED_TRACE(row.table);
    EXPECT_EQ(file.catalog().RelationshipsOf(row.table).value_or({}).size(), row.count);
  }
}

TEST(Relationships, ThatContradictThemselvesAreDamage) {
  struct Case {
    const char* what;
    std::vector<Value> first, second;
  };
  const std::vector<Value> good = Row("R", 0, 2, 0, "Many", "A");
  const Case cases[] = {
      {"a column is missing", good, Row("Other", 0, 1, 0, "Many", "A")},
      {"a column comes twice", good, Row("R", 0, 2, 0, "Many", "B")},
      {"a place beyond the count", good, Row("R", 0, 2, 2, "Many", "B")},
      {"a place before the first", good, Row("R", 0, 2, -1, "Many", "B")},
      {"a huge count", Row("R", 0, 2000000000, 0, "Many", "A"),
       Row("R", 0, 2000000000, 1, "Many", "B")},
      {"a count below zero", Row("R", 0, -1, 0, "Many", "A"), good},
      {"another count", good, Row("R", 0, 3, 1, "Many", "B")},
      {"other flags", good, Row("R", 1, 2, 1, "Many", "B")},
      {"another table", good, Row("R", 0, 2, 1, "Else", "B")},
      {"another referenced table", good, Row("R", 0, 2, 1, "Many", "B", "Two")},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    CatalogFile file;
    file.AddRelationshipRow(row.first);
    file.AddRelationshipRow(row.second);
    const Result<std::vector<Relationship>> all = file.catalog().Relationships();
    ASSERT_EQ(all.number(), kCannotOpenDatabase);
    EXPECT_THAT(all.error().description, HasSubstr("relationship R contradict"));
  }
}

}  // namespace
}  // namespace zent::jet::testing
