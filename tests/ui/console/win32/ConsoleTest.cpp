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

TEST_F(ConsoleTest, HidesWhatIsTyped) {
  HandleInput input(input_.get());
  DWORD before = 0;
  GetConsoleMode(input_.get(), &before);
  Press(L"typed before\r");
  input.HideTyping();
  DWORD hidden = 0;
  GetConsoleMode(input_.get(), &hidden);
  EXPECT_EQ(hidden & ENABLE_ECHO_INPUT, 0U);
  EXPECT_EQ(input.Next(milliseconds(0)).state, State::Nothing) << "what was typed before is gone";
  Press(L"secret\r");
  EXPECT_EQ(input.Next(std::nullopt).line, "secret");
  input.ShowTyping();
  DWORD after = 0;
  GetConsoleMode(input_.get(), &after);
  EXPECT_EQ(after, before);
  EXPECT_EQ(Screen(6).find(L"secret"), std::wstring::npos);
}

TEST_F(ConsoleTest, ShowsEveryCharacter) {
  HandleOutput output(output_.get());
  output << "M\xC3\xBCller \xD0\x9A\n" << std::flush;
  EXPECT_EQ(Screen(8), L"M\u00FCller \u041A");
}

}  // namespace
}  // namespace zent
