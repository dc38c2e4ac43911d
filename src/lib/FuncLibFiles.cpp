#include <algorithm>

#include "lib/FuncLib.h"

namespace zent {
namespace {

bool IsFolder(const FileEntry& entry) { return (entry.attributes & kAttributeFolder) != 0; }

/// The entries that a plain directory lookup finds, one that asks for no special attribute.
bool IsPlainFile(const FileEntry& entry) {
  return (entry.attributes & (kAttributeHidden | kAttributeSystem | kAttributeFolder)) == 0;
}

/// `path` up to the separator, or the colon of the drive, before its last part.
std::string FolderPart(std::string_view path) {
  return std::string(path.substr(0, path.find_last_of("\\/:") + 1));
}

/// `path` without the separators at its end; a root keeps its own.
std::string_view WithoutSeparator(std::string_view path) {
  const std::size_t last = path.find_last_not_of("\\/");
  if (last == std::string_view::npos) return path.substr(0, 1);
  const std::size_t kept = path[last] == ':' ? last + 2 : last + 1;
  return path.substr(0, kept);
}

}  // namespace

bool FileExists(FileSystem& files, std::string_view path) {
  if (IsBlank(path)) return false;
  const Result<std::vector<FileEntry>> found = files.Find(path);
  return found.ok() && !std::all_of(found.value().begin(), found.value().end(), IsFolder);
}

bool PlainFileExists(FileSystem& files, std::string_view path) {
  if (IsBlank(path)) return false;
  const Result<std::vector<FileEntry>> found = files.Find(path);
  return found.ok() && std::any_of(found.value().begin(), found.value().end(), IsPlainFile);
}

bool FolderExists(FileSystem& files, std::string_view path) {
  if (IsBlank(path)) return false;
  const Result<std::uint32_t> attributes = files.Attributes(WithoutSeparator(path));
  return attributes.ok() && (attributes.value() & kAttributeFolder) != 0;
}

int KillFile(FileSystem& files, std::string_view path) {
  if (IsBlank(path)) return 0;
  const Result<std::vector<FileEntry>> found = files.Find(path);
  if (!found.ok()) return found.number() == kPathNotFound ? 0 : found.number();

  const std::string folder = FolderPart(path);
  int last_error = 0;
  for (const FileEntry& entry : found.value()) {
    if (!IsPlainFile(entry)) continue;
    const Status deleted = files.Delete(folder + entry.name);
    if (!deleted.ok()) last_error = deleted.number();
  }
  return last_error;
}

std::string GetWindowsDir(SystemInfo& system) { return AddBackslash(system.WindowsFolder()); }

std::string GetSystemDir(SystemInfo& system) { return AddBackslash(system.SystemFolder()); }

std::string GetTempDir(SystemInfo& system) { return AddBackslash(system.TempFolder()); }

}  // namespace zent
