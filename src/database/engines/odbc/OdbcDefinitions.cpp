#include "database/engines/odbc/OdbcDefinitions.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/engines/odbc/OdbcTypes.h"

namespace zent {
namespace {

/// SQL Server lists the views of these as anybody's.
bool IsOfTheServer(const odbc::OdbcTable& table) {
  return EqualsIgnoringCase(table.name.schema, "sys") ||
         EqualsIgnoringCase(table.name.schema, "INFORMATION_SCHEMA");
}

/// The application's own tables lie in this schema of SQL Server.
bool IsOfTheApplication(const odbc::OdbcTable& table) {
  return EqualsIgnoringCase(table.name.schema, "dbo");
}

/// Of tables with one name the highest is meant; of equal ones the first that the server lists.
int RankOf(const odbc::OdbcTable& table, std::string_view name) {
  return (IsOfTheApplication(table) ? 2 : 0) + (table.name.name == name ? 1 : 0);
}

bool IsVariable(FieldType type) {
  return type == FieldType::Text || type == FieldType::Memo || type == FieldType::Binary ||
         type == FieldType::LongBinary;
}

FieldDefinition FieldOf(const odbc::OdbcColumn& column, std::int32_t position) {
  FieldDefinition field;
  field.name = column.name;
  field.type = FieldTypeOf(column.type);
  field.size = FieldSizeOf(column.type);
  field.attributes = IsVariable(field.type) ? kFieldVariable : kFieldFixed;
  field.ordinal_position = position;
  field.required = !column.nullable;
  field.default_value = column.default_value;
  if (field.type == FieldType::Decimal) {
    field.precision = static_cast<std::uint8_t>(std::min<std::uint64_t>(column.type.size, 255));
    field.scale = static_cast<std::uint8_t>(std::clamp<int>(column.type.digits, 0, 255));
  }
  return field;
}

/// Whether an index is that of the primary key: not every driver names the key, or tells its order.
bool IsOfKey(const odbc::OdbcIndex& index, std::vector<std::string> key) {
  std::vector<std::string> columns;
  for (const odbc::OdbcIndexColumn& column : index.columns) columns.push_back(column.name);
  std::sort(columns.begin(), columns.end());
  std::sort(key.begin(), key.end());
  return index.unique && !key.empty() && columns == key;
}

IndexDefinition IndexOf(const odbc::OdbcIndex& index) {
  IndexDefinition definition;
  definition.name = index.name;
  definition.unique = index.unique;
  for (const odbc::OdbcIndexColumn& column : index.columns) {
    definition.fields.push_back({column.name, column.descending});
  }
  return definition;
}

}  // namespace

Result<std::vector<odbc::OdbcTable>> OwnTables(odbc::OdbcCatalog& catalog) {
  Result<std::vector<odbc::OdbcTable>> tables = catalog.Tables();
  if (tables.ok()) std::erase_if(tables.value(), IsOfTheServer);
  return tables;
}

std::optional<odbc::OdbcTable> FindTable(const std::vector<odbc::OdbcTable>& tables,
                                         std::string_view name) {
  const odbc::OdbcTable* found = nullptr;
  for (const odbc::OdbcTable& table : tables) {
    if (!SameName(table.name.name, name)) continue;
    if (found == nullptr || RankOf(table, name) > RankOf(*found, name)) found = &table;
  }
  return found == nullptr ? std::nullopt : std::optional(*found);
}

Result<TableDefinition> DefinitionOf(odbc::OdbcCatalog& catalog, const odbc::TableName& table) {
  TableDefinition definition;
  definition.name = table.name;
  const Result<std::vector<odbc::OdbcColumn>> columns = catalog.Columns(table);
  if (!columns.ok()) return columns.error();
  std::int32_t position = 0;
  for (const odbc::OdbcColumn& column : columns.value()) {
    definition.fields.push_back(FieldOf(column, position++));
  }
  const Result<std::vector<std::string>> key = catalog.PrimaryKey(table);
  if (!key.ok()) return key.error();
  const Result<std::vector<odbc::OdbcIndex>> indexes = catalog.Indexes(table);
  if (!indexes.ok()) return indexes.error();
  bool primary_found = false;
  for (const odbc::OdbcIndex& index : indexes.value()) {
    IndexDefinition made = IndexOf(index);
    made.primary = !primary_found && IsOfKey(index, key.value());
    made.required = made.primary;
    primary_found = primary_found || made.primary;
    definition.indexes.push_back(std::move(made));
  }
  return definition;
}

}  // namespace zent
