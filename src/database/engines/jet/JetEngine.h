#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "database/port/AccessEngine.h"
#include "jet/dao/Workspace.h"

namespace zent {

/// The engine of Access files over the files of `storage`, which takes full Windows paths.
class JetEngine final : public AccessEngine {
 public:
  /// `storage` outlives this; databases do not.
  JetEngine(jet::Storage& storage, jet::WorkspaceOptions options)
      : storage_(storage), workspace_(storage, std::move(options)) {}

  Result<std::unique_ptr<OpenedDatabase>> Open(const AccessOpen& request) override;
  Status Compact(std::string_view source, std::string_view target,
                 std::string_view connect) override;
  std::vector<DatabaseUser> UsersOf(std::string_view path) override;
  const EngineErrors& Errors() const override { return errors_; }

 private:
  void Tell(const RuntimeError& error);

  jet::Storage& storage_;
  jet::Workspace workspace_;
  EngineErrors errors_;
};

}  // namespace zent
