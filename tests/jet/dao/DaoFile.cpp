#include "jet/dao/DaoFile.h"

namespace zent::jet::testing {
namespace {

WorkspaceOptions Options() {
  WorkspaceOptions options;
  options.user = {.computer = "PC1", .name = "Admin"};
  options.now = [] { return Date{38718.5}; };
  options.lock_attempts = 2;
  return options;
}

}  // namespace

TableDef PeopleTable() {
  TableDef table("People");
  Field id = CreateField("Id", DataType::Long);
  id.attributes = kAutoIncrementField;
  Field name = CreateField("Name", DataType::ShortText, 20);
  name.required = true;
  Field age = CreateField("Age", DataType::Integer);
  age.default_value = "18";
  age.validation_rule = "<200";
  age.validation_text = "Nobody is that old.";
  for (const Field& field :
       {id, name, age, CreateField("Note", DataType::Memo), CreateField("Born", DataType::Date),
        CreateField("Member", DataType::Boolean)}) {
    EXPECT_TRUE(table.Append(field).ok());
  }
  Index primary = CreateIndex("PrimaryKey", {"Id"});
  primary.primary = true;
  EXPECT_TRUE(table.Append(primary).ok());
  EXPECT_TRUE(table.Append(CreateIndex("ByAge", {"-Age", "Name"})).ok());
  return table;
}

DaoFile::DaoFile() : DaoFile("") {}

DaoFile::DaoFile(std::string_view connect) : workspace(storage, Options()) {
  Result<std::unique_ptr<Database>> made = workspace.CreateDatabase(kFile, connect);
  EXPECT_TRUE(made.ok()) << (made.ok() ? "" : made.error().description);
  if (!made.ok()) return;
  db = std::move(made.value());
  TableDef table = PeopleTable();
  const Status appended = db->Append(table);
  EXPECT_TRUE(appended.ok()) << (appended.ok() ? "" : appended.error().description);
  Run("INSERT INTO People (Name, Age) VALUES ('Ann', 30)");
  Run("INSERT INTO People (Name, Age) VALUES ('Bob', 40)");
  Run("INSERT INTO People (Name, Age) VALUES ('Cid', 40)");
}

std::string DaoFile::NamesOf(Recordset& rows) {
  std::string names;
  while (!rows.AtEnd()) {
    names += (names.empty() ? "" : " ") + TextIn(rows, "Name");
    const Status moved = rows.MoveNext();
    EXPECT_TRUE(moved.ok());
    if (!moved.ok()) break;
  }
  return names;
}

std::string TextIn(Recordset& rows, const ItemKey& field) {
  const Result<Value> value = rows.Get(field);
  if (!value.ok()) return "error " + std::to_string(value.number());
  if (IsNull(value.value())) return "null";
  const Text* const text = std::get_if<Text>(&value.value());
  return text == nullptr ? "no text" : *text;
}

}  // namespace zent::jet::testing
