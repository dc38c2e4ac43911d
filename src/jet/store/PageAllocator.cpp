#include "jet/store/PageAllocator.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"
#include "jet/store/MapRow.h"

namespace zent::jet {
namespace {

// The start of the search is a guess: pages may have become free below it through a rollback or
// another user. So it begins anew from time to time, and before the file is called full.
constexpr unsigned kExtensionsBetweenSearches = 256;

}  // namespace

Result<PageEdit> PageAllocator::Allocate() {
  Result<std::optional<PageNumber>> found = NextInMap(pager_, kGlobalMap, search_from_);
  if (!found.ok()) return found.error();
  if (!found.value()) {
    Result<PageEdit> added = Extend();
    if (added.number() != kDatabaseTooLarge || search_from_ == 0) return added;
    found = NextInMap(pager_, kGlobalMap, 0);
    if (!found.ok()) return found.error();
    if (!found.value()) return added;
  }
  const PageNumber page = *found.value();
  if (page <= kRelationshipsPage) return Damaged(kGlobalMapPage, "a fixed page is called free");
  Result<PageEdit> edit = pager_.Edit(page);
  if (!edit.ok()) return edit;
  if (Status marked = Mark(page, false); !marked.ok()) return marked.error();
  search_from_ = page + 1;
  const MutableBytes bytes = edit.value().bytes();
  std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
  return edit;
}

Result<PageEdit> PageAllocator::Extend() {
  Result<PageEdit> edit = pager_.Append();
  if (!edit.ok()) return edit;
  if (Status marked = Mark(edit.value().page(), false); !marked.ok()) return marked.error();
  search_from_ = edit.value().page();
  if (++extensions_ % kExtensionsBetweenSearches == 0) search_from_ = 0;
  return edit;
}

Status PageAllocator::Release(PageNumber page) {
  if (page <= kRelationshipsPage || page >= pager_.page_count()) {
    return Damaged(page, "it cannot be released");
  }
  const Result<bool> is_free = MapHas(pager_, kGlobalMap, page);
  if (!is_free.ok()) return is_free.error();
  if (is_free.value()) return Damaged(page, "it is free already");
  if (Status marked = Mark(page, true); !marked.ok()) return marked;
  search_from_ = std::min(search_from_, page);
  return {};
}

Status PageAllocator::Mark(PageNumber page, bool free) {
  Result<MapRowEdit> map = EditMapRow(pager_, kGlobalMap);
  if (!map.ok()) return map.error();
  const MutableBytes row = map.value().row;
  if (row[0] == static_cast<std::uint8_t>(MapKind::Inline)) {
    if (SetInlineBit(row, page, free)) return {};
    if (Status spread = SpreadOverPages(row, page); !spread.ok()) return spread;
  }
  return MarkInBitmap(row, page, free);
}

Status PageAllocator::MarkInBitmap(MutableBytes row, PageNumber page, bool free) {
  const std::size_t i = page / PagesPerBitmap(pager_.version());
  if (i >= (row.size() - 1) / 4) return {};  // beyond what the map can name: in use for good
  if (LoadU32(row, 1 + 4 * i) == 0) {
    if (Status added = AddBitmap(row, i); !added.ok()) return added;
  }
  const PageNumber number = LoadU32(row, 1 + 4 * i);
  Result<PageEdit> bitmap = pager_.Edit(number);
  if (!bitmap.ok()) return bitmap.error();
  const MutableBytes bytes = bitmap.value().bytes();
  if (Result<PageBits> bits = OpenBitmapPage(pager_.version(), bytes, i, number); !bits.ok()) {
    return bits.error();
  }
  SetBitmapBit(pager_.version(), bytes, page, free);
  return {};
}

Status PageAllocator::SpreadOverPages(MutableBytes row, PageNumber page) {
  const PageNumber end = pager_.page_count();
  const std::vector<PageNumber> free_pages = ConvertToReference(row);
  const std::size_t last = page / PagesPerBitmap(pager_.version());
  for (std::size_t i = 0; i <= last && i < (row.size() - 1) / 4; ++i) {
    if (LoadU32(row, 1 + 4 * i) != 0) continue;
    if (Status added = AddBitmap(row, i); !added.ok()) return added;
  }
  for (const PageNumber free_page : free_pages) {
    if (free_page >= end) break;  // set already: all beyond the end is
    if (Status marked = MarkInBitmap(row, free_page, true); !marked.ok()) return marked;
  }
  return {};
}

// Pages of the file that the new bitmap page covers are in use, those to come are free. The page
// itself is taken from the end: it must not depend on the map that is being changed.
Status PageAllocator::AddBitmap(MutableBytes row, std::size_t i) {
  Result<PageEdit> bitmap = pager_.Append();
  if (!bitmap.ok()) return bitmap.error();
  const MutableBytes bytes = bitmap.value().bytes();
  InitBitmapPage(true, bytes);
  const PageNumber per_page = PagesPerBitmap(pager_.version());
  const std::uint64_t first = std::uint64_t{i} * per_page;
  const std::uint64_t end = std::min<std::uint64_t>(first + per_page, pager_.page_count());
  for (std::uint64_t used = first; used < end; ++used) {
    SetBitmapBit(pager_.version(), bytes, static_cast<PageNumber>(used), false);
  }
  SetReference(row, i, bitmap.value().page());
  return MarkInBitmap(row, bitmap.value().page(), false);
}

}  // namespace zent::jet
