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

Result<IndexTree::Path> IndexTree::Descend(std::string_view key, RowPointer row) const {
  Path path;
  for (PageNumber page = place_.root; path.size() < kMaxIndexHeight;) {
    const Result<IndexPageHold> hold = HoldIndexPage(maps_.pager(), page, place_.table);
    if (!hold.ok()) return hold.error();
    const IndexPageView& view = hold.value().view;
    Step step{.page = page, .child = view.LowerBound(key, row)};
    if (view.leaf()) {
      path.push_back(step);
      return path;
    }
    if (step.child == view.count() && view.tail() == 0) {
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

Status IndexTree::Insert(std::string_view key, RowPointer row) {
  if (key.size() > kMaxIndexKey) return JetError(kRecordTooLarge);
  const Result<Path> path = Descend(key, row);
  if (!path.ok()) return path.error();
  const Step& leaf = path.value().back();
  const IndexEntry entry{.key = std::string(key), .row = row};
  {
    Result<PageEdit> edit = maps_.pager().Edit(leaf.page);
    if (!edit.ok()) return edit.error();
    const MutableBytes bytes = edit.value().bytes();
    const JetVersion version = maps_.pager().version();
    const Result<IndexPageView> view = IndexPageView::Open(version, bytes, leaf.page);
    if (!view.ok()) return view.error();
    const bool at_end = leaf.child == view.value().count();
    if (!at_end && view.value().Compare(leaf.child, key, row) == 0) {
      return Damaged(leaf.page, "an index names a row twice");
    }
    if (!at_end || EndsTree(path.value())) {
      if (InsertEntry(view.value(), version, leaf.child, entry, bytes)) return {};
    }
  }
  return IndexChange(*this).Insert(path.value(), entry);
}

Status IndexTree::Delete(std::string_view key, RowPointer row) {
  const Result<Path> path = Descend(key, row);
  if (!path.ok()) return path.error();
  const Step& leaf = path.value().back();
  {
    Result<PageEdit> edit = maps_.pager().Edit(leaf.page);
    if (!edit.ok()) return edit.error();
    const MutableBytes bytes = edit.value().bytes();
    const JetVersion version = maps_.pager().version();
    const Result<IndexPageView> view = IndexPageView::Open(version, bytes, leaf.page);
    if (!view.ok()) return view.error();
    const std::size_t count = view.value().count();
    if (leaf.child == count || view.value().Compare(leaf.child, key, row) != 0) {
      return Damaged(leaf.page, "an index lacks a row");
    }
    const bool keeps_last = leaf.child + 1 < count || EndsTree(path.value());
    const bool keeps_page = count > 1 || path.value().size() == 1;
    if (keeps_last && keeps_page) {
      if (RemoveEntry(view.value(), version, leaf.child, bytes)) return {};
    }
  }
  return IndexChange(*this).Delete(path.value());
}

Status IndexTree::Clear() {
  const Result<std::vector<PageNumber>> pages = maps_.Pages(place_.map);
  if (!pages.ok()) return pages.error();
  for (const PageNumber page : pages.value()) {
    if (page == place_.root) continue;
    if (Status released = maps_.ReleaseFrom(place_.map, page); !released.ok()) return released;
  }
  Result<PageEdit> root = maps_.pager().Edit(place_.root);
  if (!root.ok()) return root.error();
  BuildIndexPage(maps_.pager().version(), {.owner = place_.table}, root.value().bytes());
  return {};
}

}  // namespace zent::jet
