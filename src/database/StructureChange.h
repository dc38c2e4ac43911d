#pragma once

#include <string>
#include <vector>

#include "base/Status.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"

/// The steps of a synchronisation that change tables, within its one transaction.
namespace zent {

enum class SyncEnd {
  Done,
  Stopped,  ///< the user did not want to go on
};

/// What the steps share.
struct StructureChange {
  UpdateRun& run;
  OpenedDatabase& source;  ///< the template
  OpenedDatabase& target;  ///< in a transaction
  /// Relationships that had to go for a table to be replaced, to be made again when all is done:
  /// only then do the fields on both sides have their new types.
  std::vector<RelationDefinition> relations = {};
  /// What was there before cannot be had otherwise: nothing may be committed.
  bool must_roll_back = false;
};

/// Makes the relationships again.
Status RestoreRelations(StructureChange& change);

/// Gives the fields of `table` in the target that `patterns` name the definitions that they have
/// there, with all rows: a copy of the table with those fields is filled row by row and takes the
/// table's place with its rules, indexes and counter, also where a row breaks a rule. A value that
/// does not fit is asked about; when the user goes on it is left out. When stopped, or after an
/// error, the table is as it was.
Result<SyncEnd> RebuildFields(StructureChange& change, const std::string& table,
                              const std::vector<FieldDefinition>& patterns);

/// Deletes `table` of the target, if there is one, and copies that of the template with its rows.
Status ReplaceTable(StructureChange& change, const std::string& table);

}  // namespace zent
