#include "database/VersionRecord.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "base/CaseFold.h"
#include "base/Text.h"
#include "database/Structure.h"
#include "database/TranslateSQL.h"
#include "database/port/EngineErrors.h"

namespace zent {
namespace {

/// Whether the database has a table of its own for the record.
bool HasOwnRecord(OpenedDatabase& database) {
  const std::vector<TableEntry> tables = database.Tables().value_or({});
  return std::any_of(tables.begin(), tables.end(), [](const TableEntry& table) {
    return SameName(table.name, "version") && !IsLink(table);
  });
}

}  // namespace

Result<std::optional<std::string>> ReadVersionRecord(UpdateRun& run, OpenedDatabase& database) {
  if (!HasOwnRecord(database)) return std::optional<std::string>();
  const Result<std::unique_ptr<Recordset>> rows =
      database.OpenRecordset(TranslateSQL(run, "SELECT * FROM version"), RecordsetUse::Read);
  if (!rows.ok()) return rows.error();
  if (rows.value()->AtEnd()) return std::optional<std::string>();
  const Result<FieldValue> version = rows.value()->Get("Version");
  if (version.number() == kEngineItemNotFound) return std::optional<std::string>();
  if (!version.ok()) return version.error();
  return std::optional(std::string(TrimBlanks(version.value().AsText())));
}

}  // namespace zent
