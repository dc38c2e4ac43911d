#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/schema/SchemaChecks.h"

namespace zent::jet::testing {
namespace {

/// People, and Orders whose Person names one of them.
void MakeTables(SchemaFile& given) {
  ExpectNumber(given.schema().CreateTable(People()), 0);
  NewTable orders{.name = "Orders"};
  orders.columns = {{.name = "Number"},
                    {.name = "Person"},
                    {.name = "Person2"},
                    {.name = "Remark", .type = ColumnType::Text}};
  orders.indexes = {{.name = "PrimaryKey", .columns = {{.name = "Number"}}, .primary = true}};
  ExpectNumber(given.schema().CreateTable(orders), 0);
  ExpectNumber(given.Insert("People", {{Null(), Text("Ann")}, {Null(), Text("Bob")}}), 0);
  ExpectNumber(given.Insert("Orders", {{10, 1}, {11, 2}, {12, 1}, {13, Null()}}), 0);
}

Relationship PeopleOrders(std::uint32_t flags = 0) {
  return {.name = "PeopleOrders",
          .table = "Orders",
          .referenced_table = "People",
          .columns = {{"Person", "Id"}},
          .flags = flags};
}

TEST(CreateRelationship, LinksIndexesOfBothTables) {
  SchemaFile given;
  MakeTables(given);
  ExpectNumber(given.schema().CreateRelationship(PeopleOrders(kCascadesDeletes)), 0);
  ExpectRightDatabase(given.file());
  const Result<std::vector<Relationship>> all = given.catalog().Relationships();
  ASSERT_TRUE(all.ok());
  EXPECT_EQ(all.value(), std::vector<Relationship>{PeopleOrders(kCascadesDeletes)});
  const TableDefinition& people = given.Definition("People");
  EXPECT_EQ(people.real_indexes.size(), 2U);  // that of the primary key is shared
  EXPECT_EQ(people.logical_indexes[0].name, ".rB");
  EXPECT_EQ(people.logical_indexes[0].cascade_deletes, 1);
  EXPECT_EQ(given.Definition("Orders").real_indexes.size(), 2U);
  const auto object = given.catalog().Find(ObjectType::Relationship, "peopleorders");
  ASSERT_TRUE(object.ok() && object.value());
  EXPECT_EQ(object.value()->parent, kRelationshipsId);
}

TEST(CreateRelationship, SharesATreeThatIsThere) {
  SchemaFile given;
  MakeTables(given);
  ExpectNumber(
      given.schema().CreateIndex("Orders", {.name = "ByPerson", .columns = {{.name = "Person"}}}),
      0);
  ExpectNumber(given.schema().CreateRelationship(PeopleOrders()), 0);
  EXPECT_EQ(given.Definition("Orders").real_indexes.size(), 2U);
  ExpectNumber(given.schema().DropIndex("Orders", "ByPerson"), kIndexInUse);
  ExpectNumber(given.schema().DropRelationship("PEOPLEORDERS"), 0);
  ExpectNumber(given.schema().DropIndex("Orders", "ByPerson"), 0);
  ExpectRightDatabase(given.file());
}

struct Refused {
  const char* what;
  Relationship relationship;
  int number;
};

std::vector<Refused> RefusedOnes() {
  const auto changed = [](const auto& change) {
    Relationship relationship = PeopleOrders();
    change(relationship);
    return relationship;
  };
  return {
      {"a bad name", changed([](auto& r) { r.name = "a.b"; }), kInvalidName},
      {"a name that is taken", changed([](auto& r) { r.name = "first"; }), kObjectExists},
      {"no such table", changed([](auto& r) { r.table = "None"; }), kNoSuchTable},
      {"no such other table", changed([](auto& r) { r.referenced_table = "None"; }), kNoSuchTable},
      {"no such column", changed([](auto& r) {
         r.columns = {{"None", "Id"}};
       }),
       kItemNotFound},
      {"no columns", changed([](auto& r) { r.columns.clear(); }), kInvalidArgument},
      {"columns of two types", changed([](auto& r) {
         r.columns = {{"Remark", "Id"}};
       }),
       kRelationMismatch},
      {"no unique index", changed([](auto& r) {
         r.columns = {{"Remark", "Name"}};
       }),
       kNoUniqueIndex},
      {"the name of an index", changed([](auto& r) { r.name = "PrimaryKey"; }), kIndexExists},
      {"rows without a person", changed([](auto& r) {
         r.columns = {{"Number", "Id"}};
       }),
       kNoRelatedRecord},
  };
}

TEST(CreateRelationship, RefusesWhatCannotHoldAndTouchesNothing) {
  SchemaFile given;
  MakeTables(given);
  Relationship first = PeopleOrders();
  first.name = "First";
  first.columns = {{"Person2", "Id"}};
  ExpectNumber(given.schema().CreateRelationship(first), 0);
  given.file().Commit();
  const std::string before = given.file().Bytes();
  for (const Refused& row : RefusedOnes()) {
    SCOPED_TRACE(row.what);
    ExpectNumber(given.schema().CreateRelationship(row.relationship), row.number);
    given.file().Commit();
    EXPECT_TRUE(given.file().Bytes() == before);
  }
}

TEST(CreateRelationship, NeedsNoIndexWhenNotEnforced) {
  SchemaFile given;
  MakeTables(given);
  Relationship loose = PeopleOrders(kNotEnforced);
  loose.columns = {{"Number", "Id"}};
  ExpectNumber(given.schema().CreateRelationship(loose), 0);
  EXPECT_EQ(given.Definition("People").logical_indexes.size(), 2U);
  ExpectNumber(given.schema().DropColumn("Orders", "Number"), kFieldInIndex);
  ExpectNumber(given.schema().DropRelationship("PeopleOrders"), 0);
  ExpectRightDatabase(given.file());
}

TEST(CreateRelationship, MayReferToItsOwnTable) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(
                   {.name = "Staff",
                    .columns = {{.name = "Id"}, {.name = "Boss"}},
                    .indexes = {{.name = "P", .columns = {{.name = "Id"}}, .primary = true}}}),
               0);
  ExpectNumber(given.Insert("Staff", {{1, Null()}, {2, 1}}), 0);
  ExpectNumber(given.schema().CreateRelationship({.name = "Bosses",
                                                  .table = "Staff",
                                                  .referenced_table = "staff",
                                                  .columns = {{"Boss", "Id"}}}),
               0);
  ExpectRightDatabase(given.file());
  ExpectNumber(given.schema().DropTable("Staff"), kTableInUse);
  ExpectNumber(given.schema().DropRelationship("Bosses"), 0);
  ExpectRightDatabase(given.file());
  ExpectNumber(given.schema().DropTable("Staff"), 0);
}

TEST(CreateRelationship, FollowsTheOrderOfTheUniqueIndex) {
  SchemaFile given;
  const NewTable one{
      .name = "One",
      .columns = {{.name = "A"}, {.name = "B"}},
      .indexes = {{.name = "P", .columns = {{.name = "B"}, {.name = "A"}}, .primary = true}}};
  const NewTable many{.name = "Many", .columns = {{.name = "X"}, {.name = "Y"}}};
  ExpectNumber(given.schema().CreateTable(one), 0);
  ExpectNumber(given.schema().CreateTable(many), 0);
  ExpectNumber(given.Insert("One", {{1, 2}}), 0);
  ExpectNumber(given.Insert("Many", {{1, 2}}), 0);
  ExpectNumber(given.schema().CreateRelationship({.name = "R",
                                                  .table = "Many",
                                                  .referenced_table = "One",
                                                  .columns = {{"X", "A"}, {"Y", "B"}}}),
               0);
  const std::vector<IndexColumn>& columns = given.Definition("Many").real_indexes[0].columns;
  EXPECT_EQ(columns, (std::vector<IndexColumn>{{.column = 1}, {.column = 0}}));
  ExpectRightDatabase(given.file());
}

TEST(DropRelationship, LeavesTheTablesAsTheyWere) {
  SchemaFile given;
  MakeTables(given);
  const std::vector<PageNumber> pages = given.file().UsedPages();
  const std::vector<LogicalIndex> indexes = given.Definition("People").logical_indexes;
  ExpectNumber(given.schema().CreateRelationship(PeopleOrders()), 0);
  ExpectNumber(given.schema().DropRelationship("None"), kItemNotFound);
  ExpectNumber(given.schema().DropRelationship("PeopleOrders"), 0);
  ExpectRightDatabase(given.file());
  EXPECT_EQ(given.Definition("People").logical_indexes, indexes);
  EXPECT_TRUE(given.catalog().Relationships().value().empty());
  EXPECT_EQ(given.file().UsedPages(), pages);
}

TEST(Relationship, FollowsRenamesAndForbidsDrops) {
  SchemaFile given;
  MakeTables(given);
  ExpectNumber(given.schema().CreateRelationship(PeopleOrders()), 0);
  ExpectNumber(given.schema().DropTable("People"), kTableInUse);
  ExpectNumber(given.schema().DropTable("Orders"), kTableInUse);
  ExpectNumber(given.schema().DropColumn("Orders", "Person"), kFieldInIndex);
  ExpectNumber(given.schema().DropIndex("People", "PrimaryKey"), kIndexInUse);
  ExpectNumber(given.schema().DropIndex("Orders", "PeopleOrders"), kIndexInUse);
  ExpectNumber(given.schema().RenameTable("People", "Persons"), 0);
  ExpectNumber(given.schema().RenameColumn("Orders", "Person", "Buyer"), 0);
  const std::vector<Relationship> all = given.catalog().Relationships().value_or({});
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].referenced_table, "Persons");
  EXPECT_EQ(all[0].columns[0].first, "Buyer");
  ExpectRightDatabase(given.file());
}

}  // namespace
}  // namespace zent::jet::testing
