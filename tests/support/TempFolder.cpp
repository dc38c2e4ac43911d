#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace zent::testing {

TempFolder::TempFolder() {
  std::random_device random;
  do {
    path_ = std::filesystem::temp_directory_path() / ("zent-test-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(path_));
  path_ = std::filesystem::canonical(path_);
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  // A test may leave folders without permission behind.
  for (auto it = std::filesystem::recursive_directory_iterator(
           path_, std::filesystem::directory_options::skip_permission_denied, ignored);
       it != std::filesystem::recursive_directory_iterator(); it.increment(ignored)) {
    if (it->is_directory(ignored) && !it->is_symlink(ignored)) {
      std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all,
                                   std::filesystem::perm_options::add, ignored);
    }
  }
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempFolder::Put(const std::filesystem::path& name,
                                      std::string_view contents) const {
  std::filesystem::path path = path_ / name;
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << contents;
  return path;
}

std::string TempFolder::Get(const std::filesystem::path& name) const {
  std::ifstream file(path_ / name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string ReadHostFile(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace zent::testing
