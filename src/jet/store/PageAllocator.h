#pragma once

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"
#include "jet/storage/Pager.h"

namespace zent::jet {

/// Gives out pages and takes them back. The global map has a bit for each page that is free; pages
/// that it does not reach are in use. All changes need an open transaction of the pager.
class PageAllocator {
 public:
  explicit PageAllocator(Pager& pager) : pager_(pager) {}

  /// A page of zeros: a free one, else a new one at the end. kDatabaseTooLarge, and nothing
  /// changed, when the file has reached the limit of its format.
  Result<PageEdit> Allocate();

  /// Makes `page` free; its contents stay. The fixed pages at the start, pages beyond the end and
  /// free ones are refused.
  Status Release(PageNumber page);

 private:
  Result<PageEdit> Extend();
  Status Mark(PageNumber page, bool free);
  Status MarkInBitmap(MutableBytes row, PageNumber page, bool free);
  Status SpreadOverPages(MutableBytes row, PageNumber page);
  Status AddBitmap(MutableBytes row, std::size_t i);

  Pager& pager_;
  PageNumber search_from_ = 0;  ///< below it there was nothing free when last looked
  unsigned extensions_ = 0;
};

}  // namespace zent::jet
