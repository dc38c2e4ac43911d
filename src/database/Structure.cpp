#include "database/Structure.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/BorrowedDatabase.h"
#include "database/SQLFuncs.h"
#include "database/SqlScanner.h"

namespace zent {
namespace {

/// Words of the dialect that are no names where a table or a field is expected. Sorted.
constexpr std::array<std::string_view, 51> kWords = {
    "add",        "all",    "alter",  "and",   "as",       "asc",         "between",    "by",
    "constraint", "create", "delete", "desc",  "distinct", "distinctrow", "drop",       "eqv",
    "exists",     "false",  "from",   "group", "having",   "imp",         "in",         "index",
    "inner",      "insert", "into",   "is",    "join",     "left",        "like",       "mod",
    "not",        "null",   "on",     "or",    "order",    "outer",       "parameters", "primary",
    "right",      "select", "set",    "table", "top",      "true",        "union",      "update",
    "values",     "where",  "xor"};

bool IsPlainName(std::string_view name) {
  if (name.empty() || (name.front() >= '0' && name.front() <= '9')) return false;
  const std::string lower = ToLower(name);
  return std::all_of(name.begin(), name.end(), IsNameByte) &&
         !std::binary_search(kWords.begin(), kWords.end(), lower);
}

/// The attributes of a table; nothing when there is none of that name.
Result<std::optional<std::uint32_t>> AttributesOf(OpenedDatabase& database, std::string_view name) {
  const Result<std::vector<TableEntry>> tables = database.Tables();
  if (!tables.ok()) return tables.error();
  for (const TableEntry& table : tables.value()) {
    if (SameName(table.name, name)) return std::optional(table.attributes);
  }
  return std::optional<std::uint32_t>();
}

/// The attributes of a table; 0 when they cannot be had.
std::uint32_t AttributesOrNone(UpdateRun& run, const DatabaseArgument& database,
                               const TableArgument& table) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  if (!opened.ok()) return 0;
  return AttributesOf(*opened.value(), table.name()).value_or(std::nullopt).value_or(0);
}

bool HasTable(OpenedDatabase& database, std::string_view name) {
  return AttributesOf(database, name).value_or(std::nullopt).has_value();
}

bool HasField(OpenedDatabase& database, std::string_view table, std::string_view field) {
  const Result<std::unique_ptr<Recordset>> rows = database.OpenRecordset(
      "SELECT * FROM " + StatementName(table) + " WHERE 1=2 ", RecordsetUse::Read);
  if (!rows.ok()) return false;
  const std::vector<RecordsetField>& fields = rows.value()->Fields();
  return std::any_of(fields.begin(), fields.end(), [&](const RecordsetField& candidate) {
    return SameName(candidate.name, field);
  });
}

}  // namespace

std::string StatementName(std::string_view name) {
  return IsPlainName(name) ? std::string(name) : "[" + std::string(name) + "]";
}

bool TableExists(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  return opened.ok() && HasTable(*opened.value(), table.name());
}

bool FieldExists(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                 std::string_view field) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  return opened.ok() && HasField(*opened.value(), table.name(), field);
}

bool IsLinkedTable(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table) {
  if (run.database.kind == kSQLServer) return false;
  return IsLink({.name = {}, .attributes = AttributesOrNone(run, database, table)});
}

bool IsSystemTable(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table) {
  return IsSystemTable({.name = {}, .attributes = AttributesOrNone(run, database, table)});
}

bool IsLink(const TableEntry& table) {
  return (table.attributes & (kTableAttached | kTableAttachedOdbc)) != 0;
}

bool IsSystemTable(const TableEntry& table) {
  return (table.attributes & kTableSystem) != 0 || table.attributes == kTableSystemOfEngine;
}

Status RenameTable(UpdateRun& run, const DatabaseArgument& database, std::string_view old_name,
                   std::string_view new_name) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  if (!opened.ok()) return opened.error();
  if (!HasTable(*opened.value(), old_name)) return {};
  return opened.value()->RenameTable(old_name, new_name);
}

Status AddField(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                const NewField& field) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  if (!opened.ok()) return opened.error();
  if (!HasTable(*opened.value(), table.name())) return {};
  if (HasField(*opened.value(), table.name(), field.name)) return {};
  return opened.value()->AddField(table.name(), {.name = field.name,
                                                 .type = field.type,
                                                 .size = field.size,
                                                 .ordinal_position = field.ordinal_position,
                                                 .allow_zero_length = field.allow_zero_length});
}

Status CopyField(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                 const FieldDefinition& pattern) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  if (!opened.ok()) return opened.error();
  return opened.value()->AddField(table.name(), pattern);
}

Status ReplaceField(UpdateRun& run, const DatabaseArgument& database, const TableArgument& table,
                    std::string_view field, const FieldDefinition& pattern) {
  const Result<BorrowedDatabase> opened = BorrowedDatabase::Of(run, database);
  if (!opened.ok()) return opened.error();
  OpenedDatabase& open = *opened.value();
  return InOneTransaction(open, [&]() -> Status {
    if (Status deleted = open.DeleteField(table.name(), field); !deleted.ok()) return deleted;
    return CopyField(run, open, table, pattern);
  });
}

}  // namespace zent
