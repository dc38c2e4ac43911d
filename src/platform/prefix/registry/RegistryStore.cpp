#include "platform/prefix/registry/RegistryStore.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/ReplaceFile.h"
#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

constexpr mode_t kAnyWritePermission = S_IWUSR | S_IWGRP | S_IWOTH;

/// Opens an ordinary file for reading; never waits for a writer of a pipe.
UniqueFd OpenForReading(int folder_fd, const std::string& name) {
  return UniqueFd(
      ::openat(folder_fd, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

/// All of the file from its start on; the errno of a failure, or 0.
int ReadAll(int fd, off_t expected_size, std::string& contents) {
  constexpr std::size_t kLeastRoom = 4096;
  std::size_t filled = 0;
  contents.resize(static_cast<std::size_t>(expected_size) + 1);
  for (;;) {
    if (filled == contents.size()) contents.resize(filled + filled / 2 + kLeastRoom);
    const ssize_t got =
        ::pread(fd, contents.data() + filled, contents.size() - filled, static_cast<off_t>(filled));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) break;
    filled += static_cast<std::size_t>(got);
  }
  contents.resize(filled);
  return 0;
}

}  // namespace

RegistryStore::Version RegistryStore::Version::Of(const struct stat& status) {
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

bool RegistryStore::Version::operator==(const Version& other) const {
  return device == other.device && inode == other.inode && size == other.size &&
         modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec;
}

RegistryStore::RegistryStore(int folder_fd, std::string name, std::string shown_name)
    : folder_fd_(folder_fd), name_(std::move(name)), shown_name_(std::move(shown_name)) {}

RuntimeError RegistryStore::ErrorWithName(int number) const {
  return StandardError(number, shown_name_);
}

Status RegistryStore::Load() {
  const UniqueFd fd = OpenForReading(folder_fd_, name_);
  if (!fd.ok() && errno == ELOOP) return ErrorWithName(kPathFileAccess);
  if (!fd.ok()) return ErrorWithName(ErrorOfErrno(errno).number);
  struct stat status = {};
  if (::fstat(fd.get(), &status) != 0) return ErrorWithName(ErrorOfErrno(errno).number);
  if (!S_ISREG(status.st_mode)) return ErrorWithName(kPathFileAccess);

  std::string text;
  if (const int error = ReadAll(fd.get(), status.st_size, text); error != 0) {
    return ErrorWithName(ErrorOfErrno(error).number);
  }
  Result<RegistryFile> file = RegistryFile::Parse(std::move(text), shown_name_);
  if (!file.ok()) return file.error();
  file_ = std::move(file.value());
  version_ = Version::Of(status);
  return {};
}

Status RegistryStore::CheckWritable() const {
  struct stat status = {};
  if (::fstatat(folder_fd_, name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return ErrorWithName(ErrorOfErrno(errno).number);
  }
  const bool allowed = (status.st_mode & kAnyWritePermission) != 0 &&
                       ::faccessat(folder_fd_, name_.c_str(), W_OK, AT_EACCESS) == 0;
  if (!allowed) return ErrorWithName(kPathFileAccess);
  return {};
}

Status RegistryStore::Save(const RegistryEditor& editor) {
  for (;;) {
    const UniqueFd lock = OpenForReading(folder_fd_, name_);
    struct stat locked = {};
    struct stat present = {};
    if (!lock.ok()) return ErrorWithName(ErrorOfErrno(errno).number);
    // A file system without locks has a single writer at most.
    while (::flock(lock.get(), LOCK_EX) != 0 && errno == EINTR) continue;
    if (::fstat(lock.get(), &locked) != 0 ||
        ::fstatat(folder_fd_, name_.c_str(), &present, AT_SYMLINK_NOFOLLOW) != 0) {
      return ErrorWithName(ErrorOfErrno(errno).number);
    }
    // While we waited for the lock its holder put a new file in place of the one we locked.
    if (locked.st_ino == present.st_ino && locked.st_dev == present.st_dev) {
      return SaveLocked(present, editor);
    }
  }
}

Status RegistryStore::SaveLocked(const struct stat& on_disk, const RegistryEditor& editor) {
  if (!loaded() || !version_ || !(*version_ == Version::Of(on_disk))) {
    if (Status read = Load(); !read.ok()) return read;
  }
  Result<RegistryEdit> edit = editor(*file_);
  if (!edit.ok()) return edit.error();
  if (edit.value().empty()) return {};

  std::string text_after = file_->TextAfter(edit.value());
  const Status written = ReplaceFileAt(folder_fd_, name_, text_after);
  if (!written.ok()) return ErrorWithName(written.number());
  file_->Apply(edit.value(), std::move(text_after));
  NoteVersion();
  return {};
}

void RegistryStore::NoteVersion() {
  // Our lock went with the replaced file: another program may have replaced ours already, which
  // must not pass for the text that we hold.
  version_.reset();
  const UniqueFd fd = OpenForReading(folder_fd_, name_);
  struct stat status = {};
  std::string text;
  if (!fd.ok() || ::fstat(fd.get(), &status) != 0) return;
  if (ReadAll(fd.get(), status.st_size, text) != 0 || text != file_->text()) return;
  version_ = Version::Of(status);
}

}  // namespace zent
