#pragma once

#include "base/Status.h"
#include "platform/prefix/files/PathWalk.h"

namespace zent {

/// Renames the file at `source` over the one at `target`, both there and two files. The target's
/// spelling, attributes, owner and permissions stay; the contents are flushed before, the folder
/// afterwards. Either file in use is kPermissionDenied: told at the last moment, so that nobody
/// opens a file that is about to go.
Status ReplaceEntry(const Place& source, const Place& target);

}  // namespace zent
