#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/prefix/files/PrefixFileSystem.h"
#include "support/TempFolder.h"

namespace zent::testing {

/// A machine with an empty drive C in a temporary folder.
class TestMachine {
 public:
  TestMachine();

  const std::filesystem::path& path() const { return folder_.path(); }
  /// The host path of a name below drive C.
  std::filesystem::path C(const std::string& name) const { return path() / "drive_c" / name; }
  /// Writes a file below drive C, with the folders it needs; returns its host path.
  std::filesystem::path Put(const std::string& name, std::string_view contents = "") const;
  /// The bytes of a file below drive C.
  std::string Get(const std::string& name) const { return folder_.Get("drive_c/" + name); }
  void MakeFolder(const std::string& name) const;
  void Link(const std::string& name, const std::filesystem::path& target) const;
  /// The names in a folder below drive C, sorted.
  std::vector<std::string> NamesIn(const std::string& folder) const;

  /// Opens the drives as they are now, in place of those opened before.
  Drives& OpenDrives(bool follow_profile_links = false);
  /// The files over the drives as they are now.
  PrefixFileSystem& Open(const std::string& current_folder = "C:\\",
                         bool follow_profile_links = false);

 private:
  TempFolder folder_;
  std::unique_ptr<Drives> drives_;
  std::unique_ptr<PrefixFileSystem> files_;
};

/// The names of what Find finds; the error number when it fails.
std::vector<std::string> Found(FileSystem& files, std::string_view pattern);

}  // namespace zent::testing
