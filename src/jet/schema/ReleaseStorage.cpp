#include "jet/schema/ReleaseStorage.h"

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"
#include "jet/store/IndexCursor.h"

namespace zent::jet {
namespace {

/// Does `check` for each page of a map.
template <typename Check>
Status ForEachPage(UsageMaps& maps, RowPointer map, const Check& check) {
  const Result<std::vector<PageNumber>> pages = maps.Pages(map);
  if (!pages.ok()) return pages.error();
  for (const PageNumber page : pages.value()) {
    if (Status checked = check(page); !checked.ok()) return checked;
  }
  return {};
}

}  // namespace

Status CheckTree(UsageMaps& maps, PageNumber page, const RealIndex& index) {
  return ForEachPage(maps, index.map, [&](PageNumber number) {
    return HoldIndexPage(maps.pager(), number, page).status();
  });
}

Status CheckDataPages(UsageMaps& maps, std::uint32_t owner, RowPointer map) {
  return ForEachPage(maps, map, [&](PageNumber number) -> Status {
    const Result<PageView> view = maps.pager().Read(number);
    if (!view.ok()) return view.error();
    const Result<DataPageView> data =
        DataPageView::Open(maps.pager().version(), view.value().bytes(), number);
    if (!data.ok()) return data.error();
    if (data.value().owner() == owner) return {};
    return Damaged(number, "a map names a page of another owner");
  });
}

Status CheckTable(UsageMaps& maps, PageNumber page, const TableDefinition& table) {
  if (Status rows = CheckDataPages(maps, page, table.owned_map); !rows.ok()) return rows;
  for (const LongValueMaps& column : table.long_value_maps) {
    if (column.owned.page == 0) continue;
    if (Status s = CheckDataPages(maps, kLongValueOwner, column.owned); !s.ok()) return s;
  }
  for (const RealIndex& index : table.real_indexes) {
    if (Status s = CheckTree(maps, page, index); !s.ok()) return s;
  }
  return {};
}

Status ReleaseMapped(UsageMaps& maps, RowPointer map) {
  Status released =
      ForEachPage(maps, map, [&](PageNumber number) { return maps.allocator().Release(number); });
  return released.ok() ? maps.Drop(map) : released;
}

Status ReleaseTree(UsageMaps& maps, const RealIndex& index) {
  return ReleaseMapped(maps, index.map);
}

Status ReleaseLongValues(UsageMaps& maps, const LongValueMaps& column) {
  if (column.owned.page == 0) return {};
  if (Status released = ReleaseMapped(maps, column.owned); !released.ok()) return released;
  return maps.Drop(column.free);
}

Status ReleaseTable(UsageMaps& maps, const TableDefinition& table) {
  for (const RealIndex& index : table.real_indexes) {
    if (Status s = ReleaseTree(maps, index); !s.ok()) return s;
  }
  for (const LongValueMaps& column : table.long_value_maps) {
    if (Status s = ReleaseLongValues(maps, column); !s.ok()) return s;
  }
  if (Status rows = ReleaseMapped(maps, table.owned_map); !rows.ok()) return rows;
  return maps.Drop(table.free_map);
}

}  // namespace zent::jet
