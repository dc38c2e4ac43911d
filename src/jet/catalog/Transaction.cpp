#include "jet/catalog/Transaction.h"

#include <utility>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

RuntimeError Ended() { return JetErrorBecause(kInvalidOperation, "the transaction has ended"); }

}  // namespace

Result<Transaction> Transaction::Begin(Catalog& catalog) {
  const bool outermost = !catalog.pager().in_transaction();
  if (Status begun = catalog.pager().Begin(); !begun.ok()) return begun.error();
  Transaction transaction(catalog);
  if (outermost) {
    if (Status current = catalog.Refresh(); !current.ok()) return current.error();
  }
  return transaction;
}

Transaction::Transaction(Transaction&& other) noexcept
    : catalog_(std::exchange(other.catalog_, nullptr)) {}

Transaction::~Transaction() {
  if (catalog_ != nullptr) static_cast<void>(Rollback());
}

Status Transaction::Commit() {
  Catalog* const catalog = std::exchange(catalog_, nullptr);
  if (catalog == nullptr) return Ended();
  Status committed = catalog->pager().Commit();
  if (!committed.ok()) catalog->Forget();
  return committed;
}

Status Transaction::Rollback() {
  Catalog* const catalog = std::exchange(catalog_, nullptr);
  if (catalog == nullptr) return Ended();
  Status undone = catalog->pager().Rollback();
  catalog->Forget();
  return undone;
}

}  // namespace zent::jet
