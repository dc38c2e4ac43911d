#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/Text.h"
#include "platform/win32/AnsiText.h"
#include "ui/LogCases.h"
#include "ui/win32/LogBox.h"
#include "ui/win32/Outside.h"

namespace zent::testing {
namespace {

/// A box in a window of its own, of the size `inside`.
class BoxInWindow {
 public:
  explicit BoxInWindow(RECT inside = {0, 0, 300, 200}) { box.Place(inside); }

 private:
  struct WindowDeleter {
    void operator()(HWND window) const { DestroyWindow(window); }
  };
  std::unique_ptr<std::remove_pointer_t<HWND>, WindowDeleter> window_{
      CreateWindowExA(0, "Static", "", WS_POPUP | WS_VISIBLE, 0, 0, 700, 500, nullptr, nullptr,
                      GetModuleHandleA(nullptr), nullptr)};

 public:
  LogBox box{window_.get(), 1};

  std::string text() const { return TextOf(box.handle()); }
  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
    return SendMessageA(box.handle(), message, wparam, lparam);
  }
  SCROLLINFO Scroll() const {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(box.handle(), SB_VERT, &info);
    return info;
  }
  bool ShowsEnd() const {
    const SCROLLINFO info = Scroll();
    return info.nPos + static_cast<int>(info.nPage) > info.nMax;
  }
};

/// Text with a line feed at each line end, as the control holds it.
std::string InControl(const std::string& text) {
  std::string held;
  for (const char c : ShownAnsiOf(text)) {
    if (c == '\n') held += '\r';
    held += c;
  }
  return held;
}

TEST(Win32LogBox, ShowsWhatIsLeftAfterEachCut) {
  for (const LogCase& row : kLogCases) {
    SCOPED_TRACE(row.what);
    BoxInWindow one_by_one;
    BoxInWindow at_once;
    for (const Piece& piece : row.pieces) {
      one_by_one.box.Append(piece.text, piece.cut);
      one_by_one.box.Flush();
      at_once.box.Append(piece.text, piece.cut);
    }
    at_once.box.Flush();
    EXPECT_EQ(one_by_one.text(), InControl(row.shown));
    EXPECT_EQ(at_once.text(), InControl(row.shown)) << "when all came in one change";
    EXPECT_FALSE(at_once.box.HasPending());
  }
}

TEST(Win32LogBox, HoldsTheLastCharactersOfAnyLog) {
  constexpr char32_t kLetters[] = U"ab \u00e4\u65e5\U0001F600\U00010348\r\n\r\n";
  constexpr std::size_t kLimit = 100;
  std::mt19937 random(20240517);
  BoxInWindow shown;
  PlainLog log;
  for (int i = 0; i < 600; ++i) {
    std::u32string text;
    for (auto n = random() % 30; n > 0; --n) text += kLetters[random() % 11];
    if (random() % 3 == 0) shown.box.TakeBack(log.TakeBack(random() % 50));
    shown.box.Append(ToUtf8(text), log.Add(text, kLimit));
    if (random() % 3 == 0) shown.box.Flush();
    if (i % 10 != 0) continue;
    shown.box.Flush();
    ASSERT_EQ(shown.text(), InControl(log.Shown())) << "after message " << i;
  }
}

TEST(Win32LogBox, HoldsThirtyThousandCharacters) {
  constexpr std::size_t kLimit = 30000;
  BoxInWindow shown;
  std::size_t held = 0;
  std::string all;
  for (int i = 0; i < 2000; ++i) {
    const std::string text = "  Copying file \u00e4\U0001F600 " + std::to_string(i) + "\r\n";
    all += text;
    held += CountCharacters(text);
    const std::size_t cut = held > kLimit ? held - kLimit : 0;
    held -= cut;
    shown.box.Append(text, cut);
    if (i % 50 == 0) shown.box.Flush();
  }
  shown.box.Flush();
  EXPECT_EQ(shown.text(),
            ShownAnsiOf(all.substr(SkipCharacters(all, CountCharacters(all) - kLimit))));
  EXPECT_EQ(shown.text().size(), kLimit);
}

TEST(Win32LogBox, HoldsMoreWhereNothingIsCut) {
  BoxInWindow shown;
  const std::string line = std::string(98, 'x') + "\r\n";
  for (int i = 0; i < 1000; ++i) shown.box.Append(line, 0);
  shown.box.Flush();
  EXPECT_EQ(shown.text().size(), 100000U);
}

TEST(Win32LogBox, PutsTheCaretBeforeTheLastPiece) {
  BoxInWindow shown;
  const auto caret = [&shown] {
    DWORD from = 0;
    DWORD to = 0;
    shown.Send(EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    EXPECT_EQ(from, to) << "nothing is selected";
    return from;
  };
  shown.box.Append("  one\r\n", 0);
  shown.box.Append("  two\r\n", 0);
  shown.box.Flush();
  EXPECT_EQ(caret(), 7U);

  shown.box.Append("  three\r\n", 2);
  shown.box.Flush();
  EXPECT_EQ(caret(), 12U);
}

TEST(Win32LogBox, ShowsItsEndInAnySize) {
  BoxInWindow shown;
  for (int i = 0; i < 200; ++i) {
    shown.box.Append("  a line that is long enough to be wrapped " + std::to_string(i) + "\r\n", 0);
    shown.box.Flush();
    ASSERT_TRUE(shown.ShowsEnd()) << i;
  }
  ASSERT_GT(shown.Scroll().nMax, 50);
  for (const RECT& place : {RECT{0, 0, 600, 150}, RECT{0, 0, 200, 400}}) {
    shown.box.Place(place);
    EXPECT_TRUE(shown.ShowsEnd());
  }
}

TEST(Win32LogBox, KeepsItsPlaceForAReader) {
  BoxInWindow shown;
  for (int i = 0; i < 200; ++i) shown.box.Append("  line " + std::to_string(i) + "\r\n", 0);
  shown.box.Flush();
  shown.Send(EM_LINESCROLL, 0, -150);
  const int place = shown.Scroll().nPos;
  ASSERT_FALSE(shown.ShowsEnd());
  shown.box.Place({0, 0, 400, 220});
  EXPECT_EQ(shown.Scroll().nPos, place);
}

TEST(Win32LogBox, TakesNoTyping) {
  BoxInWindow shown;
  shown.box.Append("  one\r\n", 0);
  shown.box.Flush();
  for (const char key : {'t', '\x16', '\x18', '\b'}) {  // a letter, paste, cut, backspace
    shown.Send(WM_CHAR, static_cast<WPARAM>(key), 1);
  }
  shown.Send(WM_KEYDOWN, VK_DELETE, 1);
  EXPECT_EQ(shown.text(), "  one\r\n");
}

TEST(Win32LogBox, IsCopiedByKeyboard) {
  BoxInWindow shown;
  shown.box.Append("  Number: 70\r\n", 0);
  shown.box.Flush();
  shown.Send(WM_CHAR, 1, 1);  // Ctrl+A
  DWORD from = 99;
  DWORD to = 0;
  shown.Send(EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
  EXPECT_EQ(from, 0U);
  EXPECT_EQ(to, 14U);

  shown.Send(WM_CHAR, 3, 1);  // Ctrl+C
  ASSERT_TRUE(OpenClipboard(nullptr));
  const HANDLE held = GetClipboardData(CF_TEXT);
  ASSERT_NE(held, nullptr);
  EXPECT_STREQ(static_cast<const char*>(GlobalLock(held)), "  Number: 70\r\n");
  GlobalUnlock(held);
  CloseClipboard();
}

}  // namespace
}  // namespace zent::testing
