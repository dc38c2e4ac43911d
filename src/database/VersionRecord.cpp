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

/// Whether the database may have a table of its own for the record. A server is not asked: it has
/// no links, and what it lists leaves out the other names of tables.
Result<bool> MayHaveOwnRecord(OpenedDatabase& database) {
  if (database.Kind() == DatabaseKind::Server) return true;
  const Result<std::vector<TableEntry>> tables = database.Tables();
  if (!tables.ok()) return tables.error();
  return std::any_of(tables.value().begin(), tables.value().end(), [](const TableEntry& table) {
    return SameName(table.name, "version") && !IsLink(table);
  });
}

}  // namespace

Result<std::optional<std::string>> ReadVersionRecord(UpdateRun& run, OpenedDatabase& database) {
  const Result<bool> may_have = MayHaveOwnRecord(database);
  if (!may_have.ok()) return may_have.error();
  if (!may_have.value()) return std::optional<std::string>();
  const Result<std::unique_ptr<Recordset>> rows =
      database.OpenRecordset(TranslateSQL(run, "SELECT * FROM version"), RecordsetUse::Read);
  if (rows.number() == kEngineNoSuchTable) return std::optional<std::string>();
  if (!rows.ok()) return rows.error();
  if (rows.value()->AtEnd()) return std::optional<std::string>();
  const Result<FieldValue> version = rows.value()->Get("Version");
  if (version.number() == kEngineItemNotFound) return std::optional<std::string>();
  if (!version.ok()) return version.error();
  return std::optional(std::string(TrimBlanks(version.value().AsText())));
}

}  // namespace zent
