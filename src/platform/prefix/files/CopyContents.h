#pragma once

#include "base/Status.h"
#include "platform/posix/Sibling.h"
#include "platform/prefix/files/PathWalk.h"

namespace zent {

/// Copies the file at `source` to `target`, which is a file or nothing: contents, times and
/// attributes (where the disk can store them). Written beside the target, flushed and put in place,
/// so that the target is never there in part. Owner and permissions of a target that is replaced
/// stay, and so does the spelling of its name.
Status CopyContents(const Place& source, const Place& target, OldFile old_file);

}  // namespace zent
