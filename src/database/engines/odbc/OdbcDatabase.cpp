#include "database/engines/odbc/OdbcDatabase.h"

#include <utility>

#include "base/Text.h"
#include "database/engines/odbc/OdbcDefinitions.h"
#include "database/engines/odbc/OdbcRows.h"
#include "odbc/Identifiers.h"
#include "odbc/OdbcRecordset.h"

namespace zent {
namespace {

RuntimeError NotSupported() {
  RuntimeError error = StandardError(kActionNotSupported);
  error.source = kEngineSource;
  return error;
}

RuntimeError Closed() {
  RuntimeError error = StandardError(kObjectNotSet);
  error.source = kEngineSource;
  return error;
}

bool IsSelect(std::string_view source) {
  constexpr std::string_view kSelect = "SELECT";
  constexpr std::string_view kSpaces = " \t\r\n";
  const std::size_t start = source.find_first_not_of(kSpaces);
  if (start == std::string_view::npos) return false;
  source.remove_prefix(start);
  return source.size() > kSelect.size() &&
         EqualsIgnoringCase(source.substr(0, kSelect.size()), kSelect) &&
         kSpaces.find(source[kSelect.size()]) != std::string_view::npos;
}

/// Rows that are only read come as they are read, unless the connection would then be taken by
/// them.
odbc::Reading ReadingFor(RecordsetUse use, const odbc::ServerFacts& facts) {
  const bool alone = facts.concurrent_statements == 1;
  return use == RecordsetUse::Read && !alone ? odbc::Reading::Streamed : odbc::Reading::Beside;
}

}  // namespace

OdbcDatabase::OdbcDatabase(std::unique_ptr<odbc::OdbcConnection> connection, OdbcFaults& faults)
    : connection_(std::move(connection)), faults_(faults) {
  const odbc::ServerFacts& facts = connection_->facts();
  name_ = facts.data_source.empty() ? facts.database : facts.data_source;
}

Result<std::int64_t> OdbcDatabase::Execute(std::string_view statement) {
  if (connection_ == nullptr) return Closed();
  return faults_.Told(connection_->Execute(statement));
}

Result<std::string> OdbcDatabase::SelectOf(std::string_view source) {
  if (IsSelect(source)) return std::string(source);
  odbc::OdbcCatalog catalog(*connection_);
  const Result<std::vector<odbc::OdbcTable>> tables = faults_.Told(OwnTables(catalog));
  if (!tables.ok()) return tables.error();
  const std::optional<odbc::OdbcTable> table = FindTable(tables.value(), source);
  if (!table) {
    return faults_.Told(odbc::EngineError(
        kEngineNoSuchTable, "Cannot find the table or query '" + std::string(source) + "'."));
  }
  return "SELECT * FROM " + QuoteTable(table->name, connection_->facts().identifier_quote);
}

Result<std::unique_ptr<Recordset>> OdbcDatabase::OpenRecordset(std::string_view source,
                                                               RecordsetUse use) {
  if (connection_ == nullptr) return Closed();
  Result<std::string> select = SelectOf(source);
  if (!select.ok()) return select.error();
  if (use == RecordsetUse::Add && !IsSelect(source)) select.value() += " WHERE 1=2";
  Result<std::unique_ptr<odbc::OdbcRecordset>> rows = faults_.Told(odbc::OdbcRecordset::Open(
      *connection_, select.value(), ReadingFor(use, connection_->facts())));
  if (!rows.ok()) return rows.error();
  return std::unique_ptr<Recordset>(std::make_unique<OdbcRows>(std::move(rows.value()), faults_));
}

Status OdbcDatabase::BeginTransaction() {
  return connection_ == nullptr ? Closed() : faults_.Told(connection_->Begin());
}

Status OdbcDatabase::Commit() {
  return connection_ == nullptr ? Closed() : faults_.Told(connection_->Commit());
}

Status OdbcDatabase::Rollback() {
  return connection_ == nullptr ? Closed() : faults_.Told(connection_->Rollback());
}

bool OdbcDatabase::InTransaction() const {
  return connection_ != nullptr && connection_->InTransaction();
}

Result<std::vector<TableEntry>> OdbcDatabase::Tables() {
  if (connection_ == nullptr) return Closed();
  odbc::OdbcCatalog catalog(*connection_);
  const Result<std::vector<odbc::OdbcTable>> tables = faults_.Told(OwnTables(catalog));
  if (!tables.ok()) return tables.error();
  std::vector<TableEntry> entries;
  for (const odbc::OdbcTable& table : tables.value()) entries.push_back({.name = table.name.name});
  return entries;
}

Result<std::optional<TableDefinition>> OdbcDatabase::Table(std::string_view name) {
  if (connection_ == nullptr) return Closed();
  odbc::OdbcCatalog catalog(*connection_);
  const Result<std::vector<odbc::OdbcTable>> tables = faults_.Told(OwnTables(catalog));
  if (!tables.ok()) return tables.error();
  const std::optional<odbc::OdbcTable> table = FindTable(tables.value(), name);
  if (!table) return std::optional<TableDefinition>();
  Result<TableDefinition> definition = faults_.Told(DefinitionOf(catalog, table->name));
  if (!definition.ok()) return definition.error();
  return std::optional(std::move(definition.value()));
}

Result<std::vector<RelationDefinition>> OdbcDatabase::Relations() { return NotSupported(); }

Status OdbcDatabase::CreateTable(const TableDefinition&) { return NotSupported(); }
Status OdbcDatabase::RenameTable(std::string_view, std::string_view) { return NotSupported(); }
Status OdbcDatabase::DeleteTable(std::string_view) { return NotSupported(); }
Status OdbcDatabase::AddField(std::string_view, const FieldDefinition&) { return NotSupported(); }
Status OdbcDatabase::DeleteField(std::string_view, std::string_view) { return NotSupported(); }
Status OdbcDatabase::CreateIndex(std::string_view, const IndexDefinition&) {
  return NotSupported();
}
Status OdbcDatabase::DeleteIndex(std::string_view, std::string_view) { return NotSupported(); }
Status OdbcDatabase::CreateRelation(const RelationDefinition&) { return NotSupported(); }
Status OdbcDatabase::DeleteRelation(std::string_view) { return NotSupported(); }

Status OdbcDatabase::Close() {
  connection_.reset();
  return {};
}

}  // namespace zent
