#pragma once

#include <bitset>
#include <map>

#include "jet/format/Layout.h"

namespace zent::jet {

/// Which of the rows that are found through a pointer alone have been found: each must be, once.
/// 32 bytes a page.
class SlotMarks {
 public:
  /// False when it was marked before.
  bool Mark(RowPointer at);
  bool Has(RowPointer at) const;

 private:
  std::map<PageNumber, std::bitset<kMaxRowsPerPage + 1>> pages_;
};

}  // namespace zent::jet
