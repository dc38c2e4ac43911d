#include "jet/format/DataPage.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::uint16_t kDeletedFlag = 0x8000;
constexpr std::uint16_t kPointerFlag = 0x4000;
constexpr std::uint16_t kStartMask = 0x1FFF;

std::uint16_t FlagsOf(SlotKind kind) {
  switch (kind) {
    case SlotKind::Row:
      return 0;
    case SlotKind::Pointer:
      return kPointerFlag;
    case SlotKind::Moved:
      return kDeletedFlag;
    case SlotKind::Deleted:
      break;
  }
  return kDeletedFlag | kPointerFlag;
}

SlotKind KindOf(std::uint16_t entry) {
  const bool deleted = (entry & kDeletedFlag) != 0;
  const bool pointer = (entry & kPointerFlag) != 0;
  if (deleted) return pointer ? SlotKind::Deleted : SlotKind::Moved;
  return pointer ? SlotKind::Pointer : SlotKind::Row;
}

/// The slots of a page whose order has been checked.
class Directory {
 public:
  Directory(JetVersion version, ByteView page) : layout_(LayoutOf(version).data), page_(page) {}

  std::size_t count() const { return LoadU16(page_, layout_.row_count); }
  std::uint16_t Entry(std::size_t row) const { return LoadU16(page_, Place(row)); }
  std::size_t Start(std::size_t row) const { return Entry(row) & kStartMask; }
  std::size_t End(std::size_t row) const { return row == 0 ? page_.size() : Start(row - 1); }
  std::size_t Lowest() const { return count() == 0 ? page_.size() : Start(count() - 1); }
  std::size_t Free() const { return Lowest() - Place(count()); }

 protected:
  std::size_t Place(std::size_t row) const { return layout_.directory + 2 * row; }

  const Layout::DataPage& layout_;

 private:
  ByteView page_;
};

/// The same for edits; what it reads is what it has written.
class DirectoryEdit : public Directory {
 public:
  DirectoryEdit(JetVersion version, MutableBytes page) : Directory(version, page), bytes_(page) {}

  void Set(std::size_t row, std::size_t start, std::uint16_t flags) {
    StoreU16(bytes_, Place(row), static_cast<std::uint32_t>(start) | flags);
  }
  void MoveStart(std::size_t row, std::ptrdiff_t by) {
    const auto start = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(Start(row)) + by);
    Set(row, start, static_cast<std::uint16_t>(Entry(row) & ~kStartMask));
  }
  void SetCount(std::size_t count) {
    StoreU16(bytes_, layout_.row_count, static_cast<std::uint32_t>(count));
  }
  void StoreFree() { StoreU16(bytes_, layout_.free_space, static_cast<std::uint32_t>(Free())); }

 private:
  MutableBytes bytes_;
};

/// The slot of a deleted row, or the count when there is none.
std::size_t DeletedSlot(const Directory& directory) {
  for (std::size_t row = 0; row < directory.count(); ++row) {
    if (KindOf(directory.Entry(row)) == SlotKind::Deleted) return row;
  }
  return directory.count();
}

}  // namespace

Result<DataPageView> DataPageView::Open(JetVersion version, ByteView page, PageNumber number) {
  const Layout& layout = LayoutOf(version);
  if (page.size() < layout.page_size) return Damaged(number, "a page is cut");
  if (page[0] != static_cast<std::uint8_t>(PageType::Data)) return Damaged(number, "no data page");
  page = page.first(layout.page_size);
  const std::size_t count = LoadU16(page, layout.data.row_count);
  if (count > kMaxRowsPerPage + 1 || layout.data.directory + 2 * count > page.size()) {
    return Damaged(number, "more rows than a page can hold");
  }
  return DataPageView(layout, page, number, count);
}

bool DataPageView::Read(std::size_t row, Slot& slot) const {
  const std::size_t directory = layout_->data.directory;
  if (row >= count_) return false;
  const std::uint16_t entry = LoadU16(page_, directory + 2 * row);
  const std::size_t start = entry & kStartMask;
  const std::size_t end =
      row == 0 ? page_.size() : LoadU16(page_, directory + 2 * row - 2) & kStartMask;
  if (start > end || end > page_.size() || start < directory + 2 * count_) return false;
  slot.kind = KindOf(entry);
  slot.bytes = page_.subspan(start, end - start);
  return true;
}

Result<Slot> DataPageView::At(std::size_t row) const {
  Slot slot;
  if (Read(row, slot)) return slot;
  return Damaged(number_, row < count_ ? fmt::format("row {} does not lie on its page", row)
                                       : fmt::format("there is no row {}", row));
}

Status CheckDataPage(JetVersion version, ByteView page, PageNumber number) {
  const Result<DataPageView> view = DataPageView::Open(version, page, number);
  if (!view.ok()) return view.error();
  if (view.value().count() > kMaxRowsPerPage) return Damaged(number, "too many rows");
  Slot slot;
  for (std::size_t row = 0; row < view.value().count(); ++row) {
    if (!view.value().Read(row, slot)) return view.value().At(row).status();
  }
  if (view.value().free_space() != Directory(version, page).Free()) {
    return Damaged(number, "its free space is not what it says");
  }
  return {};
}

void InitDataPage(JetVersion version, std::uint32_t owner, MutableBytes page) {
  std::fill(page.begin(), page.end(), std::uint8_t{0});
  page[0] = static_cast<std::uint8_t>(PageType::Data);
  page[1] = 1;
  StoreU32(page, LayoutOf(version).data.owner, owner);
  DirectoryEdit(version, page).StoreFree();
}

std::size_t RoomForRow(JetVersion version, ByteView page, bool reuse_slots) {
  const Directory directory(version, page);
  const std::size_t free = directory.Free();
  const std::size_t slot = reuse_slots ? DeletedSlot(directory) : directory.count();
  if (slot < directory.count()) return free + directory.End(slot) - directory.Start(slot);
  if (directory.count() >= kMaxRowsPerPage || free < 2) return 0;
  return free - 2;
}

std::optional<std::uint8_t> InsertRow(JetVersion version, MutableBytes page, ByteView row,
                                      SlotKind kind, bool reuse_slots) {
  DirectoryEdit directory(version, page);
  const std::size_t slot = reuse_slots ? DeletedSlot(directory) : directory.count();
  if (slot == directory.count()) {
    if (slot >= kMaxRowsPerPage || directory.Free() < row.size() + 2) return std::nullopt;
    directory.Set(slot, directory.Lowest(), 0);
    directory.SetCount(slot + 1);
  }
  const auto number = static_cast<std::uint8_t>(slot);
  if (!ReplaceRow(version, page, number, row, kind)) return std::nullopt;
  return number;
}

bool ReplaceRow(JetVersion version, MutableBytes page, std::uint8_t row, ByteView bytes,
                SlotKind kind) {
  DirectoryEdit directory(version, page);
  const std::size_t start = directory.Start(row);
  const std::size_t end = directory.End(row);
  if (bytes.size() > end - start + directory.Free()) return false;

  const std::size_t new_start = end - bytes.size();
  const std::ptrdiff_t move =
      static_cast<std::ptrdiff_t>(new_start) - static_cast<std::ptrdiff_t>(start);
  const std::size_t lowest = directory.Lowest();
  const auto at = [&](std::size_t offset) {
    return page.begin() + static_cast<std::ptrdiff_t>(offset);
  };
  if (move < 0) std::copy(at(lowest), at(start), at(lowest) + move);
  if (move > 0) std::copy_backward(at(lowest), at(start), at(start) + move);
  for (std::size_t below = row + std::size_t{1}; below < directory.count(); ++below) {
    directory.MoveStart(below, move);
  }
  directory.Set(row, new_start, FlagsOf(kind));
  std::copy(bytes.begin(), bytes.end(), at(new_start));
  directory.StoreFree();
  return true;
}

void DeleteRow(JetVersion version, MutableBytes page, std::uint8_t row) {
  ReplaceRow(version, page, row, {}, SlotKind::Deleted);
}

bool HasNoRows(JetVersion version, ByteView page) {
  const Directory directory(version, page);
  for (std::size_t row = 0; row < directory.count(); ++row) {
    if (KindOf(directory.Entry(row)) != SlotKind::Deleted) return false;
  }
  return true;
}

}  // namespace zent::jet
