#pragma once

#include <cstdint>
#include <vector>

#include "jet/format/TableDefinition.h"

namespace zent::jet {

/// An entry of an index that is being sorted; its key lies among those of all.
struct KeyEntry {
  std::uint64_t
      head;  ///< the first bytes in which keys differ, as a number that compares as they do
  std::uint32_t at;
  std::uint32_t length;
  RowPointer row;
};

/// Sorts by heads; entries of one head stay in their order. Takes the time that reading them some
/// times takes, however many there are, and the same memory again.
void SortByHead(std::vector<KeyEntry>& entries);

}  // namespace zent::jet
