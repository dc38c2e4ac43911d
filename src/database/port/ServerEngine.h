#pragma once

#include <memory>
#include <string_view>

#include "base/Status.h"
#include "database/port/EngineErrors.h"
#include "database/port/OpenedDatabase.h"

namespace zent {

/// Where connections to servers are made; one serves a whole run.
class ServerWorkspace {
 public:
  virtual ~ServerWorkspace() = default;
  /// Seconds after which a login is given up, for the connections to come.
  virtual void SetLoginTimeout(int seconds) = 0;
  /// Opens a server database without asking anybody. `connect` is "ODBC;" and the text for the
  /// driver: "ODBC;DSN=Korvo;UID=sa;PWD=secret;". The error is the first of Errors(), or one of the
  /// adapter's own when the driver told none.
  virtual Result<std::unique_ptr<OpenedDatabase>> Open(std::string_view connect) = 0;
};

/// The engine of server databases. Numbers of errors are the server's own ("native error"), each
/// with its SQLSTATE; an error without a number is kEngineServerCallFailed.
class ServerEngine {
 public:
  virtual ~ServerEngine() = default;

  /// Makes a workspace; it does not outlive the engine. `login_timeout` in seconds.
  virtual Result<std::unique_ptr<ServerWorkspace>> CreateWorkspace(std::string_view name,
                                                                   int login_timeout) = 0;

  /// Opens a connection of its own, apart from any workspace. `text` is for the driver, without the
  /// "ODBC;" before it; `timeout` in seconds.
  virtual Result<std::unique_ptr<OpenedDatabase>> Connect(std::string_view text, int timeout) = 0;

  /// The errors of the last call that failed, the first raised first; empty when the failure did
  /// not come from the driver.
  virtual const EngineErrors& Errors() const = 0;
};

}  // namespace zent
