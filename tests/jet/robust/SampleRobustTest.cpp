#include <gtest/gtest.h>

#include <filesystem>

#include "jet/robust/Damage.h"
#include "jet/samples/SamplePaths.h"
#include "support/TempFolder.h"

/// Damaged copies of real files, one test a file.
namespace zent::jet::testing {
namespace {

constexpr std::size_t kMostCuts = 40;

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
                         [](const auto& file) { return TestNameOf(file.param); });

}  // namespace
}  // namespace zent::jet::testing
