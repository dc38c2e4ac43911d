#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"
#include "jet/store/LongValues.h"
#include "jet/store/RowFields.h"
#include "jet/store/RowStore.h"
#include "jet/store/TableIndex.h"

namespace zent::jet {

/// What a column asks of its values beyond its type; a property of the column, not of its
/// definition.
struct ColumnRules {
  enum class EmptyText : std::uint8_t { Kept, BecomesNull, Refused };
  bool required = false;
  EmptyText empty_text = EmptyText::Kept;
};

/// A new value for the column at `position` in the definition.
struct ColumnChange {
  std::size_t position = 0;
  Value value = {};
};

/// The definition of the table whose first page is `page`, and the pages of its chain.
struct StoredDefinition {
  TableDefinition table;
  std::vector<PageNumber> pages;
};
Result<StoredDefinition> ReadDefinition(Pager& pager, PageNumber page);

/// A row as it was or will be, with its keys in the order of the real indexes.
struct RowState {
  RowFields fields = {};
  std::vector<TableIndex::RowKey> keys = {};
};

/// A change of one row that its table has checked but not made yet. Good until that row changes.
struct RowChange {
  RowPointer at = {};
  RowState before = {};                          ///< empty for a new row
  RowState after = {};                           ///< empty for a row to be deleted
  std::vector<Value> values = {};                ///< of a new row, with its AutoNumbers
  std::optional<std::int32_t> last_number = {};  ///< what the counter of a new row's table gets
};

/// A table: typed rows, with all indexes, long values and counters kept right.
///
/// A change is checked as a whole before anything is touched: types and sizes (kDataTypeConversion,
/// kFieldTooSmall, kRecordTooLarge), rules (kValueRequired, kZeroLengthNotAllowed), and every index
/// (kNullInKey, kDuplicateKey). It needs an open transaction of the pager. One that fails
/// later (a full disk, damage) leaves that transaction fit for a rollback only.
class TableStore {
 public:
  /// `maps` must outlive it.
  static Result<std::unique_ptr<TableStore>> Open(UsageMaps& maps, PageNumber definition_page);

  const TableDefinition& definition() const { return table_; }
  PageNumber page() const { return pages_.front(); }
  const std::vector<PageNumber>& definition_pages() const { return pages_; }
  RowStore& rows() { return rows_; }
  /// In the order of the real indexes.
  std::vector<TableIndex>& indexes() { return indexes_; }
  void SetRules(std::size_t position, ColumnRules rules) { rules_[position] = rules; }

  /// The counters, as the file has them now.
  Result<std::uint32_t> RowCount();
  Result<std::int32_t> LastAutoNumber();
  /// The next number is the one after `number`; within a transaction, as a change.
  Status SetLastAutoNumber(std::int32_t number);

  /// One value, or all, of a row that RowScan or RowStore found on `page`.
  Result<Value> Field(ByteView row, std::size_t position, PageNumber page);
  Result<std::vector<Value>> Values(ByteView row, PageNumber page);
  /// As Values, into `values`, whose room is used again: for scans.
  Status Load(ByteView row, PageNumber page, std::vector<Value>& values);
  Result<std::vector<Value>> Fetch(RowPointer at);

  /// Why nothing can be written: a read-only file, Jet 3, or text whose order is not known.
  Status Writable() const;

  /// `values` are those of all columns, at their positions. A long AutoNumber that is null gets the
  /// next number, which is put into `values`; GUIDs are for the caller to make.
  Result<RowPointer> Insert(std::vector<Value>& values);
  Status Update(RowPointer at, std::span<const ColumnChange> changes);
  Status Delete(RowPointer at);

  /// The same in two steps, for changes that depend on each other: all are checked before one is
  /// made.
  Result<RowChange> CheckInsert(std::vector<Value> values);
  Result<RowChange> CheckUpdate(RowPointer at, std::span<const ColumnChange> changes);
  Result<RowChange> CheckDelete(RowPointer at);
  Result<RowPointer> InsertChecked(RowChange& change);
  Status UpdateChecked(RowChange& change);
  Status DeleteChecked(const RowChange& change);

 private:
  using RowKeys = std::vector<TableIndex::RowKey>;

  TableStore(UsageMaps& maps, StoredDefinition definition);

  Result<std::uint32_t> ReadCounter(std::size_t offset);
  Status WriteCounter(std::size_t offset, std::uint32_t value);
  Status NoteDistinctKey(TableIndex& index);

  Status GiveNumbers(std::vector<Value>& values, std::optional<std::int32_t>& last_number);
  Result<FieldBytes> Accept(std::size_t position, const Value& value);
  Result<RowKeys> KeysOf(const RowFields& fields, PageNumber page);
  /// Moves long values out of a row that would be too long.
  Status CheckChange(RowFields& fields, const RowKeys* before, const RowKeys& after);
  Result<RowState> OpenRow(RowPointer at);

  Status StoreLongValues(RowFields& fields);
  Status ReleaseLongValue(std::size_t position, const FieldBytes& field, PageNumber page);
  Status InsertEntry(TableIndex& index, const std::string& key, RowPointer at);
  Result<RowPointer> StoreRow(RowFields& fields, const RowKeys& keys,
                              std::optional<std::int32_t> last_number);
  Status ReplaceRow(RowPointer at, const RowState& before, RowFields& fields, const RowKeys& keys);
  Status RemoveRow(RowPointer at, const RowState& before);

  UsageMaps& maps_;
  TableDefinition table_;
  std::vector<PageNumber> pages_;
  RowStore rows_;
  RowBuilder builder_;
  std::vector<TableIndex> indexes_;
  std::map<std::size_t, LongValues> long_values_;  ///< by position of the column
  std::vector<ColumnRules> rules_;
};

}  // namespace zent::jet
