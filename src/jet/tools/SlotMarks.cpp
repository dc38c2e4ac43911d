#include "jet/tools/SlotMarks.h"

namespace zent::jet {

bool SlotMarks::Mark(RowPointer at) {
  auto bit = pages_[at.page][at.row];
  if (bit) return false;
  bit = true;
  return true;
}

bool SlotMarks::Has(RowPointer at) const {
  const auto page = pages_.find(at.page);
  return page != pages_.end() && page->second[at.row];
}

}  // namespace zent::jet
