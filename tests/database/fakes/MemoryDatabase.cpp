#include "database/fakes/MemoryDatabase.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "database/fakes/MemoryRecordset.h"
#include "database/port/EngineErrors.h"

namespace zent::testing {
namespace {

RuntimeError EngineFault(int number, const std::string& description) {
  return {.number = number, .description = description, .source = kEngineSource};
}

template <typename Items>
Status EraseNamed(Items& items, std::string_view name) {
  const auto removed =
      std::erase_if(items, [&](const auto& item) { return SameName(item.name, name); });
  if (removed > 0) return {};
  return EngineFault(kEngineItemNotFound, "Item not found in this collection.");
}

/// The new value of a changed field: a text, or that of another field.
FieldValue ChangedValue(const MemoryTable& table, const MemoryRow& row, const std::string& text) {
  if (!text.starts_with('\n')) return text;
  return row.at(table.PositionOf(text.substr(1)).value());
}

}  // namespace

Status MemoryWorld::Note(const std::string& call, const std::string& database) {
  calls.push_back(call);
  if (on_call) on_call(call);
  for (const std::string& what : {call, call.substr(0, call.find(' '))}) {
    for (const std::string& key : {what, std::string(database).append(": ").append(what)}) {
      const auto failure = failures.find(key);
      if (failure != failures.end()) return failure->second;
    }
  }
  return {};
}

MemoryDatabase::MemoryDatabase(MemoryWorld& world, std::string name, DatabaseKind kind)
    : world_(world), name_(std::move(name)), kind_(kind) {
  ++world_.open;
}

MemoryDatabase::~MemoryDatabase() {
  if (!closed_) static_cast<void>(Close().ok());
}

Result<MemoryTable*> MemoryDatabase::Begin(const std::string& call, std::string_view table) {
  if (const Status failed = Note(call); !failed.ok()) return failed.error();
  MemoryTable* const found = tables().Find(table);
  if (found == nullptr) return EngineFault(kEngineNoSuchTable, "Cannot find table.");
  return found;
}

Result<std::int64_t> MemoryDatabase::Execute(std::string_view statement) {
  const auto parsed = ParseMemoryStatement(statement);
  if (!parsed) return EngineFault(3075, "Syntax error.");
  const Result<MemoryTable*> table = Begin("Execute " + std::string(statement), parsed->table);
  if (!table.ok()) return table.error();
  if (parsed->verb == "insert") {
    MemoryTable* const target = world_.databases[parsed->path].Find(parsed->table);
    if (target == nullptr) return EngineFault(kEngineNoSuchTable, "Cannot find table.");
    const auto& rows = table.value()->rows;
    target->rows.insert(target->rows.end(), rows.begin(), rows.end());
    return static_cast<std::int64_t>(rows.size());
  }
  std::int64_t changed = 0;
  for (MemoryRow& row : table.value()->rows) {
    if (!parsed->Matches(*table.value(), row)) continue;
    for (const auto& [field, text] : parsed->changes) {
      row.at(table.value()->PositionOf(field).value()) = ChangedValue(*table.value(), row, text);
    }
    ++changed;
  }
  return changed;
}

Result<std::unique_ptr<Recordset>> MemoryDatabase::OpenRecordset(std::string_view source,
                                                                 RecordsetUse use) {
  MemoryStatement statement = ParseMemoryStatement(source).value_or(MemoryStatement());
  if (statement.table.empty()) statement.table = source;
  const bool reads_none = use == RecordsetUse::Add && kind_ == DatabaseKind::Server;
  if (reads_none) statement.conditions.emplace_back("1", "2");
  const Result<MemoryTable*> table = Begin("OpenRecordset " + std::string(source), statement.table);
  if (!table.ok()) return table.error();
  return std::unique_ptr<Recordset>(new MemoryRecordset(world_, *table.value(), statement));
}

Status MemoryDatabase::BeginTransaction() {
  before_ = std::make_unique<MemoryTables>(tables());
  return Note("BeginTransaction");
}

Status MemoryDatabase::Commit() {
  Status committed = Note("Commit");
  // A server's transaction stays open, to be rolled back.
  if (!committed.ok() && kind_ == DatabaseKind::Server) return committed;
  if (!committed.ok()) tables() = *before_;
  before_.reset();
  return committed;
}

Status MemoryDatabase::Rollback() {
  if (before_ != nullptr) tables() = *before_;
  before_.reset();
  return Note("Rollback");
}

Result<std::vector<TableEntry>> MemoryDatabase::Tables() {
  if (const Status failed = Note("Tables"); !failed.ok()) return failed.error();
  std::vector<TableEntry> entries;
  for (const MemoryTable& table : tables().tables) {
    entries.push_back({.name = table.definition.name, .attributes = table.definition.attributes});
  }
  return entries;
}

Result<std::optional<TableDefinition>> MemoryDatabase::Table(std::string_view name) {
  if (const Status failed = Note("Table"); !failed.ok()) return failed.error();
  const MemoryTable* const table = tables().Find(name);
  if (table == nullptr) return std::optional<TableDefinition>();
  return std::optional<TableDefinition>(table->definition);
}

Status MemoryDatabase::CreateTable(const TableDefinition& definition) {
  if (Status failed = Note("CreateTable " + definition.name); !failed.ok()) return failed;
  if (tables().Find(definition.name) != nullptr) return EngineFault(3010, "Table exists.");
  tables().tables.push_back({.definition = definition, .rows = {}});
  return {};
}

Status MemoryDatabase::RenameTable(std::string_view name, std::string_view new_name) {
  const Result<MemoryTable*> table = Begin("RenameTable " + std::string(name), name);
  if (table.ok()) table.value()->definition.name = new_name;
  return table.status();
}

Status MemoryDatabase::DeleteTable(std::string_view name) {
  const Result<MemoryTable*> table = Begin("DeleteTable " + std::string(name), name);
  if (!table.ok()) return table.error();
  for (const RelationDefinition& relation : tables().relations) {
    if (SameName(relation.table, name) || SameName(relation.foreign_table, name)) {
      return EngineFault(3281, "The table takes part in a relation.");
    }
  }
  std::erase_if(tables().tables,
                [&](const MemoryTable& other) { return SameName(other.definition.name, name); });
  return {};
}

Status MemoryDatabase::SetRules(std::string_view table, const TableDefinition& definition) {
  const Result<MemoryTable*> found = Begin("SetRules " + std::string(table), table);
  if (!found.ok()) return found.error();
  TableDefinition& own = found.value()->definition;
  own.validation_rule = definition.validation_rule;
  own.validation_text = definition.validation_text;
  for (const FieldDefinition& rules : definition.fields) {
    const auto position = found.value()->PositionOf(rules.name);
    if (!position) return EngineFault(kEngineItemNotFound, "Item not found in this collection.");
    FieldDefinition& field = own.fields[*position];
    field.required = rules.required;
    field.allow_zero_length = rules.allow_zero_length;
    field.validation_rule = rules.validation_rule;
    field.validation_text = rules.validation_text;
  }
  return {};
}

Status MemoryDatabase::TakeCounter(std::string_view table, std::string_view from) {
  const Result<MemoryTable*> found =
      Begin("TakeCounter " + std::string(table) + " < " + std::string(from), table);
  if (!found.ok()) return found.error();
  if (tables().Find(from) != nullptr) return {};
  return EngineFault(kEngineNoSuchTable, "Cannot find table.");
}

Status MemoryDatabase::AddField(std::string_view table, const FieldDefinition& field) {
  const Result<MemoryTable*> found = Begin("AddField " + field.name, table);
  if (!found.ok()) return found.error();
  found.value()->definition.fields.push_back(field);
  for (MemoryRow& row : found.value()->rows) row.emplace_back();
  return {};
}

Status MemoryDatabase::DeleteField(std::string_view table, std::string_view field) {
  const Result<MemoryTable*> found = Begin("DeleteField " + std::string(field), table);
  if (!found.ok()) return found.error();
  const auto position = found.value()->PositionOf(field);
  if (!position) return EngineFault(kEngineItemNotFound, "Item not found in this collection.");
  const auto offset = static_cast<std::ptrdiff_t>(*position);
  auto& fields = found.value()->definition.fields;
  fields.erase(fields.begin() + offset);
  for (MemoryRow& row : found.value()->rows) row.erase(row.begin() + offset);
  return {};
}

Status MemoryDatabase::CreateIndex(std::string_view table, const IndexDefinition& index) {
  const Result<MemoryTable*> found = Begin("CreateIndex " + index.name, table);
  if (found.ok()) found.value()->definition.indexes.push_back(index);
  return found.status();
}

Status MemoryDatabase::DeleteIndex(std::string_view table, std::string_view index) {
  const Result<MemoryTable*> found = Begin("DeleteIndex " + std::string(index), table);
  return found.ok() ? EraseNamed(found.value()->definition.indexes, index) : found.status();
}

Status MemoryDatabase::CreateRelation(const RelationDefinition& relation) {
  if (Status failed = Note("CreateRelation " + relation.name); !failed.ok()) return failed;
  tables().relations.push_back(relation);
  return {};
}

Status MemoryDatabase::DeleteRelation(std::string_view name) {
  Status failed = Note("DeleteRelation " + std::string(name));
  if (!failed.ok()) return failed;
  return EraseNamed(tables().relations, name);
}

Status MemoryDatabase::Close() {
  if (!closed_) --world_.open;
  closed_ = true;
  if (InTransaction()) static_cast<void>(Rollback().ok());
  return Note("Close");
}

}  // namespace zent::testing
