#pragma once

#include <string>

namespace zent {

/// How programs use a file at the moment.
enum class FileUse {
  None,    ///< not at all, as far as the system tells us
  Loaded,  ///< as a running program or a loaded library: it may be renamed, but not replaced
  Open,    ///< through an open descriptor, this program's own included
};

/// The use of the file `name` in a folder. A kernel that refuses to tell, because the file belongs
/// to somebody else or lies on a file system without leases, counts as None, but for programs that
/// it runs itself.
FileUse UseOf(int folder_fd, const std::string& name);

}  // namespace zent
