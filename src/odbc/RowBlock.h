#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Status.h"
#include "odbc/OdbcColumn.h"
#include "odbc/OdbcHandle.h"
#include "odbc/OdbcSession.h"
#include "odbc/OdbcValue.h"
#include "odbc/ValueForm.h"

namespace zent::odbc {

/// Many rows fetched by one call, where all columns are short: a server then answers once a block.
/// The buffers are of a fixed size whatever the server says; the driver keeps their addresses, so a
/// block stays where it is while its statement is open.
class RowBlock {
 public:
  /// The rows that one block can hold of such rows; 0 when they are to be read one by one.
  static std::size_t RowsFor(const std::vector<OdbcColumn>& columns);

  RowBlock(const std::vector<OdbcColumn>& columns, std::size_t rows);
  RowBlock(const RowBlock&) = delete;
  RowBlock& operator=(const RowBlock&) = delete;

  Status BindTo(OdbcSession& session, const OdbcHandle& statement);

  /// Moves to the next row, fetching when the block is used up; false at the end.
  Result<bool> Next(OdbcSession& session, const OdbcHandle& statement);
  /// A value of the present row. Error: the value is longer than its column says.
  Result<OdbcValue> Value(std::size_t column) const;

 private:
  struct BoundColumn {
    ValueForm form;
    std::size_t room;  ///< bytes of one value, the closing zero of a text included
    std::vector<unsigned char> data;
    std::vector<SQLLEN> lengths;
  };

  std::vector<BoundColumn> columns_;
  std::vector<SQLUSMALLINT> states_;
  SQLULEN fetched_ = 0;
  std::size_t row_ = 0;  ///< counted from 1 within the block; 0 before the first
};

}  // namespace zent::odbc
