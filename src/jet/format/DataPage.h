#pragma once

#include <cstdint>
#include <optional>

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/Layout.h"

/// Data pages: rows that fill the page from its end, and a directory of slots behind its head. Free
/// space is always the room between directory and lowest row.
namespace zent::jet {

/// What stands in a slot.
enum class SlotKind : std::uint8_t {
  Row,      ///< an ordinary row
  Pointer,  ///< the row has moved: its bytes begin with a row pointer
  Moved,    ///< a moved row, found through its pointer alone
  Deleted,
};

struct Slot {
  SlotKind kind = SlotKind::Row;
  ByteView bytes = {};
};

/// Reads a data page. Copies of it are cheap; the page must outlive it.
class DataPageView {
 public:
  /// Checks the type and that the directory lies within the page; slots are checked when read.
  static Result<DataPageView> Open(JetVersion version, ByteView page, PageNumber number);

  std::size_t count() const { return count_; }
  std::uint32_t owner() const { return LoadU32(page_, layout_->data.owner); }
  std::size_t free_space() const { return LoadU16(page_, layout_->data.free_space); }

  /// Slot `row`; damage when there is none or its bytes do not lie where they must.
  Result<Slot> At(std::size_t row) const;

  /// As At, for scans: false on damage.
  bool Read(std::size_t row, Slot& slot) const;

 private:
  DataPageView(const Layout& layout, ByteView page, PageNumber number, std::size_t count)
      : layout_(&layout), page_(page), number_(number), count_(count) {}

  const Layout* layout_;
  ByteView page_;
  PageNumber number_;
  std::size_t count_;
};

/// Checks everything that an edit relies on: the slots in order, none overlapping, the free space
/// right. An edit of a page that was read from a file begins with it.
Status CheckDataPage(JetVersion version, ByteView page, PageNumber number);

/// Makes `page` an empty data page of `owner`.
void InitDataPage(JetVersion version, std::uint32_t owner, MutableBytes page);

/// The longest row that InsertRow takes on the page, 0 when it takes none. A slot of a deleted row
/// is used again only when `reuse_slots` is set.
std::size_t RoomForRow(JetVersion version, ByteView page, bool reuse_slots);

/// Puts a row into a slot, a new one, or the first of a deleted row with `reuse_slots`. Nothing
/// when there is no room. The page must have passed CheckDataPage.
std::optional<std::uint8_t> InsertRow(JetVersion version, MutableBytes page, ByteView row,
                                      SlotKind kind, bool reuse_slots);

/// Gives slot `row` other bytes and another kind; rows below it are moved. False, and nothing
/// changed, when there is no room. The page must have passed CheckDataPage and have that slot.
bool ReplaceRow(JetVersion version, MutableBytes page, std::uint8_t row, ByteView bytes,
                SlotKind kind);

/// Makes slot `row` a deleted one of length 0; the other rows keep their slots.
void DeleteRow(JetVersion version, MutableBytes page, std::uint8_t row);

/// True when every slot is that of a deleted row.
bool HasNoRows(JetVersion version, ByteView page);

}  // namespace zent::jet
