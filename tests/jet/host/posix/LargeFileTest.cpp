#include <gtest/gtest.h>

#include <filesystem>

#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/host/posix/PosixStorage.h"
#include "support/TempFolder.h"

namespace zent::jet::testing {
namespace {

constexpr PageNumber kPages = 200U * 256;  // 200 MB
constexpr std::size_t kCachePages = 2048;  // 8 MB

TEST(LargeFile, IsWrittenAndReadWithinTheBoundOfTheCache) {
  const zent::testing::TempFolder folder;
  const std::string path = folder.Put("Korvo.mdb", MakeDatabase(1)).string();
  PosixStorage storage;
  {
    const auto pager = Pager::Open(storage, path, Opened(Sharing::Exclusive, kCachePages));
    ASSERT_TRUE(pager.ok());
    PageTransaction transaction(*pager.value());
    for (PageNumber page = 1; page < kPages; ++page) {
      ASSERT_TRUE(AddPage(*pager.value(), FirstByte(page)).ok());
    }
    ASSERT_TRUE(transaction.Commit().ok());
    EXPECT_LE(pager.value()->counters().most_pages_held, kCachePages);
    EXPECT_EQ(pager.value()->counters().pages_written, kPages - 1);
  }
  const auto pager = Pager::Open(storage, path, Opened(Sharing::Exclusive, kCachePages));
  ASSERT_TRUE(pager.ok());
  ASSERT_EQ(pager.value()->page_count(), kPages);
  for (PageNumber page = 1; page < kPages; ++page) {
    ASSERT_EQ(ByteOf(*pager.value(), page), FirstByte(page));
  }
  const PagerCounters& counters = pager.value()->counters();
  EXPECT_EQ(counters.pages_read, kPages - 1);
  EXPECT_LE(counters.read_calls, kPages / PageFile::kGroup + 10);
  EXPECT_LE(counters.most_pages_held, kCachePages);
}

TEST(LargeFile, IsRefusedToOutgrowTheFormat) {
  const zent::testing::TempFolder folder;
  const std::string path = folder.Put("Korvo.mdb", MakeDatabase(1)).string();
  constexpr PageNumber kMost = 524288;  // pages of 2 GB
  std::filesystem::resize_file(path, (std::uint64_t{kMost} - 1) * kPage);
  PosixStorage storage;
  const auto pager = Pager::Open(storage, path, Opened(Sharing::Exclusive, 64));
  ASSERT_TRUE(pager.ok());
  {
    PageTransaction transaction(*pager.value());
    ASSERT_TRUE(AddPage(*pager.value(), 0x11).ok());
    EXPECT_EQ(AddPage(*pager.value(), 0x22).number(), kDatabaseTooLarge);
    EXPECT_EQ(pager.value()->page_count(), kMost);
    ASSERT_TRUE(transaction.Commit().ok());
  }
  EXPECT_EQ(std::filesystem::file_size(path), std::uint64_t{kMost} * kPage);
  EXPECT_EQ(ByteOf(*pager.value(), kMost - 1), 0x11);
  ASSERT_TRUE(pager.value()->Begin().ok());
  EXPECT_EQ(AddPage(*pager.value(), 0x22).number(), kDatabaseTooLarge);
  ASSERT_TRUE(pager.value()->Rollback().ok());
}

TEST(LargeFile, IsRefusedAboveTheLimitOfTheFormat) {
  const zent::testing::TempFolder folder;
  const std::string path = folder.Put("Korvo.mdb", MakeDatabase(1)).string();
  std::filesystem::resize_file(path, std::uint64_t{524289} * kPage);
  PosixStorage storage;
  EXPECT_EQ(Pager::Open(storage, path, Opened(Sharing::Exclusive)).number(), kCannotOpenDatabase);
}

}  // namespace
}  // namespace zent::jet::testing
