#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "jet/fakes/StoreFile.h"
#include "jet/format/JetErrors.h"
#include "jet/store/UsageMaps.h"

namespace zent::jet::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The pages of a map.
std::vector<PageNumber> PagesOf(StoreFile& file, RowPointer map) {
  const Result<std::vector<PageNumber>> pages = file.maps().Pages(map);
  EXPECT_TRUE(pages.ok()) << pages.error().description;
  return pages.value_or({});
}

void Grow(StoreFile& file, PageNumber count) {
  while (file.pager().page_count() < count) file.NewPage();
}

std::uint8_t KindOf(StoreFile& file, RowPointer map) {
  const Result<PageView> page = file.pager().Read(map.page);
  return page.value().bytes()[4096 - 69 * (map.row + 1U)];
}

struct SetCase {
  const char* what;
  std::vector<PageNumber> set;
  std::uint8_t kind;  ///< 0 inline, 1 bitmap pages
};
const SetCase kSetCases[] = {
    {"within the first window", {8, 9, 511}, 0},
    {"the window moves where all fits", {600, 1000, 1111}, 0},
    {"a page below the window moves it back", {1000, 600}, 0},
    {"too far apart for a window", {8, 700}, 1},
    {"too far apart, the lower one last", {700, 8, 9}, 1},
};
TEST(UsageMaps, KeepsTheWholeSetWhateverItsWidth) {
  for (const SetCase& row : kSetCases) {
    SCOPED_TRACE(row.what);
    StoreFile file;
    const RowPointer map = file.NewMap();
    Grow(file, 1200);
    for (const PageNumber page : row.set) ASSERT_TRUE(file.maps().Set(map, page, true).ok());
    const std::set<PageNumber> ordered(row.set.begin(), row.set.end());
    EXPECT_EQ(PagesOf(file, map), std::vector<PageNumber>(ordered.begin(), ordered.end()));
    EXPECT_EQ(KindOf(file, map), row.kind);
    EXPECT_TRUE(file.maps().Has(map, row.set.front()).value_or(false));
    EXPECT_FALSE(file.maps().Has(map, 777).value_or(true));
    for (const PageNumber page : row.set) ASSERT_TRUE(file.maps().Set(map, page, false).ok());
    EXPECT_THAT(PagesOf(file, map), IsEmpty());
  }
}

TEST(UsageMaps, ClearsWhatItNeverHadWithoutGrowing) {
  StoreFile file;
  const RowPointer map = file.NewMap();
  Grow(file, 1200);
  const PageNumber before = file.pager().page_count();
  ASSERT_TRUE(file.maps().Set(map, 1100, false).ok());
  EXPECT_EQ(KindOf(file, map), 0);
  EXPECT_EQ(file.pager().page_count(), before);
}

TEST(UsageMaps, PutsNewMapsOnAPageWithRoom) {
  StoreFile file;
  std::set<PageNumber> pages;
  for (int i = 0; i < 100; ++i) pages.insert(file.NewMap().page);
  EXPECT_EQ(pages.size(), 2U);                           // 57 rows of 69 bytes on a page
  EXPECT_EQ(file.maps().Create(2).value_or({}).row, 0);  // a fixed page is no place for one
  EXPECT_EQ(file.maps().Create(file.pager().page_count()).number(), kCannotOpenDatabase);
}

TEST(UsageMaps, DropsAMapWithItsBitmapsAndItsPage) {
  StoreFile file;
  Grow(file, 1000);
  const std::vector<PageNumber> before = file.UsedPages();
  const RowPointer first = file.NewMap();
  const RowPointer second = file.NewMap();
  ASSERT_TRUE(file.maps().Set(first, 8, true).ok());
  ASSERT_TRUE(file.maps().Set(first, 900, true).ok());
  ASSERT_TRUE(file.maps().Set(second, 9, true).ok());

  ASSERT_TRUE(file.maps().Drop(first).ok());
  EXPECT_THAT(PagesOf(file, second), ElementsAre(9));
  EXPECT_EQ(file.maps().Pages(first).number(), kCannotOpenDatabase);
  ASSERT_TRUE(file.maps().Drop(second).ok());
  EXPECT_EQ(file.UsedPages(), before);
}

TEST(UsageMaps, AllocatesForAMapAndReleasesFromIt) {
  StoreFile file;
  const RowPointer map = file.NewMap();
  const Result<PageEdit> page = file.maps().AllocateFor(map);
  ASSERT_TRUE(page.ok());
  EXPECT_THAT(PagesOf(file, map), ElementsAre(page.value().page()));
  ASSERT_TRUE(file.maps().ReleaseFrom(map, page.value().page()).ok());
  EXPECT_THAT(PagesOf(file, map), IsEmpty());
  EXPECT_THAT(file.FreePages(), ElementsAre(page.value().page()));
  // What others have is not given back.
  const RowPointer other = file.NewMap();
  const PageNumber foreign = file.maps().AllocateFor(other).value().page();
  EXPECT_EQ(file.maps().ReleaseFrom(map, foreign).number(), kCannotOpenDatabase);
  EXPECT_THAT(PagesOf(file, other), ElementsAre(foreign));
  EXPECT_THAT(file.FreePages(), IsEmpty());
}

TEST(UsageMaps, EqualsASetAfterRandomChanges) {
  StoreFile file;
  const RowPointer maps[] = {file.NewMap(), file.NewMap(), file.NewMap()};
  std::set<PageNumber> model[3];
  std::mt19937 random(11);
  for (int step = 0; step < 3000; ++step) {
    const std::size_t which = random() % 3;
    if (random() % 3 == 0) file.NewPage();
    const auto page = static_cast<PageNumber>(6 + random() % (file.pager().page_count() - 6));
    const bool value = random() % 3 != 0;
    ASSERT_TRUE(file.maps().Set(maps[which], page, value).ok());
    if (value) model[which].insert(page);
    if (!value) model[which].erase(page);
  }
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(PagesOf(file, maps[i]), std::vector<PageNumber>(model[i].begin(), model[i].end()));
  }
}

struct DamageCase {
  const char* what;
  RowPointer map;
  std::size_t at;  ///< of the map's page
  std::vector<std::uint8_t> bytes;
};
const DamageCase kDamage[] = {
    {"no such row", {6, 9}, 0, {}},
    {"a page beyond the end", {600, 0}, 0, {}},
    {"no data page", {6, 0}, 0, {4}},
    {"a page of a table", {6, 0}, 4, {9}},
    {"a map of unknown kind", {6, 0}, 4096 - 69, {7}},
    {"a deleted row", {6, 0}, 15, {0xCF}},
    {"a row that is nowhere", {6, 0}, 14, {0xFF, 0x1F}},
};
TEST(UsageMaps, RefusesDamageBeforeAnythingChanges) {
  for (const DamageCase& row : kDamage) {
    SCOPED_TRACE(row.what);
    StoreFile file;
    ASSERT_EQ(file.NewMap(), (RowPointer{6, 0}));
    file.Overwrite(6, row.at, row.bytes);
    EXPECT_EQ(file.maps().Pages(row.map).number(), kCannotOpenDatabase);
    EXPECT_EQ(file.maps().Set(row.map, 7, true).number(), kCannotOpenDatabase);
    EXPECT_EQ(file.maps().Drop(row.map).number(), kCannotOpenDatabase);
    EXPECT_EQ(file.pager().page_count(), 7U);
  }
}

TEST(UsageMaps, PassesOverReferencesToWhatIsNoBitmap) {
  StoreFile file;
  const RowPointer map = file.NewMap();
  Grow(file, 20);
  const std::size_t row = 4096 - 69;
  file.Overwrite(map.page, row, {1});
  for (const std::uint32_t reference : {0U, 7U, 5000U}) {
    file.OverwriteU32(map.page, row + 1, reference);
    EXPECT_THAT(PagesOf(file, map), IsEmpty()) << reference;
  }
  EXPECT_EQ(file.maps().Set(map, 9, true).number(), kCannotOpenDatabase);  // page 5000
}

// An inline map whose kind was changed names pages of others.
TEST(UsageMaps, ReleasesNothingButBitmapsOfAMapThatIsDropped) {
  StoreFile file;
  const RowPointer map = file.NewMap();
  const RowPointer kept = file.NewMap();
  Grow(file, 20);
  const std::size_t row = 4096 - 69;
  file.Overwrite(map.page, row, {1});
  file.Overwrite(9, 0, {5, 1, 0, 0});
  std::size_t place = row + 1;
  for (const std::uint32_t reference : {0U, 3U, 7U, 5000U, 0xFFFFFFFFU, 9U}) {
    file.OverwriteU32(map.page, place, reference);
    place += 4;
  }
  ASSERT_TRUE(file.maps().Drop(map).ok());
  EXPECT_THAT(file.FreePages(), ElementsAre(9));
  EXPECT_THAT(PagesOf(file, kept), IsEmpty());
}

}  // namespace
}  // namespace zent::jet::testing
