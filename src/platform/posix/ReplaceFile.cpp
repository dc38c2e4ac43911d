#include "platform/posix/ReplaceFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <vector>

#include "platform/posix/FolderReader.h"
#include "platform/posix/PosixErrors.h"
#include "platform/posix/Sibling.h"
#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

/// Our own number was given anew after a run that had it was killed.
bool MayBeAtWork(pid_t process) {
  if (process == ::getpid()) return false;
  return ::kill(process, 0) == 0 || errno == EPERM;
}

bool IsLeft(std::string_view name) {
  const std::optional<pid_t> maker = MakerOfSibling(name);
  return maker && !MayBeAtWork(*maker);
}

}  // namespace

void TakeOver(int from, int to) {
  struct stat old = {};
  if (::fstat(from, &old) != 0) return;
  if (::fchown(to, old.st_uid, old.st_gid) != 0 &&
      ::fchown(to, static_cast<uid_t>(-1), old.st_gid) != 0) {
    errno = 0;
  }
  ::fchmod(to, old.st_mode & 07777U);

  const ssize_t length = ::flistxattr(from, nullptr, 0);
  if (length <= 0) return;
  std::vector<char> names(static_cast<std::size_t>(length));
  const ssize_t filled = ::flistxattr(from, names.data(), names.size());
  for (ssize_t at = 0; at < filled;) {
    const std::string name(names.data() + at);
    at += static_cast<ssize_t>(name.size()) + 1;
    std::vector<char> value(65536);
    const ssize_t size = ::fgetxattr(from, name.c_str(), value.data(), value.size());
    if (size >= 0) ::fsetxattr(to, name.c_str(), value.data(), static_cast<std::size_t>(size), 0);
  }
}

int WriteAll(int fd, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = ::write(fd, contents.data(), contents.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    contents.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

Status ReplaceFileAt(int folder_fd, const std::string& name, std::string_view contents,
                     mode_t mode) {
  Result<Sibling> sibling = Sibling::Create(folder_fd, mode);
  if (!sibling.ok()) return sibling.error();
  if (const int error = WriteAll(sibling.value().fd(), contents); error != 0) {
    return ErrorOfErrno(error);
  }
  const UniqueFd old(
      ::openat(folder_fd, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (old.ok()) TakeOver(old.get(), sibling.value().fd());
  return sibling.value().PutInPlace(name);
}

void RemoveLeftSiblings(int folder_fd) {
  Result<FolderReader> folder = FolderReader::Open(folder_fd);
  if (!folder.ok()) return;
  std::vector<std::string> left;
  while (const std::optional<std::string> name = folder.value().Next()) {
    if (IsLeft(*name)) left.push_back(*name);
  }
  for (const std::string& name : left) ::unlinkat(folder_fd, name.c_str(), 0);
}

}  // namespace zent
