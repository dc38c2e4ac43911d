#include "platform/prefix/files/ReplaceEntry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/ReplaceFile.h"
#include "platform/posix/Sibling.h"
#include "platform/posix/UniqueFd.h"
#include "platform/prefix/files/Attributes.h"
#include "platform/prefix/files/FileUse.h"

namespace zent {
namespace {

UniqueFd OpenToLook(const FolderEntry& entry) {
  return UniqueFd(::openat(entry.folder.get(), entry.name.c_str(),
                           O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

bool IsInUse(const FolderEntry& entry) {
  return UseOf(entry.folder.get(), entry.name) != FileUse::None;
}

/// Gives the source what stays of the target, and flushes it; the errno of a failure, or 0. Nothing
/// is open afterwards: an open file is one in use.
int Dress(const Place& source, const Place& target) {
  const FolderEntry& entry = source.entry;
  const FolderEntry& old = target.entry;
  const UniqueFd made = OpenToLook(entry);
  if (!made.ok()) return errno;
  if (const UniqueFd present = OpenToLook(old); present.ok()) TakeOver(present.get(), made.get());
  // A source that was hidden does not hide a target that was not.
  const std::uint32_t attributes = AttributesOf(old.folder.get(), old.name, target.info);
  const int stored = StoreHiddenAndSystem(entry.folder.get(), entry.name, attributes);
  // A disk that cannot store hidden and system takes the file without them.
  if (stored != 0 && stored != EOPNOTSUPP) return stored;
  return ::fsync(made.get()) == 0 ? 0 : errno;
}

}  // namespace

Status ReplaceEntry(const Place& source, const Place& target) {
  const FolderEntry& from = source.entry;
  const FolderEntry& to = target.entry;
  if (IsInUse(from)) return StandardError(kPermissionDenied);
  if (const int error = Dress(source, target); error != 0) return ErrorOfErrno(error);
  if (IsInUse(to)) return StandardError(kPermissionDenied);
  if (::renameat(from.folder.get(), from.name.c_str(), to.folder.get(), to.name.c_str()) != 0) {
    return ErrorOfErrno(errno);
  }
  FlushFolder(to.folder.get());
  return {};
}

}  // namespace zent
