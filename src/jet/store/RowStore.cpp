#include "jet/store/RowStore.h"

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr int kMostPlaces = 2;  // of a row: its own, and where its bytes are if they have moved
constexpr std::size_t kPointerSize = 4;

/// Slot `at` of a page of `owner`.
Result<Slot> SlotOf(Pager& pager, ByteView page, RowPointer at, PageNumber owner) {
  const Result<DataPageView> view = DataPageView::Open(pager.version(), page, at.page);
  if (!view.ok()) return view.error();
  if (view.value().owner() != owner) return Damaged(at.page, "it belongs to another table");
  return view.value().At(at.row);
}

Result<RowPointer> PointerIn(const Slot& slot, PageNumber page) {
  if (slot.bytes.size() < kPointerSize) return Damaged(page, "the pointer to a row is cut");
  return RowPointer::FromPacked(LoadU32(slot.bytes, 0));
}

}  // namespace

// Cursors and bookmarks remember row pointers: a slot is not given to another row as long as its
// page has any. A page without rows is released; taken again by the table, its slots begin anew,
// and a pointer that was kept since may then name another row.
RowStore::RowStore(UsageMaps& maps, PageNumber definition, RowPointer owned_map,
                   RowPointer free_map)
    : pages_(maps,
             {.number = definition, .owned = owned_map, .free = free_map, .reuses_slots = false}) {}

Result<StoredRow> RowStore::Fetch(RowPointer at) {
  Pager& pager = maps().pager();
  const ReadScope scope(pager);
  if (!scope.status().ok()) return scope.status().error();
  for (int hop = 0; hop < kMostPlaces; ++hop) {
    Result<PageView> page = pager.Read(at.page);
    if (!page.ok()) return page.error();
    const Result<Slot> slot = SlotOf(pager, page.value().bytes(), at, definition());
    if (!slot.ok()) return slot.error();
    if (slot.value().kind != SlotKind::Pointer) {
      const SlotKind expected = hop == 0 ? SlotKind::Row : SlotKind::Moved;
      if (slot.value().kind == expected) {
        return StoredRow{std::move(page.value()), slot.value().bytes};
      }
      if (hop == 0) return JetError(kRecordDeleted);
      return Damaged(at.page, "a row that has moved is not there");
    }
    const Result<RowPointer> next = PointerIn(slot.value(), at.page);
    if (!next.ok()) return next.error();
    at = next.value();
  }
  return Damaged(at.page, "a row that has moved is not there, but a pointer again");
}

Status RowStore::CheckSize(ByteView row) {
  const bool fits = row.size() <= maps().pager().layout().data.max_row;
  return fits ? Status() : Status(JetError(kRecordTooLarge));
}

Result<RowPointer> RowStore::Insert(ByteView row) {
  if (Status checked = CheckSize(row); !checked.ok()) return checked.error();
  return pages_.Insert(row, SlotKind::Row);
}

/// Where the bytes of a row that has moved are; nothing for one at its place.
Result<std::optional<RowPointer>> RowStore::TargetOf(RowPointer at) {
  if (Result<StoredRow> there = Fetch(at); !there.ok()) return there.error();
  const Result<PageView> page = maps().pager().Read(at.page);
  if (!page.ok()) return page.error();
  const Result<Slot> slot = SlotOf(maps().pager(), page.value().bytes(), at, definition());
  if (!slot.ok()) return slot.error();
  if (slot.value().kind != SlotKind::Pointer) return std::optional<RowPointer>();
  const Result<RowPointer> target = PointerIn(slot.value(), at.page);
  if (!target.ok()) return target.error();
  return std::optional<RowPointer>(target.value());
}

Status RowStore::Update(RowPointer at, ByteView row) {
  if (Status checked = CheckSize(row); !checked.ok()) return checked;
  const Result<std::optional<RowPointer>> target = TargetOf(at);
  if (!target.ok()) return target.error();
  const bool moved = target.value().has_value();
  const Result<bool> replaced =
      pages_.Replace(moved ? *target.value() : at, row, moved ? SlotKind::Moved : SlotKind::Row);
  if (!replaced.ok()) return replaced.error();
  if (replaced.value()) return {};
  if (Status away = MoveAway(at, row); !away.ok()) return away;
  return moved ? pages_.Delete(*target.value()) : Status();
}

Status RowStore::MoveAway(RowPointer header, ByteView row) {
  const Result<RowPointer> target = pages_.Insert(row, SlotKind::Moved);
  if (!target.ok()) return target.error();
  std::array<std::uint8_t, kPointerSize> pointer = {};
  StoreU32(pointer, 0, target.value().packed());
  const Result<bool> replaced = pages_.Replace(header, pointer, SlotKind::Pointer);
  if (!replaced.ok()) return replaced.error();
  return replaced.value() ? Status() : Status(JetError(kRecordTooLarge));
}

Status RowStore::Delete(RowPointer at) {
  const Result<std::optional<RowPointer>> target = TargetOf(at);
  if (!target.ok()) return target.error();
  if (target.value()) {
    if (Status deleted = pages_.Delete(*target.value()); !deleted.ok()) return deleted;
  }
  return pages_.Delete(at);
}

void RowScan::MoveBehind(RowPointer at) {
  home_.reset();
  away_.reset();
  next_page_ = at.page;
  first_slot_ = at.row + std::size_t{1};
}

Result<bool> RowScan::Next() {
  away_.reset();
  for (;;) {
    if (home_) {
      Result<bool> found = NextOnPage();
      if (!found.ok() || found.value()) return found;
      home_.reset();
    }
    Result<bool> more = NextPage();
    if (!more.ok() || !more.value()) return more;
  }
}

Result<bool> RowScan::NextPage() {
  const Result<std::optional<PageNumber>> next = rows_.maps().Next(rows_.owned_map(), next_page_);
  if (!next.ok()) return next.error();
  if (!next.value()) return false;
  const PageNumber page = *next.value();
  Result<PageView> view = rows_.maps().pager().Read(page);
  if (!view.ok()) return view.error();
  home_.emplace(std::move(view.value()));
  entered_ = false;
  next_slot_ = page == next_page_ ? first_slot_ : 0;
  first_slot_ = 0;
  next_page_ = page + 1;
  return true;
}

Result<bool> RowScan::NextOnPage() {
  Pager& pager = rows_.maps().pager();
  const PageNumber page = home_->page();
  const Result<DataPageView> view = DataPageView::Open(pager.version(), home_->bytes(), page);
  if (!view.ok() || view.value().owner() != rows_.definition()) {
    if (entered_) return false;  // released since: its rows are gone
    return view.ok() ? Damaged(page, "it belongs to another table") : view.error();
  }
  entered_ = true;
  while (next_slot_ < view.value().count()) {
    Slot slot;
    const std::size_t number = next_slot_++;
    if (!view.value().Read(number, slot)) return view.value().At(number).error();
    if (slot.kind == SlotKind::Deleted || slot.kind == SlotKind::Moved) continue;
    at_ = {.page = page, .row = static_cast<std::uint8_t>(number)};
    bytes_ = slot.bytes;
    if (slot.kind == SlotKind::Row) return true;
    Result<StoredRow> moved = rows_.Fetch(at_);
    if (!moved.ok()) return moved.error();
    away_.emplace(std::move(moved.value()));
    bytes_ = away_->bytes;
    return true;
  }
  return false;
}

}  // namespace zent::jet
