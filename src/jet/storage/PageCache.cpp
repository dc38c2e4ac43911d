#include "jet/storage/PageCache.h"

#include <algorithm>

namespace zent::jet {

PageView::PageView(PageCache& cache, PageFrame& frame) : cache_(&cache), frame_(&frame) {
  cache_->Pin(*frame_, false);
}
PageView::~PageView() {
  if (frame_ != nullptr) cache_->Unpin(*frame_, false);
}
PageView::PageView(PageView&& other) noexcept
    : cache_(other.cache_), frame_(std::exchange(other.frame_, nullptr)) {}
PageView& PageView::operator=(PageView&& other) noexcept {
  std::swap(cache_, other.cache_);
  std::swap(frame_, other.frame_);
  return *this;
}
ByteView PageView::bytes() const { return {frame_->bytes.get(), cache_->page_size()}; }

PageEdit::PageEdit(PageCache& cache, PageFrame& frame) : cache_(&cache), frame_(&frame) {
  cache_->Pin(*frame_, true);
}
PageEdit::~PageEdit() {
  if (frame_ != nullptr) cache_->Unpin(*frame_, true);
}
PageEdit::PageEdit(PageEdit&& other) noexcept
    : cache_(other.cache_), frame_(std::exchange(other.frame_, nullptr)) {}
PageEdit& PageEdit::operator=(PageEdit&& other) noexcept {
  std::swap(cache_, other.cache_);
  std::swap(frame_, other.frame_);
  return *this;
}
MutableBytes PageEdit::bytes() const { return {frame_->bytes.get(), cache_->page_size()}; }

PageCache::PageCache(std::size_t page_size, std::size_t capacity)
    : page_size_(page_size), capacity_(capacity) {}

PageCache::~PageCache() = default;

PageFrame* PageCache::Find(PageNumber page) {
  const auto found = frames_.find(page);
  if (found == frames_.end()) return nullptr;
  PageFrame& frame = *found->second;
  if (frame.reusable) reusable_.splice(reusable_.end(), reusable_, frame.place);
  return &frame;
}

PageFrame* PageCache::Add(PageNumber page) {
  std::unique_ptr<PageFrame> frame;
  if (held_ < capacity_) {
    frame = std::make_unique<PageFrame>();
    frame->bytes = std::make_unique_for_overwrite<std::uint8_t[]>(page_size_);
    frame->place = frame->apart.insert(frame->apart.end(), frame.get());
    ++held_;
  } else {
    if (reusable_.empty()) return nullptr;
    const auto oldest = frames_.find(reusable_.front()->page);
    Hide(*oldest->second);
    frame = std::move(oldest->second);
    frames_.erase(oldest);
  }
  frame->page = page;
  PageFrame& added = *frame;
  frames_.emplace(page, std::move(frame));
  Settle(added);
  return &added;
}

std::size_t PageCache::room() const {
  return reusable_.size() + (capacity_ > held_ ? capacity_ - held_ : 0);
}

void PageCache::MarkDirty(PageFrame& frame) {
  if (frame.dirty) return;
  frame.dirty = true;
  ++dirty_count_;
  Settle(frame);
}

void PageCache::MarkClean(PageFrame& frame) {
  if (!frame.dirty) return;
  frame.dirty = false;
  --dirty_count_;
  Settle(frame);
}

std::vector<PageNumber> PageCache::DirtyPages(bool settled) const {
  std::vector<PageNumber> pages;
  pages.reserve(dirty_count_);
  for (const auto& [page, frame] : frames_) {
    if (frame->dirty && !(settled && frame->edits > 0)) pages.push_back(page);
  }
  std::sort(pages.begin(), pages.end());
  return pages;
}

void PageCache::Drop(PageNumber page) {
  const auto found = frames_.find(page);
  if (found == frames_.end()) return;
  MarkClean(*found->second);
  Hide(*found->second);
  if (found->second->pinned()) {
    found->second->dropped = true;
    dropped_.push_back(std::move(found->second));
  } else {
    --held_;
  }
  frames_.erase(found);
}

bool PageCache::PinnedFrom(PageNumber first) const {
  return std::any_of(frames_.begin(), frames_.end(), [&](const auto& entry) {
    return entry.first >= first && entry.second->pinned();
  });
}

void PageCache::DropFrom(PageNumber first) {
  std::vector<PageNumber> pages;
  for (const auto& [page, frame] : frames_) {
    if (page >= first) pages.push_back(page);
  }
  for (const PageNumber page : pages) Drop(page);
}

void PageCache::DropAll() { DropFrom(0); }

void PageCache::Pin(PageFrame& frame, bool edit) {
  if (edit) {
    ++frame.edits;
    ++edits_;
  } else {
    ++frame.views;
  }
  Settle(frame);
}

void PageCache::Unpin(PageFrame& frame, bool edit) {
  if (edit) {
    --frame.edits;
    --edits_;
  } else {
    --frame.views;
  }
  if (!frame.dropped) {
    Settle(frame);
  } else if (!frame.pinned()) {
    Forget(frame);
  }
}

// A frame may be reused exactly when nothing would be lost by it.
void PageCache::Settle(PageFrame& frame) {
  const bool reusable = !frame.dropped && !frame.dirty && !frame.pinned();
  if (!reusable) {
    Hide(frame);
  } else if (!frame.reusable) {
    reusable_.splice(reusable_.end(), frame.apart);
    frame.reusable = true;
  }
}

void PageCache::Hide(PageFrame& frame) {
  if (frame.reusable) frame.apart.splice(frame.apart.end(), reusable_, frame.place);
  frame.reusable = false;
}

void PageCache::Forget(PageFrame& frame) {
  std::erase_if(dropped_, [&](const auto& held) { return held.get() == &frame; });
  --held_;
}

}  // namespace zent::jet
