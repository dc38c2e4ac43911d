#pragma once

#include <cstddef>
#include <functional>

#include "base/Status.h"
#include "database/StructureChange.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// Adds the items of the table `Lookup` that `source` has and `target` lacks; how many they were.
/// Handed down by the library that knows that table.
using LookupTopUp = std::function<Result<std::size_t>(UpdateRun& run, OpenedDatabase& source,
                                                      OpenedDatabase& target)>;

/// True when the field of a database has to be rebuilt for that of the template: it has another
/// type, less room, or as a decimal fewer digits. Nothing else counts.
bool NeedsRebuild(const FieldDefinition& field, const FieldDefinition& pattern);

/// Brings the structure of `target`, an Access file, up to that of `source`, as one transaction:
/// tables and fields that it lacks are added, fields that differ are rebuilt with their data, the
/// table `version` comes with its rows, and missing items of `Lookup` are added where both files
/// have that table themselves: no link to one elsewhere.
///
/// Stopped by the user or by an error, what was done until then is kept, unless a table stood
/// between two states: then nothing was changed. The version goes over last, so that a database
/// that was not brought up wholly does not have it.
Result<SyncEnd> SynchroniseTables(UpdateRun& run, OpenedDatabase& source, OpenedDatabase& target,
                                  const LookupTopUp& top_up);

}  // namespace zent
