#include "jet/store/RowPages.h"

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr int kPagesTried = 4;  // of those with room, before a new one is taken

}  // namespace

Result<RowPointer> RowPages::Insert(ByteView row, SlotKind kind) {
  RowPointer at;
  if (last_ != 0) {
    // A guess: another may own the page by now.
    const Result<bool> has_room = maps_.Has(owner_.free, last_);
    if (!has_room.ok()) return has_room.error();
    if (has_room.value()) {
      const Result<bool> done = TryInsert(last_, row, kind, at);
      if (!done.ok()) return done.error();
      if (done.value()) return at;
    }
  }
  const Result<bool> done = TryFreePages(row, kind, at);
  if (!done.ok()) return done.error();
  if (done.value()) return at;

  Result<PageEdit> page = maps_.AllocateFor(owner_.owned);
  if (!page.ok()) return page.error();
  const MutableBytes bytes = page.value().bytes();
  last_ = page.value().page();
  InitDataPage(maps_.pager().version(), owner_.number, bytes);
  const auto slot = InsertRow(maps_.pager().version(), bytes, row, kind, false);
  if (!slot) return JetError(kRecordTooLarge);
  if (Status noted = NoteRoom(last_, bytes); !noted.ok()) return noted.error();
  return RowPointer{.page = last_, .row = *slot};
}

Result<bool> RowPages::TryFreePages(ByteView row, SlotKind kind, RowPointer& at) {
  for (int tries = 0; tries < kPagesTried; ++tries) {
    const Result<std::optional<PageNumber>> next = maps_.Next(owner_.free, search_from_);
    if (!next.ok()) return next.error();
    search_from_ = next.value() ? *next.value() + 1 : 0;
    if (!next.value()) return false;  // the next search begins at the start
    Result<bool> done = TryInsert(*next.value(), row, kind, at);
    if (!done.ok() || done.value()) return done;
  }
  return false;
}

Result<bool> RowPages::TryInsert(PageNumber page, ByteView row, SlotKind kind, RowPointer& at) {
  const JetVersion version = maps_.pager().version();
  {
    const Result<PageView> view = maps_.pager().Read(page);
    if (!view.ok()) return view.error();
    if (Status checked = CheckDataPage(version, view.value().bytes(), page); !checked.ok()) {
      return checked.error();
    }
    const std::size_t room = RoomForRow(version, view.value().bytes(), owner_.reuses_slots);
    if (room == 0 || room < row.size()) return false;
    if (Status owned = CheckOwner(page, view.value().bytes()); !owned.ok()) return owned.error();
  }
  Result<PageEdit> edit = maps_.pager().Edit(page);
  if (!edit.ok()) return edit.error();
  const auto slot = InsertRow(version, edit.value().bytes(), row, kind, owner_.reuses_slots);
  if (!slot) return false;
  at = {.page = page, .row = *slot};
  last_ = page;
  if (Status noted = NoteRoom(page, edit.value().bytes()); !noted.ok()) return noted.error();
  return true;
}

Result<PageEdit> RowPages::Edit(PageNumber page) {
  {
    const Result<PageView> view = maps_.pager().Read(page);
    if (!view.ok()) return view.error();
    const ByteView bytes = view.value().bytes();
    if (Status owned = CheckOwner(page, bytes); !owned.ok()) return owned.error();
    if (Status checked = CheckDataPage(maps_.pager().version(), bytes, page); !checked.ok()) {
      return checked.error();
    }
  }
  return maps_.pager().Edit(page);
}

/// That the map of the owner has the page, and that the page names the owner.
Status RowPages::CheckOwner(PageNumber page, ByteView bytes) {
  const Result<bool> owned = maps_.Has(owner_.owned, page);
  if (!owned.ok()) return owned.error();
  if (!owned.value()) return Damaged(page, "it does not belong to the rows it should hold");
  if (LoadU32(bytes, maps_.pager().layout().data.owner) != owner_.number) {
    return Damaged(page, "it names another owner");
  }
  return {};
}

Result<bool> RowPages::Replace(RowPointer at, ByteView row, SlotKind kind) {
  Result<PageEdit> edit = Edit(at.page);
  if (!edit.ok()) return edit.error();
  const MutableBytes bytes = edit.value().bytes();
  if (at.row >= LoadU16(bytes, maps_.pager().layout().data.row_count)) {
    return Damaged(at.page, "a row that is named is not there");
  }
  if (!ReplaceRow(maps_.pager().version(), bytes, at.row, row, kind)) return false;
  if (Status noted = NoteRoom(at.page, bytes); !noted.ok()) return noted.error();
  return true;
}

Status RowPages::Delete(RowPointer at) {
  Result<PageEdit> edit = Edit(at.page);
  if (!edit.ok()) return edit.error();
  const MutableBytes bytes = edit.value().bytes();
  if (at.row >= LoadU16(bytes, maps_.pager().layout().data.row_count)) {
    return Damaged(at.page, "a row that is named is not there");
  }
  DeleteRow(maps_.pager().version(), bytes, at.row);
  if (!HasNoRows(maps_.pager().version(), bytes)) return NoteRoom(at.page, bytes);
  if (Status cleared = maps_.Set(owner_.free, at.page, false); !cleared.ok()) return cleared;
  return maps_.ReleaseFrom(owner_.owned, at.page);
}

// Pages with less than an eighth of a page to give are not worth a look.
Status RowPages::NoteRoom(PageNumber page, ByteView bytes) {
  const Layout& layout = maps_.pager().layout();
  const bool has_room = LoadU16(bytes, layout.data.free_space) >= layout.page_size / 8 &&
                        RoomForRow(layout.version, bytes, owner_.reuses_slots) > 0;
  const Result<bool> noted = maps_.Has(owner_.free, page);
  if (!noted.ok()) return noted.error();
  return noted.value() == has_room ? Status() : maps_.Set(owner_.free, page, has_room);
}

}  // namespace zent::jet
