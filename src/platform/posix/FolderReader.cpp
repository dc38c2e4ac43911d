#include "platform/posix/FolderReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/posix/PosixErrors.h"

namespace zent {

Result<FolderReader> FolderReader::Open(int folder_fd) {
  // A descriptor of its own: the reading position is not shared, and O_PATH cannot be read.
  const int own = ::openat(folder_fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (own < 0) return ErrorOfErrno(errno);
  DIR* const folder = ::fdopendir(own);
  if (folder == nullptr) {
    const int error = errno;
    ::close(own);
    return ErrorOfErrno(error);
  }
  return FolderReader(folder);
}

std::optional<std::string> FolderReader::Next() {
  for (;;) {
    errno = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the stream is this object's own.
    const dirent* const entry = ::readdir(folder_.get());
    if (entry == nullptr) {
      if (errno != 0) status_ = ErrorOfErrno(errno);
      return std::nullopt;
    }
    const std::string_view name = static_cast<const char*>(entry->d_name);
    if (name != "." && name != "..") return std::string(name);
  }
}

}  // namespace zent
