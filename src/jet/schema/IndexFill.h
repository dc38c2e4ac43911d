#pragma once

#include <cstddef>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

/// What the entries of a new index may take in memory while they are put in order.
inline constexpr std::size_t kSortBudget = 32U << 20U;

/// Enters all rows of `table` into the empty tree of the real index at `position` of `definition`,
/// which has the columns of `table`, and counts its distinct keys there. kNullInKey, kDuplicateKey,
/// kRecordTooLarge: the tree may then hold anything. A table whose entries take more than the
/// budget is read several times.
Status FillIndex(UsageMaps& maps, TableStore& table, std::size_t position,
                 TableDefinition& definition, std::size_t budget = kSortBudget);

}  // namespace zent::jet
