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
  Status done = change();
  if (done.ok()) done = database.Commit();
  if (done.ok()) return done;
  // A server's transaction is still open when it could not be committed: what is saved later would
  // be part of it, and go with it. The error that counts is the first one; what cannot be rolled
  // back now is when it is closed.
  if (database.InTransaction()) static_cast<void>(database.Rollback().ok());
  return done;
}

}  // namespace zent
