#include "jet/store/IndexTree.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/store/IndexChange.h"

namespace zent::jet {

Result<IndexTree> IndexTree::Create(UsageMaps& maps, PageNumber table, RowPointer map) {
  Result<PageEdit> root = maps.AllocateFor(map);
  if (!root.ok()) return root.error();
  BuildIndexPage(maps.pager().version(), {.owner = table}, root.value().bytes());
  return IndexTree(maps, {.table = table, .root = root.value().page(), .map = map});
}

Result<bool> IndexTree::HasKey(std::string_view key) const {
  IndexCursor cursor = Cursor();
  Result<bool> found = cursor.Seek(key);
  if (!found.ok() || !found.value()) return found;
  return cursor.Compare(key, cursor.row()) == 0;
}

Result<IndexTree::Place> IndexTree::Descend(std::string_view key, RowPointer row) const {
  Path path;
  for (PageNumber page = place_.root; path.size() < kMaxIndexHeight;) {
    Result<IndexPageHold> hold = HoldIndexPage(maps_.pager(), page, place_.table);
    if (!hold.ok()) return hold.error();
    const IndexPageView& view = hold.value().view;
    Step step{.page = page, .child = view.LowerBound(key, row)};
    if (view.leaf()) {
      path.push_back(step);
      return Place{std::move(path), std::move(hold.value())};
    }
    if (step.child == view.count() && (view.tail() == 0 || view.ListsTail())) {
      if (step.child == 0) return Damaged(page, "an index node without children");
      --step.child;  // the last child stands among the entries
    }
    step.tail = step.child == view.count();
    page = step.tail ? view.tail() : view.Child(step.child);
    path.push_back(step);
  }
  return Damaged(place_.root, "an index goes in a loop");
}

bool IndexTree::EndsTree(const Path& path) {
  return std::all_of(path.begin(), path.end() - 1, [](const Step& step) { return step.tail; });
}

Status IndexTree::CheckOwn(PageNumber page) {
  if (page == own_) return {};
  const Result<bool> has = maps_.Has(place_.map, page);
  if (!has.ok()) return has.error();
  if (!has.value()) return Damaged(page, "a page that its index does not have");
  own_ = page;
  return {};
}

Status IndexTree::Release(PageNumber page) {
  own_ = 0;
  return maps_.ReleaseFrom(place_.map, page);
}

Status IndexTree::Insert(std::string_view key, RowPointer row) {
  if (key.size() > kMaxIndexKey) return JetError(kRecordTooLarge);
  const IndexEntry entry{.key = std::string(key), .row = row};
  Path path;
  {
    Result<Place> place = Descend(key, row);
    if (!place.ok()) return place.error();
    path = std::move(place.value().path);
    const Step& leaf = path.back();
    if (Status own = CheckOwn(leaf.page); !own.ok()) return own;
    const IndexPageView& view = place.value().leaf.view;
    const bool at_end = leaf.child == view.count();
    if (!at_end && view.Compare(leaf.child, key, row) == 0) {
      return Damaged(leaf.page, "an index names a row twice");
    }
    if (!at_end || EndsTree(path)) {
      Result<PageEdit> edit = maps_.pager().Edit(leaf.page);
      if (!edit.ok()) return edit.error();
      const JetVersion version = maps_.pager().version();
      if (InsertEntry(view, version, leaf.child, entry, edit.value().bytes())) return {};
    }
  }
  return IndexChange(*this).Insert(path, entry);
}

Status IndexTree::Delete(std::string_view key, RowPointer row) {
  Path path;
  {
    Result<Place> place = Descend(key, row);
    if (!place.ok()) return place.error();
    path = std::move(place.value().path);
    const Step& leaf = path.back();
    if (Status own = CheckOwn(leaf.page); !own.ok()) return own;
    const IndexPageView& view = place.value().leaf.view;
    const std::size_t count = view.count();
    if (leaf.child == count || view.Compare(leaf.child, key, row) != 0) {
      return Damaged(leaf.page, "an index lacks a row");
    }
    const bool keeps_last = leaf.child + 1 < count || EndsTree(path);
    const bool keeps_page = count > 1 || path.size() == 1;
    if (keeps_last && keeps_page) {
      Result<PageEdit> edit = maps_.pager().Edit(leaf.page);
      if (!edit.ok()) return edit.error();
      const JetVersion version = maps_.pager().version();
      if (RemoveEntry(view, version, leaf.child, edit.value().bytes())) return {};
    }
  }
  return IndexChange(*this).Delete(path);
}

Status IndexTree::Clear() {
  if (Status own = CheckOwn(place_.root); !own.ok()) return own;
  const Result<std::vector<PageNumber>> pages = maps_.Pages(place_.map);
  if (!pages.ok()) return pages.error();
  for (const PageNumber page : pages.value()) {
    if (page == place_.root) continue;
    if (Status released = Release(page); !released.ok()) return released;
  }
  Result<PageEdit> root = maps_.pager().Edit(place_.root);
  if (!root.ok()) return root.error();
  BuildIndexPage(maps_.pager().version(), {.owner = place_.table}, root.value().bytes());
  return {};
}

}  // namespace zent::jet
