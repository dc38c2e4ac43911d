#include "platform/prefix/files/CopyContents.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <vector>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/ReplaceFile.h"
#include "platform/prefix/files/Attributes.h"

namespace zent {
namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20U;  // bytes

/// Copies from where both descriptors stand by reading and writing; the errno of a failure, or 0.
int CopyByHand(int from, int to) {
  std::vector<char> buffer(kChunk);
  for (;;) {
    const ssize_t read = ::read(from, buffer.data(), buffer.size());
    if (read < 0 && errno == EINTR) continue;
    if (read < 0) return errno;
    if (read == 0) return 0;
    const std::string_view bytes(buffer.data(), static_cast<std::size_t>(read));
    if (const int error = WriteAll(to, bytes); error != 0) return error;
  }
}

/// As CopyByHand, in the kernel as far as the file systems can.
int CopyBytes(int from, int to) {
  for (;;) {
    const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, kChunk, 0);
    if (copied > 0) continue;
    // Nothing more: the end, or a file system that has the file's bytes only for a read.
    if (copied == 0) return CopyByHand(from, to);
    if (errno == EINTR) continue;
    const bool not_that_way = errno == EXDEV || errno == EINVAL || errno == ENOSYS ||
                              errno == EOPNOTSUPP || errno == EPERM;
    return not_that_way ? CopyByHand(from, to) : errno;
  }
}

/// Permissions of the copy, whose own are `made`: those of the file it replaces, but what is
/// executable and read-only of the source.
mode_t ModeOfCopy(mode_t made, const Place& target, const struct stat& source) {
  mode_t mode = made & 0777U;
  if (target.exists()) {
    const mode_t read_write = target.info.st_mode & 0666U;
    mode = read_write | (source.st_mode & ((read_write & 0444U) >> 2U));
  }
  return IsReadOnly(source) ? mode & ~mode_t{0222} : mode;
}

/// Gives the copy the attributes, owner, permissions and times; the errno of a failure, or 0.
int Dress(const Sibling& copy, const Place& source, const Place& target, const struct stat& from) {
  const std::uint32_t attributes = AttributesOf(source.entry.folder.get(), source.entry.name, from);
  // A disk that cannot store hidden and system takes the copy without them.
  const int stored = StoreHiddenAndSystem(copy.folder_fd(), copy.name(), attributes);
  if (stored != 0 && stored != EOPNOTSUPP) return stored;
  // Only root gives files away.
  if (target.exists() && ::fchown(copy.fd(), target.info.st_uid, target.info.st_gid) != 0 &&
      errno != EPERM) {
    return errno;
  }
  struct stat made = {};
  if (::fstat(copy.fd(), &made) != 0) return errno;
  if (::fchmod(copy.fd(), ModeOfCopy(made.st_mode, target, from)) != 0) return errno;
  const std::array<struct timespec, 2> times = {from.st_atim, from.st_mtim};
  return ::futimens(copy.fd(), times.data()) == 0 ? 0 : errno;
}

}  // namespace

Status CopyContents(const Place& source, const Place& target, OldFile old_file) {
  const UniqueFd from(::openat(source.entry.folder.get(), source.entry.name.c_str(),
                               O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat info = {};
  if (!from.ok() || ::fstat(from.get(), &info) != 0) return ErrorOfErrno(errno);
  if (!S_ISREG(info.st_mode)) return StandardError(kPathFileAccess);

  // Writable until it is dressed: attributes of a file that is not are out of its owner's reach.
  Result<Sibling> copy =
      Sibling::Create(target.entry.folder.get(), (info.st_mode & 0777U) | S_IWUSR);
  if (!copy.ok()) return copy.error();
  if (const int error = CopyBytes(from.get(), copy.value().fd()); error != 0) {
    return ErrorOfErrno(error);
  }
  if (const int error = Dress(copy.value(), source, target, info); error != 0) {
    return ErrorOfErrno(error);
  }
  return copy.value().PutInPlace(target.entry.name, old_file);
}

}  // namespace zent
