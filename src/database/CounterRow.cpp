#include "database/CounterRow.h"

#include <cstdint>
#include <utility>

#include "base/Text.h"
#include "database/BorrowedDatabase.h"
#include "database/TranslateSQL.h"

namespace zent {
namespace {

constexpr std::string_view kTableName = "TableName";
constexpr std::string_view kCurCount = "CurCount";

std::string Query(const UpdateRun& run, const std::string& table) {
  return TranslateSQL(run, "SELECT * FROM Counters WHERE TableName='" + table + "' ");
}

std::string Quoted(std::string_view text) {
  return "'" + ReplaceAllIgnoringCase(text, "'", "''") + "'";
}

/// True for success, false for an error that only says that somebody else was faster.
Result<bool> UnlessLost(const Status& status, int lost_number) {
  if (status.ok()) return true;
  if (status.number() == lost_number) return false;
  return status.error();
}

Status SetAndUpdate(Recordset& rows, std::string_view table, const std::string& key) {
  if (!table.empty()) {
    if (Status set = rows.Set(kTableName, table); !set.ok()) return set;
  }
  if (Status set = rows.Set(kCurCount, key); !set.ok()) return set;
  return rows.Update();
}

/// On a server others may draw at the same time, and a read locks nothing: the row changes only
/// while it holds what was read.
Result<bool> ExchangeOnServer(UpdateRun& run, OpenedDatabase& database, const CounterRow& row,
                              const std::string& key) {
  const std::string old_value = row.is_null ? " Is Null" : "=" + Quoted(row.count);
  const Result<std::int64_t> changed = database.Execute(
      TranslateSQL(run, "UPDATE Counters SET CurCount=" + Quoted(key) +
                            " WHERE TableName=" + Quoted(row.table) + " AND CurCount" + old_value));
  if (!changed.ok()) return changed.error();
  return changed.value() > 0;
}

Result<bool> AddUnlessThere(UpdateRun& run, OpenedDatabase& database, const std::string& table,
                            const std::string& key) {
  const Result<std::unique_ptr<Recordset>> rows =
      database.OpenRecordset(Query(run, table), RecordsetUse::Change);
  if (!rows.ok()) return rows.error();
  if (!rows.value()->AtEnd()) return false;
  if (const Status begun = rows.value()->AddNew(); !begun.ok()) return begun.error();
  return UnlessLost(SetAndUpdate(*rows.value(), table, key), kEngineDuplicateKey);
}

/// Holds the site's row of a server until the transaction ends, or all rows where there is none.
Status HoldSite(UpdateRun& run, OpenedDatabase& database) {
  const std::string statement = "UPDATE Counters SET CurCount=CurCount";
  const Result<std::int64_t> held =
      database.Execute(TranslateSQL(run, statement + " WHERE TableName='SiteID'"));
  if (!held.ok() || held.value() > 0) return held.status();
  return database.Execute(TranslateSQL(run, statement)).status();
}

}  // namespace

Result<std::optional<CounterRow>> ReadCounter(UpdateRun& run, OpenedDatabase& database,
                                              const std::string& table) {
  Result<std::unique_ptr<Recordset>> rows =
      database.OpenRecordset(Query(run, table), RecordsetUse::Change);
  if (!rows.ok()) return rows.error();
  if (rows.value()->AtEnd()) return std::optional<CounterRow>();
  const Result<FieldValue> count = rows.value()->Get(kCurCount);
  if (!count.ok()) return count.error();
  CounterRow row{.table = table,
                 .count = count.value().AsText(),
                 .is_null = count.value().IsNull(),
                 .rows = std::move(rows.value())};
  return std::optional<CounterRow>(std::move(row));
}

Result<bool> KeepCounter(UpdateRun& run, OpenedDatabase& database, const CounterRow& row,
                         const std::string& key) {
  if (database.Kind() == DatabaseKind::Server) return ExchangeOnServer(run, database, row, key);
  if (const Status begun = row.rows->Edit(); !begun.ok()) return begun.error();
  return UnlessLost(SetAndUpdate(*row.rows, {}, key), kEngineWriteConflict);
}

Result<bool> AddCounter(UpdateRun& run, OpenedDatabase& database, const std::string& table,
                        const std::string& key) {
  if (database.Kind() == DatabaseKind::Access) return AddUnlessThere(run, database, table, key);
  // Whoever adds a row to a server holds rows that all others want to hold first: nothing else
  // keeps two programs from adding the same one where the table has no unique index.
  bool added = false;
  const Status done = InOneTransaction(database, [&]() -> Status {
    if (Status held = HoldSite(run, database); !held.ok()) return held;
    const Result<bool> result = AddUnlessThere(run, database, table, key);
    added = result.value_or(false);
    return result.status();
  });
  if (!done.ok()) return done.error();
  return added;
}

}  // namespace zent
