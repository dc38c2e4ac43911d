#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "jet/fakes/MemoryStorage.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/format/JetErrors.h"
#include "jet/storage/Pager.h"
#include "jet/storage/StorageErrors.h"

namespace zent::jet::testing {
namespace {

using ::testing::HasSubstr;

std::unique_ptr<Pager> PagerOver(MemoryStorage& storage, const PagerOptions& options) {
  Result<std::unique_ptr<Pager>> pager = Pager::Open(storage, kPath, options);
  EXPECT_TRUE(pager.ok()) << (pager.ok() ? "" : pager.error().description);
  return pager.ok() ? std::move(pager.value()) : nullptr;
}

TEST(Pager, TellsWhatTheFileIs) {
  MemoryStorage storage;
  storage.Put(kPath, MakeDatabase(7));
  const auto pager = PagerOver(storage, Opened(Sharing::Exclusive));
  ASSERT_NE(pager, nullptr);
  EXPECT_EQ(pager->version(), JetVersion::Jet4);
  EXPECT_EQ(pager->page_size(), 4096U);
  EXPECT_EQ(pager->page_count(), 7U);
  EXPECT_EQ(pager->path(), kPath);
  EXPECT_TRUE(pager->Writable().ok());
  EXPECT_EQ(storage.changing_calls(), 0);
}

TEST(Pager, ReadsEveryPageDecrypted) {
  for (const std::uint32_t key : {0U, 1U, 0x9ABCDEF0U}) {
    SCOPED_TRACE(key);
    MemoryStorage storage;
    storage.Put(kPath, MakeDatabase(90, key));
    const auto pager = PagerOver(storage, Opened(Sharing::Exclusive));
    ASSERT_NE(pager, nullptr);
    for (PageNumber page = 1; page < 90; ++page) {
      ASSERT_EQ(ByteOf(*pager, page), FirstByte(page));
      ASSERT_EQ(ByteOf(*pager, page, kPage - 1), FirstByte(page));
    }
  }
}

struct CostCase {
  const char* what;
  std::vector<PageNumber> pages;
  std::uint64_t most_calls;
  std::uint64_t most_pages;
};

std::vector<PageNumber> Upwards(PageNumber first, PageNumber last, PageNumber step = 1) {
  std::vector<PageNumber> pages;
  for (PageNumber page = first; page <= last; page += step) pages.push_back(page);
  return pages;
}

TEST(Pager, ReadsNeighboursTogetherAndNothingTwice) {
  const CostCase cases[] = {
      {"a scan", Upwards(1, 999), 999 / 64 + 14, 999},
      {"a scan that leaves out pages", Upwards(1, 999, 3), 999 / 64 + 14, 999},
      {"jumps", {700, 20, 500, 90, 300}, 5, 5},
      {"the same page again and again", {5, 5, 5, 5}, 1, 1},
      {"a search that goes upwards by chance", {3, 4, 5, 7, 10}, 5, 5},
      {"downwards", {900, 899, 898, 897}, 4, 4},
  };
  for (const CostCase& row : cases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    storage.Put(kPath, MakeDatabase(1000));
    const auto pager = PagerOver(storage, Opened(Sharing::Exclusive));
    ASSERT_NE(pager, nullptr);
    for (const PageNumber page : row.pages) ASSERT_EQ(ByteOf(*pager, page), FirstByte(page));
    EXPECT_LE(pager->counters().read_calls, row.most_calls);
    EXPECT_LE(pager->counters().pages_read, row.most_pages);
  }
}

TEST(Pager, HoldsNoMorePagesThanItMay) {
  MemoryStorage storage;
  storage.Put(kPath, MakeDatabase(500));
  const auto pager = PagerOver(storage, Opened(Sharing::Exclusive, 32));
  ASSERT_NE(pager, nullptr);
  for (int round = 0; round < 2; ++round) {
    for (PageNumber page = 1; page < 500; ++page) {
      ASSERT_EQ(ByteOf(*pager, page), FirstByte(page));
    }
  }
  EXPECT_LE(pager->counters().most_pages_held, 32U);
}

TEST(Pager, KeepsPinnedPagesAndSaysWhenAllAre) {
  MemoryStorage storage;
  storage.Put(kPath, MakeDatabase(500));
  const auto pager = PagerOver(storage, Opened(Sharing::Exclusive, 16));
  ASSERT_NE(pager, nullptr);
  std::vector<PageView> views;
  for (PageNumber page = 1; page <= 16; ++page) {
    Result<PageView> view = pager->Read(page * 20);
    ASSERT_TRUE(view.ok());
    views.push_back(std::move(view.value()));
  }
  EXPECT_EQ(pager->Read(7).number(), 3035);
  views.pop_back();
  for (PageNumber page = 400; page < 450; ++page) ASSERT_EQ(ByteOf(*pager, page), FirstByte(page));
  for (const PageView& view : views) EXPECT_EQ(view.bytes()[9], FirstByte(view.page()));
}

TEST(Pager, RefusesPagesBeyondTheEnd) {
  MemoryStorage storage;
  storage.Put(kPath, MakeDatabase(7));
  const auto pager = PagerOver(storage, Opened(Sharing::Exclusive));
  ASSERT_NE(pager, nullptr);
  for (const PageNumber page : {7U, 8U, 0xFFFFFFU, 0xFFFFFFFFU}) {
    const Result<PageView> view = pager->Read(page);
    EXPECT_EQ(view.number(), kCannotOpenDatabase);
    EXPECT_THAT(view.error().description, HasSubstr("page " + std::to_string(page)));
  }
}

TEST(Pager, ReadsJet3AndRefusesToWriteIt) {
  MemoryStorage storage;
  const std::string before = MakeJet3Database(9);
  storage.Put(kPath, before);
  {
    const auto pager = PagerOver(storage, Opened(Sharing::Exclusive));
    ASSERT_NE(pager, nullptr);
    EXPECT_EQ(pager->version(), JetVersion::Jet3);
    EXPECT_EQ(pager->page_size(), 2048U);
    EXPECT_EQ(pager->page_count(), 9U);
    EXPECT_EQ(ByteOf(*pager, 8, 2047), 0x33);
    EXPECT_EQ(pager->Begin().number(), kReadOnly);
    EXPECT_EQ(pager->Edit(1).number(), kInvalidOperation);
  }
  EXPECT_EQ(storage.Bytes(kPath), before);
  EXPECT_EQ(storage.changing_calls(), 0);
}

struct DamageCase {
  const char* what;
  std::string bytes;
  int number;
};

TEST(Pager, RefusesWhatIsNoDatabase) {
  const std::string whole = MakeDatabase(3);
  std::string newer = whole;
  newer[0x14] = 2;
  const DamageCase cases[] = {
      {"empty", "", kUnrecognizedFormat},
      {"one byte", whole.substr(0, 1), kUnrecognizedFormat},
      {"half a header", whole.substr(0, 100), kUnrecognizedFormat},
      {"a byte less than page 0", whole.substr(0, kPage - 1), kUnrecognizedFormat},
      {"a byte more than page 0", whole.substr(0, kPage + 1), kCannotOpenDatabase},
      {"a byte less than two pages", whole.substr(0, 2 * kPage - 1), kCannotOpenDatabase},
      {"a byte more than three pages", whole + "x", kCannotOpenDatabase},
      {"text", std::string(3 * kPage, 't'), kUnrecognizedFormat},
      {"a later version", newer, kUnrecognizedFormat},
      {"three pages", whole, 0},
  };
  for (const DamageCase& row : cases) {
    for (const Sharing sharing : {Sharing::Exclusive, Sharing::Shared, Sharing::ReadOnly}) {
      SCOPED_TRACE(row.what);
      MemoryStorage storage;
      storage.Put(kPath, row.bytes);
      EXPECT_EQ(Pager::Open(storage, kPath, Opened(sharing)).number(), row.number);
      EXPECT_EQ(storage.Bytes(kPath), row.bytes);
      EXPECT_EQ(storage.Names().size(), 1U);
    }
  }
}

// Pages are read ahead of a scan; those that can be read must not suffer from one that cannot.
TEST(Pager, ReadsThePagesBesideOneThatCannotBeRead) {
  constexpr PageNumber kPages = 200;
  constexpr PageNumber kSpoiled = 100;
  MemoryStorage storage;
  storage.Put(kPath, MakeDatabase(kPages));
  const auto pager = Pager::Open(storage, kPath, Opened(Sharing::Exclusive));
  ASSERT_TRUE(pager.ok());
  storage.SpoilAt(std::uint64_t{kSpoiled} * kPage + 7);
  for (PageNumber page = 1; page < kPages; ++page) {
    const Result<PageView> read = pager.value()->Read(page);
    EXPECT_EQ(read.number(), page == kSpoiled ? kDiskError : 0) << page;
    if (read.ok()) {
      EXPECT_EQ(read.value().bytes()[100], FirstByte(page));
    }
  }
}

TEST(Pager, SaysThatTheFileIsMissing) {
  MemoryStorage storage;
  const auto pager = Pager::Open(storage, kPath, Opened(Sharing::Shared));
  EXPECT_EQ(pager.number(), kDatabaseNotFound);
  EXPECT_THAT(pager.error().description, HasSubstr(std::string(kPath)));
  EXPECT_EQ(pager.error().source, "DAO");
}

TEST(Pager, CreatesAFileOfOnePage) {
  MemoryStorage storage;
  const std::string header = MakeDatabase(1);
  {
    const auto pager = Pager::Create(storage, kPath, AsBytes(header), Opened(Sharing::Shared));
    ASSERT_TRUE(pager.ok());
    EXPECT_EQ(pager.value()->sharing(), Sharing::Exclusive);
    EXPECT_EQ(pager.value()->page_count(), 1U);
  }
  EXPECT_EQ(storage.AfterPowerLoss({.kind = PowerLoss::LosesAll})->Bytes(kPath), header);
  EXPECT_EQ(Pager::Create(storage, kPath, AsBytes(header), Opened(Sharing::Shared)).number(), 3204);
  EXPECT_NE(Pager::Create(storage, "other", AsBytes("no header"), Opened(Sharing::Shared)).number(),
            0);
  EXPECT_FALSE(storage.Has("other"));
}

TEST(Pager, LeavesNoFileThatItCouldNotMake) {
  struct Case {
    const char* what;
    int call;
  };
  constexpr Case kCases[] = {{"writing", 2}, {"flushing", 3}, {"flushing the folder", 4}};
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.what);
    MemoryStorage storage;
    storage.keeps_open_files = true;
    storage.FailAt(row.call, kDiskFull);
    const std::string header = MakeDatabase(1);
    EXPECT_EQ(Pager::Create(storage, kPath, AsBytes(header), Opened(Sharing::Shared)).number(),
              kDiskSpace);
    EXPECT_TRUE(storage.Names().empty());
  }
}

}  // namespace
}  // namespace zent::jet::testing
