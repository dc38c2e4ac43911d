#pragma once

namespace zent {

/// Run-time error numbers, in the classic BASIC numbering that the error boxes show.
enum ErrorNumber : int {
  kInvalidProcedureCall = 5,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kOutOfStringSpace = 14,
  kBadFileName = 52,
  kFileNotFound = 53,
  kBadFileMode = 54,
  kFileAlreadyOpen = 55,
  kDeviceIoError = 57,
  kFileAlreadyExists = 58,
  kDiskFull = 61,
  kInputPastEnd = 62,
  kTooManyFiles = 67,
  kDeviceUnavailable = 68,
  kPermissionDenied = 70,  ///< the file is in use
  kDiskNotReady = 71,
  kCannotRenameAcrossDrives = 74,
  kPathFileAccess = 75,  ///< write-protected, or a folder where a file is wanted
  kPathNotFound = 76,
  kObjectNotSet = 91,
  kInvalidFileFormat = 321,
  kCannotCreateObject = 429,
  kActionNotSupported = 445,
};

}  // namespace zent
