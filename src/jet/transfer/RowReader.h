#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/store/RowFields.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

/// Reads rows of one table as fields of another one, long values whole. Fields of a file of the
/// same version are the bytes that they were, others are converted.
class RowReader {
 public:
  /// `columns`: for each column of `to`, its position in `from`. All must outlive it.
  RowReader(TableStore& from, const std::vector<std::size_t>& columns, const TableDefinition& to)
      : from_(from), columns_(columns), to_(to), fields_(columns.size()) {}

  /// The fields of a row that lies on `page`; until the next call.
  Result<RowFields*> Read(ByteView row, PageNumber page);

 private:
  Status ReadField(const RowView& row, std::size_t i, PageNumber page);

  TableStore& from_;
  const std::vector<std::size_t>& columns_;
  const TableDefinition& to_;
  RowFields fields_;
};

/// kCannotOpenDatabase when `rows` are fewer than the table counts: a map that was damaged hides
/// pages from whoever reads, and a copy without their rows would lose them for good.
Status CheckAllFound(TableStore& from, std::uint32_t rows);

}  // namespace zent::jet
