#pragma once

#include "base/Status.h"
#include "jet/format/Bytes.h"
#include "jet/format/DataPage.h"
#include "jet/format/Layout.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet {

/// The data pages of one owner: which they are, which of them have room, and how rows get onto
/// them. A page without rows is released. Every page is checked before it is changed: its order,
/// its owner, and that the owner's map has it.
class RowPages {
 public:
  struct Owner {
    std::uint32_t number = 0;  ///< definition page, or kLongValueOwner
    RowPointer owned = {};
    RowPointer free = {};
    bool reuses_slots = false;  ///< a new row may take the slot of a deleted one
  };

  /// `maps` must outlive it.
  RowPages(UsageMaps& maps, const Owner& owner) : maps_(maps), owner_(owner) {}

  UsageMaps& maps() { return maps_; }
  const Owner& owner() const { return owner_; }

  /// Puts a row on a page with room, a new one if need be.
  Result<RowPointer> Insert(ByteView row, SlotKind kind);
  /// Gives a slot other bytes; false, and nothing changed, when its page has no room.
  Result<bool> Replace(RowPointer at, ByteView row, SlotKind kind);
  Status Delete(RowPointer at);
  /// The page of the owner, checked, to be changed.
  Result<PageEdit> Edit(PageNumber page);

 private:
  Result<bool> TryInsert(PageNumber page, ByteView row, SlotKind kind, RowPointer& at);
  Result<bool> TryFreePages(ByteView row, SlotKind kind, RowPointer& at);
  Status CheckOwner(PageNumber page, ByteView bytes);
  Status NoteRoom(PageNumber page, ByteView bytes);

  UsageMaps& maps_;
  Owner owner_;
  PageNumber last_ = 0;         ///< where the last row went; 0: none
  PageNumber search_from_ = 0;  ///< in the map of pages with room
};

}  // namespace zent::jet
