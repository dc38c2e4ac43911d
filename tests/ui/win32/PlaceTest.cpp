#include "ui/win32/Dpi.h"
#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using Win32PlaceTest = Win32WindowTest;

SIZE SizeOf(HWND window) {
  RECT place{};
  GetWindowRect(window, &place);
  return {place.right - place.left, place.bottom - place.top};
}

/// The height of a letter in the font of a control.
LONG LetterHeight(int id) {
  LOGFONTA font{};
  GetObjectA(reinterpret_cast<HFONT>(SendMessageA(Control(id), WM_GETFONT, 0, 0)), sizeof font,
             &font);
  return std::abs(font.lfHeight);
}

TEST_F(Win32PlaceTest, IsOnTheScreenWhole) {
  RunAndClose([&] {
    RECT room{};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &room, 0);
    RECT place{};
    GetWindowRect(FindMain(), &place);
    RECT seen{};
    EXPECT_TRUE(IntersectRect(&seen, &room, &place));
    EXPECT_TRUE(EqualRect(&seen, &place));
    EXPECT_NE(GetClassLongPtrA(FindMain(), GCLP_HICON), 0U);
  });
}

TEST_F(Win32PlaceTest, CannotBeMadeUnreadablySmall) {
  RunAndClose([&] {
    SetWindowPos(FindMain(), nullptr, 0, 0, 10, 10, SWP_NOZORDER);
    window.ProcessEvents(std::chrono::milliseconds(0));
    RECT inside{};
    GetClientRect(FindMain(), &inside);
    for (int id = MainWindow::Caption; id <= MainWindow::Close; ++id) {
      RECT place{};
      GetWindowRect(Control(id), &place);
      MapWindowPoints(nullptr, FindMain(), reinterpret_cast<POINT*>(&place), 2);
      RECT seen{};
      IntersectRect(&seen, &inside, &place);
      EXPECT_TRUE(EqualRect(&seen, &place)) << id;
      EXPECT_GT(place.right - place.left, 30) << id;
    }
    EXPECT_GT(SizeOf(Control(MainWindow::Log)).cy, 7 * LetterHeight(MainWindow::Log));
  });
}

TEST_F(Win32PlaceTest, GivesMoreRoomToTheMessages) {
  RunAndClose([&] {
    const SIZE before = SizeOf(Control(MainWindow::Log));
    const SIZE button = SizeOf(Control(MainWindow::Close));
    const SIZE all = SizeOf(FindMain());
    SetWindowPos(FindMain(), nullptr, 0, 0, all.cx + 40, all.cy + 30, SWP_NOZORDER);
    EXPECT_EQ(SizeOf(Control(MainWindow::Log)).cx, before.cx + 40);
    EXPECT_EQ(SizeOf(Control(MainWindow::Log)).cy, before.cy + 30);
    EXPECT_EQ(SizeOf(Control(MainWindow::Close)).cx, button.cx);
  });
}

TEST_F(Win32PlaceTest, GrowsWithTheDensityOfItsScreen) {
  RunAndClose([&] {
    const int dpi = DpiOf(FindMain());
    const SIZE button = SizeOf(Control(MainWindow::Close));
    const LONG text = LetterHeight(MainWindow::Close);
    const LONG log = LetterHeight(MainWindow::Log);
    const RECT place{5, 6, 1205, 906};
    const auto twice = static_cast<WORD>(2 * dpi);
    SendMessageA(FindMain(), kDpiChanged, MAKEWPARAM(twice, twice),
                 reinterpret_cast<LPARAM>(&place));

    RECT taken{};
    GetWindowRect(FindMain(), &taken);
    EXPECT_TRUE(EqualRect(&taken, &place));
    EXPECT_EQ(LetterHeight(MainWindow::Close), 2 * text);
    EXPECT_EQ(LetterHeight(MainWindow::Log), 2 * log);
    EXPECT_NEAR(SizeOf(Control(MainWindow::Close)).cx, 2 * button.cx, button.cx / 4.0);
    EXPECT_GT(SizeOf(Control(MainWindow::Log)).cx, 1100);
  });
}

TEST_F(Win32PlaceTest, KeepsItsFontsWhenTheSystemSaysTheyChanged) {
  RunAndClose([&] {
    const LONG text = LetterHeight(MainWindow::Close);
    SendMessageA(FindMain(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    EXPECT_EQ(LetterHeight(MainWindow::Close), text) << "read anew, and as large";
    EXPECT_GT(text, 5);
  });
}

TEST_F(Win32PlaceTest, GivesALongCountOfStepsItsRoom) {
  RunAndClose([&] {
    window.ShowProgress(123456789, 1234567890);
    RECT step{};
    RECT bar{};
    GetWindowRect(Control(MainWindow::Step), &step);
    GetWindowRect(Control(MainWindow::Bar), &bar);
    EXPECT_GE(step.right - step.left, 30 * 5) << "thirty letters";
    EXPECT_LE(step.right, bar.left);
  });
}

TEST_F(Win32PlaceTest, TheLogIsInLettersOfEvenWidth) {
  RunAndClose([&] {
    const HDC paper = GetDC(Control(MainWindow::Log));
    SelectObject(paper,
                 reinterpret_cast<HFONT>(SendMessageA(Control(MainWindow::Log), WM_GETFONT, 0, 0)));
    SIZE narrow{};
    SIZE wide{};
    GetTextExtentPoint32A(paper, "iiii", 4, &narrow);
    GetTextExtentPoint32A(paper, "WWWW", 4, &wide);
    ReleaseDC(Control(MainWindow::Log), paper);
    EXPECT_EQ(narrow.cx, wide.cx);
  });
}

}  // namespace
}  // namespace zent::testing
