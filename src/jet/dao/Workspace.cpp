#include "jet/dao/Workspace.h"

#include <algorithm>

#include "base/Text.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/schema/NewDatabase.h"
#include "jet/transfer/Compaction.h"

namespace zent::jet {

std::string PasswordOf(std::string_view connect) {
  while (!connect.empty()) {
    const std::size_t end = std::min(connect.find(';'), connect.size());
    const std::string_view part = connect.substr(0, end);
    connect.remove_prefix(std::min(end + 1, connect.size()));
    const std::size_t equals = part.find('=');
    if (equals == std::string_view::npos) continue;
    if (!EqualsIgnoringCase(TrimBlanks(part.substr(0, equals)), "PWD")) continue;
    return std::string(part.substr(equals + 1));
  }
  return {};
}

Result<std::unique_ptr<Database>> Workspace::OpenDatabase(std::string_view name, bool exclusive,
                                                          bool read_only,
                                                          std::string_view connect) {
  const Sharing sharing = exclusive   ? Sharing::Exclusive
                          : read_only ? Sharing::ReadOnly
                                      : Sharing::Shared;
  Result<std::unique_ptr<Database>> database = Open(name, sharing, connect);
  if (database.ok()) database.value()->core_->read_only = read_only;
  return database;
}

Result<std::unique_ptr<Database>> Workspace::Open(std::string_view name, Sharing sharing,
                                                  std::string_view connect) {
  auto core = std::make_unique<DatabaseCore>(storage_, options_, open_databases_);
  core->name = name;
  if (Status opened = core->Open(sharing, PasswordOf(connect)); !opened.ok()) {
    return opened.error();
  }
  open_databases_.push_back(core.get());
  return std::unique_ptr<Database>(new Database(std::move(core)));
}

Result<std::unique_ptr<Database>> Workspace::CreateDatabase(std::string_view name,
                                                            std::string_view connect) {
  NewDatabase made;
  made.password = PasswordOf(connect);
  if (options_.now) made.created = options_.now();
  Status created = jet::CreateDatabase(storage_, name, made);
  if (!created.ok()) return created.error();
  return Open(name, Sharing::Exclusive, connect);
}

Status Workspace::CompactDatabase(std::string_view source, std::string_view target,
                                  std::string_view connect,
                                  std::optional<std::string_view> new_connect) {
  Compaction compaction{.source = std::string(source),
                        .target = std::string(target),
                        .password = PasswordOf(connect)};
  if (new_connect) compaction.new_password = PasswordOf(*new_connect);
  compaction.cache_bytes = std::min(options_.cache_bytes, compaction.cache_bytes);
  return jet::CompactDatabase(storage_, compaction);
}

}  // namespace zent::jet
