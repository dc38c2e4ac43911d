#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;

using Win32ClosingTest = Win32WindowTest;

TEST_F(Win32ClosingTest, RaisesCloseAfterTheRun) {
  const auto raised = Run([] { Click(Control(MainWindow::Close)); });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdClose_Click"));
  EXPECT_EQ(FindMain(), nullptr);
}

TEST_F(Win32ClosingTest, ClosesByItsFrameAfterTheRun) {
  const auto raised = Run([] { CloseFrame(FindMain()); });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
  EXPECT_FALSE(window.CloseRequested()) << "only a run at work is asked to end";
}

TEST_F(Win32ClosingTest, ClosesWithTheRunWhenTheRunSaysSo) {
  const auto raised = Run([&] {
    window.Close();
    window.ProcessEvents(milliseconds(30));
    EXPECT_NE(FindMain(), nullptr) << "until Form_Load has returned";
    window.AppendMessage("  after Close\r\n", 0);
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
  EXPECT_EQ(TextOf(Control(MainWindow::Log)), "  after Close\r\n");
}

TEST_F(Win32ClosingTest, StaysClosed) {
  RunAndClose([] {});
  window.Close();
  const auto raised = Run([] {});
  EXPECT_TRUE(raised.empty()) << "a window is run once";
}

/// How a person tries to close the window while the run is at work.
struct CloseAttempt {
  const char* what;
  void (*attempt)();
};
constexpr CloseAttempt kAttempts[] = {
    {"the button", [] { Click(Control(MainWindow::Close)); }},
    {"its mnemonic", [] { PressMnemonic(Control(MainWindow::Log), 'c'); }},
    {"the frame", [] { CloseFrame(FindMain()); }},
};

TEST_F(Win32ClosingTest, AsksFirstAndGoesOnWhenRefused) {
  RunAndClose([&] {
    window.SetTitle("Korvo Update");
    for (const CloseAttempt& row : kAttempts) {
      SCOPED_TRACE(row.what);
      const auto [title, text] = WhilePerson([&row] {
        row.attempt();
        const HWND box = WaitForBox();
        std::pair seen(TextOf(box), TextOf(BoxItem(box, kBoxText)));
        WaitFor([box] { return FocusOf(box) == BoxItem(box, IDNO); });
        PressKey(BoxItem(box, IDNO), VK_RETURN);
        WaitFor([] { return IsWindowEnabled(FindMain()) != FALSE; });
        return seen;
      });
      EXPECT_EQ(title, "Korvo Update");
      EXPECT_THAT(text, ::testing::StartsWith("The update is still running."));
      EXPECT_FALSE(window.CloseRequested());
      EXPECT_NE(FindMain(), nullptr);
    }
  });
}

TEST_F(Win32ClosingTest, IsRequestedWhenConfirmedAndKeepsTheLogInView) {
  const auto raised = Run([&] {
    window.ShowProgress(3, 9);
    WhilePerson([] {
      Click(Control(MainWindow::Close));
      Click(BoxItem(WaitForBox(), IDYES));
      return WaitFor([] { return IsWindowEnabled(Control(MainWindow::Close)) == FALSE; });
    });
    EXPECT_TRUE(window.CloseRequested());

    window.ShowProgress(4, 9);
    EXPECT_EQ(TextOf(Control(MainWindow::Step)), "Closing after this step...");
    window.EnableButton(WindowButton::Close, true);
    EXPECT_FALSE(IsWindowEnabled(Control(MainWindow::Close)));
    window.AppendMessage("  last line\r\n", 0);
    CloseFrame(FindMain());
    window.ProcessEvents(milliseconds(30));
    EXPECT_TRUE(IsWindowEnabled(FindMain())) << "it is not asked twice";
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
  EXPECT_EQ(FindMain(), nullptr);
  EXPECT_EQ(TextOf(Control(MainWindow::Log)), "  last line\r\n");
}

TEST_F(Win32ClosingTest, CannotHappenBehindAQuestion) {
  const auto raised = RunAndClose([&] {
    window.EnableButton(WindowButton::Continue, true);
    auto person = Person([] {
      const HWND box = WaitForBox();
      const HWND main = FindMain();
      CloseFrame(main);
      Click(Control(MainWindow::Close));
      Click(Control(MainWindow::Continue));
      SendMessageA(main, WM_NULL, 0, 0);
      Click(BoxItem(box, IDOK));
    });
    window.Ask({.title = "Title", .text = "Text"});
    EXPECT_FALSE(window.CloseRequested());
    window.EnableButton(WindowButton::Continue, false);
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
}

TEST_F(Win32ClosingTest, HoldsUpTheEndOfTheSessionOnlyWhileTheRunIsAtWork) {
  constexpr LPARAM kCritical = 0x40000000;
  Run([&] {
    EXPECT_FALSE(SendMessageA(FindMain(), WM_QUERYENDSESSION, 0, 0));
    EXPECT_TRUE(SendMessageA(FindMain(), WM_QUERYENDSESSION, 0, kCritical))
        << "one that ends in any case";
    EXPECT_FALSE(window.CloseRequested()) << "the user may think better of it";
    window.Close();
  });
  const HWND ended = GetParent(Control(MainWindow::Log));
  EXPECT_TRUE(SendMessageA(ended, WM_QUERYENDSESSION, 0, 0));
}

TEST_F(Win32ClosingTest, EndsAfterTheStepWhenTheThreadIsToEnd) {
  const auto raised = Run([&] {
    PostQuitMessage(0);
    window.ProcessEvents(milliseconds(0));
    EXPECT_TRUE(window.CloseRequested());
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
}

}  // namespace
}  // namespace zent::testing
