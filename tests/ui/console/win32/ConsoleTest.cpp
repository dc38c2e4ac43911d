#include <gtest/gtest.h>
#include <windows.h>

#include <string_view>

#include "platform/win32/UniqueHandle.h"
#include "ui/console/win32/HandleInput.h"
#include "ui/console/win32/HandleOutput.h"

namespace zent {
namespace {

using State = ConsoleInput::State;
using std::chrono::milliseconds;

/// A console of the test's own, with keys pressed by the test.
class ConsoleTest : public ::testing::Test {
 protected:
  void SetUp() override {
    FreeConsole();
    ASSERT_NE(AllocConsole(), FALSE);
    constexpr DWORD kBoth = GENERIC_READ | GENERIC_WRITE;
    constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE;
    input_ =
        UniqueHandle(CreateFileA("CONIN$", kBoth, kShared, nullptr, OPEN_EXISTING, 0, nullptr));
    output_ =
        UniqueHandle(CreateFileA("CONOUT$", kBoth, kShared, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(input_.ok() && output_.ok());
  }
  void TearDown() override {
    input_.Close();
    output_.Close();
    FreeConsole();
  }

  void Press(std::wstring_view keys) const {
    for (const wchar_t key : keys) {
      INPUT_RECORD event = {};
      event.EventType = KEY_EVENT;
      event.Event.KeyEvent.wRepeatCount = 1;
      event.Event.KeyEvent.uChar.UnicodeChar = key;
      event.Event.KeyEvent.wVirtualKeyCode = key == L'\r' ? VK_RETURN : 0;
      event.Event.KeyEvent.bKeyDown = TRUE;
      Put(event);
      event.Event.KeyEvent.bKeyDown = FALSE;
      Put(event);
    }
  }
  void Put(const INPUT_RECORD& event) const {
    DWORD count = 0;
    EXPECT_NE(WriteConsoleInputW(input_.get(), &event, 1, &count), FALSE);
  }
  DWORD Mode() const {
    DWORD mode = 0;
    EXPECT_NE(GetConsoleMode(input_.get(), &mode), FALSE);
    return mode;
  }
  /// The first characters of the console's first line.
  std::wstring Screen(DWORD length) const {
    std::wstring text(length, L'\0');
    DWORD count = 0;
    EXPECT_NE(ReadConsoleOutputCharacterW(output_.get(), text.data(), length, {0, 0}, &count),
              FALSE);
    return text;
  }

  UniqueHandle input_;
  UniqueHandle output_;
};

TEST_F(ConsoleTest, ReadsLinesAsUnicode) {
  HandleInput input(input_.get());
  ASSERT_TRUE(input.IsConsole());
  Press(L"M\u00FCller\rno\r");
  for (const char* line : {"M\xC3\xBCller", "no"}) {
    const ConsoleInput::Reading reading = input.Next(milliseconds(1000));
    EXPECT_EQ(reading.state, State::Line);
    EXPECT_EQ(reading.line, line);
  }
}

TEST_F(ConsoleTest, AnEventThatIsNoKeyIsNoLine) {
  HandleInput input(input_.get());
  INPUT_RECORD focus = {};
  focus.EventType = FOCUS_EVENT;
  Put(focus);
  EXPECT_EQ(input.Next(milliseconds(30)).state, State::Nothing);
  Press(L"r\r");
  EXPECT_EQ(input.Next(milliseconds(1000)).line, "r");
}

TEST_F(ConsoleTest, TheKeyForTheEndOfAFileEnds) {
  HandleInput input(input_.get());
  Press(L"\x1A\r");
  EXPECT_EQ(input.Next(std::nullopt).state, State::End);
}

TEST_F(ConsoleTest, IsReadToItsEndAsUnicode) {
  Press(L"M\u00FCller \u041A\r\rno\r\x1A\r");
  EXPECT_EQ(ReadToEnd(input_.get(), 100).value_or("failed"), "M\xC3\xBCller \xD0\x9A\n\nno\n");
}

TEST_F(ConsoleTest, HidesWhatIsTyped) {
  HandleInput input(input_.get());
  const DWORD before = Mode();
  Press(L"typed before\r");
  input.HideTyping();
  EXPECT_EQ(Mode() & ENABLE_ECHO_INPUT, 0U);
  EXPECT_EQ(input.Next(milliseconds(0)).state, State::Nothing) << "what was typed before is gone";
  Press(L"secret\r");
  EXPECT_EQ(input.Next(std::nullopt).line, "secret");
  input.ShowTyping();
  EXPECT_EQ(Mode(), before);
  EXPECT_EQ(Screen(6).find(L"secret"), std::wstring::npos);
}

BOOL WINAPI StayAlive(DWORD /*event*/) { return TRUE; }

TEST_F(ConsoleTest, ShowsTypingAgainWhenTheProgramIsInterrupted) {
  SetConsoleCtrlHandler(nullptr, FALSE);  // whoever started us may have it ignored
  SetConsoleCtrlHandler(StayAlive, TRUE);
  HandleInput input(input_.get());
  const DWORD before = Mode();
  input.HideTyping();
  ASSERT_NE(Mode(), before);
  EXPECT_NE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0), FALSE);
  for (int i = 0; i < 500 && Mode() != before; ++i) Sleep(10);
  EXPECT_EQ(Mode(), before);
  input.ShowTyping();
  SetConsoleCtrlHandler(StayAlive, FALSE);
}

TEST_F(ConsoleTest, ShowsEveryCharacter) {
  HandleOutput output(output_.get());
  output << "M\xC3\xBCller \xD0\x9A\n" << std::flush;
  EXPECT_EQ(Screen(8), L"M\u00FCller \u041A");
}

}  // namespace
}  // namespace zent
