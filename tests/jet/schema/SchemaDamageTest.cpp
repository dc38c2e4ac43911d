#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "jet/format/JetErrors.h"
#include "jet/schema/SchemaChecks.h"

/// Files that are damaged, and changes that are taken back.
namespace zent::jet::testing {
namespace {

struct SchemaChange {
  const char* what;
  std::function<Status(Schema&)> make;
};

const std::vector<SchemaChange>& Changes() {
  static const std::vector<SchemaChange> changes = {
      {"create a table",
       [](Schema& schema) {
         NewTable table = People();
         table.name = "More";
         return schema.CreateTable(table);
       }},
      {"add a column",
       [](Schema& schema) {
         return schema.AddColumn("People", {.name = "Added", .auto_number = false});
       }},
      {"rename a column",
       [](Schema& schema) { return schema.RenameColumn("People", "Born", "Birthday"); }},
      {"create an index",
       [](Schema& schema) {
         return schema.CreateIndex("People", {.name = "I", .columns = {{.name = "Name"}}});
       }},
      {"relate a table to itself",
       [](Schema& schema) {
         return schema.CreateRelationship({.name = "R",
                                           .table = "People",
                                           .referenced_table = "People",
                                           .columns = {{"Id", "Id"}}});
       }},
      {"set a property",
       [](Schema& schema) {
         return schema.SetProperty(
             "People", "Name", MakeProperty("Caption", ColumnType::Memo, true, Text("x")).value());
       }},
      {"drop the relationship", [](Schema& schema) { return schema.DropRelationship("R"); }},
      {"drop an index", [](Schema& schema) { return schema.DropIndex("People", "ByName"); }},
      {"drop a column", [](Schema& schema) { return schema.DropColumn("People", "Notes"); }},
      {"rename the table", [](Schema& schema) { return schema.RenameTable("People", "Persons"); }},
      {"drop the table", [](Schema& schema) { return schema.DropTable("Persons"); }},
  };
  return changes;
}

std::string FilledDatabase() {
  SchemaFile given;
  ExpectNumber(given.schema().CreateTable(People()), 0);
  std::vector<std::vector<Value>> rows;
  rows.reserve(50);
  for (int i = 0; i < 50; ++i) {
    rows.push_back(
        {Null(), Text("Name" + std::to_string(i)), Date{1.0 * i}, Text(std::string(300, 'n'))});
  }
  ExpectNumber(given.Insert("People", rows), 0);
  given.file().Commit();
  return given.file().Bytes();
}

TEST(SchemaChanges, EachLeavesASoundFileAndCanBeTakenBack) {
  SchemaFile given(FilledDatabase());
  for (const SchemaChange& change : Changes()) {
    SCOPED_TRACE(change.what);
    const std::string before = given.file().Bytes();
    ExpectNumber(change.make(given.schema()), 0);
    given.file().Rollback();
    given.catalog().Forget();
    EXPECT_TRUE(given.file().Bytes() == before);
    ExpectNumber(change.make(given.schema()), 0);
    ExpectRightDatabase(given.file());
    given.file().Commit();
  }
}

/// A change of a damaged file may go well or be an error; it ends, and touches only memory of its
/// own.
TEST(SchemaChanges, EndInErrorsOnDamagedFiles) {
  const std::string sound = FilledDatabase();
  std::mt19937 random(20);
  int errors = 0;
  for (int round = 0; round < 300; ++round) {
    SCOPED_TRACE(round);
    std::string bytes = sound;
    for (int i = 0; i < 6; ++i) {  // page 0 and 1 are for others to test
      const std::size_t first = std::size_t{2} * 4096;
      const std::size_t at = first + random() % (bytes.size() - first);
      bytes[at] = static_cast<char>(random());
      // Most of a page is empty: its start says how the rest is read.
      bytes[at / 4096 * 4096 + random() % 80] = static_cast<char>(random());
    }
    StoreFile file(bytes);
    const Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(file.pager());
    if (!catalog.ok()) {
      ++errors;
      continue;
    }
    Schema schema(*catalog.value());
    for (const SchemaChange& change : Changes()) errors += change.make(schema).ok() ? 0 : 1;
    file.Rollback();
    EXPECT_TRUE(file.Bytes() == bytes);
  }
  EXPECT_GT(errors, 300);
}

}  // namespace
}  // namespace zent::jet::testing
