#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "jet/format/DataPage.h"
#include "jet/format/TableDefinition.h"
#include "jet/tools/LongValueCheck.h"
#include "jet/tools/MapCheck.h"
#include "jet/tools/SlotMarks.h"

namespace zent::jet {

/// The data pages of a table: their order, their rows, the fields of these, and where moved rows
/// are.
class TableRowsCheck {
 public:
  /// Called for each row whose fields are in order: its place, and the page of its bytes.
  using VisitRow = std::function<void(RowPointer, ByteView bytes, PageNumber page)>;

  TableRowsCheck(Checking& checking, PageNumber definition, const TableDefinition& table,
                 std::string subject);

  /// Goes through the whole table.
  void Run(const VisitRow& visit);
  /// Rows found, damaged ones included.
  std::uint64_t rows() const { return rows_; }

 private:
  void CheckPage(PageNumber page, const VisitRow& visit);
  void CheckSlot(RowPointer at, const Slot& slot, const VisitRow& visit);
  void CheckMoved(RowPointer at, ByteView pointer, const VisitRow& visit);
  void CheckRow(RowPointer at, ByteView bytes, PageNumber page, const VisitRow& visit);
  bool CheckField(const ColumnDefinition& column, ByteView bytes, RowPointer at, PageNumber page);
  void FindStrays(PageNumber page);
  /// A data page of this table, checked.
  std::optional<DataPageView> OpenPage(const Result<PageView>& page, PageNumber number);
  void Fault(RowPointer at, const std::string& what);

  Checking& checking_;
  PageNumber definition_;
  const TableDefinition& table_;
  std::string subject_;
  std::vector<PageNumber> owned_;
  std::map<std::uint16_t, LongValueCheck> long_values_;  ///< by column number
  SlotMarks moved_;
  bool any_moved_ = false;
  std::uint64_t rows_ = 0;
};

}  // namespace zent::jet
