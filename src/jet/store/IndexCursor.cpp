#include "jet/store/IndexCursor.h"

#include "jet/format/JetErrors.h"

namespace zent::jet {

Result<IndexPageHold> HoldIndexPage(Pager& pager, PageNumber page, PageNumber table) {
  Result<PageView> held = pager.Read(page);
  if (!held.ok()) return held.error();
  Result<IndexPageView> view = IndexPageView::Open(pager.version(), held.value().bytes(), page);
  if (!view.ok()) return view.error();
  if (view.value().owner() != table) return Damaged(page, "an index page of another table");
  return IndexPageHold{std::move(held.value()), std::move(view.value())};
}

Status IndexCursor::Hold(PageNumber page) {
  leaf_.reset();
  Result<IndexPageHold> hold = HoldIndexPage(pager_, page, table_);
  if (!hold.ok()) return hold.error();
  leaf_.emplace(std::move(hold.value()));
  return {};
}

RuntimeError IndexCursor::Stop(PageNumber page, std::string_view what) {
  leaf_.reset();
  return Damaged(page, what);
}

Result<bool> IndexCursor::Seek(std::string_view key, RowPointer row) {
  PageNumber page = root_;
  for (int height = 0; height < kMaxIndexHeight; ++height) {
    if (Status held = Hold(page); !held.ok()) return held.error();
    const IndexPageView& view = leaf_->view;
    at_ = view.LowerBound(key, row);
    if (view.leaf()) return at_ < view.count() ? Result<bool>(true) : EnterNext();
    if (at_ == view.count() && view.tail() == 0) {
      if (at_ == 0) return Stop(page, "an index node without children");
      --at_;  // the last child stands among the entries
    }
    page = at_ == view.count() ? view.tail() : view.Child(at_);
  }
  return Stop(page, "an index goes in a loop");
}

Result<bool> IndexCursor::SeekLast() {
  PageNumber page = root_;
  for (int height = 0; height < kMaxIndexHeight; ++height) {
    if (Status held = Hold(page); !held.ok()) return held.error();
    const IndexPageView& view = leaf_->view;
    at_ = view.count() - 1;
    if (view.leaf()) return view.count() > 0 ? Result<bool>(true) : EnterPrevious();
    if (view.count() == 0 && view.tail() == 0) {
      return Stop(page, "an index node without children");
    }
    page = view.tail() != 0 ? view.tail() : view.Child(at_);
  }
  return Stop(page, "an index goes in a loop");
}

Result<bool> IndexCursor::Next() {
  if (!leaf_) return false;
  if (++at_ < leaf_->view.count()) return true;
  return EnterNext();
}

Result<bool> IndexCursor::Previous() {
  if (!leaf_) return false;
  if (at_-- > 0) return true;
  return EnterPrevious();
}

// Leaves whose entries ascend cannot go in a loop; that leaves loops of empty ones.
Result<bool> IndexCursor::EnterNext() {
  std::optional<IndexEntry> last;
  if (leaf_->view.count() > 0) last = leaf_->view.Entry(leaf_->view.count() - 1);
  for (PageNumber hops = 0; hops < pager_.page_count(); ++hops) {
    const PageNumber page = leaf_->view.next();
    leaf_.reset();
    if (page == 0) return false;
    if (Status held = Hold(page); !held.ok()) return held.error();
    const IndexPageView& view = leaf_->view;
    at_ = 0;
    const bool wrong =
        !view.leaf() || (view.count() > 0 && last && view.Compare(0, last->key, last->row) <= 0);
    if (wrong) return Stop(page, "the leaves of an index are not in order");
    if (view.count() > 0) return true;
  }
  return Stop(root_, "the leaves of an index go in a loop");
}

Result<bool> IndexCursor::EnterPrevious() {
  std::optional<IndexEntry> first;
  if (leaf_->view.count() > 0) first = leaf_->view.Entry(0);
  for (PageNumber hops = 0; hops < pager_.page_count(); ++hops) {
    const PageNumber page = leaf_->view.previous();
    leaf_.reset();
    if (page == 0) return false;
    if (Status held = Hold(page); !held.ok()) return held.error();
    const IndexPageView& view = leaf_->view;
    at_ = view.count() - 1;
    const bool wrong = !view.leaf() || (view.count() > 0 && first &&
                                        view.Compare(at_, first->key, first->row) >= 0);
    if (wrong) return Stop(page, "the leaves of an index are not in order");
    if (view.count() > 0) return true;
  }
  return Stop(root_, "the leaves of an index go in a loop");
}

}  // namespace zent::jet
