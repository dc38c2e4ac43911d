#include "jet/tools/TreeCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace zent::jet {

TreeCheck::TreeCheck(Checking& checking, const IndexPlace& place, const TreeRules& rules,
                     std::string subject)
    : checking_(checking),
      place_(place),
      rules_(rules),
      subject_(std::move(subject)),
      user_(checking.use.Add(subject_)) {}

bool TreeCheck::Run() {
  Visit(place_.root, 0, std::nullopt);
  if (whole_) CheckEnds();
  CheckMapOfPages();
  return whole_;
}

void TreeCheck::Visit(PageNumber page, int depth, std::optional<std::uint8_t> level) {
  // Until it has been read to its end.
  const bool whole = std::exchange(whole_, false);
  if (depth >= kMaxIndexHeight) return Fault(page, "the tree is too high");
  if (!checking_.use.Claim(page, user_)) return;
  pages_.push_back(page);
  const Result<IndexPageHold> hold = HoldIndexPage(checking_.pager, page, place_.table);
  if (!hold.ok()) return checking_.faults.Add(subject_, hold.error());
  const IndexPageView& view = hold.value().view;
  if (!view.leaf() && view.count() == 0 && view.tail() == 0) {
    return Fault(page, "a node without children");
  }
  whole_ = whole;
  CheckLevel(view, page, level);
  CheckLinks(view, page, depth);
  const std::size_t free = IndexPageRoom(checking_.pager.version()) - view.used();
  if (view.free_space() != free) {
    Fault(page, fmt::format("{} bytes are free, not {}", free, view.free_space()));
  }
  if (view.leaf()) return VisitLeaf(view, page, depth);
  VisitNode(view, page, depth);
}

void TreeCheck::VisitLeaf(const IndexPageView& view, PageNumber page, int depth) {
  if (leaf_depth_ && *leaf_depth_ != depth) Fault(page, "leaves at different heights");
  leaf_depth_ = depth;
  for (std::size_t i = 0; i < view.count(); ++i) {
    IndexEntry entry = view.Entry(i);
    if (last_) {
      if (CompareEntries(last_->key, last_->row, entry.key, entry.row) >= 0) {
        Fault(page, fmt::format("entry {} is not above the one before", i));
      } else if (rules_.unique && last_->key == entry.key && entry.key.size() > rules_.columns) {
        Fault(page, fmt::format("rows page {} row {} and page {} row {} have the same key",
                                last_->row.page, last_->row.row, entry.row.page, entry.row.row));
      }
    }
    entries_.Add(rules_.keys_known ? entry.key : std::string(), entry.row);
    last_ = std::move(entry);
  }
}

void TreeCheck::VisitNode(const IndexPageView& view, PageNumber page, int depth) {
  // Some writers leave the level of nodes 0.
  const std::optional<std::uint8_t> below =
      view.level() > 0 ? std::optional<std::uint8_t>(view.level() - 1) : std::nullopt;
  for (std::size_t i = 0; i < view.count(); ++i) {
    const PageNumber child = view.Child(i);
    if (i + 1 == view.count() && child == view.tail()) break;
    Visit(child, depth + 1, below);
    if (!whole_) return;
    const IndexEntry entry = view.Entry(i);
    if (!last_ || last_->key != entry.key || last_->row != entry.row) {
      Fault(page, fmt::format("entry {} is not the last of page {}", i, child));
    }
  }
  if (view.tail() != 0) Visit(view.tail(), depth + 1, below);
}

void TreeCheck::CheckLevel(const IndexPageView& view, PageNumber page,
                           std::optional<std::uint8_t> level) {
  if (view.leaf() && view.level() != 0) Fault(page, "a leaf of a level above 0");
  if (view.level() != 0 && level && *level != view.level()) {
    Fault(page, fmt::format("level {} where {} is to be", view.level(), *level));
  }
  if (view.leaf() && level && *level != 0) Fault(page, "a leaf where a node is to be");
}

/// Leaves are linked through the whole tree, nodes at least to no others than their neighbours.
void TreeCheck::CheckLinks(const IndexPageView& view, PageNumber page, int depth) {
  const auto at = static_cast<std::size_t>(depth);
  if (neighbours_.size() <= at) neighbours_.resize(at + 1);
  Neighbour& before = neighbours_[at];
  const bool may_be_cut = !view.leaf();
  if (view.previous() != before.page && !(may_be_cut && view.previous() == 0)) {
    Fault(page, fmt::format("its previous page is {}, not {}", view.previous(), before.page));
  }
  if (before.page != 0 && before.next != page && !(may_be_cut && before.next == 0)) {
    Fault(before.page, fmt::format("its next page is {}, not {}", before.next, page));
  }
  before = {.page = page, .next = view.next()};
}

void TreeCheck::CheckEnds() {
  for (const Neighbour& last : neighbours_) {
    if (last.next == 0) continue;
    Fault(last.page, fmt::format("it is the last, and its next page is {}", last.next));
  }
}

void TreeCheck::CheckMapOfPages() {
  const std::vector<PageNumber> in_map = CheckMap(checking_, place_.map, subject_);
  std::sort(pages_.begin(), pages_.end());
  if (!whole_ || in_map == pages_) return;
  checking_.faults.Add(subject_, fmt::format("its map has {} pages, its tree {}, or others",
                                             in_map.size(), pages_.size()));
}

void TreeCheck::Fault(PageNumber page, const std::string& what) {
  checking_.faults.Add(subject_, fmt::format("page {}: {}", page, what));
}

}  // namespace zent::jet
