#include <gtest/gtest.h>

#include "jet/format/JetErrors.h"
#include "jet/schema/SchemaChecks.h"

namespace zent::jet::testing {
namespace {

Property TextProperty(std::string_view name, std::string_view text) {
  return MakeProperty(name, ColumnType::Memo, true, Text(text)).value();
}

Property YesNo(std::string_view name, bool value) {
  return MakeProperty(name, ColumnType::Bool, true, value).value();
}

struct PropertyCase {
  const char* what;
  const char* table;
  const char* column;
  Property property;
  int number;
};

TEST(SetProperty, IsReadBack) {
  const PropertyCase cases[] = {
      {"of the table", "People", "", TextProperty("Description", "Those we know"), 0},
      {"of a column", "people", "NAME", TextProperty("Caption", "Full name"), 0},
      {"of another kind", "People", "Born", YesNo("ColumnHidden", true), 0},
      {"long", "People", "", TextProperty("Filter", std::string(20000, 'f')), 0},
      {"no such column", "People", "None", TextProperty("Caption", "x"), kItemNotFound},
      {"no such table", "None", "", TextProperty("Caption", "x"), kNoSuchTable},
      {"without a name", "People", "", TextProperty("", "x"), kInvalidName},
  };
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  for (const PropertyCase& row : cases) {
    SCOPED_TRACE(row.what);
    ExpectNumber(given.schema().SetProperty(row.table, row.column, row.property), row.number);
    ExpectRightDatabase(given.file());
    if (row.number != 0) continue;
    const Result<Table*> table = given.catalog().OpenTable(row.table);
    const PropertySet* const set = table.value()->properties().Find(row.column);
    ASSERT_NE(set, nullptr);
    const Property* const property = set->Find(row.property.name);
    ASSERT_NE(property, nullptr);
    EXPECT_EQ(*property, row.property);
  }
}

TEST(SetProperty, ChangesTheRulesOfAColumn) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.schema().SetProperty("People", "Name", YesNo("Required", false)), 0);
  ExpectNumber(given.Insert("People", {{Null(), Null()}}), 0);
  ExpectNumber(given.schema().SetProperty("People", "Born", YesNo("Required", true)), 0);
  ExpectNumber(given.Insert("People", {{Null(), Null()}}), kValueRequired);
  ExpectNumber(given.schema().RemoveProperty("People", "born", "required"), 0);
  ExpectNumber(given.Insert("People", {{Null(), Null()}}), 0);
}

TEST(RemoveProperty, NeedsOneThatIsThere) {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  ExpectNumber(given.schema().RemoveProperty("People", "Name", "Caption"), kItemNotFound);
  ExpectNumber(given.schema().RemoveProperty("People", "Id", "Caption"), kItemNotFound);
  ExpectNumber(given.schema().RemoveProperty("People", "", "Description"), kItemNotFound);
}

}  // namespace
}  // namespace zent::jet::testing
