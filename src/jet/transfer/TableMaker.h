#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// Makes an empty table in a file: its maps, its trees and its definition. The members of `table`
/// that name pages are filled in. `first` is the page of the definition, 0 for a new one. Maps go
/// to the page `map_page` as long as it has room, then to others, the last of which it becomes; 0:
/// a new one. Returns the pages of the definition.
Result<std::vector<PageNumber>> MakeTable(UsageMaps& maps, TableDefinition& table, PageNumber first,
                                          PageNumber& map_page);

/// Writes a definition over its pages, whose number it must still fit.
Status RewriteDefinition(Pager& pager, const TableDefinition& table,
                         const std::vector<PageNumber>& pages);

}  // namespace zent::jet
