#pragma once

#include <cstddef>
#include <string>

#include "base/Status.h"
#include "database/port/OpenedDatabase.h"
#include "dataupdate/RowPresence.h"
#include "driver/run/UpdateRun.h"

/// The values that the application offers in its list fields: the table `Lookup`, a row for each.
namespace zent {

/// A value of a list. All fields are texts.
struct LookupItem {
  std::string list;   ///< `LookupFieldName`: the field whose list this is
  std::string value;  ///< `LookupValue`
  std::string description = {};
  std::string order = {};  ///< `DisplayOrder`: the place in the list; blank: any
};

/// The item in the present row of a `Lookup` table.
Result<LookupItem> ItemOf(Recordset& rows);

/// A `Lookup` table that items are added to. An item is there when a row has its list and value,
/// and its order unless that is blank; what else such a row says is never changed.
class LookupTable {
 public:
  /// The table of `database`, which outlives this.
  static Result<LookupTable> Open(UpdateRun& run, OpenedDatabase& database);

  /// Adds the item when it is missing, and tells whether it did. A "'" in the value is doubled in
  /// the query, one in the list or the order is not: the query fails.
  Result<bool> AddIfMissing(const LookupItem& item);

 private:
  LookupTable(UpdateRun& run, OpenedDatabase& database, RowPresence any_order,
              RowPresence with_order)
      : run_(&run),
        database_(&database),
        any_order_(std::move(any_order)),
        with_order_(std::move(with_order)) {}

  UpdateRun* run_;
  OpenedDatabase* database_;
  RowPresence any_order_;
  RowPresence with_order_;
  std::unique_ptr<Recordset> rows_;  ///< to add to; opened with the first item that is missing
};

/// Adds to the `Lookup` table of `target` the rows of the one in `source` that it lacks; how many
/// they were. Nothing is caught: the first error ends it.
Result<std::size_t> UpdateLookupItems(UpdateRun& run, OpenedDatabase& source,
                                      OpenedDatabase& target);

}  // namespace zent
