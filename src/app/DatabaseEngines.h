#pragma once

#include <string>

#include "database/engines/jet/JetEngine.h"
#include "database/engines/odbc/OdbcEngine.h"
#include "driver/run/DatabaseConnection.h"
#include "jet/storage/Storage.h"
#include "platform/Clock.h"

namespace zent {

/// The engines of one run: Access files, and servers through the driver manager of this system,
/// which is loaded when a server is wanted first.
class DatabaseEngines {
 public:
  /// `files` and `clock` outlive this. `computer` is shown to others who find a database in use.
  DatabaseEngines(jet::Storage& files, Clock& clock, std::string computer);

  /// Gives them to a run, which ends before they do.
  void Serve(DatabaseConnection& connection) {
    connection.access = &access_;
    connection.server = &server_;
  }

 private:
  JetEngine access_;
  OdbcEngine server_;
};

}  // namespace zent
