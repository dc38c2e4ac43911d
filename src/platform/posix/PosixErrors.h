#pragma once

#include "platform/SystemErrors.h"

namespace zent {

/// The system error of an errno. ETXTBSY and EBUSY are a file in use; EACCES, EPERM and EROFS are
/// refused access; an errno without a row of its own is refused access too.
SystemError SystemErrorOfErrno(int error);

/// The run-time error of an errno: ErrorOf(SystemErrorOfErrno(error)).
RuntimeError ErrorOfErrno(int error);

}  // namespace zent
