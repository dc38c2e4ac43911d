#include "odbc/OdbcStatement.h"

#include <algorithm>
#include <utility>

#include "odbc/BoundParameters.h"
#include "odbc/OdbcSession.h"
#include "odbc/RowBlock.h"
#include "odbc/ValueReader.h"
#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kNameUnits = 512;

SQLUSMALLINT NumberOf(std::size_t column) { return static_cast<SQLUSMALLINT>(column + 1); }

}  // namespace

OdbcStatement::OdbcStatement(OdbcSession& session, OdbcHandle handle, Reading reading)
    : session_(&session), handle_(std::move(handle)) {
  if (reading != Reading::Beside) return;
  // A driver that cannot do it says so, and does what comes nearest.
  session_->calls.set_stmt_attr(handle_.get(), SQL_ATTR_CURSOR_TYPE, AsPointer(SQL_CURSOR_STATIC),
                                SQL_IS_UINTEGER);
}

OdbcStatement::OdbcStatement(OdbcStatement&&) noexcept = default;
OdbcStatement& OdbcStatement::operator=(OdbcStatement&& other) noexcept {
  handle_ = std::move(other.handle_);  // frees the old one before its block goes
  session_ = other.session_;
  block_ = std::move(other.block_);
  columns_ = std::move(other.columns_);
  row_ = std::move(other.row_);
  rows_affected_ = other.rows_affected_;
  on_row_ = other.on_row_;
  return *this;
}
OdbcStatement::~OdbcStatement() = default;

Status OdbcStatement::Execute(std::string_view sql, std::span<const OdbcParameter> values) {
  if (Status open = session_->CheckOpen(); !open.ok()) return open;
  BoundParameters bound(values);
  if (Status done = bound.BindTo(*session_, handle_); !done.ok()) return done;
  std::vector<SQLWCHAR> text = ToWide(sql);
  const SQLRETURN code = session_->calls.exec_direct(handle_.get(), text.data(),
                                                     static_cast<SQLINTEGER>(text.size() - 1));
  return Settle(code);
}

Status OdbcStatement::Ask(const std::function<std::int16_t(void* statement)>& ask) {
  if (Status open = session_->CheckOpen(); !open.ok()) return open;
  return Settle(ask(handle_.get()));
}

/// Takes the counts up to the first result with columns. SQL_NO_DATA of a change: no row matched.
Status OdbcStatement::Settle(std::int16_t code) {
  if (code == SQL_NO_DATA) {
    rows_affected_ = 0;
    return {};
  }
  if (Status run = session_->Check(handle_, code); !run.ok()) return run;
  while (true) {
    SQLSMALLINT count = 0;
    const SQLRETURN told = session_->calls.num_result_cols(handle_.get(), &count);
    if (Status asked = session_->Check(handle_, told); !asked.ok()) return asked;
    if (count > 0) return Describe(count);
    SQLLEN rows = -1;
    session_->calls.row_count(handle_.get(), &rows);
    if (!rows_affected_ && rows >= 0) rows_affected_ = rows;
    const SQLRETURN more = session_->calls.more_results(handle_.get());
    if (more == SQL_NO_DATA) return {};
    if (Status next = session_->Check(handle_, more); !next.ok()) return next;
  }
}

Status OdbcStatement::Describe(std::int16_t count) {
  for (SQLSMALLINT number = 1; number <= count; ++number) {
    std::vector<SQLWCHAR> name(kNameUnits);
    SQLSMALLINT length = 0;
    SQLSMALLINT type = 0;
    SQLSMALLINT digits = 0;
    SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
    SQLULEN size = 0;
    const auto column = static_cast<SQLUSMALLINT>(number);
    const SQLRETURN code = session_->calls.describe_col(handle_.get(), column, name.data(),
                                                        static_cast<SQLSMALLINT>(name.size()),
                                                        &length, &type, &size, &digits, &nullable);
    if (Status told = session_->Check(handle_, code); !told.ok()) return told;
    SQLLEN is_unsigned = SQL_FALSE;
    session_->calls.col_attribute(handle_.get(), column, SQL_DESC_UNSIGNED, nullptr, 0, nullptr,
                                  &is_unsigned);
    const auto end = std::find(name.begin(), name.end(), 0);
    columns_.push_back({FromWide(name, static_cast<std::size_t>(end - name.begin())),
                        {type, size, digits, is_unsigned == SQL_TRUE},
                        nullable != SQL_NO_NULLS});
  }
  return PrepareRows();
}

Status OdbcStatement::PrepareRows() {
  const std::size_t rows = RowBlock::RowsFor(columns_);
  if (rows == 0) return {};
  block_ = std::make_unique<RowBlock>(columns_, rows);
  return block_->BindTo(*session_, handle_);
}

Result<bool> OdbcStatement::Next() {
  row_.clear();
  on_row_ = false;
  if (columns_.empty()) return false;
  if (Status open = session_->CheckOpen(); !open.ok()) return open.error();
  if (block_ != nullptr) {
    Result<bool> moved = block_->Next(*session_, handle_);
    on_row_ = moved.ok() && moved.value();
    return moved;
  }
  const SQLRETURN code = session_->calls.fetch(handle_.get());
  if (code == SQL_NO_DATA) return false;
  if (Status moved = session_->Check(handle_, code); !moved.ok()) return moved.error();
  on_row_ = true;
  return true;
}

Status OdbcStatement::ReadUpTo(std::size_t column) {
  ValueReader reader(*session_, handle_);
  while (row_.size() < column) {
    Result<OdbcValue> value =
        reader.Read(NumberOf(row_.size()), FormOf(columns_[row_.size()].type));
    if (!value.ok()) return value.error();
    row_.push_back(std::move(value.value()));
  }
  return {};
}

Result<OdbcValue> OdbcStatement::Value(std::size_t column) {
  if (column >= columns_.size()) return EngineError(kItemNotFound, "There is no such column.");
  if (!on_row_) return EngineError(kNoCurrentRecord, "No current record.");
  if (block_ != nullptr) return block_->Value(column);
  if (Status read = ReadUpTo(column + 1); !read.ok()) return read.error();
  return row_[column];
}

Result<bool> OdbcStatement::ReadInPieces(
    std::size_t column, const std::function<Status(std::string_view piece)>& sink) {
  if (column >= columns_.size()) return EngineError(kItemNotFound, "There is no such column.");
  if (!on_row_) return EngineError(kNoCurrentRecord, "No current record.");
  const ValueForm form = FormOf(columns_[column].type);
  if (block_ != nullptr || form.bytes != 0) {
    return EngineError(kDataTypeConversion, "The column is no long one.");
  }
  if (row_.size() > column) {
    return EngineError(kItemNotFound, "The column has been read already.");
  }
  if (Status read = ReadUpTo(column); !read.ok()) return read.error();
  row_.emplace_back();  // read, and kept nowhere
  return ValueReader(*session_, handle_).ReadPieces(NumberOf(column), form, sink);
}

Status OdbcStatement::Finish() {
  while (true) {
    const SQLRETURN more = session_->calls.more_results(handle_.get());
    if (more == SQL_NO_DATA) return {};
    if (Status next = session_->Check(handle_, more); !next.ok()) return next;
  }
}

}  // namespace zent::odbc
