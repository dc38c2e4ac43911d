#pragma once

#include <string>

#include "base/Status.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// Compacts the Access file `path`, which nobody has open: into the file of that name with "_tmp"
/// behind it, which then takes the database's place in one step. There is a whole database at every
/// instant; after an error it is the old one and no temporary file is left. `password` may be
/// empty.
Status CompactDatabase(UpdateRun& run, const std::string& path, const std::string& password);

/// Deletes what a compaction of `path` that was killed left beside it. A file that stays is an
/// error.
Status RemoveLeftovers(UpdateRun& run, const std::string& path);

}  // namespace zent
