#include "odbc/OdbcConnection.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "odbc/OdbcSession.h"
#include "odbc/WideText.h"

namespace zent::odbc {
namespace {

constexpr std::size_t kCompletedUnits = 2048;
constexpr std::string_view kSqlServer = "Microsoft SQL Server";

}  // namespace

OdbcConnection::OdbcConnection(OdbcSession session, OdbcHandle handle)
    : session_(std::make_unique<OdbcSession>(std::move(session))), handle_(std::move(handle)) {}

OdbcConnection::~OdbcConnection() {
  if (!connected_) return;
  // Nobody is there to hear of a failure; the server rolls back by itself what was not committed.
  if (session_->in_transaction && !session_->lost) {
    session_->calls.end_tran(SQL_HANDLE_DBC, handle_.get(), SQL_ROLLBACK);
  }
  session_->calls.disconnect(handle_.get());
}

Result<std::unique_ptr<OdbcConnection>> OdbcConnection::Open(OdbcSession session,
                                                             const OdbcHandle& environment,
                                                             int login_timeout) {
  Result<OdbcHandle> handle = AllocateHandle(session, SQL_HANDLE_DBC, environment);
  if (!handle.ok()) return handle.error();
  std::unique_ptr<OdbcConnection> made(
      new OdbcConnection(std::move(session), std::move(handle.value())));
  OdbcSession& own = *made->session_;
  // A driver without such a limit may refuse it, and still log in.
  own.calls.set_connect_attr(made->handle_.get(), SQL_ATTR_LOGIN_TIMEOUT,
                             AsPointer(static_cast<SQLULEN>(std::max(login_timeout, 0))),
                             SQL_IS_UINTEGER);
  std::vector<SQLWCHAR> text = ToWide(own.connect_text);
  std::vector<SQLWCHAR> completed(kCompletedUnits);
  SQLSMALLINT length = 0;
  const SQLRETURN code = own.calls.driver_connect(
      made->handle_.get(), nullptr, text.data(), SQL_NTS, completed.data(),
      static_cast<SQLSMALLINT>(completed.size()), &length, SQL_DRIVER_NOPROMPT);
  if (Status connected = own.Check(made->handle_, code); !connected.ok()) {
    return connected.error();
  }
  made->connected_ = true;
  // The servers' own default, but not everybody's; one that has no such level keeps its own.
  own.calls.set_connect_attr(made->handle_.get(), SQL_ATTR_TXN_ISOLATION,
                             AsPointer(SQL_TXN_READ_COMMITTED), SQL_IS_UINTEGER);
  Result<ServerFacts> facts = ReadServerFacts(own, made->handle_);
  if (!facts.ok()) return facts.error();
  made->facts_ = std::move(facts.value());
  made->HaveRowsCounted();
  return made;
}

/// SQL Server has an option for all its users to keep the numbers of changed rows to itself. Where
/// this cannot be had, what needs such a number says so.
void OdbcConnection::HaveRowsCounted() {
  if (facts_.dbms_name == kSqlServer) static_cast<void>(Execute("SET NOCOUNT OFF").ok());
}

bool OdbcConnection::lost() const { return session_->lost; }

const OdbcCalls& OdbcConnection::calls() const { return session_->calls; }

bool OdbcConnection::InTransaction() const { return session_->in_transaction; }

Status OdbcConnection::SetAutoCommit(bool on) {
  if (Status open = session_->CheckOpen(); !open.ok()) return open;
  const SQLULEN value = on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
  return session_->Check(handle_,
                         session_->calls.set_connect_attr(handle_.get(), SQL_ATTR_AUTOCOMMIT,
                                                          AsPointer(value), SQL_IS_UINTEGER));
}

Status OdbcConnection::Begin() {
  if (InTransaction()) return EngineError(kCallFailed, "A transaction is open already.");
  if (!facts_.has_transactions) {
    return EngineError(kCallFailed, "The server has no transactions.");
  }
  Status begun = SetAutoCommit(false);
  session_->in_transaction = begun.ok();
  return begun;
}

Status OdbcConnection::End(std::int16_t how) {
  if (!InTransaction()) return EngineError(kCallFailed, "No transaction is open.");
  if (how == SQL_ROLLBACK) session_->undone = false;
  if (Status open = session_->CheckOpen(); !open.ok()) return open;
  Status ended =
      session_->Check(handle_, session_->calls.end_tran(SQL_HANDLE_DBC, handle_.get(), how));
  // What could not be committed is still open, to be rolled back.
  if (!ended.ok()) return ended;
  // Until each change is saved alone again there is one that collects them.
  Status alone = SetAutoCommit(true);
  session_->in_transaction = !alone.ok();
  return alone;
}

Status OdbcConnection::Commit() { return End(SQL_COMMIT); }

Status OdbcConnection::Rollback() { return End(SQL_ROLLBACK); }

Result<OdbcStatement> OdbcConnection::NewStatement(Reading reading) {
  Result<OdbcHandle> handle = AllocateHandle(*session_, SQL_HANDLE_STMT, handle_);
  if (!handle.ok()) return handle.error();
  return OdbcStatement(*session_, std::move(handle.value()), reading);
}

Result<std::optional<std::int64_t>> OdbcConnection::Run(std::string_view sql,
                                                        std::span<const OdbcParameter> values) {
  Result<OdbcStatement> statement = NewStatement(Reading::Streamed);
  if (!statement.ok()) return statement.error();
  if (Status run = statement.value().Execute(sql, values); !run.ok()) return run.error();
  const std::optional<std::int64_t> rows = statement.value().rows_affected();
  // A batch may still fail in one of its later statements.
  if (Status ended = statement.value().Finish(); !ended.ok()) return ended.error();
  return rows;
}

Result<std::int64_t> OdbcConnection::Execute(std::string_view sql,
                                             std::span<const OdbcParameter> values) {
  const Result<std::optional<std::int64_t>> rows = Run(sql, values);
  if (!rows.ok()) return rows.error();
  return rows.value().value_or(0);
}

Result<std::int64_t> OdbcConnection::ExecuteCounted(std::string_view sql,
                                                    std::span<const OdbcParameter> values) {
  const Result<std::optional<std::int64_t>> rows = Run(sql, values);
  if (!rows.ok()) return rows.error();
  if (rows.value()) return *rows.value();
  return EngineError(kCallFailed, "The server does not tell how many rows were changed.");
}

Result<OdbcStatement> OdbcConnection::Query(std::string_view sql,
                                            std::span<const OdbcParameter> values,
                                            Reading reading) {
  Result<OdbcStatement> statement = NewStatement(reading);
  if (!statement.ok()) return statement;
  if (Status run = statement.value().Execute(sql, values); !run.ok()) return run.error();
  if (statement.value().columns().empty()) {
    return EngineError(kCallFailed, "The statement gives no rows.");
  }
  return statement;
}

}  // namespace zent::odbc
