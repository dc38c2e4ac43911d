#include "jet/transfer/RowAppender.h"

#include <algorithm>

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

Result<RowPointer> RowAppender::Append(ByteView row) {
  const Layout& layout = maps_.pager().layout();
  for (PageEdit& page : pages_) {
    const auto slot = InsertRow(layout.version, page.bytes(), row, SlotKind::Row, false);
    if (slot) return RowPointer{.page = page.page(), .row = *slot};
  }
  if (pages_.size() == most_open_) {
    if (Status closed = ClosePage(); !closed.ok()) return closed.error();
  }
  Result<PageEdit> page = maps_.AllocateFor(owner_.owned);
  if (!page.ok()) return page.error();
  pages_.push_back(std::move(page.value()));
  PageEdit& added = pages_.back();
  InitDataPage(layout.version, owner_.number, added.bytes());
  const auto slot = InsertRow(layout.version, added.bytes(), row, SlotKind::Row, false);
  if (!slot) return JetError(kRecordTooLarge);
  return RowPointer{.page = added.page(), .row = *slot};
}

Status RowAppender::Finish() {
  while (!pages_.empty()) {
    if (Status closed = ClosePage(); !closed.ok()) return closed;
  }
  return {};
}

// As a page that was filled row by row: one with less than an eighth to give has no room.
Status RowAppender::ClosePage() {
  const Layout& layout = maps_.pager().layout();
  const auto room = [&](const PageEdit& page) {
    return LoadU16(page.bytes(), layout.data.free_space);
  };
  const auto fullest =
      std::min_element(pages_.begin(), pages_.end(),
                       [&](const PageEdit& a, const PageEdit& b) { return room(a) < room(b); });
  const PageNumber page = fullest->page();
  const bool has_room = room(*fullest) >= layout.page_size / 8 &&
                        RoomForRow(layout.version, fullest->bytes(), owner_.reuses_slots) > 0;
  pages_.erase(fullest);
  return has_room ? maps_.Set(owner_.free, page, true) : Status();
}

}  // namespace zent::jet
