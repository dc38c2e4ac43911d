#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "odbc/OdbcStatement.h"
#include "odbc/RowChange.h"
#include "odbc/SimpleSelect.h"

namespace zent::odbc {

class OdbcConnection;

/// The rows of a SELECT, one of them the present one; at first the first row.
///
/// Those of "SELECT * FROM table [WHERE ...] [ORDER BY ...]" can be changed: a row is found again
/// by its primary key and by the old values of what is changed, in a table without a key by all its
/// columns that can be compared. So a change by somebody else in between is never overwritten as
/// far as servers compare values (not long texts, long bytes and floating-point numbers), and of
/// two rows that are alike none is changed. It does not outlive its connection.
class OdbcRecordset {
 public:
  static Result<std::unique_ptr<OdbcRecordset>> Open(OdbcConnection& connection,
                                                     std::string_view sql,
                                                     Reading reading = Reading::Beside);

  const std::vector<OdbcColumn>& columns() const { return statement_.columns(); }
  /// Whether rows can be changed.
  bool updatable() const { return selected_.has_value(); }

  bool AtEnd() const { return at_end_; }
  /// Asks the server again.
  Status MoveFirst();
  /// Gives up a change that has not been saved. Error: kNoCurrentRecord behind the last row.
  Status MoveNext();

  /// The position of a column; its name is matched without regard to case.
  std::optional<std::size_t> Find(std::string_view column) const;
  /// A value of the present row, or what has been set of it since Edit or AddNew; of a new row null
  /// until it has been set.
  Result<OdbcValue> Value(std::size_t column);

  Status Edit();
  Status AddNew();
  Status Set(std::size_t column, OdbcValue value);
  /// Saves what was set. After AddNew the present row is the one from before. A change that fails
  /// is given up. Errors: kWriteConflict when the row is no longer as it was read, kReadOnly when
  /// it cannot be told from others.
  Status Update();
  void CancelUpdate();
  Status Delete();

 private:
  enum class Mode { Looking, Editing, Adding };
  using Changes = std::vector<std::optional<OdbcValue>>;

  OdbcRecordset(OdbcConnection& connection, std::string sql, Reading reading,
                OdbcStatement statement);
  Status FindKey();
  Status Advance();
  Result<OdbcValue> Stored(std::size_t column);
  Result<BoundText> TestOfRow(const std::vector<std::size_t>& changed);
  Status CheckWritable(Mode mode) const;
  Status SaveNew();
  Status SaveChanges();
  Status ChangeOneRow(const RowChange& change);
  Status ChangeCountedRow(const RowChange& change);
  Status ChangeIfAlone(const RowChange& change);
  Status RunChange(const RowChange& change);
  Result<std::int64_t> CountRows(const BoundText& test);
  std::string_view quote() const;

  OdbcConnection& connection_;
  std::string sql_;
  Reading reading_;
  OdbcStatement statement_;
  std::optional<SelectedTable> selected_;
  std::vector<std::size_t> key_;  ///< columns of the primary key; empty without one
  Changes pending_;               ///< set since Edit or AddNew
  Changes saved_;                 ///< of the present row, as Update has left it
  Mode mode_ = Mode::Looking;
  bool key_known_ = false;
  bool at_end_ = false;
  bool deleted_ = false;
};

}  // namespace zent::odbc
