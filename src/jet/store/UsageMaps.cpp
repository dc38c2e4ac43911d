#include "jet/store/UsageMaps.h"

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"
#include "jet/store/MapRow.h"

namespace zent::jet {

Result<std::optional<PageNumber>> UsageMaps::Next(RowPointer map, PageNumber from) {
  return NextInMap(pager_, map, from);
}

Result<bool> UsageMaps::Has(RowPointer map, PageNumber page) { return MapHas(pager_, map, page); }

Result<std::vector<PageNumber>> UsageMaps::Pages(RowPointer map) {
  std::vector<PageNumber> pages;
  for (PageNumber from = 0;; from = pages.back() + 1) {
    const Result<std::optional<PageNumber>> next = Next(map, from);
    if (!next.ok()) return next.error();
    if (!next.value()) return pages;
    pages.push_back(*next.value());
  }
}

Status UsageMaps::Set(RowPointer map, PageNumber page, bool value) {
  Result<MapRowEdit> edit = EditMapRow(pager_, map);
  if (!edit.ok()) return edit.error();
  const MutableBytes row = edit.value().row;
  if (row[0] == static_cast<std::uint8_t>(MapKind::Inline)) {
    if (SetInlineBit(row, page, value) || !value) return {};
    if (MoveWindow(row, page)) {
      SetInlineBit(row, page, true);
      return {};
    }
    for (const PageNumber kept : ConvertToReference(row)) {
      if (Status set = SetInBitmap(row, map, kept, true); !set.ok()) return set;
    }
  }
  return SetInBitmap(row, map, page, value);
}

Status UsageMaps::SetInBitmap(MutableBytes row, RowPointer map, PageNumber page, bool value) {
  const JetVersion version = pager_.version();
  const std::size_t i = page / PagesPerBitmap(version);
  const bool can_name = i < (row.size() - 1) / 4;
  const PageNumber bitmap = can_name ? LoadU32(row, 1 + 4 * i) : 0;
  if (bitmap == 0) {
    if (!value) return {};
    if (!can_name) return Damaged(map.page, "a usage map that is too short for the file");
    Result<PageEdit> added = allocator_.Allocate();
    if (!added.ok()) return added.error();
    InitBitmapPage(false, added.value().bytes());
    SetBitmapBit(version, added.value().bytes(), page, true);
    SetReference(row, i, added.value().page());
    return {};
  }
  Result<PageEdit> edit = pager_.Edit(bitmap);
  if (!edit.ok()) return edit.error();
  const MutableBytes bytes = edit.value().bytes();
  if (Result<PageBits> bits = OpenBitmapPage(version, bytes, i, bitmap); !bits.ok()) {
    return bits.error();
  }
  SetBitmapBit(version, bytes, page, value);
  return {};
}

Result<RowPointer> UsageMaps::Create(PageNumber beside) {
  const JetVersion version = pager_.version();
  const std::vector<std::uint8_t> row = NewUsageMapRow(version);
  if (beside > kRelationshipsPage) {
    Result<PageEdit> page = pager_.Edit(beside);
    if (!page.ok()) return page.error();
    const MutableBytes bytes = page.value().bytes();
    if (Status checked = CheckDataPage(version, bytes, beside); !checked.ok())
      return checked.error();
    if (!HoldsUsageMaps(beside, LoadU32(bytes, pager_.layout().data.owner))) {
      return Damaged(beside, "no page of usage maps");
    }
    if (const auto slot = InsertRow(version, bytes, row, SlotKind::Row, true)) {
      return RowPointer{.page = beside, .row = *slot};
    }
  }
  Result<PageEdit> page = allocator_.Allocate();
  if (!page.ok()) return page.error();
  InitDataPage(version, kUsageMapOwner, page.value().bytes());
  const auto slot = InsertRow(version, page.value().bytes(), row, SlotKind::Row, true);
  return RowPointer{.page = page.value().page(), .row = slot.value_or(0)};
}

// What is named but is no bitmap page is somebody else's: it stays as it is.
Status UsageMaps::ReleaseBitmap(std::size_t i, PageNumber page) {
  if (page == 0 || page >= pager_.page_count()) return {};
  {
    const Result<PageView> view = pager_.Read(page);
    if (!view.ok()) return view.error();
    if (!OpenBitmapPage(pager_.version(), view.value().bytes(), i, page).ok()) return {};
  }
  return allocator_.Release(page);
}

Status UsageMaps::Drop(RowPointer map) {
  const JetVersion version = pager_.version();
  Result<MapRowEdit> edit = EditMapRow(pager_, map);
  if (!edit.ok()) return edit.error();
  const MutableBytes bytes = edit.value().page.bytes();
  if (Status checked = CheckDataPage(version, bytes, map.page); !checked.ok()) return checked;

  const MutableBytes row = edit.value().row;
  if (row[0] == static_cast<std::uint8_t>(MapKind::Reference)) {
    for (std::size_t i = 0; i < (row.size() - 1) / 4; ++i) {
      Status released = ReleaseBitmap(i, LoadU32(row, 1 + 4 * i));
      if (!released.ok()) return released;
    }
  }
  DeleteRow(version, bytes, map.row);
  if (map.page == kGlobalMapPage || !HasNoRows(version, bytes)) return {};
  return allocator_.Release(map.page);
}

Result<PageEdit> UsageMaps::AllocateFor(RowPointer map) {
  Result<PageEdit> page = allocator_.Allocate();
  if (!page.ok()) return page;
  if (Status set = Set(map, page.value().page(), true); !set.ok()) return set.error();
  return page;
}

Status UsageMaps::ReleaseFrom(RowPointer map, PageNumber page) {
  const Result<bool> has = Has(map, page);
  if (!has.ok()) return has.error();
  if (!has.value()) return Damaged(page, "it is not among the pages of who gives it back");
  if (Status cleared = Set(map, page, false); !cleared.ok()) return cleared;
  return allocator_.Release(page);
}

}  // namespace zent::jet
