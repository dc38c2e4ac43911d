#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32/files/Win32FileSystem.h"
#include "support/TempFolder.h"

namespace zent::testing {

/// A folder of its own, which is the current folder of its files.
class TestFolder {
 public:
  TestFolder() : files_(text()) {}

  const std::filesystem::path& path() const { return folder_.path(); }
  std::string text() const { return folder_.path().string(); }
  /// The full path of a name in it.
  std::string Full(const std::string& name) const { return text() + "\\" + name; }
  std::filesystem::path Put(const std::string& name, std::string_view contents = "") const;
  std::string Get(const std::string& name) const { return folder_.Get(name); }
  /// The names in it, sorted.
  std::vector<std::string> Names() const;
  Win32FileSystem& files() { return files_; }

 private:
  TempFolder folder_;
  Win32FileSystem files_;
};

/// The folder C:\top with the folder w in it, empty, until this is destroyed: recorded paths lie
/// there.
class TopFolder {
 public:
  TopFolder();
  ~TopFolder();
  TopFolder(const TopFolder&) = delete;
  TopFolder& operator=(const TopFolder&) = delete;

  std::filesystem::path W(const std::string& name) const;
  std::filesystem::path Put(const std::string& name, std::string_view contents = "") const;
  std::string Get(const std::string& name) const;
  void MakeFolder(const std::string& name) const;
};

/// The names of what Find finds; the error number when it fails.
std::vector<std::string> Found(FileSystem& files, std::string_view pattern);

}  // namespace zent::testing
