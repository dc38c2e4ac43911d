#include "platform/prefix/registry/WineServer.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>

#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

constexpr std::size_t kLongestName = 255;

/// Debian's Wine keeps its server folders in a folder of random name, which is the whole content of
/// the file `wineserver` in the prefix. Whatever is no plain file name is not used.
std::optional<std::string> NamedFolder(const std::string& machine) {
  const UniqueFd fd(
      ::open((machine + "/wineserver").c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat status = {};
  if (!fd.ok() || ::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  std::array<char, kLongestName + 1> buffer = {};
  const ssize_t size = ::read(fd.get(), buffer.data(), buffer.size());
  if (size <= 0 || static_cast<std::size_t>(size) > kLongestName) return std::nullopt;
  std::string name(buffer.data(), static_cast<std::size_t>(size));
  const bool plain = name != "." && name != ".." && name.find('/') == std::string::npos &&
                     name.find('\0') == std::string::npos;
  if (!plain) return std::nullopt;
  return name;
}

/// A folder of `owner`, never through a link: anyone may put things into the temporary folder. The
/// errno tells a folder that may not be opened (EACCES) from none.
UniqueFd OpenFolder(int parent, const std::string& name, uid_t owner) {
  struct stat status = {};
  if (::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return {};
  if (status.st_uid != owner) {
    errno = ENOENT;
    return {};
  }
  return UniqueFd(::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// True when another process holds the lock of the server folder temp_folder/name/server.
bool IsLocked(int temp_folder, const std::string& name, const std::string& server, uid_t owner) {
  const UniqueFd outer = OpenFolder(temp_folder, name, owner);
  if (!outer.ok()) return errno == EACCES;
  const UniqueFd inner = OpenFolder(outer.get(), server, owner);
  if (!inner.ok()) return errno == EACCES;
  const UniqueFd file(
      ::openat(inner.get(), "lock", O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file.ok()) return errno == EACCES;
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = 0;
  lock.l_len = 1;
  return ::fcntl(file.get(), F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace

WineServer::WineServer(std::string machine, std::string temp_folder)
    : machine_(std::move(machine)), temp_folder_(std::move(temp_folder)) {}

bool WineServer::IsRunning() const {
  struct stat prefix = {};
  if (::stat(machine_.c_str(), &prefix) != 0) return false;
  const UniqueFd temp(::open(temp_folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!temp.ok()) return false;
  const std::string server = fmt::format("server-{:x}-{:x}", prefix.st_dev, prefix.st_ino);
  if (IsLocked(temp.get(), fmt::format(".wine-{}", prefix.st_uid), server, prefix.st_uid)) {
    return true;
  }
  const std::optional<std::string> named = NamedFolder(machine_);
  return named && IsLocked(temp.get(), *named, server, prefix.st_uid);
}

}  // namespace zent
