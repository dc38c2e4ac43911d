#include "platform/posix/ReplaceFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <vector>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

constexpr std::string_view kSiblingStart = ".zent-";
constexpr std::string_view kSiblingEnd = ".tmp";

/// Copies mode, owner and extended attributes as far as the system lets us: what it refuses (an
/// owner, when we are not root) does not make the contents worth less.
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

/// Writes the sibling and puts it in place; the errno of a failure, or 0.
int WriteAndRename(int folder_fd, int fd, const std::string& sibling, const std::string& name,
                   std::string_view contents) {
  if (const int error = WriteAll(fd, contents); error != 0) return error;
  const UniqueFd old(::openat(folder_fd, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
  if (old.ok()) TakeOver(old.get(), fd);
  if (::fsync(fd) != 0) return errno;
  if (::renameat(folder_fd, sibling.c_str(), folder_fd, name.c_str()) != 0) return errno;
  // The contents are safe already; a folder that cannot be flushed only delays the new name.
  ::fsync(folder_fd);
  return 0;
}

bool IsSibling(std::string_view name) {
  return name.size() > kSiblingStart.size() + kSiblingEnd.size() &&
         name.substr(0, kSiblingStart.size()) == kSiblingStart &&
         name.substr(name.size() - kSiblingEnd.size()) == kSiblingEnd;
}

}  // namespace

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
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    const std::string sibling = fmt::format("{}{}-{}{}", kSiblingStart, ::getpid(), i, kSiblingEnd);
    const UniqueFd fd(::openat(folder_fd, sibling.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (!fd.ok() && errno == EEXIST) continue;
    if (!fd.ok()) return ErrorOfErrno(errno);
    const int error = WriteAndRename(folder_fd, fd.get(), sibling, name, contents);
    if (error == 0) return {};
    ::unlinkat(folder_fd, sibling.c_str(), 0);
    return ErrorOfErrno(error);
  }
  return StandardError(kFileAlreadyExists);
}

void RemoveLeftSiblings(int folder_fd) {
  const int copy = ::openat(folder_fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (copy < 0) return;
  DIR* const folder = ::fdopendir(copy);
  if (folder == nullptr) {
    ::close(copy);
    return;
  }
  std::vector<std::string> left;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread does everything.
  while (const dirent* entry = ::readdir(folder)) {
    if (IsSibling(static_cast<const char*>(entry->d_name))) left.emplace_back(entry->d_name);
  }
  ::closedir(folder);
  for (const std::string& name : left) ::unlinkat(folder_fd, name.c_str(), 0);
}

}  // namespace zent
