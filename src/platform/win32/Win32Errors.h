#pragma once

#include "base/RuntimeError.h"

namespace zent {

/// The run-time error of a system error code, as GetLastError or a registry call numbers it.
RuntimeError ErrorOfWin32(unsigned long code);

/// The run-time error of the last system call of this thread that failed.
RuntimeError LastError();

}  // namespace zent
