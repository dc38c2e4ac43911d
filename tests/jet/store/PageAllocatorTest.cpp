#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "jet/fakes/StoreFile.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"
#include "jet/store/PageAllocator.h"

namespace zent::jet::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::size_t kGlobalRow = 4096 - 69;  // where row 0 of page 1 begins

TEST(PageAllocator, ExtendsTheFileWhenNothingIsFree) {
  StoreFile file;
  EXPECT_EQ(file.NewPage(), 6U);
  EXPECT_EQ(file.NewPage(), 7U);
  EXPECT_EQ(file.pager().page_count(), 8U);
  EXPECT_THAT(file.FreePages(), IsEmpty());
}

TEST(PageAllocator, GivesOutReleasedPagesFirstAndEmpty) {
  StoreFile file;
  for (int i = 0; i < 6; ++i) file.NewPage();
  file.Overwrite(8, 0, {1, 2, 3});
  ASSERT_TRUE(file.maps().allocator().Release(10).ok());
  ASSERT_TRUE(file.maps().allocator().Release(8).ok());
  EXPECT_THAT(file.FreePages(), ElementsAre(8, 10));

  const Result<PageEdit> page = file.maps().allocator().Allocate();

  ASSERT_TRUE(page.ok());
  EXPECT_EQ(page.value().page(), 8U);
  EXPECT_THAT(page.value().bytes(), ::testing::Each(0));
  EXPECT_EQ(file.NewPage(), 10U);
  EXPECT_EQ(file.NewPage(), 12U);
}

struct RefusalCase {
  const char* what;
  PageNumber page;
};
constexpr RefusalCase kRefusals[] = {
    {"the header", 0},          {"the global map", 1},
    {"a system definition", 5}, {"a page beyond the end", 9},
    {"a free page", 7},
};
TEST(PageAllocator, RefusesToReleaseWhatNobodyMayRelease) {
  StoreFile file;
  for (int i = 0; i < 3; ++i) file.NewPage();
  ASSERT_TRUE(file.maps().allocator().Release(7).ok());
  for (const RefusalCase& row : kRefusals) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(file.maps().allocator().Release(row.page).number(), kCannotOpenDatabase);
    EXPECT_THAT(file.FreePages(), ElementsAre(7));
  }
}

TEST(PageAllocator, RefusesAMapThatCallsAFixedPageFree) {
  StoreFile file;
  file.Overwrite(kGlobalMapPage, kGlobalRow + 5, {0x04});
  EXPECT_EQ(file.maps().allocator().Allocate().number(), kCannotOpenDatabase);
}

TEST(PageAllocator, SpreadsTheMapOverPagesWhenTheFileOutgrowsIt) {
  StoreFile file;
  while (file.pager().page_count() < 512) file.NewPage();
  ASSERT_TRUE(file.maps().allocator().Release(100).ok());
  EXPECT_EQ(file.NewPage(), 100U);
  ASSERT_TRUE(file.maps().allocator().Release(99).ok());
  // 99 is free: the file need not grow.
  EXPECT_EQ(file.NewPage(), 99U);

  EXPECT_EQ(file.NewPage(), 512U);

  EXPECT_EQ(file.pager().page_count(), 514U);  // the page and the bits
  EXPECT_THAT(file.FreePages(), IsEmpty());
  const Result<PageView> bits = file.pager().Read(513);
  ASSERT_TRUE(bits.ok());
  EXPECT_EQ(bits.value().bytes()[0], 5);
  EXPECT_EQ(bits.value().bytes()[4 + 513 / 8], 0xFC);  // the pages to come are free
  ASSERT_TRUE(file.maps().allocator().Release(512).ok());
  ASSERT_TRUE(file.maps().allocator().Release(7).ok());
  EXPECT_THAT(file.FreePages(), ElementsAre(7, 512));
  EXPECT_EQ(file.NewPage(), 7U);
}

TEST(PageAllocator, FindsAgainWhatARollbackMadeFree) {
  StoreFile file;
  for (int i = 0; i < 4; ++i) file.NewPage();
  ASSERT_TRUE(file.maps().allocator().Release(7).ok());
  file.Commit();
  EXPECT_EQ(file.NewPage(), 7U);
  file.Rollback();
  EXPECT_THAT(file.FreePages(), ElementsAre(7));
  std::set<PageNumber> given;
  for (int i = 0; i < 600; ++i) EXPECT_TRUE(given.insert(file.NewPage()).second);
  EXPECT_TRUE(given.contains(7));
}

TEST(PageAllocator, NeverGivesAPageTwice) {
  StoreFile file;
  std::mt19937 random(5);
  std::set<PageNumber> held;
  for (int step = 0; step < 3000; ++step) {
    if (held.empty() || random() % 5 < 3) {
      ASSERT_TRUE(held.insert(file.NewPage()).second);
    } else {
      const auto at = std::next(held.begin(), static_cast<std::ptrdiff_t>(random() % held.size()));
      ASSERT_TRUE(file.maps().allocator().Release(*at).ok());
      held.erase(at);
    }
  }
  std::vector<PageNumber> used = file.UsedPages();
  std::erase_if(used, [&](PageNumber page) {  // the page that the map itself took
    const Result<PageView> view = file.pager().Read(page);
    return view.ok() && view.value().bytes()[0] == 5;
  });
  EXPECT_EQ(used, std::vector<PageNumber>(held.begin(), held.end()));
}

}  // namespace
}  // namespace zent::jet::testing
