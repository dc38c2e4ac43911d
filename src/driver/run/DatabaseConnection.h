#pragma once

#include <memory>
#include <string>

#include "database/port/AccessEngine.h"
#include "database/port/DatabaseTrace.h"
#include "database/port/ServerEngine.h"

namespace zent {

/// What the database work of one run shares: the engines, and what is known of the connection.
struct DatabaseConnection {
  // Engines that are not there are null; what needs one is then kCannotCreateObject. They outlive
  // the run.
  AccessEngine* access = nullptr;
  ServerEngine* server = nullptr;
  DatabaseTrace* trace = nullptr;  ///< null: nothing is traced

  std::string kind;        ///< "MSAccess" or "SQLServer" (any server) as opened last; read by all
  bool is_oracle = false;  ///< as of the last open of a server
  int login_timeout = 0;   ///< seconds; 0 until first used
  std::string user_name;   ///< of the server, as read or entered last
  std::string password;    ///< of the file or server, as read or entered last
  /// Made at the first open of a server, kept for the run.
  std::unique_ptr<ServerWorkspace> workspace = nullptr;
};

}  // namespace zent
