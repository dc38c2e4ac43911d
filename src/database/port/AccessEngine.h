#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "database/port/EngineErrors.h"
#include "database/port/OpenedDatabase.h"

namespace zent {

/// How an Access file is to be opened.
struct AccessOpen {
  std::string path;        ///< full Windows path
  bool exclusive = false;  ///< fails while anybody has it open, and keeps everybody else out
  bool read_only = false;
  std::string connect = {};  ///< ";pwd=" and the password; empty for none
};

/// Somebody who has an Access file open.
struct DatabaseUser {
  std::string computer;
  std::string user;
  bool operator==(const DatabaseUser&) const = default;
};

/// The engine of Access files.
///
/// Errors of the calls that open: kEngineFileNotFound, 3044 (no such folder), kEngineWrongPassword,
/// kEngineFileInUse, kEngineOpenedExclusively, 3051 (no right), 3343 (no database), 3049 (damaged).
class AccessEngine {
 public:
  virtual ~AccessEngine() = default;

  virtual Result<std::unique_ptr<OpenedDatabase>> Open(const AccessOpen& request) = 0;

  /// Writes what `source` holds, and nothing of what was deleted in it, into the new file `target`,
  /// which gets the same password. `connect` as in AccessOpen. The source, which must not be open,
  /// stays as it is; when it fails, no target is left. Error 3204: the target exists.
  virtual Status Compact(std::string_view source, std::string_view target,
                         std::string_view connect) = 0;

  /// Who has the file open, by the list that lies beside it (".ldb"); empty when nobody is known,
  /// and when the list cannot be read. Entries that nobody holds any longer are left out.
  virtual std::vector<DatabaseUser> UsersOf(std::string_view path) = 0;

  /// The errors of the last call that failed, the first raised first.
  virtual const EngineErrors& Errors() const = 0;
};

}  // namespace zent
