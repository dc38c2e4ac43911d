#include <windows.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "contracts/UpdateWindowContract.h"
#include "platform/win32/AnsiText.h"
#include "ui/win32/Win32UpdateWindow.h"
#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;

BOOL CALLBACK CloseBox(HWND window, LPARAM process) {
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  const bool is_box = owner == static_cast<DWORD>(process) && ClassOf(window) == "#32770" &&
                      IsWindowVisible(window) != FALSE;
  if (is_box) CloseFrame(window);
  return TRUE;
}

/// Nobody is there to answer: every box is closed by its frame.
class UnattendedWindow {
 public:
  ~UnattendedWindow() {
    ended_ = true;
    closer_.join();
  }
  UpdateWindow& window() { return window_; }
  std::string shown() { return TextOfAnsi(TextOf(Control(MainWindow::Log))); }

 private:
  Win32UpdateWindow window_;
  std::atomic<bool> ended_ = false;
  std::thread closer_{[this] {
    while (!ended_) {
      EnumWindows(&CloseBox, static_cast<LPARAM>(GetCurrentProcessId()));
      std::this_thread::sleep_for(milliseconds(20));
    }
  }};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Win32, UpdateWindowContract, UnattendedWindow);

using Win32UpdateWindowTest = Win32WindowTest;

TEST_F(Win32UpdateWindowTest, IsOnTheScreenWhenTheRunBegins) {
  EXPECT_EQ(FindMain(), nullptr);
  RunAndClose([&] { EXPECT_NE(FindMain(), nullptr); });
  EXPECT_EQ(FindMain(), nullptr);
}

TEST_F(Win32UpdateWindowTest, BeginsWithCloseAloneEnabled) {
  RunAndClose([&] {
    EXPECT_TRUE(IsWindowEnabled(Control(MainWindow::Close)));
    EXPECT_FALSE(IsWindowEnabled(Control(MainWindow::Continue)));
    EXPECT_FALSE(IsWindowEnabled(Control(MainWindow::Install)));
    EXPECT_EQ(TextOf(Control(MainWindow::Log)), "");
    EXPECT_EQ(TextOf(Control(MainWindow::Step)), "Starting...");
  });
}

TEST_F(Win32UpdateWindowTest, ShowsItsTitleInTheCodePageOfTheMachine) {
  RunAndClose([&] {
    window.SetTitle("Korvo \u00e4 Update \u65e5");
    EXPECT_EQ(TextOf(FindMain()), "Korvo \xE4 Update ?");
  });
}

TEST_F(Win32UpdateWindowTest, ShowsAMessageBeforeItGoesOn) {
  RunAndClose([&] {
    window.AppendMessage("  Copying Korvo.exe\r\n", 0);
    EXPECT_EQ(TextOf(Control(MainWindow::Log)), "  Copying Korvo.exe\r\n");
    EXPECT_FALSE(GetUpdateRect(Control(MainWindow::Log), nullptr, FALSE)) << "it is painted";
  });
}

LRESULT LinesShown() { return SendMessageA(Control(MainWindow::Log), EM_GETLINECOUNT, 0, 0) - 1; }

TEST_F(Win32UpdateWindowTest, ShowsTheRestOfABurstAtTheNextChance) {
  RunAndClose([&] {
    for (int i = 0; i < 1000; ++i) window.AppendMessage("  x\r\n", 0);
    window.ProcessEvents(milliseconds(0));
    EXPECT_EQ(LinesShown(), 1000);

    for (int i = 0; i < 1000; ++i) window.AppendMessage("  y\r\n", 0);
    auto person = Person([] {
      const HWND box = WaitForBox();
      const LRESULT lines = LinesShown();
      CloseFrame(box);
      return lines;
    });
    window.Ask({.title = "Title", .text = "Text"});
    EXPECT_EQ(person.get(), 2000) << "behind a question";
    for (int i = 0; i < 1000; ++i) window.AppendMessage("  z\r\n", 0);
  });
  EXPECT_EQ(LinesShown(), 3000) << "after the run";
}

TEST_F(Win32UpdateWindowTest, HoldsTheEndOfManyMessages) {
  constexpr int kMessages = 200000;
  constexpr std::size_t kLimit = 30000;
  RunAndClose([&] {
    std::string last;
    std::size_t held = 0;
    for (int i = 0; i < kMessages; ++i) {
      const std::string text = "  Copying file number " + std::to_string(i) + "\r\n";
      held += text.size();
      const std::size_t cut = held > kLimit ? held - kLimit : 0;
      held -= cut;
      window.AppendMessage(text, cut);
      if (i >= kMessages - 2000) last += text;
    }
    window.ProcessEvents(milliseconds(0));
    const std::string shown = TextOf(Control(MainWindow::Log));
    EXPECT_EQ(shown.size(), kLimit);
    EXPECT_EQ(shown, last.substr(last.size() - kLimit));
    const LRESULT first = SendMessageA(Control(MainWindow::Log), EM_GETFIRSTVISIBLELINE, 0, 0);
    EXPECT_GT(first, LinesShown() / 2) << "the end is in view";
  });
}

struct ProgressCase {
  const char* what;
  std::size_t step;
  std::size_t steps;
  const char* text;
  LRESULT position;
};
constexpr ProgressCase kProgressCases[] = {
    {"a step of many", 12, 48, "Step 12 of 48", 12},
    {"the last one", 48, 48, "Step 48 of 48", 48},
    {"never beyond the end", 5, 3, "Step 5 of 3", 3},
    {"more than the bar can count", 3000000000, 4000000000, "Step 3000000000 of 4000000000",
     0x7FFFFFFF},
};

constexpr UINT kGetPosition = WM_USER + 8;  ///< of the system's progress bar

TEST_F(Win32UpdateWindowTest, ShowsTheProgressInWords) {
  RunAndClose([&] {
    window.ShowProgress(0, 0);
    EXPECT_EQ(TextOf(Control(MainWindow::Step)), "Working...");
    for (const ProgressCase& row : kProgressCases) {
      SCOPED_TRACE(row.what);
      window.ShowProgress(row.step, row.steps);
      EXPECT_EQ(TextOf(Control(MainWindow::Step)), row.text);
      EXPECT_EQ(SendMessageA(Control(MainWindow::Bar), kGetPosition, 0, 0), row.position);
    }
    EXPECT_EQ(TextOf(Control(MainWindow::Log)), "");
  });
}

TEST_F(Win32UpdateWindowTest, NoLongerSeemsToWorkAfterTheRun) {
  constexpr LONG kMarquee = 0x08;
  const auto moves = [] {
    return (GetWindowLongA(Control(MainWindow::Bar), GWL_STYLE) & kMarquee) != 0;
  };
  RunAndClose([&] {
    window.ShowProgress(0, 0);
    EXPECT_TRUE(moves());
  });
  EXPECT_EQ(TextOf(Control(MainWindow::Step)), "Ended");
  EXPECT_FALSE(moves());
}

TEST_F(Win32UpdateWindowTest, KeepsTheStepAtWhichTheRunEnded) {
  RunAndClose([&] { window.ShowProgress(3, 9); });
  EXPECT_EQ(TextOf(Control(MainWindow::Step)), "Step 3 of 9");
}

TEST_F(Win32UpdateWindowTest, RaisesTheClickThatAWaitWaitsFor) {
  const auto raised = RunAndClose([&] {
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    WhilePerson([] {
      Click(Control(MainWindow::Install));
      Click(Control(MainWindow::Continue));
      return SendMessageA(FindMain(), WM_NULL, 0, 0);
    });
    window.ProcessEvents(milliseconds(0));
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdInstall360_Click", "cmdContinue_Click"));
}

TEST_F(Win32UpdateWindowTest, RaisesNothingForADisabledButton) {
  const auto raised = RunAndClose([&] {
    Click(Control(MainWindow::Install));
    Click(Control(MainWindow::Continue));
    window.ProcessEvents(milliseconds(0));
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load"));
}

TEST_F(Win32UpdateWindowTest, ServesTheUserWhileMessagesPour) {
  const auto raised = RunAndClose([&] {
    window.EnableButton(WindowButton::Continue, true);
    Click(Control(MainWindow::Continue));
    window.AppendMessage("  x\r\n", 0);
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdContinue_Click"));
}

/// Events that break the rule to keep their errors to themselves.
class ThrowingEvents : public RecordingEvents {
 public:
  using RecordingEvents::RecordingEvents;
  void Form_Load() override {
    RecordingEvents::Form_Load();
    throw std::runtime_error("lost the thread");
  }
  void cmdClose_Click() override { throw 42; }
};

TEST_F(Win32UpdateWindowTest, LetsNoExceptionThroughTheSystem) {
  ThrowingEvents events;
  auto person = Person([] {
    const auto log = [] { return TextOf(Control(MainWindow::Log)); };
    WaitFor([&] { return log().find("lost the thread") != std::string::npos; });
    Click(Control(MainWindow::Close));
    WaitFor([&] { return log().find("unknown") != std::string::npos; });
    CloseFrame(FindMain());
  });
  window.Run(events);
  const std::string shown = TextOf(Control(MainWindow::Log));
  EXPECT_THAT(shown, HasSubstr("lost the thread"));
  EXPECT_THAT(shown, EndsWith("Unexpected error in the update window: unknown\r\n"));
  EXPECT_THAT(events.raised, ElementsAre("Form_Load"));
}

TEST(Win32HasDesktop, IsTrueWhereTheTestsRun) {
  EXPECT_TRUE(HasDesktop());
  EXPECT_EQ(FindMain(), nullptr) << "nothing is shown for that";
}

}  // namespace
}  // namespace zent::testing
