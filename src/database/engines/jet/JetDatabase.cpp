#include "database/engines/jet/JetDatabase.h"

#include "database/engines/jet/JetDefinitions.h"
#include "database/engines/jet/JetRecordset.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"

namespace zent {

JetDatabase::JetDatabase(std::unique_ptr<jet::Database> database, std::string name, Failed failed)
    : database_(std::move(database)), name_(std::move(name)), failed_(std::move(failed)) {}

Status JetDatabase::Told(Status status) const {
  if (!status.ok()) failed_(status.error());
  return status;
}

Result<std::int64_t> JetDatabase::Execute(std::string_view statement) {
  if (Status done = database_->Execute(statement); !done.ok()) return Told(done).error();
  return database_->records_affected();
}

Result<std::unique_ptr<Recordset>> JetDatabase::OpenRecordset(std::string_view source,
                                                              RecordsetUse) {
  auto rows = Told(database_->OpenRecordset(source));
  if (!rows.ok()) return rows.error();
  return std::unique_ptr<Recordset>(std::make_unique<JetRecordset>(std::move(rows.value())));
}

std::optional<std::string> JetDatabase::EqualityKey(std::string_view text) const {
  std::string key;
  jet::AppendTextKey4(text, true, key);
  return key;
}

Status JetDatabase::BeginTransaction() {
  if (in_transaction_) return Told(jet::JetError(jet::kInvalidOperation));
  Status begun = Told(database_->BeginTrans());
  in_transaction_ = begun.ok();
  return begun;
}

Status JetDatabase::Commit() {
  in_transaction_ = false;
  return Told(database_->CommitTrans());
}

Status JetDatabase::Rollback() {
  in_transaction_ = false;
  return Told(database_->Rollback());
}

Result<std::vector<TableEntry>> JetDatabase::Tables() {
  const auto tables = Told(database_->TableDefs());
  if (!tables.ok()) return tables.error();
  std::vector<TableEntry> entries;
  for (const jet::TableDef& table : tables.value()) {
    entries.push_back({table.name(), table.attributes()});
  }
  return entries;
}

Result<std::optional<TableDefinition>> JetDatabase::Table(std::string_view name) {
  const Result<jet::TableDef> table = database_->FindTableDef(name);
  if (table.number() == jet::kItemNotFound) return std::optional<TableDefinition>();
  if (!table.ok()) return Told(table).error();
  Result<TableDefinition> definition = Told(FromJet(table.value()));
  if (!definition.ok()) return definition.error();
  return std::optional(std::move(definition.value()));
}

Result<std::vector<RelationDefinition>> JetDatabase::Relations() {
  const auto relations = Told(database_->Relations());
  if (!relations.ok()) return relations.error();
  std::vector<RelationDefinition> definitions;
  for (const jet::Relation& relation : relations.value()) {
    definitions.push_back(FromJet(relation));
  }
  return definitions;
}

Status JetDatabase::CreateTable(const TableDefinition& definition) {
  Result<jet::TableDef> table = ToJet(definition);
  if (!table.ok()) return Told(table.error());
  return Told(database_->Append(table.value()));
}

Status JetDatabase::ChangeTable(std::string_view table,
                                const std::function<Status(jet::TableDef&)>& change) {
  Result<jet::TableDef> found = database_->FindTableDef(table);
  if (!found.ok()) return Told(found.error());
  return Told(change(found.value()));
}

Status JetDatabase::RenameTable(std::string_view name, std::string_view new_name) {
  return ChangeTable(name,
                     [&](jet::TableDef& table) { return table.SetName(std::string(new_name)); });
}

Status JetDatabase::DeleteTable(std::string_view name) {
  return Told(database_->DeleteTable(name));
}

Status JetDatabase::SetRules(std::string_view table, const TableDefinition& definition) {
  return ChangeTable(table,
                     [&](jet::TableDef& changed) { return zent::SetRules(changed, definition); });
}

Status JetDatabase::TakeCounter(std::string_view table, std::string_view from) {
  const Result<jet::TableDef> counted = database_->FindTableDef(from);
  if (!counted.ok()) return Told(counted.error());
  return ChangeTable(table,
                     [&](jet::TableDef& changed) { return changed.TakeCounter(counted.value()); });
}

Status JetDatabase::AddField(std::string_view table, const FieldDefinition& field) {
  const Result<jet::Field> made = ToJet(field);
  if (!made.ok()) return Told(made.error());
  return ChangeTable(table, [&](jet::TableDef& changed) { return changed.Append(made.value()); });
}

Status JetDatabase::DeleteField(std::string_view table, std::string_view field) {
  return ChangeTable(table, [&](jet::TableDef& changed) { return changed.DeleteField(field); });
}

Status JetDatabase::CreateIndex(std::string_view table, const IndexDefinition& index) {
  return ChangeTable(table, [&](jet::TableDef& changed) { return changed.Append(ToJet(index)); });
}

Status JetDatabase::DeleteIndex(std::string_view table, std::string_view index) {
  return ChangeTable(table, [&](jet::TableDef& changed) { return changed.DeleteIndex(index); });
}

Status JetDatabase::CreateRelation(const RelationDefinition& relation) {
  return Told(database_->Append(ToJet(relation)));
}

Status JetDatabase::DeleteRelation(std::string_view name) {
  return Told(database_->DeleteRelation(name));
}

Status JetDatabase::Close() {
  in_transaction_ = false;
  return Told(database_->Close());
}

}  // namespace zent
