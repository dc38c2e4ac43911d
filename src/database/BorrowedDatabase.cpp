#include "database/BorrowedDatabase.h"

#include <utility>

#include "database/DBFuncs.h"

namespace zent {

Result<BorrowedDatabase> BorrowedDatabase::Of(UpdateRun& run, const DatabaseArgument& argument) {
  if (argument.database() != nullptr) return BorrowedDatabase(*argument.database());
  Result<DatabasePtr> opened = OpenDatabase(run, argument.path());
  if (!opened.ok()) return opened.error();
  if (opened.value() == nullptr) return StandardError(kObjectNotSet);
  BorrowedDatabase borrowed(*opened.value());
  borrowed.opened_ = std::move(opened.value());
  return borrowed;
}

Status InOneTransaction(OpenedDatabase& database, const std::function<Status()>& change) {
  if (database.InTransaction()) return change();
  if (Status begun = database.BeginTransaction(); !begun.ok()) return begun;
  Status changed = change();
  if (changed.ok()) return database.Commit();
  // The error that counts is the first one; what cannot be rolled back now is when it is closed.
  static_cast<void>(database.Rollback().ok());
  return changed;
}

}  // namespace zent
