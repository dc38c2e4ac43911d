#include "jet/storage/StorageErrors.h"

#include <fmt/format.h>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

RuntimeError DaoError(std::string text, int number) {
  return {.number = number, .description = std::move(text), .source = "DAO"};
}

}  // namespace

RuntimeError OpeningError(const RuntimeError& error, std::string_view path, Sharing sharing) {
  switch (error.number) {
    case kFileNotFound:
      return JetError(kDatabaseNotFound, path);
    case kPathNotFound:
    case kBadFileName:
      return DaoError(fmt::format("'{}' is not a valid path.  Make sure that the path name is "
                                  "spelled correctly and that you are connected to the server on "
                                  "which the file resides.",
                                  path),
                      kInvalidPath);
    case kPermissionDenied:
      return JetError(sharing == Sharing::Exclusive ? kDatabaseInUse : kOpenedExclusively, path);
    case kFileAlreadyExists:
      return DaoError("Database already exists.", kDatabaseExists);
    case kDiskFull:
      return JetError(kDiskSpace);
    case kPathFileAccess:
      return JetError(kCannotOpenFile, path);
    default:
      return error.source == "DAO" ? error
                                   : JetErrorBecause(kCannotOpenFile, error.description, path);
  }
}

RuntimeError FileError(const RuntimeError& error) {
  if (error.source == "DAO") return error;
  if (error.number == kDiskFull) return JetError(kDiskSpace);
  return DaoError(fmt::format("Disk or network error. ({})", error.description), kDiskError);
}

RuntimeError LockError(std::string_view reason) {
  return DaoError(fmt::format("Could not lock file. ({})", reason), kCannotLock);
}

}  // namespace zent::jet
