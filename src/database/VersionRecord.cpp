#include "database/VersionRecord.h"

#include <memory>

#include "base/Text.h"
#include "database/Structure.h"
#include "database/TranslateSQL.h"
#include "database/port/EngineErrors.h"

namespace zent {

Result<std::optional<std::string>> ReadVersionRecord(UpdateRun& run, OpenedDatabase& database) {
  if (!TableExists(run, database, "version")) return std::optional<std::string>();
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
