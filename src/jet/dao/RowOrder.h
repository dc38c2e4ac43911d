#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Table.h"
#include "jet/store/RowStore.h"

namespace zent::jet {

/// The rows of a recordset in their order, and a place among them. A move that finds no row leaves
/// the place undefined until the next MoveFirst, MoveLast or GoTo.
class RowOrder {
 public:
  using Found = Result<std::optional<RowPointer>>;
  virtual ~RowOrder() = default;

  virtual Found First() = 0;
  virtual Found Last() = 0;
  virtual Found Next() = 0;
  virtual Found Previous() = 0;
  /// False when the row is not among them.
  virtual Result<bool> GoTo(RowPointer row) = 0;
  /// The row at the place is gone; the place stays between its neighbours.
  virtual void Deleted() = 0;
  /// A new row.
  virtual void Added(RowPointer row) = 0;
  /// How many rows are known so far.
  virtual std::size_t visited() const = 0;
};

/// Rows that were found before, in that order; new ones come last.
class ListOrder final : public RowOrder {
 public:
  explicit ListOrder(std::vector<RowPointer> rows) : rows_(std::move(rows)) {}

  Found First() override;
  Found Last() override;
  Found Next() override;
  Found Previous() override;
  Result<bool> GoTo(RowPointer row) override;
  void Deleted() override;
  void Added(RowPointer row) override { rows_.push_back(row); }
  std::size_t visited() const override { return visited_; }

 private:
  Found At(std::size_t place);

  std::vector<RowPointer> rows_;
  std::size_t at_ = 0;
  std::size_t visited_ = 0;
  bool gap_ = false;  ///< the place is before rows_[at_], whose forerunner is gone
};

}  // namespace zent::jet
