#include "jet/dao/RowOrder.h"

#include <algorithm>

namespace zent::jet {

RowOrder::Found ListOrder::Forward(std::size_t place) {
  while (place < rows_.size() && gone_[place]) ++place;
  at_ = place;
  if (place >= rows_.size()) return std::optional<RowPointer>();
  reached_ = std::max(reached_, place + 1);
  return std::optional<RowPointer>(rows_[place]);
}

RowOrder::Found ListOrder::Backward(std::size_t place) {
  while (place > 0 && gone_[place - 1]) --place;
  if (place == 0) return std::optional<RowPointer>();
  at_ = place - 1;
  reached_ = std::max(reached_, place);
  return std::optional<RowPointer>(rows_[at_]);
}

RowOrder::Found ListOrder::First() { return Forward(0); }

RowOrder::Found ListOrder::Last() { return Backward(rows_.size()); }

RowOrder::Found ListOrder::Next() { return Forward(at_ + 1); }

RowOrder::Found ListOrder::Previous() { return Backward(at_); }

Result<bool> ListOrder::GoTo(RowPointer row) {
  for (std::size_t place = 0; place < rows_.size(); ++place) {
    if (rows_[place] != row || gone_[place]) continue;
    at_ = place;
    reached_ = std::max(reached_, place + 1);
    return true;
  }
  return false;
}

void ListOrder::Deleted() {
  if (at_ >= rows_.size() || gone_[at_]) return;
  gone_[at_] = true;
  ++deleted_;
}

void ListOrder::Added(RowPointer row) {
  rows_.push_back(row);
  gone_.push_back(false);
}

}  // namespace zent::jet
