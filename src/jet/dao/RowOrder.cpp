#include "jet/dao/RowOrder.h"

#include <algorithm>

namespace zent::jet {

RowOrder::Found ListOrder::At(std::size_t place) {
  gap_ = false;
  at_ = place;
  if (place >= rows_.size()) return std::optional<RowPointer>();
  visited_ = std::max(visited_, place + 1);
  return std::optional<RowPointer>(rows_[place]);
}

RowOrder::Found ListOrder::First() { return At(0); }

RowOrder::Found ListOrder::Last() { return At(rows_.empty() ? 0 : rows_.size() - 1); }

RowOrder::Found ListOrder::Next() { return At(gap_ ? at_ : at_ + 1); }

RowOrder::Found ListOrder::Previous() {
  gap_ = false;
  if (at_ == 0) return std::optional<RowPointer>();
  return At(at_ - 1);
}

Result<bool> ListOrder::GoTo(RowPointer row) {
  const auto found = std::find(rows_.begin(), rows_.end(), row);
  if (found == rows_.end()) return false;
  return At(static_cast<std::size_t>(found - rows_.begin())).ok();
}

void ListOrder::Deleted() {
  if (at_ >= rows_.size()) return;
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(at_));
  if (visited_ > 0) --visited_;
  gap_ = true;
}

}  // namespace zent::jet
