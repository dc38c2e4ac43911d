#pragma once

#include <string>
#include <vector>

#include "database/StructureChange.h"

namespace zent {

/// A field whose definition changes while the rows of its table are copied.
struct ChangedField {
  FieldDefinition before;
  FieldDefinition after;
};

/// Copies all rows of `from` to the end of `to`, field by field. Only one row is held at a time.
/// A value of a changed field that `to` does not take is asked about, naming `table`; when the user
/// goes on it is left out and recorded as a warning.
Result<SyncEnd> CopyRows(UpdateRun& run, const std::string& table, Recordset& from, Recordset& to,
                         const std::vector<ChangedField>& changed);

}  // namespace zent
