#pragma once

#include "driver/run/UpdateRun.h"
#include "lib/TokenList.h"

namespace zent {

/// "bkpf": copies a file to a time-stamped name beside it; says and does nothing when the file is
/// missing. A hidden or read-only file is backed up too.
Status BackUpFile(UpdateRun& run, const TokenList& tokens);

}  // namespace zent
