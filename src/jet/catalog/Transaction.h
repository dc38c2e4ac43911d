#pragma once

#include "base/Status.h"
#include "jet/catalog/Catalog.h"

namespace zent::jet {

/// A transaction of a database that rolls back unless committed, and then makes the catalog forget
/// what it read meanwhile. Within one, another only counts: its end without Commit leaves the outer
/// one fit for a rollback only.
class Transaction {
 public:
  /// `catalog` must outlive it. Drops the tables that another user has changed meanwhile.
  static Result<Transaction> Begin(Catalog& catalog);
  ~Transaction();
  Transaction(Transaction&& other) noexcept;
  Transaction& operator=(Transaction&&) = delete;

  /// A commit that fails has rolled back.
  Status Commit();
  Status Rollback();

 private:
  explicit Transaction(Catalog& catalog) : catalog_(&catalog) {}

  Catalog* catalog_;  ///< none when it has ended
};

}  // namespace zent::jet
