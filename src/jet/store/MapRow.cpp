#include "jet/store/MapRow.h"

#include <algorithm>

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"

namespace zent::jet {
namespace {

/// The bytes of the row `map` of a usage map page.
Result<ByteView> MapBytes(JetVersion version, ByteView page, RowPointer map) {
  const Result<DataPageView> view = DataPageView::Open(version, page, map.page);
  if (!view.ok()) return view.error();
  if (!HoldsUsageMaps(map.page, view.value().owner())) {
    return Damaged(map.page, "no page of usage maps");
  }
  const Result<Slot> slot = view.value().At(map.row);
  if (!slot.ok()) return slot.error();
  if (slot.value().kind != SlotKind::Row) return Damaged(map.page, "a usage map was deleted");
  return slot.value().bytes;
}

/// A map, its page held.
struct MapHold {
  PageView page;
  UsageMapView view;
};
Result<MapHold> HoldMap(Pager& pager, RowPointer map) {
  Result<PageView> page = pager.Read(map.page);
  if (!page.ok()) return page.error();
  const Result<ByteView> row = MapBytes(pager.version(), page.value().bytes(), map);
  if (!row.ok()) return row.error();
  const Result<UsageMapView> view = UsageMapView::Open(pager.version(), row.value(), map.page);
  if (!view.ok()) return view.error();
  return MapHold{std::move(page.value()), view.value()};
}

/// As NextInMap, in the bitmap pages that a map names.
Result<std::optional<PageNumber>> NextInBitmaps(Pager& pager, const UsageMapView& map,
                                                PageNumber from) {
  const PageNumber per_page = PagesPerBitmap(pager.version());
  for (std::size_t i = from / per_page; i < map.reference_count(); ++i) {
    if (std::uint64_t{i} * per_page >= pager.page_count()) break;
    const PageNumber bitmap = map.reference(i);
    if (bitmap == 0 || bitmap >= pager.page_count()) continue;
    const Result<PageView> page = pager.Read(bitmap);
    if (!page.ok()) return page.error();
    const Result<PageBits> bits = OpenBitmapPage(pager.version(), page.value().bytes(), i, bitmap);
    if (!bits.ok()) continue;
    if (const auto next = bits.value().Next(from)) return next;
  }
  return std::optional<PageNumber>();
}

}  // namespace

Result<std::optional<PageNumber>> NextInMap(Pager& pager, RowPointer map, PageNumber from) {
  const Result<MapHold> hold = HoldMap(pager, map);
  if (!hold.ok()) return hold.error();
  const UsageMapView& view = hold.value().view;

  std::optional<PageNumber> next;
  if (view.kind() == MapKind::Inline) {
    next = view.bits().Next(from);
  } else {
    Result<std::optional<PageNumber>> found = NextInBitmaps(pager, view, from);
    if (!found.ok()) return found;
    next = found.value();
  }
  if (next && *next >= pager.page_count()) next.reset();
  return next;
}

Result<bool> MapHas(Pager& pager, RowPointer map, PageNumber page) {
  const Result<MapHold> hold = HoldMap(pager, map);
  if (!hold.ok()) return hold.error();
  const UsageMapView& view = hold.value().view;
  if (page >= pager.page_count()) return false;
  if (view.kind() == MapKind::Inline) return view.bits().Has(page);

  const std::size_t i = page / PagesPerBitmap(pager.version());
  const PageNumber bitmap = i < view.reference_count() ? view.reference(i) : 0;
  if (bitmap == 0 || bitmap >= pager.page_count()) return false;
  const Result<PageView> held = pager.Read(bitmap);
  if (!held.ok()) return held.error();
  const Result<PageBits> bits = OpenBitmapPage(pager.version(), held.value().bytes(), i, bitmap);
  return bits.ok() && bits.value().Has(page);
}

Result<MapRowEdit> EditMapRow(Pager& pager, RowPointer map) {
  Result<PageEdit> page = pager.Edit(map.page);
  if (!page.ok()) return page.error();
  const MutableBytes bytes = page.value().bytes();
  const Result<ByteView> row = MapBytes(pager.version(), bytes, map);
  if (!row.ok()) return row.error();
  const Result<UsageMapView> checked = UsageMapView::Open(pager.version(), row.value(), map.page);
  if (!checked.ok()) return checked.error();
  const auto start = static_cast<std::size_t>(row.value().data() - bytes.data());
  return MapRowEdit{std::move(page.value()), bytes.subspan(start, row.value().size())};
}

}  // namespace zent::jet
