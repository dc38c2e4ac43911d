#include "platform/prefix/files/Attributes.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/xattr.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <string_view>

#include "platform/FileSystem.h"
#include "platform/posix/PosixErrors.h"

namespace zent {
namespace {

constexpr const char* kAttributeName = "user.DOSATTRIB";
constexpr std::uint32_t kStoredBits = kAttributeHidden | kAttributeSystem;
constexpr mode_t kAllMayWrite = 0222;

/// The path by which the calls for extended attributes, which know no folder descriptors, find it.
std::string PathOf(int folder_fd, const std::string& name) {
  return fmt::format("/proc/self/fd/{}/{}", folder_fd, name);
}

std::uint32_t HiddenAndSystem(int folder_fd, const std::string& name) {
  std::array<char, 16> text = {};
  const ssize_t size =
      ::lgetxattr(PathOf(folder_fd, name).c_str(), kAttributeName, text.data(), text.size());
  if (size < 0) return 0;
  std::string_view digits(text.data(), static_cast<std::size_t>(size));
  if (digits.starts_with("0x")) digits.remove_prefix(2);
  std::uint32_t bits = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), bits, 16);
  return bits & kStoredBits;
}

int ChangeMode(int folder_fd, const std::string& name, mode_t mode) {
  return ::fchmodat(folder_fd, name.c_str(), mode, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

Status ErrorOfStoring(int error) {
  if (error != EOPNOTSUPP) return ErrorOfErrno(error);
  return StandardError(kPathFileAccess, "the disk cannot store the attributes hidden and system");
}

}  // namespace

bool IsReadOnly(const struct stat& info) { return (info.st_mode & kAllMayWrite) == 0; }

std::uint32_t AttributesOf(int folder_fd, const std::string& name, const struct stat& info) {
  return (S_ISDIR(info.st_mode) ? kAttributeFolder : kAttributeArchive) |
         (IsReadOnly(info) ? kAttributeReadOnly : 0U) | HiddenAndSystem(folder_fd, name);
}

Status StoreAttributes(int folder_fd, const std::string& name, const struct stat& info,
                       std::uint32_t attributes) {
  const mode_t old_mode = info.st_mode & 07777U;
  const mode_t writable = IsReadOnly(info) ? old_mode | S_IWUSR : old_mode;
  const bool read_only = (attributes & kAttributeReadOnly) != 0 && !S_ISDIR(info.st_mode);
  const mode_t new_mode = read_only ? old_mode & ~kAllMayWrite : writable;

  // The extended attribute can be written only while the file is writable, except by root.
  if ((attributes & kStoredBits) != HiddenAndSystem(folder_fd, name)) {
    if (writable != old_mode) {
      if (const int error = ChangeMode(folder_fd, name, writable); error != 0) {
        return ErrorOfErrno(error);
      }
    }
    if (const int error = StoreHiddenAndSystem(folder_fd, name, attributes); error != 0) {
      if (writable != old_mode) ChangeMode(folder_fd, name, old_mode);
      return ErrorOfStoring(error);
    }
  } else if (new_mode == old_mode) {
    return {};
  }
  const int error = ChangeMode(folder_fd, name, new_mode);
  return error == 0 ? Status() : ErrorOfErrno(error);
}

int StoreHiddenAndSystem(int folder_fd, const std::string& name, std::uint32_t attributes) {
  const std::string path = PathOf(folder_fd, name);
  const std::uint32_t bits = attributes & kStoredBits;
  if (bits == 0) {
    if (::lremovexattr(path.c_str(), kAttributeName) == 0) return 0;
    return errno == ENODATA || errno == EOPNOTSUPP ? 0 : errno;
  }
  const std::string text = fmt::format("{:#x}", bits);
  return ::lsetxattr(path.c_str(), kAttributeName, text.data(), text.size(), 0) == 0 ? 0 : errno;
}

}  // namespace zent
