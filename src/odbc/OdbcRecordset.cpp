#include "odbc/OdbcRecordset.h"

#include <utility>

#include "base/CaseFold.h"
#include "odbc/OdbcCatalog.h"
#include "odbc/OdbcConnection.h"
#include "odbc/OdbcErrors.h"

namespace zent::odbc {

OdbcRecordset::OdbcRecordset(OdbcConnection& connection, std::string sql, Reading reading,
                             OdbcStatement statement)
    : connection_(connection),
      sql_(std::move(sql)),
      reading_(reading),
      statement_(std::move(statement)),
      selected_(TableOfSelect(sql_)),
      pending_(statement_.columns().size()),
      saved_(statement_.columns().size()) {}

Result<std::unique_ptr<OdbcRecordset>> OdbcRecordset::Open(OdbcConnection& connection,
                                                           std::string_view sql, Reading reading) {
  Result<OdbcStatement> statement = connection.Query(sql, {}, reading);
  if (!statement.ok()) return statement.error();
  std::unique_ptr<OdbcRecordset> opened(
      new OdbcRecordset(connection, std::string(sql), reading, std::move(statement.value())));
  if (Status first = opened->Advance(); !first.ok()) return first.error();
  return opened;
}

std::string_view OdbcRecordset::quote() const { return connection_.facts().identifier_quote; }

Status OdbcRecordset::Advance() {
  CancelUpdate();
  saved_.assign(saved_.size(), std::nullopt);
  deleted_ = false;
  const Result<bool> there = statement_.Next();
  if (!there.ok()) return there.error();
  at_end_ = !there.value();
  return {};
}

Status OdbcRecordset::MoveFirst() {
  Result<OdbcStatement> again = connection_.Query(sql_, {}, reading_);
  if (!again.ok()) return again.error();
  statement_ = std::move(again.value());
  pending_.assign(statement_.columns().size(), std::nullopt);
  saved_ = pending_;
  return Advance();
}

Status OdbcRecordset::MoveNext() {
  if (at_end_) return EngineError(kNoCurrentRecord, "No current record.");
  return Advance();
}

std::optional<std::size_t> OdbcRecordset::Find(std::string_view column) const {
  for (std::size_t at = 0; at < columns().size(); ++at) {
    if (SameName(columns()[at].name, column)) return at;
  }
  return std::nullopt;
}

Result<OdbcValue> OdbcRecordset::Stored(std::size_t column) {
  if (at_end_ || deleted_) return EngineError(kNoCurrentRecord, "No current record.");
  if (column < saved_.size() && saved_[column]) return *saved_[column];
  return statement_.Value(column);
}

Result<OdbcValue> OdbcRecordset::Value(std::size_t column) {
  if (column >= columns().size()) {
    return EngineError(kItemNotFound, "Item not found in this collection.");
  }
  if (mode_ != Mode::Looking && pending_[column]) return *pending_[column];
  if (mode_ == Mode::Adding) return OdbcValue();
  return Stored(column);
}

Status OdbcRecordset::CheckWritable(Mode mode) const {
  if (!selected_) {
    return EngineError(kReadOnly, "Cannot update. The statement is not one of a single table.");
  }
  if (mode == Mode::Editing && (at_end_ || deleted_)) {
    return EngineError(kNoCurrentRecord, "No current record.");
  }
  return {};
}

Status OdbcRecordset::Edit() {
  if (Status writable = CheckWritable(Mode::Editing); !writable.ok()) return writable;
  CancelUpdate();
  mode_ = Mode::Editing;
  return {};
}

Status OdbcRecordset::AddNew() {
  if (Status writable = CheckWritable(Mode::Adding); !writable.ok()) return writable;
  CancelUpdate();
  mode_ = Mode::Adding;
  return {};
}

Status OdbcRecordset::Set(std::size_t column, OdbcValue value) {
  if (mode_ == Mode::Looking) {
    return EngineError(kUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
  }
  if (column >= columns().size()) {
    return EngineError(kItemNotFound, "Item not found in this collection.");
  }
  pending_[column] = std::move(value);
  return {};
}

void OdbcRecordset::CancelUpdate() {
  mode_ = Mode::Looking;
  pending_.assign(pending_.size(), std::nullopt);
}

Status OdbcRecordset::Update() {
  if (mode_ == Mode::Looking) {
    return EngineError(kUpdateWithoutEdit, "Update or CancelUpdate without AddNew or Edit.");
  }
  Status done = mode_ == Mode::Adding ? SaveNew() : SaveChanges();
  CancelUpdate();
  return done;
}

}  // namespace zent::odbc
