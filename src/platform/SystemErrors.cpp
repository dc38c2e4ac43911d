#include "platform/SystemErrors.h"

#include <algorithm>
#include <array>

namespace zent {
namespace {

struct ErrorRow {
  SystemError system;
  int runtime;
};

constexpr std::array kErrorRows = {
    ErrorRow{SystemError::FileNotFound, kFileNotFound},
    ErrorRow{SystemError::PathNotFound, kPathNotFound},
    ErrorRow{SystemError::TooManyOpenFiles, kTooManyFiles},
    ErrorRow{SystemError::InvalidDrive, kDeviceUnavailable},
    ErrorRow{SystemError::NotSameDevice, kCannotRenameAcrossDrives},
    ErrorRow{SystemError::WriteProtect, kPermissionDenied},
    ErrorRow{SystemError::NotReady, kDiskNotReady},
    ErrorRow{SystemError::DataCrc, kDeviceIoError},
    ErrorRow{SystemError::WriteFault, kDeviceIoError},
    ErrorRow{SystemError::ReadFault, kDeviceIoError},
    ErrorRow{SystemError::SharingViolation, kPermissionDenied},
    ErrorRow{SystemError::LockViolation, kPermissionDenied},
    ErrorRow{SystemError::HandleDiskFull, kDiskFull},
    ErrorRow{SystemError::BadNetPath, kPathNotFound},
    ErrorRow{SystemError::BadNetName, kPathNotFound},
    ErrorRow{SystemError::FileExists, kFileAlreadyExists},
    ErrorRow{SystemError::InvalidParameter, kInvalidProcedureCall},
    ErrorRow{SystemError::DiskFull, kDiskFull},
    ErrorRow{SystemError::InvalidName, kBadFileName},
    ErrorRow{SystemError::AlreadyExists, kFileAlreadyExists},
    ErrorRow{SystemError::NotADirectory, kPathNotFound},
    ErrorRow{SystemError::IoDevice, kDeviceIoError},
    ErrorRow{SystemError::UserMappedFile, kPermissionDenied},
};

}  // namespace

int RuntimeErrorNumber(SystemError error) {
  const auto* const found = std::find_if(kErrorRows.begin(), kErrorRows.end(),
                                         [&](const ErrorRow& row) { return row.system == error; });
  return found == kErrorRows.end() ? kPathFileAccess : found->runtime;
}

RuntimeError ErrorOf(SystemError error) { return StandardError(RuntimeErrorNumber(error)); }

}  // namespace zent
