#pragma once

#include <cstdint>
#include <string>

#include "jet/format/TableDefinition.h"
#include "jet/store/UsageMaps.h"
#include "jet/tools/MapCheck.h"

namespace zent::jet {

/// One table, and how much of it there is.
struct TableCheckResult {
  bool readable = false;  ///< the definition could be read, and is `definition`
  TableDefinition definition = {};
  std::uint64_t rows = 0;
  std::uint64_t entries = 0;
};

/// Checks everything of the table whose definition is at `page`: definition, rows, long values,
/// indexes, counters.
TableCheckResult CheckTable(Checking& checking, UsageMaps& maps, PageNumber page,
                            const std::string& name);

}  // namespace zent::jet
