#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "jet/robust/Damage.h"
#include "support/TempFolder.h"

/// Damaged copies of real files, one test a file.
namespace zent::jet::testing {
namespace {

constexpr std::size_t kMostCuts = 40;

std::vector<std::filesystem::path> SamplePaths() {
  std::vector<std::filesystem::path> paths;
  for (const auto& file : std::filesystem::recursive_directory_iterator(ZENT_SAMPLES)) {
    if (file.path().extension() == ".mdb") paths.push_back(file.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

class SampleRobust : public ::testing::TestWithParam<std::filesystem::path> {};

TEST_P(SampleRobust, IsReadToItsEndWhateverIsDamaged) {
  const std::string bytes = zent::testing::ReadHostFile(GetParam());
  const std::size_t page_size = bytes.at(0x14) == 0 ? 2048 : 4096;
  const std::size_t pages = bytes.size() / page_size;
  // The largest files would take minutes.
  TryCutFiles(bytes, page_size, 1 + pages / kMostCuts);
  if (pages > 500) return TryChangedBytes(bytes, 7, 20, 100);
  TryChangedBytes(bytes, 7, 200, 10);
}

INSTANTIATE_TEST_SUITE_P(Files, SampleRobust, ::testing::ValuesIn(SamplePaths()),
                         [](const auto& file) {
                           std::string name = file.param.stem().string();
                           std::erase_if(name, [](char c) {
                             return std::isalnum(static_cast<unsigned char>(c)) == 0;
                           });
                           return name;
                         });

}  // namespace
}  // namespace zent::jet::testing
