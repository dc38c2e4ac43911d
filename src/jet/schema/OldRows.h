#pragma once

#include <cstddef>
#include <string_view>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"

/// Rows that were written before a column was added.
namespace zent::jet {

/// Where the fixed area of the rows of the table at `page` ends at most, columns that have been
/// dropped since included.
Result<std::size_t> LongestFixedArea(UsageMaps& maps, PageNumber page);

/// Writes every row anew, with the room for variable fields that rows have once their table has its
/// first variable column, `column`. Rows without it could be told from others by their column count
/// alone, which not every reader of such files looks at.
Status GiveVariablePart(Catalog& catalog, PageNumber page, std::string_view column);

/// Gives every row a value of its AutoNumber `column`: 1, 2 ... in the order of the rows, or a
/// GUID.
Status NumberRows(Catalog& catalog, PageNumber page, std::string_view column);

}  // namespace zent::jet
