#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "platform/posix/UniqueFd.h"

namespace zent {

/// The folder of the host that a drive letter stands for.
struct DriveRoot {
  UniqueFd fd;            ///< opened with O_PATH
  std::string real_path;  ///< on the host, without links; "/" or without a final slash
};

/// True when the host path `path` is `folder` or lies below it, as texts.
bool IsInside(std::string_view path, std::string_view folder);

/// The drives of the machine: one for each entry "x:" of its folder dosdevices, and C:, which is
/// drive_c when it has no entry. Their folders stay open, and what the letters stand for stays the
/// same, as long as this lives.
class Drives {
 public:
  /// Opens the drives of the machine in the folder `machine`. One without a drive C is
  /// kPathNotFound; any other drive whose folder is missing is left out, its letter is not free.
  /// With `follow_profile_links` the links of a user's folder (Desktop, Documents and the like) may
  /// lead outside the drive.
  static Result<Drives> Open(const std::filesystem::path& machine, bool follow_profile_links);

  /// Makes the host folder `package` reachable: by the drive that covers it, or by the first free
  /// letter from D: on. Returns its Windows path: "D:\" or "C:\Packages\Update". A folder that is
  /// missing is kPathNotFound; kDeviceUnavailable when no letter is free.
  Result<std::string> AddPackageFolder(const std::filesystem::path& package);

  /// The Windows path of an existing file or folder of the host, links resolved. The drive whose
  /// root is nearest is taken. Nothing when no drive covers it, or when a part of the way has a
  /// name that no Windows path can hold.
  std::optional<std::string> ToWindowsPath(const std::filesystem::path& host) const;

  /// The drive of a letter 'A' to 'Z'; null when there is none.
  const DriveRoot* Root(char letter) const;
  bool follow_profile_links() const { return follow_profile_links_; }

 private:
  static constexpr std::size_t kLetters = 26;

  Drives() = default;
  /// Takes the letter, and the drive when its folder can be opened.
  void Add(std::size_t letter, const std::filesystem::path& folder);

  std::array<std::optional<DriveRoot>, kLetters> roots_;
  std::bitset<kLetters> taken_;
  bool follow_profile_links_ = false;
};

}  // namespace zent
