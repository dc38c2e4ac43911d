#include "platform/prefix/files/MoveEntry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/Sibling.h"
#include "platform/prefix/files/CopyContents.h"
#include "platform/prefix/files/FileUse.h"

namespace zent {
namespace {

bool IsSameFolder(const UniqueFd& a, const UniqueFd& b) {
  struct stat of_a = {};
  struct stat of_b = {};
  return ::fstat(a.get(), &of_a) == 0 && ::fstat(b.get(), &of_b) == 0 &&
         of_a.st_dev == of_b.st_dev && of_a.st_ino == of_b.st_ino;
}

bool IsSameEntry(const FolderEntry& a, const FolderEntry& b) {
  return a.name == b.name && IsSameFolder(a.folder, b.folder);
}

Status Respell(const FolderEntry& entry, const std::string& new_name) {
  if (entry.name == new_name) return {};
  const int folder = entry.folder.get();
  const int renamed = ::renameat(folder, entry.name.c_str(), folder, new_name.c_str());
  return renamed == 0 ? Status() : ErrorOfErrno(errno);
}

Status MoveByCopy(const Place& from, const Place& to, LeftSiblings& left) {
  if (!from.IsFile()) return StandardError(kCannotRenameAcrossDrives);
  // The old file is to be deleted, which one that runs or is loaded cannot be.
  if (UseOf(from.entry.folder.get(), from.entry.name) != FileUse::None) {
    return StandardError(kPermissionDenied);
  }
  left.RemoveFrom(to.entry.folder.get());
  if (Status copied = CopyContents(from, to, OldFile::Keep); !copied.ok()) return copied;
  const FolderEntry& old = from.named();
  if (::unlinkat(old.folder.get(), old.name.c_str(), 0) == 0) return {};
  const int error = errno;
  ::unlinkat(to.entry.folder.get(), to.entry.name.c_str(), 0);
  return ErrorOfErrno(error);
}

}  // namespace

Status MoveEntry(const Place& from, const Place& to, LeftSiblings& left) {
  const FolderEntry& old = from.named();
  if (old.name == ".") return StandardError(kPathFileAccess);
  const bool same = to.exists() && IsSameEntry(old, to.named());
  if (to.exists() && !same) return StandardError(kFileAlreadyExists);
  if (!to.exists() && to.asked_as_folder && from.IsFile()) return StandardError(kBadFileName);
  if (from.IsFile() && UseOf(from.entry.folder.get(), from.entry.name) == FileUse::Open) {
    return StandardError(kPermissionDenied);
  }
  if (same) return Respell(old, to.asked_name);
  if (from.drive != to.drive) return MoveByCopy(from, to, left);

  const int error =
      RenameToFreeName(old.folder.get(), old.name, to.entry.folder.get(), to.entry.name);
  if (error == 0) return {};
  // A drive may hold several file systems of the host.
  return error == EXDEV ? MoveByCopy(from, to, left) : Status(ErrorOfErrno(error));
}

}  // namespace zent
