#include <gtest/gtest.h>

#include "HexBytes.h"
#include "jet/format/JetErrors.h"
#include "jet/format/UsageMap.h"

namespace zent::jet {
namespace {

constexpr JetVersion kVersion = JetVersion::Jet4;

std::vector<PageNumber> PagesOf(const PageBits& bits) {
  std::vector<PageNumber> pages;
  for (auto page = bits.Next(0); page; page = bits.Next(*page + 1)) pages.push_back(*page);
  return pages;
}

std::vector<PageNumber> PagesOf(const std::vector<std::uint8_t>& row) {
  return PagesOf(UsageMapView::Open(kVersion, row, 1).value().bits());
}

std::vector<std::uint8_t> MapOf(std::initializer_list<PageNumber> pages) {
  std::vector<std::uint8_t> row = NewUsageMapRow(kVersion);
  for (const PageNumber page : pages) EXPECT_TRUE(SetInlineBit(row, page, true));
  return row;
}

TEST(UsageMap, LieOnPagesOfNoOwnerAndOnPageOne) {
  EXPECT_TRUE(HoldsUsageMaps(1, 1));
  EXPECT_TRUE(HoldsUsageMaps(1, 0));
  EXPECT_TRUE(HoldsUsageMaps(17, 0));
  EXPECT_FALSE(HoldsUsageMaps(17, 1));
  EXPECT_FALSE(HoldsUsageMaps(1, 2));
}

TEST(UsageMap, ReadsTheMapOfARealTable) {
  std::vector<std::uint8_t> row = HexVector("00 00 00 00 00 00 00 00 00 00 00 00 10");
  row.resize(69);
  EXPECT_EQ(PagesOf(row), std::vector<PageNumber>{60});
}

struct WindowCase {
  const char* what;
  const char* row;
  std::vector<PageNumber> pages;
};

const WindowCase kWindows[] = {
    {"empty", "00 00 00 00 00 00", {}},
    {"the ends of a byte", "00 00 00 00 00 81", {0, 7}},
    {"from a first page on", "00 E0 02 00 00 00 03", {744, 745}},
    {"a first page that no file has", "00 F8 FF FF FF 81 FF", {0xFFFFFFF8, 0xFFFFFFFF}},
};

TEST(UsageMap, ListsItsPagesInOrder) {
  for (const WindowCase& row : kWindows) {
    SCOPED_TRACE(row.what);
    const std::vector<std::uint8_t> bytes = HexVector(row.row);
    const Result<UsageMapView> view = UsageMapView::Open(kVersion, bytes, 1);
    ASSERT_TRUE(view.ok());
    EXPECT_EQ(view.value().kind(), MapKind::Inline);
    const PageBits bits = view.value().bits();
    std::vector<PageNumber> pages;
    for (auto page = bits.Next(0); page; page = bits.Next(*page + 1)) {
      pages.push_back(*page);
      EXPECT_TRUE(bits.Has(*page));
      if (*page == 0xFFFFFFFF) break;
    }
    EXPECT_EQ(pages, row.pages);
    EXPECT_EQ(bits.empty(), row.pages.empty());
  }
}

TEST(UsageMap, NamesItsBitmapPages) {
  const std::vector<std::uint8_t> row = HexVector("01 07 00 00 00 00 00 00 00 09 01 00 00");
  const Result<UsageMapView> view = UsageMapView::Open(kVersion, row, 1);
  ASSERT_TRUE(view.ok());
  EXPECT_EQ(view.value().kind(), MapKind::Reference);
  ASSERT_EQ(view.value().reference_count(), 3U);
  EXPECT_EQ(view.value().reference(0), 7U);
  EXPECT_EQ(view.value().reference(1), 0U);
  EXPECT_EQ(view.value().reference(2), 265U);
}

TEST(UsageMap, RefusesWhatIsNone) {
  for (const char* row : {"", "00", "00 00 00 00", "02 00 00 00 00 00", "FF 00 00 00 00 00"}) {
    EXPECT_EQ(UsageMapView::Open(kVersion, HexVector(row), 1).number(), kCannotOpenDatabase) << row;
  }
}

TEST(UsageMap, SetsAndClearsWithinItsWindow) {
  std::vector<std::uint8_t> row = MapOf({0, 8, 511});
  EXPECT_EQ(row.size(), 69U);
  EXPECT_EQ(PagesOf(row), (std::vector<PageNumber>{0, 8, 511}));
  EXPECT_TRUE(SetInlineBit(row, 8, false));
  EXPECT_EQ(PagesOf(row), (std::vector<PageNumber>{0, 511}));
  EXPECT_FALSE(SetInlineBit(row, 512, true));
  EXPECT_EQ(PagesOf(row), (std::vector<PageNumber>{0, 511}));
}

struct MoveCase {
  const char* what;
  std::vector<PageNumber> pages;
  PageNumber page;
  bool moved;
  PageNumber first;
};

const MoveCase kMoves[] = {
    {"an empty map goes anywhere", {}, 10003, true, 10000},
    {"forward with what it holds", {100}, 600, true, 96},
    {"as far as the window reaches", {104}, 104 + 511, true, 104},
    {"not further", {104}, 104 + 512, false, 0},
    {"not when pages lie on both sides", {5, 500}, 600, false, 0},
};

TEST(MoveWindow, KeepsEveryPage) {
  for (const MoveCase& row : kMoves) {
    SCOPED_TRACE(row.what);
    std::vector<std::uint8_t> map = NewUsageMapRow(kVersion);
    for (const PageNumber page : row.pages) ASSERT_TRUE(SetInlineBit(map, page, true));
    const std::vector<std::uint8_t> before = map;
    ASSERT_EQ(MoveWindow(map, row.page), row.moved);
    if (!row.moved) {
      EXPECT_EQ(map, before);
      continue;
    }
    EXPECT_EQ(PagesOf(map), row.pages);
    EXPECT_EQ(UsageMapView::Open(kVersion, map, 1).value().bits().first(), row.first);
    EXPECT_TRUE(SetInlineBit(map, row.page, true));
  }
}

TEST(MoveWindow, GoesBackAsWell) {
  std::vector<std::uint8_t> map = NewUsageMapRow(kVersion);
  ASSERT_TRUE(MoveWindow(map, 1000));
  ASSERT_TRUE(SetInlineBit(map, 1000, true));
  ASSERT_TRUE(MoveWindow(map, 700));
  EXPECT_EQ(PagesOf(map), std::vector<PageNumber>{1000});
  EXPECT_EQ(UsageMapView::Open(kVersion, map, 1).value().bits().first(), 696U);
}

TEST(ConvertToReference, HandsThePagesOver) {
  std::vector<std::uint8_t> map = MapOf({3, 77, 500});
  EXPECT_EQ(ConvertToReference(map), (std::vector<PageNumber>{3, 77, 500}));
  const UsageMapView view = UsageMapView::Open(kVersion, map, 1).value();
  EXPECT_EQ(view.kind(), MapKind::Reference);
  EXPECT_EQ(view.reference_count(), 17U);
  for (std::size_t i = 0; i < view.reference_count(); ++i) EXPECT_EQ(view.reference(i), 0U);
  SetReference(map, 16, 99);
  EXPECT_EQ(UsageMapView::Open(kVersion, map, 1).value().reference(16), 99U);
}

TEST(BitmapPage, CoversItsPartOfTheFile) {
  EXPECT_EQ(PagesPerBitmap(JetVersion::Jet4), 32736U);
  EXPECT_EQ(PagesPerBitmap(JetVersion::Jet3), 16352U);
  std::vector<std::uint8_t> page(4096, 0xCC);
  InitBitmapPage(false, page);
  EXPECT_EQ(ToHex(AsText(ByteView(page).first(6))), "05 01 00 00 00 00");
  SetBitmapBit(kVersion, page, 2 * 32736, true);
  SetBitmapBit(kVersion, page, 2 * 32736 + 32735, true);
  SetBitmapBit(kVersion, page, 2 * 32736 + 9, true);
  SetBitmapBit(kVersion, page, 2 * 32736 + 9, false);
  const Result<PageBits> bits = OpenBitmapPage(kVersion, page, 2, 50);
  ASSERT_TRUE(bits.ok());
  EXPECT_EQ(PagesOf(bits.value()), (std::vector<PageNumber>{65472, 98207}));
}

TEST(BitmapPage, MayBeginWithAllSet) {
  std::vector<std::uint8_t> page(4096);
  InitBitmapPage(true, page);
  EXPECT_EQ(PagesOf(OpenBitmapPage(kVersion, page, 0, 1).value()).size(), 32736U);
}

TEST(BitmapPage, IsRefusedWhenItIsAnother) {
  std::vector<std::uint8_t> page(4096);
  EXPECT_EQ(OpenBitmapPage(kVersion, page, 0, 1).number(), kCannotOpenDatabase);
  InitBitmapPage(false, page);
  page.pop_back();
  EXPECT_EQ(OpenBitmapPage(kVersion, page, 0, 1).number(), kCannotOpenDatabase);
}

}  // namespace
}  // namespace zent::jet
