#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/random/RandomDatabase.h"

/// Random changes of tables, columns, indexes and relationships.
namespace zent::jet::testing {
namespace {

constexpr std::size_t kMostTables = 6;
constexpr std::size_t kMostColumns = 12;
constexpr std::size_t kMostIndexes = 6;

std::vector<std::string> KeyColumns(const ModelTable& table) {
  std::vector<std::string> names;
  for (const ModelColumn& column : table.columns) {
    if (!column.IsLong()) names.push_back(column.name);
  }
  return names;
}

NewIndex NewIndexOf(const ModelIndex& index, bool descending) {
  NewIndex made{.name = index.name, .unique = index.unique, .primary = index.primary};
  for (const std::string& column : index.columns) made.columns.push_back({column, descending});
  return made;
}

}  // namespace

void RandomDatabase::ChangeStructure() {
  ModelTable* const table = PickTable();
  if (table == nullptr) return CreateTable();
  switch (random_.Pick(16)) {
    case 0:
    case 1:
      return CreateTable();
    case 2:
      return RenameTable(*table);
    case 3:
      return DropTable(*table);
    case 4:
    case 5:
      return AddColumn(*table);
    case 6:
      return DropColumn(*table);
    case 7:
      return RenameColumn(*table);
    case 8:
    case 9:
    case 10:
      return CreateIndex(*table);
    case 11:
      return DropIndex(*table);
    case 12:
    case 13:
    case 14:
      return CreateRelation();
    default:
      return DropRelation();
  }
}

ModelColumn RandomDatabase::MakeColumn() {
  ModelColumn column{.name = FreshName("column "), .type = random_.Type()};
  column.required = column.type != ColumnType::Bool && random_.Chance(6);
  return column;
}

ModelIndex RandomDatabase::MakeIndex(const ModelTable& table) {
  ModelIndex index{.name = FreshName("index "), .unique = random_.Chance(2)};
  const std::vector<std::string> names = KeyColumns(table);
  const std::size_t most = std::min<std::size_t>(names.size(), random_.Chance(2) ? 1 : 3);
  for (std::size_t left = most; left > 0; --left) {
    const std::string& name = names[random_.Pick(names.size())];
    const bool there =
        std::find(index.columns.begin(), index.columns.end(), name) != index.columns.end();
    if (!there) index.columns.push_back(name);
  }
  index.primary = index.unique && !table.HasPrimaryKey() && random_.Chance(2);
  return index;
}

void RandomDatabase::CreateTable() {
  const bool taken = !model_.tables.empty() && random_.Chance(8);
  if (!taken && model_.tables.size() >= kMostTables) return;
  ModelTable table{.name = FreshName("Table "), .number = next_};
  if (taken) table.name = PickTable()->name;
  table.columns.push_back({.name = "Id", .auto_number = random_.Chance(2)});
  for (std::size_t left = 1 + random_.Pick(7); left > 0; --left) {
    table.columns.push_back(MakeColumn());
  }
  if (random_.Chance(2)) {
    table.indexes.push_back({.name = "PrimaryKey", .columns = {"Id"}, .primary = true});
  }
  if (random_.Chance(2)) table.indexes.push_back(MakeIndex(table));
  NewTable made{.name = table.name};
  for (const ModelColumn& column : table.columns) made.columns.push_back(NewColumnOf(column));
  for (const ModelIndex& index : table.indexes) made.indexes.push_back(NewIndexOf(index, false));
  const Faults faults = taken ? Faults{kTableExists} : Faults();
  if (Expect("create table", schema().CreateTable(made), faults)) model_.tables.push_back(table);
}

void RandomDatabase::RenameTable(ModelTable& table) {
  const std::string to = random_.Chance(4) ? PickTable()->name : FreshName("Table ");
  if (to == table.name) return;
  const Faults faults = model_.Find(to) == nullptr ? Faults() : Faults{kTableExists};
  if (!Expect("rename table", schema().RenameTable(table.name, to), faults)) return;
  for (ModelRelation& relation : model_.relations) {
    if (relation.table == table.name) relation.table = to;
    if (relation.referenced == table.name) relation.referenced = to;
  }
  table.name = to;
}

void RandomDatabase::DropTable(ModelTable& table) {
  const Faults faults = model_.IsRelated(table.name) ? Faults{kTableInUse} : Faults();
  if (!Expect("drop table", schema().DropTable(table.name), faults)) return;
  std::erase_if(model_.tables,
                [name = table.name](const ModelTable& one) { return one.name == name; });
}

void RandomDatabase::AddColumn(ModelTable& table) {
  if (table.columns.size() >= kMostColumns) return;
  ModelColumn column = MakeColumn();
  const bool taken = random_.Chance(6);
  if (taken) column.name = table.columns.back().name;
  const Faults faults = taken ? Faults{kFieldDefinedTwice} : Faults();
  if (!Expect("add column", schema().AddColumn(table.name, NewColumnOf(column)), faults)) return;
  table.columns.push_back(column);
  for (auto& [at, row] : table.rows) {
    row.push_back(column.type == ColumnType::Bool ? Value(false) : Value(Null()));
  }
}

void RandomDatabase::DropColumn(ModelTable& table) {
  if (table.columns.size() < 3) return;
  const std::size_t position = 1 + random_.Pick(table.columns.size() - 1);
  const std::string name = table.columns[position].name;
  const bool used = table.IsIndexed(name) || model_.IsRelated(table.name, name);
  const Faults faults = used ? Faults{kFieldInIndex} : Faults();
  if (!Expect("drop column", schema().DropColumn(table.name, name), faults)) return;
  const auto place = static_cast<std::ptrdiff_t>(position);
  table.columns.erase(table.columns.begin() + place);
  for (auto& [at, row] : table.rows) row.erase(row.begin() + place);
}

void RandomDatabase::RenameColumn(ModelTable& table) {
  ModelColumn& column = table.columns[random_.Pick(table.columns.size())];
  const std::string from = column.name;
  const bool taken = random_.Chance(5) && table.columns.back().name != from;
  const std::string to = taken ? table.columns.back().name : FreshName("renamed ");
  const Faults faults = taken ? Faults{kFieldDefinedTwice} : Faults();
  if (!Expect("rename column", schema().RenameColumn(table.name, from, to), faults)) return;
  column.name = to;
  for (ModelIndex& index : table.indexes) {
    std::replace(index.columns.begin(), index.columns.end(), from, to);
  }
  for (ModelRelation& relation : model_.relations) {
    if (relation.table == table.name && relation.column == from) relation.column = to;
    if (relation.referenced == table.name && relation.referenced_column == from) {
      relation.referenced_column = to;
    }
  }
}

void RandomDatabase::CreateIndex(ModelTable& table) {
  if (table.indexes.size() >= kMostIndexes) return;
  ModelIndex index = MakeIndex(table);
  Faults faults = table.FaultsOf(index);
  if (!table.indexes.empty() && random_.Chance(8)) {
    index.name = table.indexes.front().name;
    faults = {kIndexExists};
  }
  if (table.HasPrimaryKey() && random_.Chance(8)) {
    index.primary = true;
    faults.insert(kPrimaryKeyExists);
  }
  const NewIndex made = NewIndexOf(index, random_.Chance(3));
  if (Expect("create index", schema().CreateIndex(table.name, made), faults)) {
    table.indexes.push_back(index);
  }
}

void RandomDatabase::DropIndex(ModelTable& table) {
  if (table.indexes.empty()) return;
  const std::size_t place = random_.Pick(table.indexes.size());
  const ModelIndex& index = table.indexes[place];
  // One that a relationship stands on, as it may be, is left alone.
  if (index.columns.size() == 1 && model_.IsRelated(table.name, index.columns[0])) return;
  if (Expect("drop index", schema().DropIndex(table.name, index.name), {})) {
    table.indexes.erase(table.indexes.begin() + static_cast<std::ptrdiff_t>(place));
  }
}

// Tables refer to older ones, each to one: there is one way from a row to those that depend on it.
void RandomDatabase::CreateRelation() {
  const ModelTable& referring = *PickTable();
  const ModelTable& referenced = *PickTable();
  if (referring.number <= referenced.number) return;
  for (const ModelRelation& relation : model_.relations) {
    if (relation.table == referring.name) return;
  }
  ModelRelation relation{
      .name = FreshName("Relation "), .table = referring.name, .referenced = referenced.name};
  relation.cascades_updates = random_.Chance(2);
  relation.cascades_deletes = random_.Chance(2);
  for (const ModelIndex& index : referenced.indexes) {
    if (index.columns.size() != 1 || (!index.unique && !index.primary)) continue;
    const ModelColumn& to = referenced.columns[referenced.PositionOf(index.columns[0])];
    for (const ModelColumn& from : referring.columns) {
      if (from.type != to.type || from.auto_number) continue;
      relation.column = from.name;
      relation.referenced_column = to.name;
    }
  }
  if (relation.column.empty()) return;
  const std::size_t to = referenced.PositionOf(relation.referenced_column);
  const std::size_t from = referring.PositionOf(relation.column);
  Faults faults;
  for (const auto& [at, row] : referring.rows) {
    const Value& value = row[from];
    const bool found = std::any_of(referenced.rows.begin(), referenced.rows.end(),
                                   [&](const auto& other) { return other.second[to] == value; });
    if (!found && !IsNull(value)) faults = {kNoRelatedRecord};
  }
  Relationship made{.name = relation.name,
                    .table = relation.table,
                    .referenced_table = relation.referenced,
                    .columns = {{relation.column, relation.referenced_column}}};
  if (relation.cascades_updates) made.flags |= kCascadesUpdates;
  if (relation.cascades_deletes) made.flags |= kCascadesDeletes;
  if (Expect("create relationship", schema().CreateRelationship(made), faults)) {
    model_.relations.push_back(relation);
  }
}

void RandomDatabase::DropRelation() {
  if (model_.relations.empty()) return;
  const std::size_t place = random_.Pick(model_.relations.size());
  const Status done = schema().DropRelationship(model_.relations[place].name);
  if (Expect("drop relationship", done, {})) {
    model_.relations.erase(model_.relations.begin() + static_cast<std::ptrdiff_t>(place));
  }
}

}  // namespace zent::jet::testing
