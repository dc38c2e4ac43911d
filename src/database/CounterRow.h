#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

/// The rows of the table `Counters`.
namespace zent {

struct CounterRow {
  std::string table;  ///< as it was asked for
  std::string count;  ///< the key handed out last; a null is empty
  bool is_null = false;
  std::unique_ptr<Recordset> rows;  ///< stands on the row
};

/// The row of `table`. The name is put into the query as it is: one with a "'" is an error.
Result<std::optional<CounterRow>> ReadCounter(UpdateRun& run, OpenedDatabase& database,
                                              const std::string& table);

/// Makes `key` the key of that row; false when somebody else changed the row since it was read.
Result<bool> KeepCounter(UpdateRun& run, OpenedDatabase& database, const CounterRow& row,
                         const std::string& key);

/// Adds the row of a table that has none; false when somebody else did since.
Result<bool> AddCounter(UpdateRun& run, OpenedDatabase& database, const std::string& table,
                        const std::string& key);

}  // namespace zent
