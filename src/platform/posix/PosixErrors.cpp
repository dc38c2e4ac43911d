#include "platform/posix/PosixErrors.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace zent {
namespace {

struct ErrnoRow {
  int error;
  SystemError system;
};

constexpr std::array kErrnoRows = {
    ErrnoRow{ENOENT, SystemError::FileNotFound},
    ErrnoRow{ENOTDIR, SystemError::PathNotFound},
    ErrnoRow{EMFILE, SystemError::TooManyOpenFiles},
    ErrnoRow{ENFILE, SystemError::TooManyOpenFiles},
    ErrnoRow{EACCES, SystemError::AccessDenied},
    ErrnoRow{EPERM, SystemError::AccessDenied},
    ErrnoRow{EROFS, SystemError::AccessDenied},
    ErrnoRow{EISDIR, SystemError::AccessDenied},
    ErrnoRow{EBUSY, SystemError::SharingViolation},
    ErrnoRow{ETXTBSY, SystemError::SharingViolation},
    ErrnoRow{EAGAIN, SystemError::LockViolation},
    ErrnoRow{EXDEV, SystemError::NotSameDevice},
    ErrnoRow{EEXIST, SystemError::AlreadyExists},
    ErrnoRow{ENOTEMPTY, SystemError::DirectoryNotEmpty},
    ErrnoRow{ENOSPC, SystemError::DiskFull},
    ErrnoRow{EDQUOT, SystemError::DiskFull},
    ErrnoRow{EFBIG, SystemError::DiskFull},
    ErrnoRow{ENAMETOOLONG, SystemError::FileNameTooLong},
    ErrnoRow{EILSEQ, SystemError::InvalidName},
    ErrnoRow{EINVAL, SystemError::InvalidParameter},
    ErrnoRow{EIO, SystemError::IoDevice},
    ErrnoRow{ENXIO, SystemError::NotReady},
    ErrnoRow{ENODEV, SystemError::NotReady},
    ErrnoRow{ELOOP, SystemError::PathNotFound},
};

}  // namespace

SystemError SystemErrorOfErrno(int error) {
  const auto* const found = std::find_if(kErrnoRows.begin(), kErrnoRows.end(),
                                         [&](const ErrnoRow& row) { return row.error == error; });
  return found == kErrnoRows.end() ? SystemError::AccessDenied : found->system;
}

RuntimeError ErrorOfErrno(int error) { return ErrorOf(SystemErrorOfErrno(error)); }

}  // namespace zent
