#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "odbc/OdbcColumn.h"
#include "odbc/OdbcHandle.h"
#include "odbc/OdbcParameter.h"
#include "odbc/OdbcValue.h"

namespace zent::odbc {

struct OdbcSession;
class RowBlock;

/// How rows are read.
enum class Reading {
  /// Other statements may run on the connection meanwhile: the rows are those of the start, kept by
  /// the server or the driver.
  Beside,
  /// The rows come as they are read. Some servers refuse every other statement until the last one
  /// has been read; some drivers still keep them all unless their data source says otherwise.
  Streamed,
};

/// A statement and the rows that it gives. It does not outlive its connection.
class OdbcStatement {
 public:
  /// For OdbcConnection.
  OdbcStatement(OdbcSession& session, OdbcHandle handle, Reading reading);
  OdbcStatement(OdbcStatement&&) noexcept;
  OdbcStatement& operator=(OdbcStatement&&) noexcept;
  ~OdbcStatement();

  /// Runs `sql`, once; values are bound to its "?" in their order.
  Status Execute(std::string_view sql, std::span<const OdbcParameter> values = {});

  /// A question to the catalogue; `ask` makes the call with the statement's handle.
  Status Ask(const std::function<std::int16_t(void* statement)>& ask);

  /// Rows that were inserted, updated or deleted; nothing where the server tells none.
  std::optional<std::int64_t> rows_affected() const { return rows_affected_; }
  /// The columns of the first result that has some; empty when none has.
  const std::vector<OdbcColumn>& columns() const { return columns_; }

  /// Moves to the next row, at first to the first one; false behind the last.
  Result<bool> Next();
  /// A value of the present row. Columns count from 0. Error kOutOfStringSpace: above 256 MB.
  Result<OdbcValue> Value(std::size_t column);
  /// A text (UTF-8) or bytes of the present row in pieces of some 64 KB, so that its size does not
  /// matter; false when it is null. `column` lies behind those read before.
  Result<bool> ReadInPieces(std::size_t column,
                            const std::function<Status(std::string_view piece)>& sink);

  /// Runs what is left of a batch, so that an error in it is seen.
  Status Finish();

 private:
  Status Settle(std::int16_t code);
  Status Describe(std::int16_t count);
  Status ReadUpTo(std::size_t column);
  Status PrepareRows();

  OdbcSession* session_;
  /// Above the handle, which is freed first: the driver writes into the block until then.
  std::unique_ptr<RowBlock> block_;
  OdbcHandle handle_;
  std::vector<OdbcColumn> columns_;
  std::vector<OdbcValue> row_;  ///< what has been read of the present row
  std::optional<std::int64_t> rows_affected_;
  bool on_row_ = false;
};

}  // namespace zent::odbc
