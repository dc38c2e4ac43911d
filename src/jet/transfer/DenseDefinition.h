#pragma once

#include <cstddef>
#include <vector>

#include "jet/format/TableDefinition.h"

namespace zent::jet {

/// What a copy of a table is made from.
struct DenseDefinition {
  TableDefinition table = {};
  /// For each column of `table`, its position in the definition that it came from.
  std::vector<std::size_t> from = {};
  /// Rows of the source, without its long values, can be taken as they are.
  bool same_layout = false;
};

/// The definition of a table of Jet 4 with the same columns and indexes: numbers, slots and offsets
/// follow each other without gaps, in their old order. Maps, roots and counters are those of an
/// empty table, but for the last AutoNumber. Columns of Jet 3 become such of Jet 4.
DenseDefinition MakeDense(const TableDefinition& source);

}  // namespace zent::jet
