#pragma once

namespace zent {

/// Run-time error numbers, in the classic BASIC numbering that the error boxes show.
inline constexpr int kInvalidProcedureCall = 5;
inline constexpr int kSubscriptOutOfRange = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kOutOfStringSpace = 14;
inline constexpr int kBadFileName = 52;
inline constexpr int kFileNotFound = 53;
inline constexpr int kBadFileMode = 54;
inline constexpr int kFileAlreadyOpen = 55;
inline constexpr int kDeviceIoError = 57;
inline constexpr int kFileAlreadyExists = 58;
inline constexpr int kDiskFull = 61;
inline constexpr int kInputPastEnd = 62;
inline constexpr int kTooManyFiles = 67;
inline constexpr int kDeviceUnavailable = 68;
inline constexpr int kPermissionDenied = 70;  ///< the file is in use
inline constexpr int kDiskNotReady = 71;
inline constexpr int kCannotRenameAcrossDrives = 74;
inline constexpr int kPathFileAccess = 75;  ///< write-protected, or a folder where a file is wanted
inline constexpr int kPathNotFound = 76;
inline constexpr int kObjectNotSet = 91;
inline constexpr int kInvalidFileFormat = 321;
inline constexpr int kCannotCreateObject = 429;
inline constexpr int kAutomationError = 440;
inline constexpr int kActionNotSupported = 445;

}  // namespace zent
