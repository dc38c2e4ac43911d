#pragma once

#include <optional>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"
#include "jet/storage/Pager.h"
#include "jet/store/PageAllocator.h"

namespace zent::jet {

/// The maps of tables, indexes and long values: sets of pages, each a row of a usage map page. The
/// row pointer of a map never changes. Changes need an open transaction of the pager; one that
/// fails half way is for the owner of the transaction to roll back.
class UsageMaps {
 public:
  /// `pager` must outlive it.
  explicit UsageMaps(Pager& pager) : pager_(pager), allocator_(pager) {}
  UsageMaps(const UsageMaps&) = delete;
  UsageMaps& operator=(const UsageMaps&) = delete;

  Pager& pager() { return pager_; }
  PageAllocator& allocator() { return allocator_; }

  /// The first page of the set that is not below `from`; nothing when there is none.
  Result<std::optional<PageNumber>> Next(RowPointer map, PageNumber from);
  Result<bool> Has(RowPointer map, PageNumber page);
  /// All pages of the set, ascending.
  Result<std::vector<PageNumber>> Pages(RowPointer map);

  /// Puts `page` into the set or takes it out. A map that is too narrow moves its window, or goes
  /// over to bitmap pages of its own.
  Status Set(RowPointer map, PageNumber page, bool value);

  /// A new, empty map, on the usage map page `beside` when it has room, else on a new page. 0: a
  /// new page.
  Result<RowPointer> Create(PageNumber beside);
  /// Takes a map out of its page and releases what only it used: its bitmap pages, and its page
  /// where it was the last row. The pages of its set are not released.
  Status Drop(RowPointer map);

  /// Allocates a page and puts it into `map`.
  Result<PageEdit> AllocateFor(RowPointer map);
  /// Takes a page out of `map` and releases it; damage when the map does not have it.
  Status ReleaseFrom(RowPointer map, PageNumber page);

 private:
  Status SetInBitmap(MutableBytes row, RowPointer map, PageNumber page, bool value);
  /// Releases the bitmap page that a map has in place `i`.
  Status ReleaseBitmap(std::size_t i, PageNumber page);

  Pager& pager_;
  PageAllocator allocator_;
};

}  // namespace zent::jet
