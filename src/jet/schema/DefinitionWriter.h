#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/UsageMaps.h"

/// How definitions get into the file.
namespace zent::jet {

/// Puts columns, indexes and the maps of long values into the order in which Access has them:
/// columns by ordinal and name, indexes by name, both without regard to case.
void SortDefinition(TableDefinition& table);

/// Writes `table` over the chain `pages`, whose first page stays; pages are added or released as
/// its length asks. `pages` becomes the new chain. At least the first page must be there.
Status WriteDefinition(UsageMaps& maps, const TableDefinition& table,
                       std::vector<PageNumber>& pages);

/// Gives a definition that has none its maps (rows, then long values, then indexes) and an empty
/// tree for each real index. All maps go on the usage map page `beside` while there is room, which
/// becomes the page where the last one went; 0: a new page.
Status CreateStorage(UsageMaps& maps, PageNumber page, PageNumber& beside, TableDefinition& table);

/// The maps of one long value column; `beside` as above.
Result<LongValueMaps> CreateLongValueMaps(UsageMaps& maps, std::uint16_t column,
                                          PageNumber& beside);

/// Makes the map and the empty tree of a real index of the table at `page`.
Status CreateTree(UsageMaps& maps, PageNumber page, PageNumber& beside, RealIndex& index);

}  // namespace zent::jet
