#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/dao/Database.h"
#include "jet/storage/LockFile.h"
#include "jet/storage/Storage.h"

namespace zent::jet {

struct WorkspaceOptions {
  User user = {};                  ///< shown to others who have a file open
  std::function<Date()> now = {};  ///< local time; without it, the beginning of time
  std::size_t cache_bytes = std::size_t{64} << 20U;
  int lock_attempts = 100;  ///< a twentieth of a second each
};

struct DatabaseCore;
using OpenDatabases = std::vector<DatabaseCore*>;

/// The door to database files. It must outlive the databases that it opens.
class Workspace {
 public:
  explicit Workspace(Storage& storage, WorkspaceOptions options = {})
      : storage_(storage), options_(std::move(options)) {}
  Workspace(const Workspace&) = delete;
  Workspace& operator=(const Workspace&) = delete;

  /// `connect` is empty or ";PWD=the password" (any case; other parts are passed over).
  ///
  /// kDatabaseNotFound, kInvalidPath (a folder is missing), kInvalidPassword, kDatabaseInUse (for
  /// who wants it exclusively), kOpenedExclusively (by another), kUnrecognizedFormat,
  /// kCannotOpenDatabase (damaged), kCannotOpenFile (rights).
  Result<std::unique_ptr<Database>> OpenDatabase(std::string_view name, bool exclusive = false,
                                                 bool read_only = false,
                                                 std::string_view connect = {});

  /// A new, empty file of Jet 4, opened exclusively. kDatabaseExists.
  Result<std::unique_ptr<Database>> CreateDatabase(std::string_view name,
                                                   std::string_view connect = {});

  /// `new_connect`: nothing keeps the password, ";PWD=" gives another one or, empty, none.
  /// `connect` is that of the source.
  Status CompactDatabase(std::string_view source, std::string_view target,
                         std::string_view connect = {},
                         std::optional<std::string_view> new_connect = std::nullopt);

 private:
  Result<std::unique_ptr<Database>> Open(std::string_view name, Sharing sharing,
                                         std::string_view connect);

  Storage& storage_;
  WorkspaceOptions options_;
  OpenDatabases open_databases_;  ///< for statements that name another file
};

/// The password of a connect text; empty when it names none.
std::string PasswordOf(std::string_view connect);

}  // namespace zent::jet
