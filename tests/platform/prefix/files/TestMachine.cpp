#include "platform/prefix/files/TestMachine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace zent::testing {

TestMachine::TestMachine() {
  std::filesystem::create_directories(path() / "drive_c");
  std::filesystem::create_directories(path() / "dosdevices");
}

std::filesystem::path TestMachine::Put(const std::string& name, std::string_view contents) const {
  return folder_.Put("drive_c/" + name, contents);
}

void TestMachine::MakeFolder(const std::string& name) const {
  std::filesystem::create_directories(C(name));
}

void TestMachine::Link(const std::string& name, const std::filesystem::path& target) const {
  std::filesystem::create_directories(C(name).parent_path());
  std::filesystem::create_symlink(target, C(name));
}

std::vector<std::string> TestMachine::NamesIn(const std::string& folder) const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(C(folder))) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Drives& TestMachine::OpenDrives(bool follow_profile_links) {
  Result<Drives> drives = Drives::Open(path(), follow_profile_links);
  EXPECT_TRUE(drives.ok());
  files_.reset();
  drives_ = std::make_unique<Drives>(std::move(drives.value()));
  return *drives_;
}

PrefixFileSystem& TestMachine::Open(const std::string& current_folder, bool follow_profile_links) {
  files_ = std::make_unique<PrefixFileSystem>(OpenDrives(follow_profile_links), current_folder);
  return *files_;
}

std::vector<std::string> Found(FileSystem& files, std::string_view pattern) {
  const Result<std::vector<FileEntry>> found = files.Find(pattern);
  if (!found.ok()) return {std::to_string(found.number())};
  std::vector<std::string> names;
  for (const FileEntry& entry : found.value()) names.push_back(entry.name);
  return names;
}

}  // namespace zent::testing
