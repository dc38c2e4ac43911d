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
  /// How many rows were visited so far.
  virtual std::size_t visited() const = 0;
};

/// Rows that were found before, in that order; new ones come last.
class ListOrder final : public RowOrder {
 public:
  explicit ListOrder(std::vector<RowPointer> rows)
      : rows_(std::move(rows)), gone_(rows_.size(), false) {}

  Found First() override;
  Found Last() override;
  Found Next() override;
  Found Previous() override;
  Result<bool> GoTo(RowPointer row) override;
  void Deleted() override;
  void Added(RowPointer row) override;
  std::size_t visited() const override { return reached_ - deleted_; }

 private:
  /// The first row from `place` on, or the last one before it.
  Found Forward(std::size_t place);
  Found Backward(std::size_t place);

  std::vector<RowPointer> rows_;
  std::vector<bool> gone_;  ///< of the rows: deleted here, only to be passed over
  std::size_t at_ = 0;
  std::size_t reached_ = 0;  ///< places from the first on that were visited ...
  std::size_t deleted_ = 0;  ///< ... and those of them that are gone
};

}  // namespace zent::jet
