#pragma once

#include <string>

#include "driver/run/UpdateRun.h"

namespace zent {

/// The time-stamped name of `path` ("Korvo 2005-01-02 23-59-01.exe"). When something of that name
/// exists the next second is waited for, so that no earlier backup is ever written over.
std::string FreeTimeStampedName(UpdateRun& run, const std::string& path);

}  // namespace zent
