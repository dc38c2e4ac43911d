#include "database/StructureChange.h"

#include <memory>
#include <optional>
#include <utility>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/RowCopy.h"
#include "database/Structure.h"
#include "database/port/EngineErrors.h"

namespace zent {
namespace {

/// The name of the table and "tmp", with a number behind it when somebody has a table of that name.
std::string FreeTableName(UpdateRun& run, OpenedDatabase& database, const std::string& table) {
  constexpr std::size_t kLongestName = 64;  // characters, of the engine
  for (int number = 1;; ++number) {
    const std::string ending = "tmp" + (number == 1 ? std::string() : std::to_string(number));
    const std::string name(FirstCharacters(table, kLongestName - ending.size()));
    if (!TableExists(run, database, name + ending)) return name + ending;
  }
}

/// Puts the patterns in the place of the fields of that name: field positions stay, as statements
/// that name no fields count on them.
std::vector<ChangedField> ChangeFields(TableDefinition& definition,
                                       const std::vector<FieldDefinition>& patterns) {
  std::vector<ChangedField> changed;
  for (FieldDefinition& field : definition.fields) {
    for (const FieldDefinition& pattern : patterns) {
      if (!SameName(field.name, pattern.name)) continue;
      FieldDefinition after = pattern;
      after.ordinal_position = field.ordinal_position;
      changed.push_back({.before = std::exchange(field, after), .after = after});
      break;
    }
  }
  return changed;
}

Result<SyncEnd> FillCopy(StructureChange& change, const std::string& table, const std::string& copy,
                         const std::vector<ChangedField>& changed) {
  const Result<std::unique_ptr<Recordset>> from =
      change.target.OpenRecordset(table, RecordsetUse::Read);
  if (!from.ok()) return from.error();
  const Result<std::unique_ptr<Recordset>> to =
      change.target.OpenRecordset(copy, RecordsetUse::Change);
  if (!to.ok()) return to.error();
  return CopyRows(change.run, table, *from.value(), *to.value(), changed);
}

Status CreateIndexes(OpenedDatabase& database, const std::string& table,
                     const std::vector<IndexDefinition>& indexes) {
  for (const IndexDefinition& index : indexes) {
    if (index.foreign) continue;  // made again with its relationship
    if (Status made = database.CreateIndex(table, index); !made.ok()) return made;
  }
  return {};
}

/// The copy takes every row there is: a rule may be younger than a row that breaks it, and a value
/// that was left out may be one that is required.
TableDefinition WithoutRules(TableDefinition definition) {
  definition.validation_rule.clear();
  definition.validation_text.clear();
  for (FieldDefinition& field : definition.fields) {
    field.required = false;
    field.allow_zero_length = true;
    field.validation_rule.clear();
    field.validation_text.clear();
  }
  return definition;
}

/// What a filled copy of `table` has beside its rows. The rows alone do not tell which numbers were
/// given out: the last ones may be deleted.
Status FinishCopy(OpenedDatabase& database, const std::string& table,
                  const TableDefinition& definition, const std::vector<IndexDefinition>& indexes) {
  if (Status ruled = database.SetRules(definition.name, definition); !ruled.ok()) return ruled;
  if (Status taken = database.TakeCounter(definition.name, table); !taken.ok()) return taken;
  return CreateIndexes(database, definition.name, indexes);
}

/// Takes the relationships of `table`, on either side, off.
Status TakeOffRelations(StructureChange& change, const std::string& table) {
  const Result<std::vector<RelationDefinition>> relations = change.target.Relations();
  if (!relations.ok()) return relations.error();
  for (const RelationDefinition& relation : relations.value()) {
    if (!SameName(relation.table, table) && !SameName(relation.foreign_table, table)) continue;
    if (Status deleted = change.target.DeleteRelation(relation.name); !deleted.ok()) return deleted;
    change.relations.push_back(relation);
  }
  return {};
}

/// Puts the copy in the table's place.
Status TakePlace(StructureChange& change, const std::string& table, const std::string& copy) {
  change.must_roll_back = true;
  if (Status off = TakeOffRelations(change, table); !off.ok()) return off;
  if (Status deleted = change.target.DeleteTable(table); !deleted.ok()) return deleted;
  if (Status renamed = RenameTable(change.run, change.target, copy, table); !renamed.ok()) {
    return renamed;
  }
  change.must_roll_back = false;
  return {};
}

}  // namespace

Status RestoreRelations(StructureChange& change) {
  for (const RelationDefinition& relation : std::exchange(change.relations, {})) {
    if (Status made = change.target.CreateRelation(relation); !made.ok()) {
      change.must_roll_back = true;
      return made;
    }
  }
  return {};
}

Result<SyncEnd> RebuildFields(StructureChange& change, const std::string& table,
                              const std::vector<FieldDefinition>& patterns) {
  Result<std::optional<TableDefinition>> present = change.target.Table(table);
  if (!present.ok()) return present.error();
  if (!present.value()) return StandardError(kObjectNotSet, table);
  TableDefinition definition = std::move(*present.value());
  const std::string name = definition.name;
  definition.name = FreeTableName(change.run, change.target, table);
  const std::vector<IndexDefinition> indexes = std::exchange(definition.indexes, {});
  const std::vector<ChangedField> changed = ChangeFields(definition, patterns);

  const Status made = change.target.CreateTable(WithoutRules(definition));
  if (!made.ok()) return made.error();
  Result<SyncEnd> copied = FillCopy(change, name, definition.name, changed);
  if (copied.ok() && copied.value() == SyncEnd::Done) {
    const Status finished = FinishCopy(change.target, name, definition, indexes);
    if (!finished.ok()) copied = finished.error();
  }
  if (!copied.ok() || copied.value() == SyncEnd::Stopped) {
    if (!change.target.DeleteTable(definition.name).ok()) change.must_roll_back = true;
    return copied;
  }
  if (const Status placed = TakePlace(change, name, definition.name); !placed.ok()) {
    return placed.error();
  }
  return SyncEnd::Done;
}

Status ReplaceTable(StructureChange& change, const std::string& table) {
  change.must_roll_back = true;
  if (TableExists(change.run, change.target, table)) {
    if (Status off = TakeOffRelations(change, table); !off.ok()) return off;
    if (Status deleted = change.target.DeleteTable(table); !deleted.ok()) return deleted;
  }
  Status copied = CopyTable(change.run, change.source, change.target, table, change.target.Name(),
                            TableData::Copy);
  change.must_roll_back = !copied.ok();
  return copied;
}

}  // namespace zent
