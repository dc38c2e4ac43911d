#pragma once

#include <cstdint>

#include "base/Status.h"

namespace zent {

/// System error codes, as GetLastError numbers them (winerror.h). Adapters meet or imitate them and
/// hand the core the run-time error that stands for each.
enum class SystemError : std::uint32_t {
  None = 0,
  FileNotFound = 2,
  PathNotFound = 3,
  TooManyOpenFiles = 4,
  AccessDenied = 5,
  InvalidDrive = 15,
  NotSameDevice = 17,
  WriteProtect = 19,
  NotReady = 21,
  DataCrc = 23,
  WriteFault = 29,
  ReadFault = 30,
  SharingViolation = 32,
  LockViolation = 33,
  HandleDiskFull = 39,
  BadNetPath = 53,
  BadNetName = 67,
  FileExists = 80,
  InvalidParameter = 87,
  DiskFull = 112,
  InvalidName = 123,
  DirectoryNotEmpty = 145,
  BadPathName = 161,
  AlreadyExists = 183,
  FileNameTooLong = 206,
  MoreData = 234,
  NotADirectory = 267,
  IoDevice = 1117,
  UserMappedFile = 1224,
};

/// The run-time error number of a system error: 53 for FileNotFound, 70 for SharingViolation, 75
/// for every code without a row of its own.
int RuntimeErrorNumber(SystemError error);

/// The run-time error of a system error with its standard description.
RuntimeError ErrorOf(SystemError error);

}  // namespace zent
