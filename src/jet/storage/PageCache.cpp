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
  PageFrame* const frame = At(page);
  if (frame != nullptr && frame->reusable) {
    reusable_.splice(reusable_.end(), reusable_, frame->place);
  }
  return frame;
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
    PageFrame& oldest = *reusable_.front();
    Hide(oldest);
    frame = Take(oldest);
  }
  frame->page = page;
  PageFrame& added = *frame;
  Put(std::move(frame));
  Settle(added);
  return &added;
}

std::unique_ptr<PageFrame> PageCache::Take(PageFrame& frame) {
  by_page_[frame.page] = nullptr;
  std::unique_ptr<PageFrame> taken = std::move(frames_[frame.index]);
  if (frame.index + 1 < frames_.size()) {
    frames_[frame.index] = std::move(frames_.back());
    frames_[frame.index]->index = frame.index;
  }
  frames_.pop_back();
  return taken;
}

void PageCache::Put(std::unique_ptr<PageFrame> frame) {
  if (frame->page >= by_page_.size()) by_page_.resize(frame->page + std::size_t{1});
  by_page_[frame->page] = frame.get();
  frame->index = frames_.size();
  frames_.push_back(std::move(frame));
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
  for (const auto& frame : frames_) {
    if (frame->dirty && !(settled && frame->edits > 0)) pages.push_back(frame->page);
  }
  std::sort(pages.begin(), pages.end());
  return pages;
}

void PageCache::Drop(PageNumber page) {
  PageFrame* const frame = At(page);
  if (frame == nullptr) return;
  MarkClean(*frame);
  Hide(*frame);
  std::unique_ptr<PageFrame> taken = Take(*frame);
  if (taken->pinned()) {
    taken->dropped = true;
    dropped_.push_back(std::move(taken));
  } else {
    --held_;
  }
}

bool PageCache::PinnedFrom(PageNumber first) const {
  return std::any_of(frames_.begin(), frames_.end(),
                     [&](const auto& frame) { return frame->page >= first && frame->pinned(); });
}

void PageCache::DropFrom(PageNumber first) {
  std::vector<PageNumber> pages;
  for (const auto& frame : frames_) {
    if (frame->page >= first) pages.push_back(frame->page);
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
