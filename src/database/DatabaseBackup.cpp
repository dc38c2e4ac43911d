#include "database/DatabaseBackup.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "database/DBFuncs.h"
#include "database/Structure.h"
#include "driver/run/BackupName.h"

namespace zent {
namespace {

using RowCounts = std::vector<std::pair<std::string, std::int64_t>>;

/// Every row is read, so that a page that cannot be is found.
Result<std::int64_t> CountRows(OpenedDatabase& database, const std::string& table) {
  const Result<std::unique_ptr<Recordset>> rows = database.OpenRecordset(table, RecordsetUse::Read);
  if (!rows.ok()) return rows.error();
  std::int64_t count = 0;
  for (; !rows.value()->AtEnd(); ++count) {
    if (const Status moved = rows.value()->MoveNext(); !moved.ok()) return moved.error();
  }
  return count;
}

/// The rows of each table that the database keeps itself, in its order.
Result<RowCounts> CountAllRows(OpenedDatabase& database) {
  const Result<std::vector<TableEntry>> tables = database.Tables();
  if (!tables.ok()) return tables.error();
  RowCounts counts;
  for (const TableEntry& table : tables.value()) {
    if (IsSystemTable(table) || IsLink(table)) continue;
    const Result<std::int64_t> count = CountRows(database, table.name);
    if (!count.ok()) return count.error();
    counts.emplace_back(table.name, count.value());
  }
  return counts;
}

Result<RowCounts> RowsOf(UpdateRun& run, const std::string& path, OpenRequest& request) {
  const Result<DatabasePtr> opened = OpenDatabase(run, path, request);
  if (!opened.ok()) return opened.error();
  if (opened.value() == nullptr) return StandardError(kObjectNotSet);
  return CountAllRows(*opened.value());
}

RuntimeError About(const std::string& backup, RuntimeError error) {
  error.description = "Backup " + backup + ": " + error.description;
  return error;
}

Status CheckBackup(UpdateRun& run, const std::string& path, const std::string& backup) {
  OpenRequest request{.read_only = true};  // the password that opens the one opens the other
  const Result<RowCounts> original = RowsOf(run, path, request);
  if (!original.ok()) return original.error();
  const Result<RowCounts> copied = RowsOf(run, backup, request);
  if (!copied.ok()) return About(backup, copied.error());
  if (copied.value() == original.value()) return {};
  return About(backup, {.number = kDeviceIoError,
                        .description = "It does not hold what the database holds."});
}

}  // namespace

Result<std::string> BackUpDatabase(UpdateRun& run, const std::string& path) {
  std::string backup = FreeTimeStampedName(run, path);
  run.ShowMsg("Backing up " + path + std::string(kLineBreak) + "    as " + backup);
  if (const Status copied = run.platform.files.Copy(path, backup); !copied.ok()) {
    return About(backup, copied.error());
  }
  const Status checked = CheckBackup(run, path, backup);
  if (checked.ok()) return backup;
  // Nobody shall take it for a backup.
  if (!run.platform.files.Delete(backup).ok()) run.Warn("left behind: " + backup);
  return checked.error();
}

RuntimeError WithBackup(RuntimeError error, const std::string& backup) {
  if (!error.description.ends_with('.')) error.description += '.';
  error.description += " The backup is " + backup + ".";
  return error;
}

}  // namespace zent
