#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/dao/Collection.h"
#include "jet/dao/Constants.h"
#include "jet/dao/Field.h"
#include "jet/format/Layout.h"
#include "jet/format/Value.h"

namespace zent::jet {

/// Rows one after the other, with a current one: Database::OpenRecordset. It stands on the first
/// row when it is opened. It must not outlive its database.
///
/// Errors: kNoCurrentRecord before the first and behind the last row and after Delete,
/// kRecordDeleted for a row that is gone, kUpdateWithoutEdit, kReadOnly when nothing can be changed
/// (a read-only file, a snapshot, a calculated field), kItemNotFound for a field that is not there,
/// kDatabaseTooLarge for a snapshot of more than kMaxKeptBytes, and what the table refuses. A
/// refused Update leaves the values to be corrected.
class Recordset {
 public:
  ~Recordset();
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  RecordsetType type() const;
  bool updatable() const;
  const Collection<Field>& Fields() const;

  bool AtBegin() const;  ///< BOF: before the first row
  bool AtEnd() const;    ///< EOF: behind the last row; both in an empty one
  Status MoveFirst();
  Status MoveLast();
  Status MoveNext();      ///< from the last row: AtEnd; from there kNoCurrentRecord
  Status MovePrevious();  ///< from the first row: AtBegin; from there kNoCurrentRecord
  /// Of a table all rows, else those visited so far: all after MoveLast.
  Result<std::int32_t> RecordCount();

  /// The value of a field: of the row being added or edited, else of the current one.
  Result<Value> Get(const ItemKey& field);
  /// Gives a field of the row being added or edited another value, which becomes its type:
  /// kDataTypeConversion, kFieldTooSmall; kUpdateWithoutEdit when none is.
  Status Put(const ItemKey& field, const Value& value);

  EditMode edit_mode() const;
  Status Edit();
  /// The fields have their default values. An AutoNumber that is left alone shows the number that
  /// it will get unless another user comes first.
  Status AddNew();
  Status Update();
  Status CancelUpdate();
  Status Delete();

  /// A row to come back to. An added row is not the current one: MoveTo(last_modified()).
  using Bookmark = RowPointer;
  Result<Bookmark> bookmark() const;
  Bookmark last_modified() const;
  Status MoveTo(const Bookmark& bookmark);

  /// The order of a table and what Seek looks in; empty: the order of the file.
  Status SetIndex(std::string_view name);
  /// `comparison`: "=", ">=", ">", "<=" or "<"; `keys`: values of the first fields of the index.
  /// No row: NoMatch, and there is no current row.
  Status Seek(std::string_view comparison, std::span<const Value> keys);
  /// The first, or next, row that takes the criteria, written as behind WHERE. No row: NoMatch, and
  /// the current row stays. Not for tables (kNotSupportedHere): Seek finds there.
  Status FindFirst(std::string_view criteria);
  Status FindNext(std::string_view criteria);
  bool NoMatch() const;

 private:
  friend class Database;
  friend struct RecordsetOpening;
  struct State;
  explicit Recordset(std::unique_ptr<State> state);
  Status Find(std::string_view criteria, bool from_start);

  std::unique_ptr<State> state_;
};

}  // namespace zent::jet
