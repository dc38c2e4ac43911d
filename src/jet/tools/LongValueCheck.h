#pragma once

#include <string>
#include <vector>

#include "jet/format/TableDefinition.h"
#include "jet/tools/MapCheck.h"
#include "jet/tools/SlotMarks.h"

namespace zent::jet {

/// The pages of the long values of one column: every row on them belongs to one value.
class LongValueCheck {
 public:
  /// `maps`: null when the column has none, as in some files of Access 97: its pages are then those
  /// that its values name.
  LongValueCheck(Checking& checking, const LongValueMaps* maps, std::string subject);

  /// The value of a field; `row` is where it stands, for faults.
  void CheckField(ByteView field, RowPointer row);
  /// Once all fields have been seen: rows that no field names.
  void Finish();

 private:
  void Follow(RowPointer first, bool chain, std::uint64_t length, RowPointer row);
  /// The bytes of a row of a value; empty, and a fault, when there is none.
  std::optional<PageView> Step(RowPointer at, RowPointer row, ByteView& bytes);
  bool OwnsPage(PageNumber page);
  void CheckPage(PageNumber page);
  void Fault(RowPointer row, const std::string& what);

  Checking& checking_;
  std::string subject_;
  bool has_maps_;
  PageUse::User user_;
  std::vector<PageNumber> owned_;
  SlotMarks named_;
};

}  // namespace zent::jet
