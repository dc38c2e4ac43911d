#include <algorithm>
#include <utility>

#include "jet/storage/PagerCore.h"

namespace zent::jet {

Status Pager::BeginPart() {
  if (Status begun = Begin(); !begun.ok()) return begun;
  Core& core = *core_;
  if (core.depth > 1) core.parts.push_back({.depth = core.depth, .page_count = core.page_count});
  return {};
}

void Pager::Core::KeepForPart(const PageFrame& frame) {
  if (parts.empty()) return;
  PagerPart& part = parts.back();
  if (part.lost || frame.page >= part.page_count || part.pages.contains(frame.page)) return;
  if (part.pages.size() == Pager::kMaxPartPages) {
    part.lost = true;
    part.pages.clear();
    return;
  }
  const std::uint8_t* const bytes = frame.bytes.get();
  part.pages.emplace(frame.page, std::vector<std::uint8_t>(bytes, bytes + layout.page_size));
}

void Pager::Core::JoinPart() {
  if (!InPartOfDepth()) return;
  PagerPart part = std::move(parts.back());
  parts.pop_back();
  if (parts.empty()) return;
  PagerPart& outer = parts.back();
  outer.lost = outer.lost || part.lost;
  for (auto& [page, bytes] : part.pages) {
    if (outer.lost) break;
    if (page < outer.page_count) outer.pages.try_emplace(page, std::move(bytes));
    outer.lost = outer.pages.size() > Pager::kMaxPartPages;
  }
}

// A part that cannot be undone alone takes the whole transaction with it.
Status Pager::Core::UndoPart() {
  const PagerPart part = std::move(parts.back());
  parts.pop_back();
  --depth;
  doomed = false;
  Status undone = part.lost ? Status() : PutBack(part);
  if (undone.ok() && !part.lost) return undone;
  doomed = true;
  for (PagerPart& outer : parts) outer.lost = true;
  if (Status discarded = Discard(); !discarded.ok()) return discarded;
  return undone;
}

Status Pager::Core::PutBack(const PagerPart& part) {
  for (const auto& [page, bytes] : part.pages) {
    const Result<PageFrame*> frame = Load(page);
    if (!frame.ok()) return frame.status();
    if (!frame.value()->dirty) {
      if (Status kept = undo.Keep(*frame.value()); !kept.ok()) return kept;
      cache.MarkDirty(*frame.value());
    }
    std::copy(bytes.begin(), bytes.end(), frame.value()->bytes.get());
  }
  if (page_count == part.page_count) return {};
  cache.DropFrom(part.page_count);
  // What did not fit the cache may have lengthened the file already.
  shrunk = shrunk || undo.armed();
  page_count = part.page_count;
  return {};
}

}  // namespace zent::jet
