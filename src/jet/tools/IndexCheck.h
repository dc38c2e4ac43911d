#pragma once

#include <string>
#include <vector>

#include "jet/store/TableStore.h"
#include "jet/tools/EntryDigest.h"
#include "jet/tools/MapCheck.h"

namespace zent::jet {

/// An index against the rows of its table: the keys computed from the rows are the keys stored, no
/// more and no less.
class IndexCheck {
 public:
  IndexCheck(Checking& checking, TableStore& table, std::size_t position, std::string subject);

  /// Takes in a row of the table.
  void AddRow(const RowFields& fields, RowPointer at, PageNumber page);
  /// Checks the tree, once all rows have been taken in. `rows_right`: none of them was left out.
  void Finish(bool rows_right);
  std::uint64_t entries() const { return entries_; }

 private:
  void ExplainMissing();
  void ExplainSurplus();

  Checking& checking_;
  TableStore& table_;
  TableIndex& index_;
  std::string subject_;
  bool required_ = false;  ///< no nulls in its keys
  bool keys_known_ = true;
  EntryDigest expected_;
  std::uint64_t entries_ = 0;
};

}  // namespace zent::jet
