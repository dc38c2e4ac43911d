#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "database/port/EngineErrors.h"
#include "database/port/OpenedDatabase.h"
#include "driver/run/UpdateRun.h"
#include "platform/Platform.h"

/// The way to the application's database: opening it, with the questions that this may need.
/// Structure.h changes what was opened.
namespace zent {

using DatabasePtr = std::unique_ptr<OpenedDatabase>;

/// How OpenDatabase is to open, and what came of it.
struct OpenRequest {
  bool exclusive = false;
  bool read_only = false;
  std::string connect = {};   ///< in and out: ";pwd=" and the password that opened the file
  std::string password = {};  ///< out: that password, when the file has one that was found or asked
};

// --- The application's own engine ---

/// Opens the Access file `name` (its extension is "mdb", any case), else the server that `name`, a
/// connect text, describes.
///
/// A file's password is first as given, then the stored one, then asked for; what was asked for is
/// stored when it opens the file. Any failure beyond that is returned, its source "DAO". A server
/// that cannot be opened is null: the user has been told.
Result<DatabasePtr> OpenDatabase(UpdateRun& run, std::string_view name, OpenRequest& request);
Result<DatabasePtr> OpenDatabase(UpdateRun& run, std::string_view name);

/// Opens a server. A refused login is tried again with the stored name and password put behind
/// `connect_text`, which ends with ";" for that, and once more with those asked for. What opened
/// the server, or was entered last, becomes `connect_text`. Null when it cannot be opened: a box
/// has told why, unless the last of these logins failed. The kind is "SQLServer" either way; later
/// steps rely on that.
DatabasePtr KVOOpenSQLServerDB(UpdateRun& run, std::string& connect_text);

// --- Connections of the other kind; nothing is asked and nothing is told ---

/// Opens the Access file `name` with `password`, else the server that `name` describes.
Result<DatabasePtr> OpenDatabaseADO(UpdateRun& run, std::string_view name,
                                    std::string_view password);
Result<DatabasePtr> KVOOpenSQLServerDBADO(UpdateRun& run, std::string_view connect_text);

// --- Small routines ---

/// `IsOracle` in "General" of the application's settings file; text that is no boolean is false.
bool ReadIsOracle(const Platform& machine);

/// 60 seconds for 0, else at least 15 and at most 300.
int LoginTimeout(int seconds);

/// A line "NUMBER - DESCRIPTION - SOURCE" for each error, with passwords masked; empty when `flag`
/// is 0.
std::string DAOErrorText(int flag, const EngineErrors& errors);

/// Writes a trace line when somebody asked for them: date and time, message, number and value, with
/// tabs between. An empty line goes before a message that starts with "Begin:".
void TraceLine(UpdateRun& run, std::string_view message, int number = 0,
               std::optional<std::string_view> value = std::nullopt);

}  // namespace zent
