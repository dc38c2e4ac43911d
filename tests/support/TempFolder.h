#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace zent::testing {

/// A folder of the host that lives as long as this, for tests that need real files.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Writes a file, with the folders it needs; returns its path.
  std::filesystem::path Put(const std::filesystem::path& name, std::string_view contents) const;
  /// The bytes of a file; empty when it is missing.
  std::string Get(const std::filesystem::path& name) const;

 private:
  std::filesystem::path path_;
};

/// The bytes of any file of the host; a failed expectation when it cannot be read.
std::string ReadHostFile(const std::filesystem::path& path);

}  // namespace zent::testing
