#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// Usage maps: sets of pages. A map is a row of a usage map page; it holds a window of bits itself
/// (inline) or names pages of bits (reference).
namespace zent::jet {

enum class MapKind : std::uint8_t { Inline = 0, Reference = 1 };

inline constexpr std::size_t kFirstPageOffset = 1;  ///< inline: u32, then the bits
inline constexpr std::size_t kInlineBitsOffset = 5;
inline constexpr std::size_t kBitmapHeadSize = 4;  ///< bitmap page: type, 1, 0, 0, then the bits

/// Pages that one bitmap page covers.
std::uint32_t PagesPerBitmap(JetVersion version);

/// A run of bits: bit 0 stands for `first`.
class PageBits {
 public:
  PageBits(PageNumber first, ByteView bits) : first_(first), bits_(bits) {}
  PageNumber first() const { return first_; }
  /// Behind the last page that has a bit; as a wide number, for it may pass the largest page.
  std::uint64_t end() const { return first_ + std::uint64_t{bits_.size()} * 8; }
  bool Covers(PageNumber page) const { return page >= first_ && page < end(); }
  bool Has(PageNumber page) const;
  /// The first page in the set that is not below `from`.
  std::optional<PageNumber> Next(PageNumber from) const;
  bool empty() const { return !Next(first_); }

 private:
  PageNumber first_;
  ByteView bits_;
};

/// Reads the row of a map. The row must outlive it.
class UsageMapView {
 public:
  /// `number` is the page of the row, for errors.
  static Result<UsageMapView> Open(JetVersion version, ByteView row, PageNumber number);

  MapKind kind() const { return kind_; }
  /// The bits of an inline map.
  PageBits bits() const;
  /// Number of bitmap pages that a reference map can name, and the i-th of them; 0: none there.
  std::size_t reference_count() const { return (row_.size() - 1) / 4; }
  PageNumber reference(std::size_t i) const { return LoadU32(row_, 1 + 4 * i); }

 private:
  UsageMapView(MapKind kind, ByteView row) : kind_(kind), row_(row) {}
  MapKind kind_;
  ByteView row_;
};

/// The bits of the i-th bitmap page of a map; damage when `page` is no bitmap page.
Result<PageBits> OpenBitmapPage(JetVersion version, ByteView page, std::size_t i,
                                PageNumber number);

/// An empty inline map with its window at page 0.
std::vector<std::uint8_t> NewUsageMapRow(JetVersion version);

/// Whether data page `page` with that owner holds usage maps. Page 1, which has the global map,
/// names itself in files of Access.
constexpr bool HoldsUsageMaps(PageNumber page, std::uint32_t owner) {
  return owner == kUsageMapOwner || (page == kGlobalMapPage && owner == kGlobalMapPage);
}

/// Makes `page` page 1 of a new Jet 4 file: the global map, in which all pages behind the fixed
/// ones are free, and beside it the empty map of unknown use that every file has.
void InitGlobalMapPage(MutableBytes page);

/// Makes `page` a bitmap page of all clear (or all set) bits.
void InitBitmapPage(bool all_set, MutableBytes page);

/// Sets or clears the bit of `page` in an inline map; false when its window does not cover it.
bool SetInlineBit(MutableBytes row, PageNumber page, bool value);

/// Sets or clears the bit of `page` in the bitmap page that covers it.
void SetBitmapBit(JetVersion version, MutableBytes bitmap_page, PageNumber page, bool value);

/// Moves the window of an inline map of clear-by-default bits so that it holds every page of the
/// set and `page`. False, and nothing changed, when no window does.
bool MoveWindow(MutableBytes row, PageNumber page);

/// Makes an inline map a reference map that names no bitmap page yet, and returns the pages that
/// were in it.
std::vector<PageNumber> ConvertToReference(MutableBytes row);

/// Names `bitmap_page` as the i-th bitmap page of a reference map.
void SetReference(MutableBytes row, std::size_t i, PageNumber bitmap_page);

}  // namespace zent::jet
