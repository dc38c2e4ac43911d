#include "database/DBFuncs.h"

#include <fmt/format.h>

#include "base/Text.h"
#include "database/AdoConnection.h"
#include "database/Credentials.h"
#include "database/SQLFuncs.h"
#include "lib/FuncLib.h"
#include "lib/RegFuncs.h"

namespace zent {
namespace {

bool IsAccessFile(std::string_view name) { return ToLower(GetFileExtension(name)) == "mdb"; }

Result<DatabasePtr> OpenFile(UpdateRun& run, std::string_view path, const OpenRequest& request) {
  if (run.database.access == nullptr) return StandardError(kCannotCreateObject);
  return run.database.access->Open({.path = std::string(path),
                                    .exclusive = request.exclusive,
                                    .read_only = request.read_only,
                                    .connect = request.connect});
}

Result<DatabasePtr> OpenFileWith(UpdateRun& run, std::string_view path, const std::string& password,
                                 OpenRequest& request) {
  request.connect = ";pwd=" + password;
  request.password = password;
  run.database.password = password;
  return OpenFile(run, path, request);
}

/// As given, with the stored password, with the one that the user gives.
Result<DatabasePtr> OpenFileAsking(UpdateRun& run, std::string_view path, OpenRequest& request) {
  Result<DatabasePtr> opened = OpenFile(run, path, request);
  if (opened.number() != kEngineWrongPassword) return opened;
  opened = OpenFileWith(run, path, StoredAccessPassword(run.platform), request);
  if (opened.number() != kEngineWrongPassword) return opened;
  const std::string password = AskPassword(run);
  opened = OpenFileWith(run, path, password, request);
  if (opened.ok()) NoteUnlessStored(run, StoreAccessPassword(run.platform, password));
  return opened;
}

}  // namespace

Result<DatabasePtr> OpenDatabase(UpdateRun& run, std::string_view name, OpenRequest& request) {
  if (!IsAccessFile(name)) {
    std::string connect_text(name);
    return KVOOpenSQLServerDB(run, connect_text);
  }
  run.database.kind = kMSAccess;
  Result<DatabasePtr> opened = OpenFileAsking(run, name, request);
  if (opened.ok()) return opened;
  RuntimeError error = opened.error();
  error.source = kEngineSource;
  return error;
}

Result<DatabasePtr> OpenDatabase(UpdateRun& run, std::string_view name) {
  OpenRequest request;
  return OpenDatabase(run, name, request);
}

Result<DatabasePtr> OpenDatabaseADO(UpdateRun& run, std::string_view name,
                                    std::string_view password) {
  if (!IsAccessFile(name)) return KVOOpenSQLServerDBADO(run, name);
  run.database.kind = kMSAccess;
  if (run.database.access == nullptr) return StandardError(kCannotCreateObject);
  return run.database.access->Open(AccessOpenOf(AdoConnectionText(name, password)));
}

Result<DatabasePtr> KVOOpenSQLServerDBADO(UpdateRun& run, std::string_view connect_text) {
  TraceLine(run, "Begin: KVOOpenSQLServerDBADO");
  DatabaseConnection& connection = run.database;
  connection.login_timeout = LoginTimeout(connection.login_timeout);
  if (connection.server == nullptr) return StandardError(kCannotCreateObject);
  Result<DatabasePtr> opened = connection.server->Connect(connect_text, connection.login_timeout);
  if (!opened.ok()) return opened;
  connection.kind = kSQLServer;
  connection.is_oracle = ReadIsOracle(run.platform);
  TraceLine(run, "End: KVOOpenSQLServerDBADO");
  return opened;
}

bool ReadIsOracle(const Platform& machine) {
  // With the backslash even where the program is not installed: by it the file is known as the one
  // that the machine keeps elsewhere.
  const std::string file = GetAppPath(machine, "Korvo.exe") + "\\Korvo.ini";
  const std::string text = ReadIniValue(machine, file, "General", "IsOracle", "0");
  return EqualsIgnoringCase(TrimBlanks(text), "True") || LeadingNumber(text) != 0;
}

int LoginTimeout(int seconds) {
  constexpr int kUsual = 60;
  constexpr int kLeast = 15;
  constexpr int kMost = 300;
  return MinOf(MaxOf(seconds == 0 ? kUsual : seconds, kLeast), kMost);
}

std::string DAOErrorText(int flag, const EngineErrors& errors) {
  std::string text;
  if (flag == 0) return text;
  for (const EngineError& error : errors) {
    text += fmt::format("{} - {} - {}{}", error.number, MaskPasswords(error.description),
                        error.source, kLineBreak);
  }
  return text;
}

void TraceLine(UpdateRun& run, std::string_view message, int number,
               std::optional<std::string_view> value) {
  if (run.database.trace == nullptr) return;
  const LocalTime now = run.platform.clock.Now();
  std::string line = message.starts_with("Begin:") ? std::string(kLineBreak) : std::string();
  line += fmt::format("{:04}-{:02}-{:02} {:02}:{:02}:{:02}\t{}\t{}", now.year, now.month, now.day,
                      now.hour, now.minute, now.second, message, number);
  if (value) line.append("\t").append(*value);
  run.database.trace->Append(line.append(kLineBreak));
}

}  // namespace zent
