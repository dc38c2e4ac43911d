#include "jet/host/posix/PosixStorage.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <string>

#include "jet/host/posix/PosixFile.h"

namespace zent::jet {
namespace {

// Beyond the largest database, apart from the engine's own locks.
constexpr std::uint64_t kSharingByte = 0x80000100;
constexpr mode_t kUsualRights = 0666;

/// A NUL would cut the name short: another file.
bool IsName(std::string_view path) { return path.find('\0') == std::string_view::npos; }

std::string FolderOf(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string_view::npos) return ".";
  return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

/// The error of a call on a path: what is missing is the file, or its folder.
RuntimeError PathError(std::string_view path, int error) {
  struct stat info = {};
  if (error == ENOENT && ::stat(FolderOf(path).c_str(), &info) != 0) {
    return StandardError(kPathNotFound);
  }
  return ErrorOfErrno(error);
}

/// Whether another program is known to have the file open. A lease is granted to the only opener; a
/// system or file that knows no leases, or not for us, tells nothing.
bool IsOpenElsewhere(int fd) {
  // Who opens the file at this moment makes the kernel signal us: by default with SIGIO, which
  // would kill; SIGURG is ignored unless asked for.
  ::fcntl(fd, F_SETSIG, SIGURG);
  if (::fcntl(fd, F_SETLEASE, F_WRLCK) == 0) {
    ::fcntl(fd, F_SETLEASE, F_UNLCK);
    return false;
  }
  return errno == EAGAIN || errno == EBUSY;
}

Result<std::unique_ptr<StoredFile>> Taken(int fd, Sharing sharing) {
  auto file = std::make_unique<PosixFile>(fd, sharing != Sharing::ReadOnly);
  struct stat info = {};
  if (::fstat(fd, &info) != 0) return ErrorOfErrno(errno);
  if (!S_ISREG(info.st_mode)) return StandardError(kPathFileAccess);
  const bool exclusive = sharing == Sharing::Exclusive;
  const Result<bool> locked = file->TryLock(kSharingByte, 1, exclusive);
  if (!locked.ok()) return locked.error();
  if (!locked.value() || (exclusive && IsOpenElsewhere(fd))) {
    return StandardError(kPermissionDenied);
  }
  return std::unique_ptr<StoredFile>(std::move(file));
}

/// Owner and rights as those of the file `like`; what is not allowed stays as it is.
void MakeAlike(int fd, std::string_view like) {
  struct stat info = {};
  if (like.empty() || ::stat(std::string(like).c_str(), &info) != 0) return;
  // Where the owner cannot be changed there is nothing to be done about it.
  static_cast<void>(::fchown(fd, info.st_uid, info.st_gid) == 0);
  struct stat own = {};
  const bool same_group = ::fstat(fd, &own) == 0 && own.st_gid == info.st_gid;
  // Rights of another group are not that group's.
  ::fchmod(fd, info.st_mode & (same_group ? kUsualRights : mode_t{0606}));
}

}  // namespace

Result<std::unique_ptr<StoredFile>> PosixStorage::Open(std::string_view path, Sharing sharing) {
  if (!IsName(path)) return StandardError(kBadFileName);
  const int access = sharing == Sharing::ReadOnly ? O_RDONLY : O_RDWR;
  // Not to wait for the other end of a pipe.
  const int fd = ::open(std::string(path).c_str(), access | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (fd < 0) return PathError(path, errno);
  return Taken(fd, sharing);
}

Result<std::unique_ptr<StoredFile>> PosixStorage::Create(std::string_view path, Sharing sharing,
                                                         std::string_view like) {
  if (!IsName(path)) return StandardError(kBadFileName);
  // Nobody else may read it before it has its rights.
  const mode_t rights = like.empty() ? kUsualRights : mode_t{0600};
  const int fd = ::open(std::string(path).c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, rights);
  if (fd < 0) return PathError(path, errno);
  MakeAlike(fd, like);
  return Taken(fd, sharing);
}

Status PosixStorage::Delete(std::string_view path) {
  if (!IsName(path)) return StandardError(kBadFileName);
  if (::unlink(std::string(path).c_str()) != 0) return PathError(path, errno);
  return {};
}

Result<bool> PosixStorage::Exists(std::string_view path) {
  if (!IsName(path)) return StandardError(kBadFileName);
  struct stat info = {};
  if (::stat(std::string(path).c_str(), &info) == 0) return !S_ISDIR(info.st_mode);
  if (errno == ENOENT || errno == ENOTDIR) return false;
  return ErrorOfErrno(errno);
}

Status PosixStorage::Rename(std::string_view path, std::string_view new_path) {
  if (!IsName(path) || !IsName(new_path)) return StandardError(kBadFileName);
  if (std::rename(std::string(path).c_str(), std::string(new_path).c_str()) != 0) {
    return PathError(path, errno);
  }
  return {};
}

Status PosixStorage::FlushFolder(std::string_view path) {
  if (!IsName(path)) return StandardError(kBadFileName);
  const int fd = ::open(FolderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) return ErrorOfErrno(errno);
  // A file system that cannot flush a folder says EINVAL: there is nothing to be done.
  const bool flushed = ::fsync(fd) == 0 || errno == EINVAL;
  const int error = errno;
  ::close(fd);
  return flushed ? Status() : Status(ErrorOfErrno(error));
}

void PosixStorage::Pause(std::chrono::milliseconds time) {
  struct timespec left = {};
  left.tv_sec = static_cast<time_t>(time.count() / 1000);
  left.tv_nsec = static_cast<long>(time.count() % 1000) * 1000000;
  while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

}  // namespace zent::jet
