#pragma once

#include <string>

#include "base/Status.h"
#include "odbc/OdbcCalls.h"
#include "odbc/OdbcErrors.h"
#include "odbc/OdbcHandle.h"

namespace zent::odbc {

/// What a connection and its statements share.
struct OdbcSession {
  const OdbcCalls& calls;
  OdbcErrorList& errors;     ///< of the last call that failed
  std::string connect_text;  ///< what holds the password that no message may show
  bool lost = false;         ///< the server is gone: no call is made any more
  bool in_transaction = false;
  bool undone = false;  ///< the server has rolled the transaction back, as it does in a deadlock

  /// Success, or what the driver says of the call that gave `code`. Sees that the server is gone.
  Status Check(const OdbcHandle& handle, SQLRETURN code);
  /// Success while there is a server, and no transaction that has lost its first half: what came
  /// then would be saved without it.
  Status CheckOpen();
};

/// A new handle of `type` below `parent`, whose records tell of a failure.
Result<OdbcHandle> AllocateHandle(OdbcSession& session, SQLSMALLINT type, const OdbcHandle& parent);

/// The diagnostic records of `handle`, at most 64, passwords of `connect_text` hidden.
OdbcErrorList ReadErrors(const OdbcCalls& calls, const OdbcHandle& handle,
                         const std::string& connect_text);

}  // namespace zent::odbc
