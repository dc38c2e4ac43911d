#include "jet/host/posix/PosixFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace zent::jet {
namespace {

// So much at once keeps a disk busy, and is soon there: the disk works while we do.
constexpr std::size_t kWriteback = std::size_t{1} << 20U;

int NumberOfErrno(int error) {
  switch (error) {
    case ENOENT:
      return kFileNotFound;
    case ENOTDIR:
    case ELOOP:
      return kPathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EBADF:  // an exclusive lock, or a write, on a descriptor for reading
      return kPathFileAccess;
    case EBUSY:
    case ETXTBSY:
    case EAGAIN:
      return kPermissionDenied;
    case ENAMETOOLONG:
    case EILSEQ:
      return kBadFileName;
    case EMFILE:
    case ENFILE:
      return kTooManyFiles;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;
    case EEXIST:
      return kFileAlreadyExists;
    default:
      return kDeviceIoError;
  }
}

struct flock RangeOf(std::uint64_t offset, std::uint64_t length, short type) {
  struct flock range = {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_start = static_cast<off_t>(offset);
  range.l_len = static_cast<off_t>(length);
  return range;
}

}  // namespace

RuntimeError ErrorOfErrno(int error) {
  const int number = NumberOfErrno(error);
  if (number != kDeviceIoError) return StandardError(number);
  return StandardError(number, std::generic_category().message(error));
}

PosixFile::~PosixFile() { ::close(fd_); }

Result<std::uint64_t> PosixFile::Size() {
  struct stat info = {};
  if (::fstat(fd_, &info) != 0) return ErrorOfErrno(errno);
  return static_cast<std::uint64_t>(info.st_size);
}

Result<std::size_t> PosixFile::ReadAt(std::uint64_t offset, MutableBytes buffer) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    const ssize_t got =
        ::pread(fd_, buffer.data() + done, buffer.size() - done, static_cast<off_t>(offset + done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return ErrorOfErrno(errno);
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

Status PosixFile::WriteAt(std::uint64_t offset, ByteView bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t put =
        ::pwrite(fd_, bytes.data() + done, bytes.size() - done, static_cast<off_t>(offset + done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return ErrorOfErrno(errno);
    done += static_cast<std::size_t>(put);
  }
  unstarted_ += bytes.size();
  if (unstarted_ >= kWriteback) StartWriteback();
  return {};
}

// Whether it could be started makes no difference to what Flush promises.
void PosixFile::StartWriteback() {
  static_cast<void>(::sync_file_range(fd_, 0, 0, SYNC_FILE_RANGE_WRITE));
  unstarted_ = 0;
}

Status PosixFile::Resize(std::uint64_t size) {
  if (!writable_) return StandardError(kPathFileAccess);
  if (::ftruncate(fd_, static_cast<off_t>(size)) != 0) return ErrorOfErrno(errno);
  return {};
}

Status PosixFile::Flush() {
  if (::fdatasync(fd_) != 0) return ErrorOfErrno(errno);
  return {};
}

Result<bool> PosixFile::TryLock(std::uint64_t offset, std::uint64_t length, bool exclusive) {
  const short type = exclusive ? F_WRLCK : F_RDLCK;
  struct flock range = RangeOf(offset, length, type);
  if (::fcntl(fd_, F_OFD_SETLK, &range) == 0) return true;
  if (errno == EAGAIN || errno == EACCES) return false;
  return ErrorOfErrno(errno);
}

Status PosixFile::Unlock(std::uint64_t offset, std::uint64_t length) {
  struct flock range = RangeOf(offset, length, F_UNLCK);
  if (::fcntl(fd_, F_OFD_SETLK, &range) != 0) return ErrorOfErrno(errno);
  return {};
}

}  // namespace zent::jet
