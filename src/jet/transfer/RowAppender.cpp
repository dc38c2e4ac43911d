#include "jet/transfer/RowAppender.h"

#include "jet/format/DataPage.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

Result<RowPointer> RowAppender::Append(ByteView row) {
  const Layout& layout = maps_.pager().layout();
  if (row.size() > layout.data.max_row) return JetError(kRecordTooLarge);
  if (page_) {
    const auto slot = InsertRow(layout.version, page_->bytes(), row, SlotKind::Row, false);
    if (slot) return RowPointer{.page = page_->page(), .row = *slot};
    if (Status closed = ClosePage(); !closed.ok()) return closed.error();
  }
  Result<PageEdit> page = maps_.AllocateFor(owner_.owned);
  if (!page.ok()) return page.error();
  page_.emplace(std::move(page.value()));
  InitDataPage(layout.version, owner_.number, page_->bytes());
  const auto slot = InsertRow(layout.version, page_->bytes(), row, SlotKind::Row, false);
  if (!slot) return JetError(kRecordTooLarge);
  return RowPointer{.page = page_->page(), .row = *slot};
}

// As a page that was filled row by row: one with less than an eighth to give has no room.
Status RowAppender::ClosePage() {
  if (!page_) return {};
  const Layout& layout = maps_.pager().layout();
  const ByteView bytes = page_->bytes();
  const PageNumber page = page_->page();
  const bool has_room = LoadU16(bytes, layout.data.free_space) >= layout.page_size / 8 &&
                        RoomForRow(layout.version, bytes, false) > 0;
  page_.reset();
  return has_room ? maps_.Set(owner_.free, page, true) : Status();
}

}  // namespace zent::jet
