#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "database/DBFuncs.h"
#include "database/engines/odbc/servers/ServerDatabase.h"
#include "database/fakes/DatabaseRun.h"

namespace zent::testing {

/// A run of a program of its own on a server, with a connection to it.
struct ServerRun : DatabaseRun {
  /// `kind` is one of kServerKinds.
  ServerRun(const std::string& connect_text, std::string_view kind) : odbc(MakeOdbcEngine()) {
    SetIsOracle(kind == "KorvoOracle" ? "1" : "0");
    run.database.server = odbc.get();
    run.state.KorvoDataBaseName = connect_text;
    std::string text = connect_text;
    database = KVOOpenSQLServerDB(run, text);
  }
  ~ServerRun() {
    database.reset();
    run.database.workspace.reset();
  }
  ServerRun(const ServerRun&) = delete;
  ServerRun& operator=(const ServerRun&) = delete;

  std::unique_ptr<OdbcEngine> odbc;
  DatabasePtr database;  ///< null when it could not be opened
};

}  // namespace zent::testing
