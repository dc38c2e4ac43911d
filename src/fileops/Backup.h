#pragma once

#include <string>

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// "bkpf": copies a file to a time-stamped name beside it; says and does nothing when the file is
/// missing. A hidden or read-only file is backed up too.
Status BackUpFile(UpdateRun& run, const TokenList& tokens);

/// The time-stamped name of `path` ("Korvo 2005-01-02 23-59-01.exe"). When something of that name
/// exists the next second is waited for, so that no earlier backup is ever written over.
std::string FreeTimeStampedName(UpdateRun& run, const std::string& path);

}  // namespace zent
