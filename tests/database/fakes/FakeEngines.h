#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "database/fakes/MemoryDatabase.h"
#include "database/port/AccessEngine.h"
#include "database/port/DatabaseTrace.h"
#include "database/port/ServerEngine.h"

namespace zent::testing {

/// An engine of files that are kept in memory and records how they are opened.
class FakeAccessEngine final : public AccessEngine {
 public:
  Result<std::unique_ptr<OpenedDatabase>> Open(const AccessOpen& request) override;
  Status Compact(std::string_view source, std::string_view target,
                 std::string_view connect) override;
  std::vector<DatabaseUser> UsersOf(std::string_view /*path*/) override { return users; }
  const EngineErrors& Errors() const override { return errors_; }

  /// Adds a database; opening any other file is kEngineFileNotFound.
  MemoryTables& Put(const std::string& path) { return world.databases[path]; }

  MemoryWorld world;
  std::string password;               ///< of every file; any other is kEngineWrongPassword
  std::deque<RuntimeError> failures;  ///< of the next opens, one each; number 0 does not fail
  std::function<void(std::string_view target)> on_compacted;
  std::vector<DatabaseUser> users;
  std::vector<AccessOpen> opens;
  std::vector<std::string> compactions;  ///< "source > target (connect)"

 private:
  EngineErrors errors_;
};

/// A server that records how it is opened, and fails as it is told.
class FakeServerEngine final : public ServerEngine {
 public:
  Result<std::unique_ptr<ServerWorkspace>> CreateWorkspace(std::string_view name,
                                                           int login_timeout) override;
  Result<std::unique_ptr<OpenedDatabase>> Connect(std::string_view text, int timeout) override;
  const EngineErrors& Errors() const override { return errors; }

  Result<std::unique_ptr<OpenedDatabase>> OpenNext(const std::string& call);

  MemoryWorld world;
  std::deque<EngineErrors> failures;         ///< of the next opens, one each; an empty one succeeds
  std::deque<RuntimeError> silent_failures;  ///< without engine errors; come before `failures`
  EngineErrors errors;
  std::vector<std::string> calls;  ///< "CreateWorkspace NewODBCDirect 60", "Open ODBC;DSN=..."
};

class RecordingTrace final : public DatabaseTrace {
 public:
  void Append(std::string_view text) override { written += text; }
  std::string written;
};

}  // namespace zent::testing
