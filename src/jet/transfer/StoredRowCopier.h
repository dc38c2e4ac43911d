#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/RowCodec.h"
#include "jet/store/TableStore.h"
#include "jet/transfer/TableLoader.h"

namespace zent::jet {

/// Takes rows over as the bytes that they are, into a table of the same layout. Long values outside
/// the row get new places, which are put in.
class StoredRowCopier {
 public:
  /// All must outlive it.
  StoredRowCopier(TableStore& from, TableLoader& to);

  /// False, and nothing done, for a row that must be made anew field by field: it is older than
  /// some columns, not in order, or has a long value in another form than we would give it.
  Result<bool> Copy(ByteView row, PageNumber page);

 private:
  struct LongField {
    std::uint16_t column;
    std::size_t at;  ///< in the row
  };
  /// Gathers the long values outside of `row`; false as Copy.
  bool FindLongValues(const RowView& view, ByteView row, PageNumber page);

  TableStore& from_;
  TableLoader& to_;
  std::vector<const ColumnDefinition*> long_columns_;
  std::vector<LongField> outside_;
  std::vector<std::uint8_t> row_;  ///< with new places; kept for the next, as is the value
  std::string value_;
};

}  // namespace zent::jet
