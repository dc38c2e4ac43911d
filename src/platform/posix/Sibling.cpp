#include "platform/posix/Sibling.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/posix/PosixErrors.h"

namespace zent {
namespace {

constexpr std::string_view kNameStart = ".zent-";
constexpr std::string_view kNameEnd = ".tmp";

std::optional<int> PositiveNumber(std::string_view digits) {
  int number = 0;
  const char* const end = digits.data() + digits.size();
  const std::from_chars_result read = std::from_chars(digits.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end || number <= 0) return std::nullopt;
  return number;
}

}  // namespace

Result<Sibling> Sibling::Create(int folder_fd, mode_t mode) {
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    std::string name = fmt::format("{}{}-{}{}", kNameStart, ::getpid(), i, kNameEnd);
    UniqueFd fd(::openat(folder_fd, name.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
    if (fd.ok()) return Sibling(folder_fd, std::move(name), std::move(fd));
    if (errno != EEXIST) return ErrorOfErrno(errno);
  }
  return StandardError(kFileAlreadyExists);
}

Sibling::Sibling(Sibling&& other) noexcept
    : folder_fd_(other.folder_fd_),
      name_(std::exchange(other.name_, {})),
      fd_(std::move(other.fd_)) {}

Sibling::~Sibling() {
  if (!name_.empty()) ::unlinkat(folder_fd_, name_.c_str(), 0);
}

Status Sibling::PutInPlace(const std::string& name, OldFile old_file) {
  if (::fsync(fd_.get()) != 0) return ErrorOfErrno(errno);
  if (old_file == OldFile::Keep) {
    const int error = RenameToFreeName(folder_fd_, name_, folder_fd_, name);
    if (error != 0) return ErrorOfErrno(error);
  } else if (::renameat(folder_fd_, name_.c_str(), folder_fd_, name.c_str()) != 0) {
    return ErrorOfErrno(errno);
  }
  name_.clear();
  FlushFolder(folder_fd_);
  return {};
}

bool IsSiblingName(std::string_view name) { return MakerOfSibling(name).has_value(); }

std::optional<pid_t> MakerOfSibling(std::string_view name) {
  if (!name.starts_with(kNameStart) || !name.ends_with(kNameEnd)) return std::nullopt;
  name.remove_prefix(kNameStart.size());
  const std::size_t dash = name.find('-');
  if (dash == std::string_view::npos) return std::nullopt;
  const std::optional<int> process = PositiveNumber(name.substr(0, dash));
  name.remove_prefix(dash + 1);
  if (name.size() <= kNameEnd.size()) return std::nullopt;
  name.remove_suffix(kNameEnd.size());
  const bool numbered = name.find_first_not_of("0123456789") == std::string_view::npos;
  return numbered ? process : std::nullopt;
}

void FlushFolder(int folder_fd) {
  // A descriptor of its own: one opened with O_PATH cannot be flushed.
  const UniqueFd folder(::openat(folder_fd, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.ok()) ::fsync(folder.get());
}

int RenameToFreeName(int from_folder, const std::string& from, int to_folder,
                     const std::string& to) {
  if (::renameat2(from_folder, from.c_str(), to_folder, to.c_str(), RENAME_NOREPLACE) == 0) {
    return 0;
  }
  // EINVAL is also the answer of a file system that does not know the flag.
  if (errno != EINVAL && errno != ENOSYS) return errno;
  struct stat info = {};
  if (::fstatat(to_folder, to.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return ::renameat(from_folder, from.c_str(), to_folder, to.c_str()) == 0 ? 0 : errno;
}

}  // namespace zent
