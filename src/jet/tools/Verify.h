#pragma once

#include <cstdint>

#include "base/Status.h"
#include "jet/storage/Pager.h"
#include "jet/tools/FaultLog.h"

namespace zent::jet {

/// How much a check has seen.
struct VerifySummary {
  PageNumber pages = 0;
  PageNumber free_pages = 0;
  /// Pages that nothing uses and that are not free. They only take room, and Access itself leaves
  /// such pages behind: no fault.
  PageNumber lost_pages = 0;
  std::uint64_t tables = 0;
  std::uint64_t rows = 0;
  std::uint64_t index_entries = 0;
  std::uint64_t faults = 0;
};

/// Checks a whole database, changing nothing: that every page in use is used once and is not marked
/// free, definitions, rows, null masks, moved rows, long values, row counts, indexes against the
/// keys computed from the rows, the catalog with rights, properties and relationships. Each fault
/// is told in one line, at the latest at the end. An error only when the pages cannot be read at
/// all. What it keeps grows with the pages by some tens of bytes each, not with the rows.
Result<VerifySummary> VerifyDatabase(Pager& pager, const TellFault& tell);

}  // namespace zent::jet
