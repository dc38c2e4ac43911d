#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using ::testing::ElementsAre;

using Win32KeyboardTest = Win32WindowTest;

/// The identifier of the control with the focus, once it is `expected` or ten seconds are over.
int FocusedWhen(int expected) {
  const HWND main = FindMain();
  WaitFor([&] { return GetDlgCtrlID(FocusOf(main)) == expected; });
  return GetDlgCtrlID(FocusOf(main));
}

/// What the controls are, as a screen reader is told: a label stands right before what it names.
struct ControlCase {
  int id;
  const char* window_class;
  const char* text;
  bool enabled;
};
constexpr ControlCase kControls[] = {
    {MainWindow::Caption, "Static", "&Messages:", true},
    {MainWindow::Log, "Edit", "  Copying Korvo.exe\r\n", true},
    {MainWindow::Step, "Static", "Step 3 of 9", true},
    {MainWindow::Bar, "msctls_progress32", "Progress of the update", true},
    {MainWindow::Install, "Button", "&Install 3.6.0", false},
    {MainWindow::Continue, "Button", "Con&tinue", false},
    {MainWindow::Close, "Button", "&Close", true},
};

TEST_F(Win32KeyboardTest, EveryControlSaysWhatItIs) {
  RunAndClose([&] {
    window.ShowProgress(3, 9);
    window.AppendMessage("  Copying Korvo.exe\r\n", 0);
    HWND child = GetWindow(FindMain(), GW_CHILD);
    for (const ControlCase& row : kControls) {
      SCOPED_TRACE(row.text);
      EXPECT_EQ(GetDlgCtrlID(child), row.id);
      EXPECT_EQ(ClassOf(child), row.window_class);
      EXPECT_EQ(TextOf(child), row.text);
      EXPECT_EQ(IsWindowEnabled(child) != FALSE, row.enabled);
      EXPECT_TRUE(IsWindowVisible(child));
      child = GetWindow(child, GW_HWNDNEXT);
    }
    EXPECT_EQ(child, nullptr);
    EXPECT_TRUE(GetWindowLongA(Control(MainWindow::Log), GWL_STYLE) & ES_READONLY);
  });
}

TEST_F(Win32KeyboardTest, TabWalksThroughAllThatIsEnabled) {
  RunAndClose([&] {
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    const auto walk = WhilePerson([] {
      std::vector<int> seen = {FocusedWhen(MainWindow::Log)};
      for (const int next :
           {MainWindow::Install, MainWindow::Continue, MainWindow::Close, MainWindow::Log}) {
        PressKey(FocusOf(FindMain()), VK_TAB);
        seen.push_back(FocusedWhen(next));
      }
      return seen;
    });
    EXPECT_THAT(walk, ElementsAre(MainWindow::Log, MainWindow::Install, MainWindow::Continue,
                                  MainWindow::Close, MainWindow::Log));

    window.EnableButton(WindowButton::Install360, false);
    window.EnableButton(WindowButton::Continue, false);
    const auto shorter = WhilePerson([] {
      PressKey(FocusOf(FindMain()), VK_TAB);
      std::vector<int> seen = {FocusedWhen(MainWindow::Close)};
      PressMnemonic(FocusOf(FindMain()), 'm');
      seen.push_back(FocusedWhen(MainWindow::Log));
      return seen;
    });
    EXPECT_THAT(shorter, ElementsAre(MainWindow::Close, MainWindow::Log));
  });
}

TEST_F(Win32KeyboardTest, TheFocusLeavesAButtonThatIsTakenAway) {
  RunAndClose([&] {
    window.EnableButton(WindowButton::Continue, true);
    SetFocus(Control(MainWindow::Continue));
    window.EnableButton(WindowButton::Continue, false);
    EXPECT_EQ(GetFocus(), Control(MainWindow::Log));
  });
}

/// The button that looks as if Return pressed it; 0 for none.
int MarkedButton() {
  int marked = 0;
  for (const int id : {MainWindow::Install, MainWindow::Continue, MainWindow::Close}) {
    const LONG style = GetWindowLongA(Control(id), GWL_STYLE);
    if ((style & BS_TYPEMASK) == BS_DEFPUSHBUTTON) marked += id;
  }
  return marked;
}

TEST_F(Win32KeyboardTest, ReturnPressesTheButtonThatLooksSo) {
  const auto raised = Run([&] {
    EXPECT_EQ(MarkedButton(), 0) << "no button answers to Return now";
    const auto press = [this](int id, WPARAM key) {
      SetFocus(Control(id));
      PressKey(Control(id), key);
      window.ProcessEvents(std::chrono::milliseconds(0));
    };
    press(MainWindow::Log, VK_RETURN);
    press(MainWindow::Log, VK_ESCAPE);
    EXPECT_TRUE(IsWindowEnabled(FindMain())) << "nothing is asked";

    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    EXPECT_EQ(MarkedButton(), MainWindow::Continue);
    press(MainWindow::Log, VK_RETURN);
    press(MainWindow::Install, VK_RETURN);
    EXPECT_EQ(MarkedButton(), MainWindow::Install);
    window.EnableButton(WindowButton::Continue, false);
    window.EnableButton(WindowButton::Install360, false);
    SetFocus(Control(MainWindow::Log));
    PressKey(Control(MainWindow::Log), VK_RETURN);  // taken after the run
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdContinue_Click", "cmdInstall360_Click",
                                  "cmdClose_Click"));
}

TEST_F(Win32KeyboardTest, MnemonicsPressTheButtons) {
  const auto raised = RunAndClose([&] {
    window.EnableButton(WindowButton::Install360, true);
    window.EnableButton(WindowButton::Continue, true);
    for (const char letter : {'i', 't'}) {
      PressMnemonic(Control(MainWindow::Log), letter);
      window.ProcessEvents(std::chrono::milliseconds(0));
    }
    window.EnableButton(WindowButton::Continue, false);
    PressMnemonic(Control(MainWindow::Log), 't');
    PostMessageA(Control(MainWindow::Log), WM_CHAR, 'c', 1);  // a letter alone is no mnemonic
    window.ProcessEvents(std::chrono::milliseconds(0));
  });
  EXPECT_THAT(raised, ElementsAre("Form_Load", "cmdInstall360_Click", "cmdContinue_Click"));
}

}  // namespace
}  // namespace zent::testing
