#include "platform/prefix/files/PrefixFileSystem.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <utility>

#include "base/CaseFold.h"
#include "platform/Wildcard.h"
#include "platform/posix/FolderReader.h"
#include "platform/posix/PosixErrors.h"
#include "platform/posix/ReplaceFile.h"
#include "platform/prefix/files/Attributes.h"
#include "platform/prefix/files/CopyContents.h"
#include "platform/prefix/files/FileUse.h"
#include "platform/prefix/files/MoveEntry.h"
#include "platform/prefix/files/ReplaceEntry.h"
#include "platform/prefix/files/WindowsPath.h"

namespace zent {
namespace {

class OpenFile : public File {
 public:
  explicit OpenFile(UniqueFd fd) : fd_(std::move(fd)) {}

  Result<std::uint64_t> Size() override {
    struct stat info = {};
    if (::fstat(fd_.get(), &info) != 0) return ErrorOfErrno(errno);
    return static_cast<std::uint64_t>(info.st_size);
  }

  Result<std::size_t> ReadAt(std::uint64_t offset, std::span<char> buffer) override {
    std::size_t filled = 0;
    while (filled < buffer.size()) {
      const std::uint64_t at = offset + filled;
      if (at < offset || at > std::uint64_t{std::numeric_limits<off_t>::max()}) break;
      const std::span<char> rest = buffer.subspan(filled);
      const ssize_t read = ::pread(fd_.get(), rest.data(), rest.size(), static_cast<off_t>(at));
      if (read < 0 && errno == EINTR) continue;
      if (read < 0) return ErrorOfErrno(errno);
      if (read == 0) break;
      filled += static_cast<std::size_t>(read);
    }
    return filled;
  }

 private:
  UniqueFd fd_;
};

std::uint32_t AttributesAt(const Place& place) {
  return AttributesOf(place.entry.folder.get(), place.entry.name, place.info);
}

FileEntry EntryAt(const Place& place) {
  return {.name = place.named().name,
          .attributes = AttributesAt(place),
          .size = place.IsFolder() ? 0 : static_cast<std::uint64_t>(place.info.st_size)};
}

/// What keeps a file, if there is one, from being deleted or replaced.
Status CheckReplaceable(const Place& file) {
  if (!file.exists()) return {};
  if (IsReadOnly(file.info)) return StandardError(kPathFileAccess);
  if (UseOf(file.entry.folder.get(), file.entry.name) == FileUse::None) return {};
  return StandardError(kPermissionDenied);
}

bool IsSameFile(const Place& a, const Place& b) {
  return a.exists() && b.exists() && a.info.st_dev == b.info.st_dev &&
         a.info.st_ino == b.info.st_ino;
}

Result<std::vector<std::string>> WindowsNamesIn(const Place& folder, const std::string& pattern) {
  Result<FolderReader> reader = FolderReader::Open(folder.object.get());
  if (!reader.ok()) return reader.error();
  const Wildcard wildcard(pattern);
  std::vector<std::pair<std::string, std::string>> found;  // folded, spelled
  while (const std::optional<std::string> name = reader.value().Next()) {
    if (IsWindowsName(*name) && wildcard.Matches(*name)) found.emplace_back(FoldName(*name), *name);
  }
  if (!reader.value().status().ok()) return reader.value().status().error();
  std::sort(found.begin(), found.end());
  std::vector<std::string> names;
  names.reserve(found.size());
  for (auto& [folded, name] : found) names.push_back(std::move(name));
  return names;
}

/// The host's path of what is open.
Result<std::filesystem::path> PathOf(const UniqueFd& object) {
  std::error_code error;
  std::filesystem::path host =
      std::filesystem::read_symlink(fmt::format("/proc/self/fd/{}", object.get()), error);
  if (error) return ErrorOfErrno(error.value());
  return host;
}

}  // namespace

PrefixFileSystem::PrefixFileSystem(const Drives& drives, std::string current_folder)
    : drives_(drives), current_folder_(std::move(current_folder)) {}

Result<std::string> PrefixFileSystem::FullPath(std::string_view path) {
  return FullWindowsPath(path, current_folder_);
}

Result<std::uint32_t> PrefixFileSystem::Attributes(std::string_view path) {
  const Result<Place> place = LocateExisting(path);
  if (!place.ok()) return place.error();
  return AttributesAt(place.value());
}

Status PrefixFileSystem::SetAttributes(std::string_view path, std::uint32_t attributes) {
  const Result<Place> place = LocateExisting(path);
  if (!place.ok()) return place.error();
  const FolderEntry& entry = place.value().entry;
  return StoreAttributes(entry.folder.get(), entry.name, place.value().info, attributes);
}

Result<std::vector<FileEntry>> PrefixFileSystem::Find(std::string_view pattern) {
  Result<SearchPath> search = ParseSearchPath(pattern, current_folder_);
  if (!search.ok()) return search.error();
  WindowsPath path = search.value().folder;
  // A plain name is looked up, so that asking for each of many files does not list them all.
  const bool plain = !Wildcard::IsIn(search.value().pattern);
  if (plain && !search.value().pattern.empty()) path.parts.push_back(search.value().pattern);
  const Result<Place> place = WalkTo(drives_, path);
  if (!place.ok()) return place.error();
  if (!plain) return Matches(place.value(), search.value());

  std::vector<FileEntry> found;
  const bool entry = place.value().IsFile() || place.value().IsFolder();
  if (entry && !search.value().pattern.empty()) found.push_back(EntryAt(place.value()));
  return found;
}

Result<std::vector<FileEntry>> PrefixFileSystem::Matches(const Place& folder,
                                                         const SearchPath& search) const {
  if (!folder.IsFolder()) return StandardError(kPathNotFound);
  const Result<std::vector<std::string>> names = WindowsNamesIn(folder, search.pattern);
  if (!names.ok()) return names.error();

  const int folder_fd = folder.object.get();
  std::vector<FileEntry> found;
  for (const std::string& name : names.value()) {
    struct stat info = {};
    // A name that went meanwhile is no match.
    if (::fstatat(folder_fd, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0) continue;
    if (S_ISLNK(info.st_mode)) {
      WindowsPath path = search.folder;
      path.parts.push_back(name);
      const Result<Place> target = WalkTo(drives_, path);
      if (!target.ok() || !(target.value().IsFile() || target.value().IsFolder())) continue;
      found.push_back(EntryAt(target.value()));
    } else if (S_ISDIR(info.st_mode) || S_ISREG(info.st_mode)) {
      const auto size = S_ISDIR(info.st_mode) ? 0 : static_cast<std::uint64_t>(info.st_size);
      found.push_back(
          {.name = name, .attributes = AttributesOf(folder_fd, name, info), .size = size});
    }
  }
  return found;
}

Result<std::unique_ptr<File>> PrefixFileSystem::OpenForReading(std::string_view path) {
  const Result<Place> place = LocateFile(path);
  if (!place.ok()) return place.error();
  const FolderEntry& entry = place.value().entry;
  // O_NONBLOCK: a pipe that took the file's place meanwhile must not hold us up.
  UniqueFd fd(::openat(entry.folder.get(), entry.name.c_str(),
                       O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat info = {};
  if (!fd.ok() || ::fstat(fd.get(), &info) != 0) return ErrorOfErrno(errno);
  if (!S_ISREG(info.st_mode)) return StandardError(kPathFileAccess);
  return std::unique_ptr<File>(std::make_unique<OpenFile>(std::move(fd)));
}

Status PrefixFileSystem::Write(std::string_view path, std::string_view contents) {
  const Result<Place> target = LocateTarget(path);
  if (!target.ok()) return target.error();
  if (Status replaceable = CheckReplaceable(target.value()); !replaceable.ok()) return replaceable;
  const FolderEntry& entry = target.value().entry;
  left_siblings_.RemoveFrom(entry.folder.get());
  constexpr mode_t kNewFile = 0666;  // less the umask
  return ReplaceFileAt(entry.folder.get(), entry.name, contents, kNewFile);
}

Status PrefixFileSystem::Copy(std::string_view source, std::string_view target) {
  const Result<Place> from = LocateFile(source);
  if (!from.ok()) return from.error();
  const Result<Place> to = LocateTarget(target);
  if (!to.ok()) return to.error();
  if (IsSameFile(from.value(), to.value())) return StandardError(kPermissionDenied);
  if (Status replaceable = CheckReplaceable(to.value()); !replaceable.ok()) return replaceable;
  const bool hidden = to.value().exists() && (AttributesAt(to.value()) & kAttributeHidden) != 0;
  if (hidden) return StandardError(kPathFileAccess);
  left_siblings_.RemoveFrom(to.value().entry.folder.get());
  return CopyContents(from.value(), to.value(), OldFile::Replace);
}

Status PrefixFileSystem::Move(std::string_view old_path, std::string_view new_path) {
  const Result<Place> from = LocateExisting(old_path);
  if (!from.ok()) return from.error();
  const Result<Place> to = Locate(new_path);
  if (!to.ok()) return to.error();
  return MoveEntry(from.value(), to.value(), left_siblings_);
}

Status PrefixFileSystem::Replace(std::string_view source, std::string_view target) {
  const Result<Place> from = LocateFile(source);
  if (!from.ok()) return from.error();
  const Result<Place> to = LocateFile(target);
  if (!to.ok()) return to.error();
  if (IsSameFile(from.value(), to.value())) return StandardError(kPermissionDenied);
  if (Status replaceable = CheckReplaceable(to.value()); !replaceable.ok()) return replaceable;
  return ReplaceEntry(from.value(), to.value());
}

Status PrefixFileSystem::Delete(std::string_view path) {
  const Result<Place> file = LocateFile(path);
  if (!file.ok()) return file.error();
  if (Status replaceable = CheckReplaceable(file.value()); !replaceable.ok()) return replaceable;
  const FolderEntry& entry = file.value().named();
  if (::unlinkat(entry.folder.get(), entry.name.c_str(), 0) == 0) return {};
  return ErrorOfErrno(errno);
}

Status PrefixFileSystem::CreateFolder(std::string_view path) {
  const Result<Place> place = Locate(path);
  if (!place.ok()) return place.error();
  // MkDir tells an existing name in its own way: not kFileAlreadyExists.
  if (place.value().exists()) return StandardError(kPathFileAccess);
  const FolderEntry& entry = place.value().entry;
  constexpr mode_t kNewFolder = 0777;  // less the umask
  if (::mkdirat(entry.folder.get(), entry.name.c_str(), kNewFolder) == 0) return {};
  return errno == EEXIST ? StandardError(kPathFileAccess) : ErrorOfErrno(errno);
}

Result<std::filesystem::path> PrefixFileSystem::HostPath(std::string_view path) {
  const Result<Place> place = LocateExisting(path);
  if (!place.ok()) return place.error();
  return PathOf(place.value().object);
}

Result<std::filesystem::path> PrefixFileSystem::HostTarget(std::string_view path) {
  const Result<Place> place = LocateTarget(path);
  if (!place.ok()) return place.error();
  const FolderEntry& entry = place.value().named();
  Result<std::filesystem::path> folder = PathOf(entry.folder);
  if (!folder.ok()) return folder;
  return folder.value() / entry.name;
}

Result<Place> PrefixFileSystem::Locate(std::string_view path) const {
  const Result<WindowsPath> parsed = ParseWindowsPath(path, current_folder_);
  if (!parsed.ok()) return parsed.error();
  return WalkTo(drives_, parsed.value());
}

Result<Place> PrefixFileSystem::LocateExisting(std::string_view path) const {
  Result<Place> place = Locate(path);
  if (!place.ok()) return place;
  if (!place.value().exists()) return StandardError(kFileNotFound);
  if (place.value().IsFolder()) return place;
  if (!place.value().IsFile()) return StandardError(kPathFileAccess);
  if (place.value().asked_as_folder) return StandardError(kPathNotFound);
  return place;
}

Result<Place> PrefixFileSystem::LocateFile(std::string_view path) const {
  Result<Place> place = Locate(path);
  if (!place.ok()) return place;
  if (!place.value().exists()) return StandardError(kFileNotFound);
  if (!place.value().IsFile()) return StandardError(kPathFileAccess);
  if (place.value().asked_as_folder) return StandardError(kBadFileName);
  return place;
}

Result<Place> PrefixFileSystem::LocateTarget(std::string_view path) const {
  Result<Place> place = Locate(path);
  if (!place.ok()) return place;
  if (place.value().exists() && !place.value().IsFile()) return StandardError(kPathFileAccess);
  if (place.value().asked_as_folder) return StandardError(kBadFileName);
  return place;
}

}  // namespace zent
