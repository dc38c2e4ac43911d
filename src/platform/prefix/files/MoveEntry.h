#pragma once

#include "base/Status.h"
#include "platform/prefix/files/LeftSiblings.h"
#include "platform/prefix/files/PathWalk.h"

namespace zent {

/// Renames what is at `from`, a file or folder, to `to`. An existing `to` is kFileAlreadyExists,
/// unless it is the same entry: then the name is spelled as the path to `to` says. A file that is
/// open is kPermissionDenied; a running program or loaded library may be renamed. On another drive
/// a file is copied and deleted, a folder is kCannotRenameAcrossDrives. `left` clears the folder
/// that such a copy goes into.
Status MoveEntry(const Place& from, const Place& to, LeftSiblings& left);

}  // namespace zent
