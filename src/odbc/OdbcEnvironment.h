#pragma once

#include <memory>
#include <string_view>

#include "base/Status.h"
#include "odbc/OdbcErrors.h"
#include "odbc/OdbcHandle.h"

namespace zent::odbc {

struct OdbcCalls;
class OdbcConnection;

/// Where connections to servers are made; outlives them. Texts are UTF-8. One thread uses it.
class OdbcEnvironment {
 public:
  /// `calls` come from LoadOdbc (odbc/LoadOdbc.h), or from a test.
  static Result<std::unique_ptr<OdbcEnvironment>> Create(std::unique_ptr<OdbcCalls> calls);
  ~OdbcEnvironment();
  OdbcEnvironment(const OdbcEnvironment&) = delete;
  OdbcEnvironment& operator=(const OdbcEnvironment&) = delete;

  /// Logs in with "DSN=...;UID=...;PWD=...;", whatever the driver takes; it asks nobody. A login
  /// that takes more than `login_timeout` seconds is given up, as far as the driver can tell.
  /// Errors: kLoginFailed, kServerTimeout, else what the driver says.
  Result<std::unique_ptr<OdbcConnection>> Connect(std::string_view connect_text, int login_timeout);

  /// What the driver said about the last call that failed, of the environment, its connections or
  /// their statements. Empty where the failure was not the driver's.
  const OdbcErrorList& errors() const { return errors_; }

 private:
  explicit OdbcEnvironment(std::unique_ptr<OdbcCalls> calls);

  std::unique_ptr<OdbcCalls> calls_;
  OdbcHandle handle_;
  OdbcErrorList errors_;
};

}  // namespace zent::odbc
