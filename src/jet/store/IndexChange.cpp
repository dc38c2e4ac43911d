#include "jet/store/IndexChange.h"

#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/store/IndexSplit.h"

namespace zent::jet {
namespace {

bool IsNode(Pager& pager, PageNumber page) {
  const Result<PageView> view = pager.Read(page);
  return view.ok() && view.value().bytes()[0] == static_cast<std::uint8_t>(PageType::IndexNode);
}

}  // namespace

Status IndexChange::ChangeLink(PageNumber page, bool next, PageNumber from, PageNumber to) {
  if (page == 0) return {};
  Pager& pager = maps_.pager();
  const Layout::IndexPage& place = pager.layout().index_page;
  const std::size_t at = next ? place.next : place.previous;
  {
    const Result<PageView> view = pager.Read(page);
    if (!view.ok()) return view.error();
    const Result<IndexPageView> checked =
        IndexPageView::Open(pager.version(), view.value().bytes(), page);
    if (!checked.ok()) return checked.error();
    if (LoadU32(view.value().bytes(), at) != from) return {};
  }
  if (Status own = tree_.CheckOwn(page); !own.ok()) return own;
  Result<PageEdit> edit = pager.Edit(page);
  if (!edit.ok()) return edit.error();
  StoreU32(edit.value().bytes(), at, to);
  return {};
}

Status IndexChange::CutNodeLinks(PageNumber left, PageNumber right) {
  if (!IsNode(maps_.pager(), left) || !IsNode(maps_.pager(), right)) return {};
  if (Status cut = ChangeLink(left, true, right, 0); !cut.ok()) return cut;
  return ChangeLink(right, false, left, 0);
}

Status IndexChange::Load(const IndexTree::Path& path) {
  levels_.clear();
  for (const IndexTree::Step& step : path) {
    if (Status own = tree_.CheckOwn(step.page); !own.ok()) return own;
    const Result<IndexPageHold> hold = HoldIndexPage(maps_.pager(), step.page, tree_.place().table);
    if (!hold.ok()) return hold.error();
    const IndexPageView& view = hold.value().view;
    levels_.push_back({.page = step.page, .child = step.child, .content = view.Load()});
    if (view.leaf() || !view.ListsTail()) continue;
    levels_.back().content.entries.pop_back();
    levels_.back().changed = true;
  }
  return {};
}

Status IndexChange::Insert(const IndexTree::Path& path, const IndexEntry& entry) {
  if (Status loaded = Load(path); !loaded.ok()) return loaded;
  Level& leaf = levels_.back();
  const bool at_end = leaf.child == leaf.content.entries.size();
  leaf.content.entries.insert(
      leaf.content.entries.begin() + static_cast<std::ptrdiff_t>(leaf.child), entry);
  const Growth growth = at_end && leaf.content.next == 0 ? Growth::AtEnd : Growth::Anywhere;
  std::optional<IndexEntry> last;
  if (at_end) last = entry;
  return Store(levels_.size() - 1, std::move(last), growth);
}

Status IndexChange::Store(std::size_t depth, std::optional<IndexEntry> last, Growth growth) {
  for (bool changed = true;; --depth) {
    std::vector<IndexEntry> promoted;
    if (changed) {
      Result<std::vector<IndexEntry>> written = Write(depth, growth);
      if (!written.ok()) return written.error();
      promoted = std::move(written.value());
    }
    if (depth == 0) return {};

    Level& parent = levels_[depth - 1];
    std::vector<IndexEntry>& entries = parent.content.entries;
    const bool listed = parent.child < entries.size();
    changed = parent.changed || !promoted.empty() || (last && listed);
    if (last && listed) {
      entries[parent.child].key = last->key;
      entries[parent.child].row = last->row;
    }
    if (listed) growth = Growth::Anywhere;
    const bool is_last =
        !listed || (parent.child + 1 == entries.size() && parent.content.tail == 0);
    if (!is_last) last.reset();
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(parent.child), promoted.begin(),
                   promoted.end());
    parent.child += promoted.size();
    if (!changed && !last) return {};
  }
}

/// Writes a page, parting it as often as it takes, and returns the entries for the new pages on its
/// left. A root that is parted gets a root above it, which moves `depth`.
Result<std::vector<IndexEntry>> IndexChange::Write(std::size_t& depth, Growth growth) {
  const JetVersion version = maps_.pager().version();
  std::vector<IndexEntry> promoted;
  for (;;) {
    {
      Level& level = levels_[depth];
      Result<PageEdit> edit = maps_.pager().Edit(level.page);
      if (!edit.ok()) return edit.error();
      if (BuildIndexPage(version, level.content, edit.value().bytes())) return promoted;
    }
    const std::optional<std::size_t> count =
        ChooseSplit(version, levels_[depth].content, growth == Growth::AtEnd);
    if (!count) return JetError(kRecordTooLarge);
    if (depth == 0) {
      if (Status grown = GrowRoot(); !grown.ok()) return grown.error();
      depth = 1;
    }
    Result<IndexEntry> entry = SplitOff(levels_[depth], *count);
    if (!entry.ok()) return entry.error();
    promoted.push_back(std::move(entry.value()));
  }
}

/// Moves the contents of the root to a new page, whose parent the root becomes.
Status IndexChange::GrowRoot() {
  Result<PageEdit> page = maps_.AllocateFor(tree_.place().map);
  if (!page.ok()) return page.error();
  if (levels_.size() >= kMaxIndexHeight) return Damaged(levels_[0].page, "an index is too high");
  Level root{.page = levels_[0].page};
  root.content.leaf = false;
  root.content.level = static_cast<std::uint8_t>(levels_[0].content.level + 1);
  root.content.owner = tree_.place().table;
  root.content.tail = page.value().page();
  levels_[0].page = page.value().page();
  levels_.insert(levels_.begin(), std::move(root));
  return {};
}

/// Moves the first `count` entries of a page to a new one before it, whose entry is returned.
Result<IndexEntry> IndexChange::SplitOff(Level& level, std::size_t count) {
  IndexPage& right = level.content;
  Result<PageEdit> page = maps_.AllocateFor(tree_.place().map);
  if (!page.ok()) return page.error();
  const PageNumber number = page.value().page();

  IndexPage left{.level = right.level,
                 .leaf = right.leaf,
                 .owner = right.owner,
                 .previous = right.previous,
                 .next = level.page};
  const auto end = right.entries.begin() + static_cast<std::ptrdiff_t>(count);
  left.entries.assign(std::make_move_iterator(right.entries.begin()), std::make_move_iterator(end));
  right.entries.erase(right.entries.begin(), end);
  IndexEntry entry = left.entries.back();
  if (!left.leaf) {
    left.tail = entry.child;
    left.entries.pop_back();
    if (Status cut = CutNodeLinks(left.tail, right.entries.front().child); !cut.ok()) {
      return cut.error();
    }
  }
  if (!BuildIndexPage(maps_.pager().version(), left, page.value().bytes())) {
    return JetError(kRecordTooLarge);
  }
  if (Status linked = ChangeLink(left.previous, true, level.page, number); !linked.ok()) {
    return linked.error();
  }
  right.previous = number;
  entry.child = number;
  return entry;
}

Status IndexChange::Delete(const IndexTree::Path& path) {
  if (Status loaded = Load(path); !loaded.ok()) return loaded;
  Level& leaf = levels_.back();
  std::vector<IndexEntry>& entries = leaf.content.entries;
  const bool was_last = leaf.child + 1 == entries.size();
  entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(leaf.child));
  if (entries.empty() && levels_.size() > 1) return RemovePage(levels_.size() - 1);
  std::optional<IndexEntry> last;
  if (was_last && !entries.empty()) last = entries.back();
  return Store(levels_.size() - 1, std::move(last), Growth::Anywhere);
}

/// Takes a page that has become empty, and is not the root, out of the tree.
Status IndexChange::RemovePage(std::size_t depth) {
  for (;; --depth) {
    const Level& gone = levels_[depth];
    const PageNumber previous = gone.content.previous;
    const PageNumber next = gone.content.next;
    if (Status s = ChangeLink(previous, true, gone.page, next); !s.ok()) return s;
    if (Status s = ChangeLink(next, false, gone.page, previous); !s.ok()) return s;
    if (Status s = tree_.Release(gone.page); !s.ok()) return s;

    Level& parent = levels_[depth - 1];
    std::vector<IndexEntry>& entries = parent.content.entries;
    std::optional<IndexEntry> last;
    if (parent.child < entries.size()) {
      entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(parent.child));
      const bool was_last = parent.content.tail == 0 && parent.child == entries.size();
      if (was_last && !entries.empty()) last = entries.back();
    } else {
      parent.content.tail = 0;
      if (!entries.empty()) {
        last = entries.back();
        parent.content.tail = last->child;
        entries.pop_back();
      }
    }
    const bool childless = entries.empty() && parent.content.tail == 0;
    if (depth == 1 && entries.empty()) return CollapseRoot();
    if (!childless) return Store(depth - 1, std::move(last), Growth::Anywhere);
  }
}

/// A root with one child takes over its contents; one without children becomes an empty leaf.
Status IndexChange::CollapseRoot() {
  Level& root = levels_[0];
  for (int height = 0; height < kMaxIndexHeight; ++height) {
    if (root.content.leaf || !root.content.entries.empty()) break;
    const PageNumber child = root.content.tail;
    if (child == 0) {
      root.content = {.owner = tree_.place().table};
      break;
    }
    const Result<IndexPageHold> hold = HoldIndexPage(maps_.pager(), child, tree_.place().table);
    if (!hold.ok()) return hold.error();
    root.content = hold.value().view.Load();
    root.content.previous = 0;
    root.content.next = 0;
    if (Status s = tree_.Release(child); !s.ok()) return s;
  }
  return Store(0, std::nullopt, Growth::Anywhere);
}

}  // namespace zent::jet
