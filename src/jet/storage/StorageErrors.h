#pragma once

#include <string_view>

#include "base/Status.h"
#include "jet/storage/Storage.h"

/// What the port's errors are in DAO's terms.
namespace zent::jet {

inline constexpr int kDiskError = 3043;       ///< "Disk or network error."
inline constexpr int kInvalidPath = 3044;     ///< a folder of the path is missing
inline constexpr int kCannotLock = 3050;      ///< "Could not lock file."
inline constexpr int kDatabaseExists = 3204;  ///< "Database already exists."

/// The error of opening or creating the database `path`. A file in use is kDatabaseInUse for who
/// wants it exclusively, kOpenedExclusively for who would share it.
RuntimeError OpeningError(const RuntimeError& error, std::string_view path, Sharing sharing);

/// The error of reading, writing, flushing or locking an open file: kDiskSpace or kDiskError, the
/// port's own text behind it. An error that is DAO's already stays.
RuntimeError FileError(const RuntimeError& error);

/// kCannotLock, with the reason.
RuntimeError LockError(std::string_view reason);

/// `status`, its error turned by FileError.
inline Status AsFileStatus(const Status& status) {
  return status.ok() ? status : Status(FileError(status.error()));
}

}  // namespace zent::jet
