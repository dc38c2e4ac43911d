#pragma once

#include <string>

#include "base/Status.h"
#include "driver/run/UpdateRun.h"

namespace zent {

/// Copies the Access file `path` to a time-stamped name beside it, telling both names in the
/// message box, and makes sure that the copy opens and has the same tables with the same number of
/// rows. The copy's path. An error says which file it is about; nothing was changed then, and a
/// copy that is not whole is deleted.
Result<std::string> BackUpDatabase(UpdateRun& run, const std::string& path);

/// An error of what came after that, which tells where the backup is, too.
RuntimeError WithBackup(RuntimeError error, const std::string& backup);

}  // namespace zent
