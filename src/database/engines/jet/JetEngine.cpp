#include "database/engines/jet/JetEngine.h"

#include "database/engines/jet/JetDatabase.h"
#include "jet/storage/LockFile.h"

namespace zent {

void JetEngine::Tell(const RuntimeError& error) {
  errors_ = {{.number = error.number, .description = error.description, .source = kEngineSource}};
}

Result<std::unique_ptr<OpenedDatabase>> JetEngine::Open(const AccessOpen& request) {
  auto opened =
      workspace_.OpenDatabase(request.path, request.exclusive, request.read_only, request.connect);
  if (!opened.ok()) {
    Tell(opened.error());
    return opened.error();
  }
  return std::unique_ptr<OpenedDatabase>(std::make_unique<JetDatabase>(
      std::move(opened.value()), request.path, [this](const RuntimeError& error) { Tell(error); }));
}

Status JetEngine::Compact(std::string_view source, std::string_view target,
                          std::string_view connect) {
  Status compacted = workspace_.CompactDatabase(source, target, connect);
  if (!compacted.ok()) Tell(compacted.error());
  return compacted;
}

std::vector<DatabaseUser> JetEngine::UsersOf(std::string_view path) {
  const Result<std::vector<jet::User>> users = jet::LockFile::UsersOf(storage_, path);
  std::vector<DatabaseUser> named;
  if (!users.ok()) return named;
  for (const jet::User& user : users.value()) named.push_back({user.computer, user.name});
  return named;
}

}  // namespace zent
