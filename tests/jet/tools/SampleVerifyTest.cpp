#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/samples/SamplePaths.h"
#include "jet/tools/Verify.h"
#include "support/TempFolder.h"

namespace zent::jet::testing {
namespace {

using ::testing::IsEmpty;

TEST(SampleVerify, FindsNoFaultInRealFiles) {
  VerifySummary all;
  for (const std::filesystem::path& path : SamplePaths()) {
    SCOPED_TRACE(path.filename().string());
    MemoryStorage storage;
    storage.Put(kPath, zent::testing::ReadHostFile(path));
    const Result<std::unique_ptr<Pager>> pager =
        Pager::Open(storage, kPath, Opened(Sharing::ReadOnly));
    ASSERT_TRUE(pager.ok()) << pager.error().description;
    std::vector<std::string> faults;
    const Result<VerifySummary> summary =
        VerifyDatabase(*pager.value(), [&](const std::string& line) { faults.push_back(line); });
    ASSERT_TRUE(summary.ok()) << summary.error().description;
    EXPECT_THAT(faults, IsEmpty());
    all.tables += summary.value().tables;
    all.rows += summary.value().rows;
    all.index_entries += summary.value().index_entries;
    all.lost_pages += summary.value().lost_pages;
  }
  EXPECT_GT(all.tables, 100U);
  EXPECT_GT(all.rows, 5000U);
  EXPECT_GT(all.index_entries, 5000U);
}

}  // namespace
}  // namespace zent::jet::testing
