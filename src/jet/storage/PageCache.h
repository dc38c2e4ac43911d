#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <utility>
#include <vector>

#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

namespace zent::jet {

class PageCache;

/// One page in memory.
struct PageFrame {
  PageNumber page = 0;
  int views = 0;          ///< PageViews that pin it
  int edits = 0;          ///< PageEdits that pin it
  bool dirty = false;     ///< differs from the file
  bool dropped = false;   ///< no longer in the cache: goes with its last pin
  std::size_t index = 0;  ///< among the frames that are found
  std::unique_ptr<std::uint8_t[]> bytes;
  std::list<PageFrame*> apart;            ///< holds `place` while no list of the cache does
  std::list<PageFrame*>::iterator place;  ///< moves between the lists and is never made anew
  bool reusable = false;                  ///< it is in the list of frames that may be reused

  bool pinned() const { return views + edits > 0; }
};

/// A page held in memory for reading while this lives.
class PageView {
 public:
  PageView(PageCache& cache, PageFrame& frame);
  ~PageView();
  PageView(PageView&& other) noexcept;
  PageView& operator=(PageView&& other) noexcept;

  PageNumber page() const { return frame_->page; }
  ByteView bytes() const;

 private:
  PageCache* cache_;
  PageFrame* frame_;
};

/// A page held in memory for changing while this lives. Must be gone at the Commit.
class PageEdit {
 public:
  PageEdit(PageCache& cache, PageFrame& frame);
  ~PageEdit();
  PageEdit(PageEdit&& other) noexcept;
  PageEdit& operator=(PageEdit&& other) noexcept;

  PageNumber page() const { return frame_->page; }
  MutableBytes bytes() const;

 private:
  PageCache* cache_;
  PageFrame* frame_;
};

/// Frames by page number, at most `capacity` of them; the one unused for the longest time goes
/// first. Dirty and pinned frames stay until they are written and let go.
class PageCache {
 public:
  PageCache(std::size_t page_size, std::size_t capacity);
  ~PageCache();
  PageCache(const PageCache&) = delete;
  PageCache& operator=(const PageCache&) = delete;

  std::size_t page_size() const { return page_size_; }
  std::size_t capacity() const { return capacity_; }
  /// Frames held, those included that were dropped and are still pinned.
  std::size_t held() const { return held_; }
  std::size_t dirty_count() const { return dirty_count_; }

  /// The frame of a page, moved to the young end; null when it is not held.
  PageFrame* Find(PageNumber page);
  bool Holds(PageNumber page) const { return At(page) != nullptr; }
  /// A frame for a page that is not held, its bytes undefined; null when every frame is dirty or
  /// pinned.
  PageFrame* Add(PageNumber page);
  /// How many frames Add could give at once.
  std::size_t room() const;

  void MarkDirty(PageFrame& frame);
  void MarkClean(PageFrame& frame);
  /// Pages of the dirty frames, ascending; without those that an edit pins where `settled` is set.
  std::vector<PageNumber> DirtyPages(bool settled) const;
  /// Whether an edit pins any frame.
  bool HasEdits() const { return edits_ > 0; }

  /// Whether any page from `first` on is pinned.
  bool PinnedFrom(PageNumber first) const;

  /// Takes pages out of the cache. One that is pinned stays as it is for its holder.
  void Drop(PageNumber page);
  void DropFrom(PageNumber first);
  void DropAll();

 private:
  friend class PageView;
  friend class PageEdit;

  PageFrame* At(PageNumber page) const { return page < by_page_.size() ? by_page_[page] : nullptr; }
  /// Takes a frame from those that are found.
  std::unique_ptr<PageFrame> Take(PageFrame& frame);
  void Put(std::unique_ptr<PageFrame> frame);

  void Pin(PageFrame& frame, bool edit);
  void Unpin(PageFrame& frame, bool edit);
  void Settle(PageFrame& frame);
  void Hide(PageFrame& frame);
  void Forget(PageFrame& frame);

  std::size_t page_size_;
  std::size_t capacity_;
  std::size_t held_ = 0;
  std::size_t dirty_count_ = 0;
  int edits_ = 0;
  std::vector<std::unique_ptr<PageFrame>> frames_;   ///< those that are found, in any order
  std::vector<PageFrame*> by_page_;                  ///< the same by page number; null: not held
  std::vector<std::unique_ptr<PageFrame>> dropped_;  ///< pinned, no longer found
  std::list<PageFrame*> reusable_;                   ///< clean and unpinned, the oldest first
};

}  // namespace zent::jet
