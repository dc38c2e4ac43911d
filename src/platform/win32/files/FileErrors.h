#pragma once

#include "base/RuntimeError.h"

namespace zent {

/// The run-time error of the last call on a file that failed: as LastError, but a network folder
/// that cannot be reached is kPathNotFound, whichever of its many reasons the system gives.
RuntimeError LastFileError();

}  // namespace zent
