#include "scenarios/kill/SystemCalls.h"

#include <fcntl.h>
#include <sys/syscall.h>

#include <algorithm>

namespace zent::testing {
namespace {

struct CallRow {
  std::uint64_t number;
  const char* name;
  Changes changes;
  int flags_at = -1;  ///< of an open: which argument tells whether it is for writing
};

constexpr CallRow kCalls[] = {
    {SYS_openat, "openat", Changes::Descriptor, 2},
    {SYS_write, "write", Changes::Descriptor},
    {SYS_writev, "writev", Changes::Descriptor},
    {SYS_pwrite64, "pwrite64", Changes::Descriptor},
    {SYS_pwritev, "pwritev", Changes::Descriptor},
    {SYS_pwritev2, "pwritev2", Changes::Descriptor},
    {SYS_sendfile, "sendfile", Changes::Descriptor},
    {SYS_copy_file_range, "copy_file_range", Changes::Path},  // the target is not the first
    {SYS_splice, "splice", Changes::Path},                    // nor here
    {SYS_ftruncate, "ftruncate", Changes::Descriptor},
    {SYS_truncate, "truncate", Changes::Path},
    {SYS_fallocate, "fallocate", Changes::Descriptor},
    {SYS_renameat2, "renameat2", Changes::Descriptor},
    {SYS_unlinkat, "unlinkat", Changes::Descriptor},
    {SYS_mkdirat, "mkdirat", Changes::Descriptor},
    {SYS_linkat, "linkat", Changes::Path},        // the new name is not the first
    {SYS_symlinkat, "symlinkat", Changes::Path},  // nor here
    {SYS_fchmod, "fchmod", Changes::Descriptor},
    {SYS_fchmodat, "fchmodat", Changes::Descriptor},
    {SYS_fchown, "fchown", Changes::Descriptor},
    {SYS_fchownat, "fchownat", Changes::Descriptor},
    {SYS_fsetxattr, "fsetxattr", Changes::Descriptor},
    {SYS_fremovexattr, "fremovexattr", Changes::Descriptor},
    {SYS_setxattr, "setxattr", Changes::Path},
    {SYS_lsetxattr, "lsetxattr", Changes::Path},
    {SYS_removexattr, "removexattr", Changes::Path},
    {SYS_lremovexattr, "lremovexattr", Changes::Path},
    {SYS_utimensat, "utimensat", Changes::Descriptor},
#if defined(SYS_renameat)
    {SYS_renameat, "renameat", Changes::Descriptor},
#endif
// Processors that came later have the calls above alone.
#if defined(SYS_open)
    {SYS_open, "open", Changes::Path, 1},
    {SYS_creat, "creat", Changes::Path},
    {SYS_rename, "rename", Changes::Path},
    {SYS_unlink, "unlink", Changes::Path},
    {SYS_mkdir, "mkdir", Changes::Path},
    {SYS_rmdir, "rmdir", Changes::Path},
    {SYS_link, "link", Changes::Path},
    {SYS_symlink, "symlink", Changes::Path},
    {SYS_chmod, "chmod", Changes::Path},
    {SYS_chown, "chown", Changes::Path},
    {SYS_lchown, "lchown", Changes::Path},
    {SYS_utime, "utime", Changes::Path},
    {SYS_utimes, "utimes", Changes::Path},
    {SYS_futimesat, "futimesat", Changes::Descriptor},
#endif
};

const CallRow* FindRow(const SystemCall& call) {
  const auto* const row = std::find_if(std::begin(kCalls), std::end(kCalls),
                                       [&](const CallRow& r) { return r.number == call.number; });
  return row == std::end(kCalls) ? nullptr : row;
}

}  // namespace

Changes ChangesOf(const SystemCall& call) {
  const CallRow* const row = FindRow(call);
  if (row == nullptr) return Changes::Nothing;
  if (row->flags_at < 0) return row->changes;
  const auto flags = static_cast<int>(call.arguments.at(static_cast<std::size_t>(row->flags_at)));
  const bool for_writing = (flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0;
  return for_writing ? row->changes : Changes::Nothing;
}

std::string NameOf(const SystemCall& call) {
  const CallRow* const row = FindRow(call);
  return row == nullptr ? std::to_string(call.number) : row->name;
}

}  // namespace zent::testing
