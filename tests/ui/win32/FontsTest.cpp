#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "ui/win32/Dpi.h"
#include "ui/win32/Fonts.h"
#include "ui/win32/WindowText.h"

namespace zent {
namespace {

LONG HeightOf(HFONT font) {
  LOGFONTA look{};
  GetObjectA(font, sizeof look, &look);
  return std::abs(look.lfHeight);
}

TEST(Win32Fonts, GrowWithTheDensity) {
  const Fonts once(SystemDpi());
  const Fonts twice(2 * SystemDpi());
  EXPECT_GT(HeightOf(once.text()), 5);
  EXPECT_EQ(HeightOf(twice.text()), 2 * HeightOf(once.text()));
  EXPECT_EQ(HeightOf(once.log()), HeightOf(once.text()));
  EXPECT_GT(UnitsOf(twice.text()).letter_width, UnitsOf(once.text()).letter_width);
}

TEST(Win32Fonts, TheLogHasLettersOfEvenWidth) {
  const Fonts fonts(SystemDpi());
  EXPECT_EQ(TextSize(fonts.log(), "iiii").cx, TextSize(fonts.log(), "WWWW").cx);
  EXPECT_EQ(TextSize(fonts.log(), "").cx, 0);
}

TEST(Win32Fonts, DialogUnitsAreAQuarterAndAnEighthOfALetter) {
  constexpr DialogUnits kUnits{.letter_width = 6, .letter_height = 16};
  EXPECT_EQ(kUnits.X(4), 6);
  EXPECT_EQ(kUnits.X(50), 75);
  EXPECT_EQ(kUnits.Y(8), 16);
  EXPECT_EQ(kUnits.Y(14), 28);
}

struct WrapCase {
  const char* what;
  std::string text;
  int width;  ///< in letters
  int lines;
};
const WrapCase kWrapCases[] = {
    {"one line", "one", 100, 1},
    {"two lines as written", "one\r\ntwo", 100, 2},
    {"an empty line between", "one\r\n\r\ntwo", 100, 3},
    {"wrapped where it is too long", "aaaa bbbb cccc", 6, 3},
};

TEST(WrappedTextSize, CountsTheLinesThatAreShown) {
  const Fonts fonts(SystemDpi());
  const int letter = static_cast<int>(TextSize(fonts.log(), "x").cx);
  const LONG line = TextSize(fonts.log(), "x").cy;
  for (const WrapCase& row : kWrapCases) {
    SCOPED_TRACE(row.what);
    const SIZE size = WrappedTextSize(fonts.log(), row.text, row.width * letter);
    EXPECT_EQ(size.cy, row.lines * line);
    EXPECT_LE(size.cx, row.width * letter);
  }
  EXPECT_EQ(WrappedTextSize(fonts.log(), "a&b", 1000).cx, 3 * letter) << "no mnemonic";
}

/// A window that is never shown.
class HiddenWindow {
 public:
  explicit HiddenWindow(const char* title)
      : handle_(CreateWindowExA(0, "Static", title, WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                                nullptr, GetModuleHandleA(nullptr), nullptr)) {}
  ~HiddenWindow() { DestroyWindow(handle_); }
  HiddenWindow(const HiddenWindow&) = delete;
  HiddenWindow& operator=(const HiddenWindow&) = delete;

  HWND handle() const { return handle_; }

 private:
  HWND handle_;
};

TEST(WindowSizeFor, LeavesTheInsideThatIsAskedFor) {
  const HiddenWindow window("");
  const SIZE size = WindowSizeFor(window.handle(), {300, 200}, DpiOf(window.handle()));
  SetWindowPos(window.handle(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
  RECT inside{};
  GetClientRect(window.handle(), &inside);
  EXPECT_EQ(inside.right, 300);
  EXPECT_EQ(inside.bottom, 200);
}

TEST(BoxTitle, IsTheOwnersWhereABoxHasNone) {
  const HiddenWindow owner("Korvo Update");
  EXPECT_EQ(BoxTitle(owner.handle(), "Enter Password"), "Enter Password");
  EXPECT_EQ(BoxTitle(owner.handle(), "Stra\u00dfe"),
            "Stra\xDF"
            "e");
  EXPECT_EQ(BoxTitle(owner.handle(), ""), "Korvo Update");
  EXPECT_EQ(BoxTitle(nullptr, ""), "ZentUpdate");
}

TEST(AnsiTextOf, IsTheWholeTextOfAnyWindow) {
  EXPECT_EQ(AnsiTextOf(HiddenWindow("").handle()), "");
  EXPECT_EQ(AnsiTextOf(HiddenWindow("a & b").handle()), "a & b");
  EXPECT_EQ(AnsiTextOf(nullptr), "");
  const std::string text(5000, 'x');
  EXPECT_EQ(AnsiTextOf(HiddenWindow(text.c_str()).handle()), text);
}

}  // namespace
}  // namespace zent
