#include <gtest/gtest.h>

#include <functional>
#include <span>

#include "jet/dao/DaoFile.h"
#include "jet/format/JetErrors.h"

/// What changes of tables, fields, indexes and relations are refused with. A refused change leaves
/// the file as it was.
namespace zent::jet::testing {
namespace {

struct RefusedCase {
  const char* what;
  int number;
  std::function<Status(Database&, TableDef& people)> change;
};

/// Tries each change on a file of People and Calls, which refers to it.
void ExpectRefused(std::span<const RefusedCase> cases) {
  for (const RefusedCase& row : cases) {
    SCOPED_TRACE(row.what);
    DaoFile given;
    given.Run(
        "CREATE TABLE Calls (Id COUNTER CONSTRAINT pk PRIMARY KEY, Person LONG, "
        "CONSTRAINT PersonCalls FOREIGN KEY (Person) REFERENCES People (Id))");
    given.Run("INSERT INTO Calls (Person) VALUES (1)");
    TableDef people = given.db->FindTableDef("People").value();
    const std::string before = given.storage.Bytes(kFile);
    const Status done = row.change(*given.db, people);
    EXPECT_EQ(done.number(), row.number) << Told(done);
    EXPECT_EQ(done.ok() ? "" : done.error().source, "DAO");
    EXPECT_TRUE(given.storage.Bytes(kFile) == before);
    EXPECT_EQ(given.Names(), "Ann Bob Cid");
  }
}

Status AppendTable(Database& database, std::string_view name, const std::vector<Field>& fields,
                   const std::vector<Index>& indexes = {}) {
  TableDef table = database.CreateTableDef(std::string(name));
  for (const Field& field : fields) {
    if (Status appended = table.Append(field); !appended.ok()) return appended;
  }
  for (const Index& index : indexes) {
    if (Status appended = table.Append(index); !appended.ok()) return appended;
  }
  return database.Append(table);
}

Index Primary(const std::vector<std::string>& fields) {
  Index index = CreateIndex("Key", fields);
  index.primary = true;
  return index;
}

Index Unique(const std::vector<std::string>& fields) {
  Index index = CreateIndex("Key", fields);
  index.unique = true;
  return index;
}

std::vector<Field> ManyFields(std::size_t count) {
  std::vector<Field> fields;
  for (std::size_t i = 0; i < count; ++i) {
    fields.push_back(CreateField("F" + std::to_string(i), DataType::Byte));
  }
  return fields;
}

const Field kLong = CreateField("A", DataType::Long);

TEST(TableDefs, RefuseWithTheNumbersOfDao) {
  const RefusedCase rows[] = {
      {"a name that is there", kTableExists,
       [](Database& db, TableDef&) { return AppendTable(db, "PEOPLE", {kLong}); }},
      {"the name of a system table", kTableExists,
       [](Database& db, TableDef&) { return AppendTable(db, "MSysObjects", {kLong}); }},
      {"a name with a dot", kInvalidName,
       [](Database& db, TableDef&) { return AppendTable(db, "a.b", {kLong}); }},
      {"no name", kInvalidName,
       [](Database& db, TableDef&) { return AppendTable(db, "", {kLong}); }},
      {"a name of 65 characters", kInvalidName,
       [](Database& db, TableDef&) { return AppendTable(db, std::string(65, 'n'), {kLong}); }},
      {"no table of that name", kItemNotFound,
       [](Database& db, TableDef&) { return db.DeleteTable("Other"); }},
      {"a table that another refers to", kTableInUse,
       [](Database& db, TableDef&) { return db.DeleteTable("People"); }},
      {"a table that refers to another", kTableInUse,
       [](Database& db, TableDef&) { return db.DeleteTable("Calls"); }},
      {"renamed to one that is there", kTableExists,
       [](Database&, TableDef& people) { return people.SetName("calls"); }},
      {"renamed to no name", kInvalidName,
       [](Database&, TableDef& people) { return people.SetName(" x"); }},
  };
  ExpectRefused(rows);
}

TEST(Fields, RefuseWithTheNumbersOfDao) {
  const RefusedCase rows[] = {
      {"a name that is there", kFieldDefinedTwice,
       [](Database&, TableDef& people) {
         return people.Append(CreateField("NAME", DataType::Long));
       }},
      {"twice in a new table", kFieldDefinedTwice,
       [](Database& db, TableDef&) {
         return AppendTable(db, "New", {kLong, kLong});
       }},
      {"a name with a bracket", kInvalidName,
       [](Database&, TableDef& people) {
         return people.Append(CreateField("a]b", DataType::Long));
       }},
      {"a type that fields do not have", kInvalidFieldType,
       [](Database&, TableDef& people) {
         return people.Append(CreateField("A", static_cast<DataType>(99)));
       }},
      {"a text of 256 characters", kFieldTooSmall,
       [](Database&, TableDef& people) {
         return people.Append(CreateField("A", DataType::ShortText, 256));
       }},
      {"256 fields", kTooManyFields,
       [](Database& db, TableDef&) { return AppendTable(db, "New", ManyFields(256)); }},
      {"no field of that name", kItemNotFound,
       [](Database&, TableDef& people) { return people.DeleteField("Size"); }},
      {"no field at that place", kItemNotFound,
       [](Database&, TableDef& people) { return people.DeleteField(std::size_t{6}); }},
      {"a field of an index", kFieldInIndex,
       [](Database&, TableDef& people) { return people.DeleteField("Age"); }},
      {"a field of a relation", kFieldInIndex,
       [](Database&, TableDef& people) { return people.DeleteField("Id"); }},
      {"renamed, not there", kItemNotFound,
       [](Database&, TableDef& people) { return people.RenameField("Size", "Height"); }},
      {"renamed to one that is there", kFieldDefinedTwice,
       [](Database&, TableDef& people) { return people.RenameField("Age", "name"); }},
      {"a property of no field", kItemNotFound,
       [](Database&, TableDef& people) {
         return people.SetFieldProperty(
             "Size", MakeProperty("Caption", ColumnType::Text, false, Text("x")).value());
       }},
  };
  ExpectRefused(rows);
}

TEST(Indexes, RefuseWithTheNumbersOfDao) {
  const RefusedCase rows[] = {
      {"a name that is there", kIndexExists,
       [](Database&, TableDef& people) { return people.Append(CreateIndex("BYAGE", {"Name"})); }},
      {"a second primary key", kPrimaryKeyExists,
       [](Database&, TableDef& people) { return people.Append(Primary({"Name"})); }},
      {"two primary keys of a new table", kPrimaryKeyExists,
       [](Database& db, TableDef&) {
         Index other = Primary({"A"});
         other.name = "Other";
         return AppendTable(db, "New", {kLong}, {Primary({"A"}), other});
       }},
      {"a field that is not there", kItemNotFound,
       [](Database&, TableDef& people) { return people.Append(CreateIndex("New", {"Size"})); }},
      {"eleven fields", kTooManyIndexFields,
       [](Database& db, TableDef&) {
         std::vector<std::string> names;
         for (const Field& field : ManyFields(11)) names.push_back(field.name);
         return AppendTable(db, "New", ManyFields(11), {CreateIndex("All", names)});
       }},
      {"rows that are not unique", kDuplicateKey,
       [](Database&, TableDef& people) { return people.Append(Unique({"Age"})); }},
      {"no index of that name", kItemNotFound,
       [](Database&, TableDef& people) { return people.DeleteIndex("ByName"); }},
      {"the index of a relation", kIndexInUse,
       [](Database& db, TableDef&) {
         return db.FindTableDef("Calls").value().DeleteIndex("PersonCalls");
       }},
  };
  ExpectRefused(rows);
}

TEST(Indexes, RefuseAPrimaryKeyOverNulls) {
  DaoFile given;
  given.Run("INSERT INTO People (Name, Born) VALUES ('Dan', #2/1/1980#)");
  TableDef people = given.db->FindTableDef("People").value();
  ASSERT_TRUE(people.DeleteIndex("PrimaryKey").ok());
  const std::string before = given.storage.Bytes(kFile);
  EXPECT_EQ(people.Append(Primary({"Born"})).number(), kNullInKey);
  EXPECT_TRUE(given.storage.Bytes(kFile) == before);
  EXPECT_TRUE(people.Append(Primary({"Name"})).ok());
}

TEST(Relations, RefuseWithTheNumbersOfDao) {
  const auto relate = [](Database& db, std::string_view name, std::string_view table,
                         std::string_view field) {
    return db.Append(Relation{.name = std::string(name),
                              .table = std::string(table),
                              .foreign_table = "Calls",
                              .fields = {{std::string(field), "Person"}}});
  };
  const RefusedCase rows[] = {
      {"a name that is there", kObjectExists,
       [&](Database& db, TableDef&) { return relate(db, "personcalls", "People", "Id"); }},
      {"no such table", kNoSuchTable,
       [&](Database& db, TableDef&) { return relate(db, "New", "Other", "Id"); }},
      {"no such field", kItemNotFound,
       [&](Database& db, TableDef&) { return relate(db, "New", "People", "Size"); }},
      {"another type", kRelationMismatch,
       [&](Database& db, TableDef&) { return relate(db, "New", "People", "Name"); }},
      {"a field without a unique index", kNoUniqueIndex,
       [&](Database& db, TableDef&) {
         return db.Append(Relation{.name = "New",
                                   .table = "Calls",
                                   .foreign_table = "People",
                                   .fields = {{"Person", "Id"}}});
       }},
      {"no relation of that name", kItemNotFound,
       [](Database& db, TableDef&) { return db.DeleteRelation("Other"); }},
  };
  ExpectRefused(rows);
}

TEST(Execute, DatesTheTablesThatItMakes) {
  for (const char* const statement :
       {"CREATE TABLE New (A LONG)", "SELECT * INTO New FROM People"}) {
    SCOPED_TRACE(statement);
    DaoFile given;
    given.Run(statement);
    const TableDef table = given.db->FindTableDef("New").value();
    EXPECT_EQ(table.date_created(), Date{38718.5});
    EXPECT_EQ(table.last_updated(), Date{38718.5});
  }
}

TEST(Execute, RefusesAsTheObjectsDo) {
  struct Case {
    const char* statement;
    int number;
  };
  constexpr Case kCases[] = {
      {"CREATE TABLE People (A LONG)", kTableExists},
      {"CREATE TABLE New (A LONG, a LONG)", kFieldDefinedTwice},
      {"CREATE INDEX ByAge ON People (Name)", kIndexExists},
      {"CREATE INDEX New ON People (Size)", kItemNotFound},
      {"CREATE INDEX New ON Other (Size)", kNoSuchTable},
      {"CREATE UNIQUE INDEX New ON People (Age)", kDuplicateKey},
      {"CREATE INDEX New ON People (Name) WITH PRIMARY", kPrimaryKeyExists},
      {"ALTER TABLE People ADD COLUMN Name LONG", kFieldDefinedTwice},
      {"ALTER TABLE People DROP COLUMN Age", kFieldInIndex},
      {"ALTER TABLE People DROP COLUMN Size", kItemNotFound},
      {"DROP INDEX Other ON People", kItemNotFound},
      {"DROP TABLE Other", kNoSuchTable},
      {"CREATE TABLE New (A WORD)", kSyntaxError},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.statement);
    DaoFile given;
    const std::string before = given.storage.Bytes(kFile);
    EXPECT_EQ(given.db->Execute(row.statement).number(), row.number);
    EXPECT_TRUE(given.storage.Bytes(kFile) == before);
  }
}

}  // namespace
}  // namespace zent::jet::testing
