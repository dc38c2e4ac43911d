#include <gtest/gtest.h>

#include <utility>

#include "ui/win32/MainLayout.h"

namespace zent {
namespace {

struct SizeCase {
  const char* what;
  LayoutSizes sizes;
};
constexpr SizeCase kSizeCases[] = {
    {"a small font", {{6, 13}, {7, 14}, 120, 70}},
    {"double density", {{12, 26}, {14, 28}, 240, 140}},
    {"a very large font", {{20, 45}, {22, 44}, 480, 260}},
    {"a long count of steps", {{6, 13}, {7, 14}, 700, 70}},
};

LONG Width(const RECT& place) { return place.right - place.left; }
LONG Height(const RECT& place) { return place.bottom - place.top; }

void ExpectReadable(const MainLayout& layout, SIZE client, const LayoutSizes& sizes) {
  const std::pair<const char*, RECT> places[] = {
      {"caption", layout.caption}, {"log", layout.log},         {"step", layout.step},
      {"bar", layout.bar},         {"install", layout.install}, {"continue", layout.go_on},
      {"close", layout.close}};
  for (const auto& [name, place] : places) {
    SCOPED_TRACE(name);
    EXPECT_GE(place.left, 0);
    EXPECT_GE(place.top, 0);
    EXPECT_LE(place.right, client.cx);
    EXPECT_LE(place.bottom, client.cy);
    EXPECT_GT(Width(place), 0);
    EXPECT_GE(Height(place), sizes.text.letter_height);
    for (const auto& [other_name, other] : places) {
      RECT shared{};
      if (other_name == name) continue;
      EXPECT_FALSE(IntersectRect(&shared, &place, &other)) << "overlaps " << other_name;
    }
  }
  EXPECT_GE(Width(layout.step), sizes.step_width);
  for (const RECT& button : {layout.install, layout.go_on, layout.close}) {
    EXPECT_GT(Width(button), sizes.button_width);
  }
}

TEST(LayOutMain, KeepsEverythingReadableAndApart) {
  for (const SizeCase& row : kSizeCases) {
    SCOPED_TRACE(row.what);
    const SIZE smallest = SmallestClient(row.sizes);
    const SIZE usual = UsualClient(row.sizes);
    EXPECT_GE(usual.cx, smallest.cx);
    EXPECT_GT(usual.cy, smallest.cy);
    for (const SIZE client : {smallest, usual, SIZE{usual.cx * 2, usual.cy * 2}}) {
      const MainLayout layout = LayOutMain(client, row.sizes);
      ExpectReadable(layout, client, row.sizes);
      EXPECT_GE(Width(layout.log), 48 * row.sizes.log.letter_width);
      EXPECT_GE(Height(layout.log), 7 * row.sizes.log.letter_height);
    }
  }
}

TEST(LayOutMain, GivesTheMessagesAllThatIsLeft) {
  const LayoutSizes& sizes = kSizeCases[0].sizes;
  const SIZE usual = UsualClient(sizes);
  const MainLayout small = LayOutMain(usual, sizes);
  const MainLayout large = LayOutMain({usual.cx + 300, usual.cy + 200}, sizes);
  EXPECT_EQ(Width(large.log), Width(small.log) + 300);
  EXPECT_EQ(Height(large.log), Height(small.log) + 200);
  EXPECT_EQ(Width(large.close), Width(small.close));
  EXPECT_EQ(Height(large.bar), Height(small.bar));
}

TEST(LayOutMain, GivesNoNegativeSizeInAWindowTooSmall) {
  const MainLayout layout = LayOutMain({1, 1}, kSizeCases[0].sizes);
  for (const RECT& place : {layout.caption, layout.log, layout.bar, layout.close}) {
    EXPECT_GE(Width(place), 0);
    EXPECT_GE(Height(place), 0);
  }
}

}  // namespace
}  // namespace zent
