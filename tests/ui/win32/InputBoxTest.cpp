#include "ui/win32/InputBox.h"
#include "ui/win32/PasswordTimer.h"
#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using InputBoxTest = Win32WindowTest;

constexpr char kPrompt[] = "Please Enter Database Password.\r\nPassword is Case Sensitive.";

LRESULT StarOf(HWND edit) { return SendMessageA(edit, EM_GETPASSWORDCHAR, 0, 0); }

TEST_F(InputBoxTest, TakesALineOfText) {
  RunAndClose([&] {
    auto person = Person([] {
      const HWND box = WaitForBox();
      const bool shown = TextOf(box) == "Enter Username" && StarOf(EditOf(box)) == 0 &&
                         IsWindowEnabled(FindMain()) == FALSE;
      WaitFor([box] { return FocusOf(box) == EditOf(box); });
      Type(EditOf(box), "sa\xE4 & co");
      PressKey(EditOf(box), VK_RETURN);
      return shown;
    });
    EXPECT_EQ(window.AskText({.title = "Enter Username", .prompt = "Name"}), "sa\u00e4 & co");
    EXPECT_TRUE(person.get());
    EXPECT_TRUE(IsWindowEnabled(FindMain()));
  });
}

TEST_F(InputBoxTest, HidesWhatIsTypedUnderAnyTitle) {
  RunAndClose([&] {
    for (const char* title : {"Enter Password", "Another title", ""}) {
      SCOPED_TRACE(title);
      ASSERT_TRUE(OpenClipboard(FindMain()));
      EmptyClipboard();
      CloseClipboard();
      auto person = Person([] {
        const HWND edit = EditOf(WaitForBox());
        const LRESULT star = StarOf(edit);  // before anything can be typed
        Type(edit, "secret");
        WaitFor([edit] { return TextOf(edit) == "secret"; });
        SendMessageA(edit, EM_SETSEL, 0, -1);
        for (const WPARAM key : {3U, 24U}) SendMessageA(edit, WM_CHAR, key, 1);  // copy, cut
        const bool copied = IsClipboardFormatAvailable(CF_TEXT) != FALSE;
        const bool hidden = star == '*' && StarOf(edit) == '*';
        PressKey(edit, VK_RETURN);
        return hidden && !copied;
      });
      EXPECT_EQ(window.AskText({.title = title, .prompt = kPrompt, .hidden = true}), "secret");
      EXPECT_TRUE(person.get());
    }
  });
}

struct EndCase {
  const char* what;
  void (*end)(HWND box);
  std::optional<std::string> text;
};
const EndCase kEndCases[] = {
    {"OK", [](HWND box) { Click(BoxItem(box, IDOK)); }, "typed"},
    {"Return", [](HWND box) { PressKey(EditOf(box), VK_RETURN); }, "typed"},
    {"Cancel", [](HWND box) { Click(BoxItem(box, IDCANCEL)); }, std::nullopt},
    {"Escape", [](HWND box) { PressKey(EditOf(box), VK_ESCAPE); }, std::nullopt},
    {"the frame", [](HWND box) { CloseFrame(box); }, std::nullopt},
};

TEST_F(InputBoxTest, EndsWithItsTextOrNone) {
  RunAndClose([&] {
    for (const EndCase& row : kEndCases) {
      for (const bool hidden : {false, true}) {
        SCOPED_TRACE(row.what);
        auto person = Person([&row] {
          const HWND box = WaitForBox();
          Type(EditOf(box), "typed");
          row.end(box);
        });
        EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt", .hidden = hidden}),
                  row.text);
      }
    }
  });
}

TEST_F(InputBoxTest, TellsAnEmptyTextFromNone) {
  RunAndClose([&] {
    auto person = Person([] { Click(BoxItem(WaitForBox(), IDOK)); });
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt"}), "");
  });
}

TEST_F(InputBoxTest, TakesALongLineWhole) {
  const std::string text(2000, 'x');
  RunAndClose([&] {
    auto person = Person([&text] {
      const HWND box = WaitForBox();
      SendMessageA(EditOf(box), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
      Click(BoxItem(box, IDOK));
    });
    EXPECT_EQ(window.AskText({.title = "Title", .prompt = "Prompt"}), text);
  });
}

TEST_F(InputBoxTest, ShowsBothLinesOfThePromptAsWritten) {
  RunAndClose([&] {
    auto person = Person([] {
      const HWND box = WaitForBox();
      const HWND prompt = FindWindowExA(box, nullptr, "Static", nullptr);
      RECT place{};
      GetClientRect(prompt, &place);
      const DWORD style = static_cast<DWORD>(GetWindowLongA(prompt, GWL_STYLE));
      const bool names_the_edit = GetWindow(prompt, GW_HWNDNEXT) == EditOf(box);
      const std::string text = TextOf(prompt);
      CloseFrame(box);
      return std::tuple(text, place.bottom, (style & SS_NOPREFIX) != 0, names_the_edit);
    });
    window.AskText({.title = "Title", .prompt = "Name & code\r\nCase Sensitive."});
    const auto [text, height, as_written, names_the_edit] = person.get();
    EXPECT_EQ(text, "Name & code\r\nCase Sensitive.");
    EXPECT_GE(height, 2 * 10) << "two lines of the smallest font";
    EXPECT_TRUE(as_written);
    EXPECT_TRUE(names_the_edit) << "for screen readers the prompt stands right before it";
  });
}

TEST_F(InputBoxTest, ShowsItsWholeTitle) {
  RunAndClose([&] {
    const std::string title(60, 'W');
    auto person = Person([] {
      const HWND box = WaitForBox();
      RECT place{};
      GetWindowRect(box, &place);
      CloseFrame(box);
      return place.right - place.left;
    });
    window.AskText({.title = title, .prompt = "Prompt"});
    EXPECT_GT(person.get(), 60 * 8);
  });
}

/// A dialog window of this program that knows nothing of passwords.
class PlainBox {
 public:
  explicit PlainBox(const char* title)
      : box_(CreateWindowExA(0, "#32770", title, WS_POPUP | WS_CAPTION, 0, 0, 200, 100, nullptr,
                             nullptr, GetModuleHandleA(nullptr), nullptr)),
        edit_(CreateWindowExA(0, "Edit", "", WS_CHILD | WS_VISIBLE, 0, 0, 100, 20, box_, nullptr,
                              nullptr, nullptr)) {}
  ~PlainBox() { DestroyWindow(box_); }
  PlainBox(const PlainBox&) = delete;
  PlainBox& operator=(const PlainBox&) = delete;

  HWND edit() const { return edit_; }

 private:
  HWND box_;
  HWND edit_;
};

TEST_F(InputBoxTest, ItsTimerMasksTheBoxForPasswordsOnce) {
  RunAndClose([&] {
    const PlainBox password("Enter Password");
    const PlainBox other("Enter Username");
    const PasswordTimer timer;
    EXPECT_EQ(StarOf(password.edit()), 0);
    EXPECT_TRUE(WaitFor([&] {
      window.ProcessEvents(std::chrono::milliseconds(5));
      return StarOf(password.edit()) == '*';
    }));
    EXPECT_EQ(StarOf(other.edit()), 0);

    SendMessageA(password.edit(), EM_SETPASSWORDCHAR, 0, 0);
    for (int i = 0; i < 30; ++i) window.ProcessEvents(std::chrono::milliseconds(5));
    EXPECT_EQ(StarOf(password.edit()), 0) << "it has stopped itself";
  });
}

}  // namespace
}  // namespace zent::testing
