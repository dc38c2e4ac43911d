#include "platform/prefix/files/Drives.h"

#include <fcntl.h>

#include <system_error>
#include <vector>

#include "base/Text.h"
#include "platform/prefix/files/WindowsPath.h"

namespace zent {
namespace {

char LetterOf(std::size_t index) { return static_cast<char>('A' + index); }

/// The index of the drive that an entry of dosdevices names: 2 of "c:".
std::optional<std::size_t> DriveIndex(const std::string& name) {
  if (name.size() != 2 || name[1] != ':') return std::nullopt;
  const char letter = ToLower(name)[0];
  if (letter < 'a' || letter > 'z') return std::nullopt;
  return static_cast<std::size_t>(letter - 'a');
}

/// The parts of the way from `folder` to `path`, which is inside; nothing when one is no name.
std::optional<std::vector<std::string>> PartsBelow(std::string_view path, std::string_view folder) {
  std::vector<std::string> parts;
  path.remove_prefix(folder.size());
  while (!path.empty()) {
    if (path.front() == '/') path.remove_prefix(1);
    const std::string_view part = path.substr(0, path.find('/'));
    path.remove_prefix(part.size());
    if (part.empty()) continue;
    if (!IsWindowsName(part)) return std::nullopt;
    parts.emplace_back(part);
  }
  return parts;
}

}  // namespace

bool IsInside(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.starts_with('/');
  return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

Result<Drives> Drives::Open(const std::filesystem::path& machine, bool follow_profile_links) {
  Drives drives;
  drives.follow_profile_links_ = follow_profile_links;
  std::error_code none;
  const std::filesystem::path devices = machine / "dosdevices";
  for (auto it = std::filesystem::directory_iterator(devices, none);
       !none && it != std::filesystem::directory_iterator(); it.increment(none)) {
    const std::optional<std::size_t> index = DriveIndex(it->path().filename().string());
    if (index) drives.Add(*index, it->path());
  }
  constexpr std::size_t kDriveC = 2;
  if (!drives.taken_[kDriveC]) drives.Add(kDriveC, machine / "drive_c");
  if (!drives.roots_[kDriveC]) return StandardError(kPathNotFound, machine.string());
  return drives;
}

Result<std::string> Drives::AddPackageFolder(const std::filesystem::path& package) {
  std::error_code error;
  if (!std::filesystem::is_directory(package, error)) {
    return StandardError(kPathNotFound, package.string());
  }
  if (std::optional<std::string> covered = ToWindowsPath(package)) return *covered;
  for (std::size_t i = 3; i < kLetters; ++i) {
    if (taken_[i]) continue;
    Add(i, package);
    if (!roots_[i]) return StandardError(kPathNotFound, package.string());
    return PathText(LetterOf(i), {});
  }
  return StandardError(kDeviceUnavailable);
}

std::optional<std::string> Drives::ToWindowsPath(const std::filesystem::path& host) const {
  std::error_code error;
  const std::string real = std::filesystem::canonical(host, error).string();
  if (error) return std::nullopt;
  std::optional<std::string> nearest;
  std::size_t nearest_size = 0;
  for (std::size_t i = 0; i < kLetters; ++i) {
    if (!roots_[i] || !IsInside(real, roots_[i]->real_path)) continue;
    if (nearest && roots_[i]->real_path.size() <= nearest_size) continue;
    const auto parts = PartsBelow(real, roots_[i]->real_path);
    if (!parts) continue;
    std::string path = PathText(LetterOf(i), *parts);
    if (CountCharacters(path) > kMaxPathCharacters) continue;
    nearest = std::move(path);
    nearest_size = roots_[i]->real_path.size();
  }
  return nearest;
}

const DriveRoot* Drives::Root(char letter) const {
  if (letter < 'A' || letter > 'Z') return nullptr;
  const std::optional<DriveRoot>& root = roots_[static_cast<std::size_t>(letter - 'A')];
  return root ? &*root : nullptr;
}

void Drives::Add(std::size_t letter, const std::filesystem::path& folder) {
  taken_.set(letter);
  std::error_code error;
  std::filesystem::path real = std::filesystem::canonical(folder, error);
  if (error) return;
  UniqueFd fd(::open(real.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (fd.ok()) roots_[letter] = DriveRoot{.fd = std::move(fd), .real_path = real.string()};
}

}  // namespace zent
