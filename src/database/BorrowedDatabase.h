#pragma once

#include <functional>
#include <memory>

#include "base/Status.h"
#include "database/Structure.h"

namespace zent {

/// The database that an argument means, closed again at the end when it was opened for this.
class BorrowedDatabase {
 public:
  /// Error: it cannot be opened. A server that could not be opened is kObjectNotSet.
  static Result<BorrowedDatabase> Of(UpdateRun& run, const DatabaseArgument& argument);

  OpenedDatabase& operator*() const { return *database_; }
  OpenedDatabase* operator->() const { return database_; }

 private:
  explicit BorrowedDatabase(OpenedDatabase& database) : database_(&database) {}

  std::unique_ptr<OpenedDatabase> opened_;  ///< null when the argument was an open database
  OpenedDatabase* database_;
};

/// Runs `change` as one transaction, or as part of the one that is open already: when it fails, or
/// cannot be committed, a transaction of its own is rolled back.
Status InOneTransaction(OpenedDatabase& database, const std::function<Status()>& change);

}  // namespace zent
