#include "database/fakes/FakeEngines.h"

#include <fmt/format.h>

namespace zent::testing {
namespace {

class FakeWorkspace final : public ServerWorkspace {
 public:
  explicit FakeWorkspace(FakeServerEngine& engine) : engine_(engine) {}
  void SetLoginTimeout(int seconds) override {
    engine_.calls.push_back(fmt::format("SetLoginTimeout {}", seconds));
  }
  Result<std::unique_ptr<OpenedDatabase>> Open(std::string_view connect) override {
    return engine_.OpenNext("Open " + std::string(connect));
  }

 private:
  FakeServerEngine& engine_;
};

}  // namespace

Result<std::unique_ptr<OpenedDatabase>> FakeAccessEngine::Open(const AccessOpen& request) {
  opens.push_back(request);
  RuntimeError error;
  if (!failures.empty()) {
    error = failures.front();
    failures.pop_front();
  } else if (!world.databases.contains(request.path)) {
    error = {.number = kEngineFileNotFound,
             .description = "Could not find file '" + request.path + "'."};
  } else if (!password.empty() && request.connect != ";pwd=" + password) {
    error = {.number = kEngineWrongPassword, .description = "Not a valid password."};
  }
  if (error.number != 0) {
    errors_ = {{.number = error.number, .description = error.description, .source = "DAO.Engine"}};
    return error;
  }
  return std::unique_ptr<OpenedDatabase>(
      new MemoryDatabase(world, request.path, DatabaseKind::Access));
}

Status FakeAccessEngine::Compact(std::string_view source, std::string_view target,
                                 std::string_view connect) {
  compactions.push_back(fmt::format("{} > {} ({})", source, target, connect));
  if (Status failed = world.Note("Compact " + std::string(source)); !failed.ok()) return failed;
  world.databases[std::string(target)] = world.databases[std::string(source)];
  if (on_compacted) on_compacted(target);
  return {};
}

Result<std::unique_ptr<ServerWorkspace>> FakeServerEngine::CreateWorkspace(std::string_view name,
                                                                           int login_timeout) {
  calls.push_back(fmt::format("CreateWorkspace {} {}", name, login_timeout));
  return std::unique_ptr<ServerWorkspace>(new FakeWorkspace(*this));
}

Result<std::unique_ptr<OpenedDatabase>> FakeServerEngine::Connect(std::string_view text,
                                                                  int timeout) {
  return OpenNext(fmt::format("Connect {} {}", timeout, text));
}

Result<std::unique_ptr<OpenedDatabase>> FakeServerEngine::OpenNext(const std::string& call) {
  calls.push_back(call);
  errors.clear();
  if (!silent_failures.empty()) {
    const RuntimeError error = silent_failures.front();
    silent_failures.pop_front();
    return error;
  }
  if (!failures.empty()) {
    errors = failures.front();
    failures.pop_front();
  }
  if (!errors.empty()) {
    return RuntimeError{.number = errors.front().number,
                        .description = errors.front().description,
                        .source = kEngineSource};
  }
  return std::unique_ptr<OpenedDatabase>(new MemoryDatabase(world, "server", DatabaseKind::Server));
}

}  // namespace zent::testing
