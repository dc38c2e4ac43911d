#pragma once

#include <optional>

#include "base/Status.h"
#include "jet/format/Layout.h"
#include "jet/storage/Pager.h"

/// Usage maps as they lie in a file: found by the row that holds them. What cannot be a page of the
/// set is passed over: pages beyond the end of the file, references to what is no bitmap page.
namespace zent::jet {

/// The first page of the set that is not below `from`, in the file; nothing when there is none.
Result<std::optional<PageNumber>> NextInMap(Pager& pager, RowPointer map, PageNumber from);

/// Whether the set has `page`.
Result<bool> MapHas(Pager& pager, RowPointer map, PageNumber page);

/// The row of a map, to be changed while this lives.
struct MapRowEdit {
  PageEdit page;
  MutableBytes row;
};
Result<MapRowEdit> EditMapRow(Pager& pager, RowPointer map);

}  // namespace zent::jet
