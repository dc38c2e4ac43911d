#pragma once

#include <cstddef>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/schema/EditedTable.h"

namespace zent::jet {

/// Makes the tree of `index`, enters the rows of `table`, and adds it to the definition in memory,
/// which is for the caller to write. Returns its position. kDuplicateKey, kNullInKey and
/// kRecordTooLarge leave the file as it was.
Result<std::size_t> AddFilledIndex(Catalog& catalog, RealIndex index, EditedTable& table);

}  // namespace zent::jet
