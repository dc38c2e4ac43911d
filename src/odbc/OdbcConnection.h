#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "base/Status.h"
#include "odbc/OdbcHandle.h"
#include "odbc/OdbcParameter.h"
#include "odbc/OdbcStatement.h"
#include "odbc/ServerFacts.h"

namespace zent::odbc {

struct OdbcCalls;
struct OdbcSession;

/// A connection to a server. Each statement is a transaction of its own until Begin is called.
/// Once the server is gone, every call fails at once (kConnectionFailed).
class OdbcConnection {
 public:
  /// For OdbcEnvironment.
  static Result<std::unique_ptr<OdbcConnection>> Open(OdbcSession session,
                                                      const OdbcHandle& environment,
                                                      int login_timeout);
  /// Rolls back what has not been committed, and closes. Its statements must have gone before.
  ~OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;

  const ServerFacts& facts() const { return facts_; }
  /// Whether a call failed because the server is gone.
  bool lost() const;

  /// Reads see what others have committed, on every server. When the server itself rolls a
  /// transaction back (SQLSTATE 40001), every call but Rollback fails from then on.
  Status Begin();
  Status Commit();
  Status Rollback();
  bool InTransaction() const;

  /// Runs a statement to its end, results and all; the rows affected, 0 where the server tells
  /// none.
  Result<std::int64_t> Execute(std::string_view sql, std::span<const OdbcParameter> values = {});
  /// The same where the number matters: kCallFailed when the server tells none.
  Result<std::int64_t> ExecuteCounted(std::string_view sql,
                                      std::span<const OdbcParameter> values = {});

  /// Runs a statement that gives rows, and is to be fetched from; kCallFailed when it gives none.
  Result<OdbcStatement> Query(std::string_view sql, std::span<const OdbcParameter> values = {},
                              Reading reading = Reading::Beside);

  /// A statement to be run, and the calls of the interface, for the engine's own questions.
  Result<OdbcStatement> NewStatement(Reading reading);
  const OdbcCalls& calls() const;

 private:
  OdbcConnection(OdbcSession session, OdbcHandle handle);
  void HaveRowsCounted();
  Result<std::optional<std::int64_t>> Run(std::string_view sql,
                                          std::span<const OdbcParameter> values);
  Status SetAutoCommit(bool on);
  Status End(std::int16_t how);

  std::unique_ptr<OdbcSession> session_;
  OdbcHandle handle_;
  ServerFacts facts_;
  bool connected_ = false;
};

}  // namespace zent::odbc
