#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

#include "base/Status.h"

namespace zent {

/// Makes `contents` the whole contents of `name` in the folder `folder_fd`: the old file or the new
/// one is there at every instant. Written to a sibling called ".zent-*.tmp", flushed, renamed over,
/// and the folder flushed. A new file gets `mode`, an existing one keeps its mode, owner (where the
/// system lets us) and extended attributes. On an error the sibling is gone and the old file
/// intact.
Status ReplaceFileAt(int folder_fd, const std::string& name, std::string_view contents,
                     mode_t mode = 0644);

/// Gives the file `to` mode, owner and extended attributes of the file `from`, as far as the system
/// lets us: what it refuses (an owner, when we are not root) does not make the contents worth less.
void TakeOver(int from, int to);

/// Writes all of `contents` at the descriptor's position; the errno of a failure, or 0.
int WriteAll(int fd, std::string_view contents);

/// Removes siblings that a killed run left behind in the folder. One whose process is alive stays,
/// unless that is ourselves: call it while no Sibling of ours is in the folder.
void RemoveLeftSiblings(int folder_fd);

}  // namespace zent
