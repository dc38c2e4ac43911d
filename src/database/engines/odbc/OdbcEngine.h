#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "database/engines/odbc/OdbcFaults.h"
#include "database/port/ServerEngine.h"
#include "odbc/OdbcEnvironment.h"

namespace zent {

/// The engine of server databases, through ODBC. Workspaces and databases do not outlive it.
class OdbcEngine final : public ServerEngine {
 public:
  /// Gives the environment of this system. It is called when a server is wanted first, so that a
  /// machine without a driver manager runs what needs none; what it fails with is the error then.
  using MakeEnvironment = std::function<Result<std::unique_ptr<odbc::OdbcEnvironment>>()>;

  explicit OdbcEngine(MakeEnvironment make) : make_(std::move(make)) {}

  /// The name is for the user's eyes in other engines, and without a meaning here.
  Result<std::unique_ptr<ServerWorkspace>> CreateWorkspace(std::string_view name,
                                                           int login_timeout) override;
  Result<std::unique_ptr<OpenedDatabase>> Connect(std::string_view text, int timeout) override;
  const EngineErrors& Errors() const override;

 private:
  Status Prepare();

  MakeEnvironment make_;
  std::unique_ptr<odbc::OdbcEnvironment> environment_;  ///< null until it is needed
  std::unique_ptr<OdbcFaults> faults_;                  ///< of the environment
  EngineErrors none_;
};

}  // namespace zent
