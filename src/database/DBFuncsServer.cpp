#include <algorithm>
#include <array>

#include "base/Text.h"
#include "database/Credentials.h"
#include "database/DBFuncs.h"
#include "database/SQLFuncs.h"
#include "driver/run/Messages.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kWorkspaceName = "NewODBCDirect";

/// What servers say of a login that they refuse; drivers of others say it by the state alone.
constexpr std::array kLoginFailures = {18452, 18456, 1005, 3001};
constexpr std::string_view kInvalidAuthorization = "28000";

bool IsLoginFailure(const EngineErrors& errors) {
  if (errors.empty()) return false;
  const EngineError& first = errors.front();
  return std::find(kLoginFailures.begin(), kLoginFailures.end(), first.number) !=
             kLoginFailures.end() ||
         first.sqlstate == kInvalidAuthorization;
}

Status MakeWorkspace(DatabaseConnection& connection) {
  if (connection.server == nullptr) return StandardError(kCannotCreateObject);
  if (connection.workspace == nullptr) {
    Result<std::unique_ptr<ServerWorkspace>> made =
        connection.server->CreateWorkspace(kWorkspaceName, connection.login_timeout);
    if (!made.ok()) return made.error();
    connection.workspace = std::move(made.value());
  }
  connection.workspace->SetLoginTimeout(connection.login_timeout);
  return {};
}

Result<DatabasePtr> Connect(UpdateRun& run, const std::string& connect_text) {
  if (const Status made = MakeWorkspace(run.database); !made.ok()) return made.error();
  return run.database.workspace->Open("ODBC;" + connect_text);
}

void KeepLogin(UpdateRun& run, const ServerLogin& login) {
  run.database.user_name = login.user;
  run.database.password = login.password;
}

/// The stored login, then the one that the user gives. A failure of the latter is told nowhere but
/// in the record.
Result<DatabasePtr> LoginAgain(UpdateRun& run, std::string& connect_text) {
  const ServerLogin stored = StoredServerLogin(run.platform);
  KeepLogin(run, stored);
  const std::string with_stored = connect_text + stored.Text();
  Result<DatabasePtr> opened = Connect(run, with_stored);
  if (opened.ok()) {
    connect_text = with_stored;
    return opened;
  }

  ServerLogin entered;
  entered.user = AskUserName(run);
  entered.password = AskPassword(run);
  KeepLogin(run, entered);
  connect_text += entered.Text();
  opened = Connect(run, connect_text);
  if (opened.ok()) {
    NoteUnlessStored(run, StoreServerLogin(run.platform, entered));
  } else {
    run.Note("the server was not opened: " + MaskPasswords(ReasonOf(opened.error())));
  }
  return opened;
}

void ReportOpening(UpdateRun& run, std::string_view connect_text, const EngineErrors& errors,
                   const RuntimeError& error) {
  std::string text = "Error opening database (" + MaskPassword(connect_text) + ") ";
  text += kLineBreak;
  text += errors.empty() ? std::to_string(error.number) + " - " + MaskPasswords(error.description)
                         : DAOErrorText(1, errors);
  run.Ask({.text = text, .icon = BoxIcon::Critical});
}

}  // namespace

DatabasePtr KVOOpenSQLServerDB(UpdateRun& run, std::string& connect_text) {
  TraceLine(run, "Begin: KVOOpenSQLServerDB");
  DatabaseConnection& connection = run.database;
  connection.login_timeout = LoginTimeout(connection.login_timeout);

  Result<DatabasePtr> opened = Connect(run, connect_text);
  if (!opened.ok()) {
    const EngineErrors errors =
        connection.server == nullptr ? EngineErrors() : connection.server->Errors();
    if (IsLoginFailure(errors)) {
      opened = LoginAgain(run, connect_text);
    } else {
      ReportOpening(run, connect_text, errors, opened.error());
    }
  }
  connection.kind = kSQLServer;
  connection.is_oracle = ReadIsOracle(run.platform);
  TraceLine(run, "End: KVOOpenSQLServerDB", opened.number());
  return opened.ok() ? std::move(opened.value()) : nullptr;
}

}  // namespace zent
