#pragma once

#include <optional>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/UsageMaps.h"

/// How tables, indexes and long values give back their pages. Maps of a damaged file may name pages
/// of others: the Check functions read every page first, and nothing is released after a fault.
namespace zent::jet {

/// Each page of the tree's map is a page of an index of the table at `page`.
Status CheckTree(UsageMaps& maps, PageNumber page, const RealIndex& index);
/// Each page of the map is a data page of `owner`.
Status CheckDataPages(UsageMaps& maps, std::uint32_t owner, RowPointer map);
/// All of a table: its rows, long values and trees.
Status CheckTable(UsageMaps& maps, PageNumber page, const TableDefinition& table);

/// Releases the pages of a map, then the map.
Status ReleaseMapped(UsageMaps& maps, RowPointer map);
/// The pages and the map of a tree.
Status ReleaseTree(UsageMaps& maps, const RealIndex& index);
/// The pages and both maps of a long value column. One without maps has nothing.
Status ReleaseLongValues(UsageMaps& maps, const LongValueMaps& column);
/// All of a table but its definition.
Status ReleaseTable(UsageMaps& maps, const TableDefinition& table);

}  // namespace zent::jet
