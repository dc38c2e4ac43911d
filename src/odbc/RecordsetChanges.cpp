#include <utility>

#include "odbc/CatalogQuestion.h"
#include "odbc/OdbcCatalog.h"
#include "odbc/OdbcConnection.h"
#include "odbc/OdbcErrors.h"
#include "odbc/OdbcRecordset.h"

/// What a recordset does to save a change.
namespace zent::odbc {
namespace {

RuntimeError Conflict() {
  return EngineError(kWriteConflict,
                     "Another user has changed or deleted the same row meanwhile; this change was "
                     "not saved.");
}

RuntimeError CannotTell(const std::string& reason) {
  return EngineError(kReadOnly, "Cannot update. " + reason);
}

}  // namespace

/// Asks for the key when the first change is made: most recordsets are only read.
Status OdbcRecordset::FindKey() {
  if (key_known_) return {};
  const Result<std::vector<std::string>> names =
      OdbcCatalog(connection_).PrimaryKey(selected_->table);
  if (!names.ok()) return names.status();
  for (const std::string& name : names.value()) {
    const std::optional<std::size_t> column = Find(name);
    if (!column) {
      key_.clear();
      break;
    }
    key_.push_back(*column);
  }
  key_known_ = true;
  return {};
}

Result<BoundText> OdbcRecordset::TestOfRow(const std::vector<std::size_t>& changed) {
  if (Status found = FindKey(); !found.ok()) return found.error();
  std::vector<bool> tested(columns().size());
  for (const std::size_t column : key_) tested[column] = true;
  for (const std::size_t column : changed) {
    tested[column] = tested[column] || IsComparable(columns()[column]);
  }
  if (key_.empty()) {
    for (std::size_t at = 0; at < tested.size(); ++at) tested[at] = IsComparable(columns()[at]);
  }
  std::vector<ColumnValue> values;
  for (std::size_t at = 0; at < tested.size(); ++at) {
    if (!tested[at]) continue;
    Result<OdbcValue> value = Stored(at);
    if (!value.ok()) return value.error();
    values.push_back({columns()[at], std::move(value.value())});
  }
  if (values.empty()) {
    return CannotTell("The table has no primary key and no column that could stand in for one.");
  }
  return RowTest(values, quote());
}

Status OdbcRecordset::SaveNew() {
  std::vector<ColumnValue> values;
  for (std::size_t at = 0; at < pending_.size(); ++at) {
    if (pending_[at]) values.push_back({columns()[at], *pending_[at]});
  }
  if (values.empty()) return CannotTell("The new row has no values.");
  const BoundText insert = InsertText(selected_->written, values, quote());
  return connection_.Execute(insert.text, insert.values).status();
}

Status OdbcRecordset::SaveChanges() {
  std::vector<ColumnValue> values;
  std::vector<std::size_t> changed;
  for (std::size_t at = 0; at < pending_.size(); ++at) {
    if (!pending_[at]) continue;
    const Result<OdbcValue> old = Stored(at);
    if (!old.ok()) return old.status();
    // Some servers do not count a row that was given the values that it had.
    if (*pending_[at] == old.value()) continue;
    values.push_back({columns()[at], *pending_[at]});
    changed.push_back(at);
  }
  if (values.empty()) return {};
  const Result<BoundText> test = TestOfRow(changed);
  if (!test.ok()) return test.status();
  std::vector<ColumnValue> comparable;
  for (const ColumnValue& item : values) {
    if (IsComparable(item.column)) comparable.push_back(item);
  }
  Status saved =
      ChangeOneRow({UpdateText(selected_->written, values, test.value(), quote()), test.value(),
                    BothTests(test.value(), RowTest(comparable, quote()))});
  if (!saved.ok()) return saved;
  for (const std::size_t at : changed) saved_[at] = std::move(pending_[at]);
  return {};
}

Status OdbcRecordset::Delete() {
  CancelUpdate();
  if (Status writable = CheckWritable(Mode::Editing); !writable.ok()) return writable;
  const Result<BoundText> test = TestOfRow({});
  if (!test.ok()) return test.status();
  Status done =
      ChangeOneRow({DeleteText(selected_->written, test.value()), test.value(), BoundText()});
  deleted_ = done.ok();
  return done;
}

Status OdbcRecordset::ChangeOneRow(const RowChange& change) {
  return key_.empty() ? ChangeCountedRow(change) : RunChange(change);
}

/// Without a key several rows may be alike. They are counted before, so that none is touched; where
/// no transaction is open there is one for both steps, and a row that came between is no loss.
Status OdbcRecordset::ChangeCountedRow(const RowChange& change) {
  const bool own = !connection_.InTransaction() && connection_.facts().has_transactions;
  if (own) {
    if (Status begun = connection_.Begin(); !begun.ok()) return begun;
  }
  Status done = ChangeIfAlone(change);
  if (!own) return done;
  if (done.ok()) done = connection_.Commit();
  // What could not be committed is still open, and would take in what is saved later. The first
  // error is the one to be told.
  if (!done.ok() && connection_.InTransaction()) static_cast<void>(connection_.Rollback().ok());
  return done;
}

Status OdbcRecordset::ChangeIfAlone(const RowChange& change) {
  const Result<std::int64_t> alike = CountRows(change.test);
  if (!alike.ok()) return alike.status();
  if (alike.value() == 0) return Conflict();
  if (alike.value() > 1) {
    return CannotTell("The table has no primary key, and several rows are alike.");
  }
  return RunChange(change);
}

/// Some servers do not count a row that was given the values that it had. It is there still, and
/// passes the test for the old values and that for the new ones; a row that somebody else has
/// changed passes at most one of them.
Status OdbcRecordset::RunChange(const RowChange& change) {
  const Result<std::int64_t> rows =
      connection_.ExecuteCounted(change.statement.text, change.statement.values);
  if (!rows.ok()) return rows.status();
  if (rows.value() == 1) return {};
  if (rows.value() > 1) return CannotTell("Several rows are alike.");
  if (change.unchanged.text.empty()) return Conflict();
  const Result<std::int64_t> same = CountRows(change.unchanged);
  if (!same.ok()) return same.status();
  return same.value() == 1 ? Status() : Conflict();
}

Result<std::int64_t> OdbcRecordset::CountRows(const BoundText& test) {
  const BoundText count = CountText(selected_->written, test);
  Result<OdbcStatement> counted = connection_.Query(count.text, count.values);
  if (!counted.ok()) return counted.error();
  const Result<bool> there = counted.value().Next();
  if (!there.ok()) return there.error();
  return NumberAt(counted.value(), 1);
}

}  // namespace zent::odbc
