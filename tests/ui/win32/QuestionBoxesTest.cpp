#include <algorithm>

#include "ui/Answers.h"
#include "ui/win32/QuestionBoxes.h"
#include "ui/win32/WindowTest.h"

namespace zent::testing {
namespace {

using QuestionBoxesTest = Win32WindowTest;

/// A text that no screen holds.
std::string LongText() {
  std::string text;
  for (int i = 0; i < 500; ++i) text += std::to_string(i) + " - ODBC--call failed.\r\n";
  return text;
}

struct ButtonCase {
  const char* what;
  BoxButtons buttons;
  int pressed;  ///< identifier of the system
  Answer answer;
};
constexpr ButtonCase kButtonCases[] = {
    {"OK", BoxButtons::Ok, IDOK, Answer::Ok},
    {"Retry", BoxButtons::RetryCancel, IDRETRY, Answer::Retry},
    {"Cancel", BoxButtons::RetryCancel, IDCANCEL, Answer::Cancel},
    {"Yes", BoxButtons::YesNo, IDYES, Answer::Yes},
    {"No", BoxButtons::YesNo, IDNO, Answer::No},
};

TEST_F(QuestionBoxesTest, AreAnsweredByTheirButtons) {
  RunAndClose([&] {
    for (const std::string& text : {std::string("Text"), LongText()}) {
      for (const ButtonCase& row : kButtonCases) {
        SCOPED_TRACE(row.what);
        auto person = Person([&row] {
          const HWND box = WaitForBox();
          Click(BoxItem(box, row.pressed));
        });
        EXPECT_EQ(window.Ask({.title = "Title", .text = text, .buttons = row.buttons}), row.answer);
      }
    }
  });
}

struct KeyCase {
  const char* what;
  BoxButtons buttons;
  WPARAM key;
  Answer answer;
};
constexpr KeyCase kKeyCases[] = {
    {"Return answers OK", BoxButtons::Ok, VK_RETURN, Answer::Ok},
    {"Escape answers OK", BoxButtons::Ok, VK_ESCAPE, Answer::Ok},
    {"Return tries again", BoxButtons::RetryCancel, VK_RETURN, Answer::Retry},
    {"Escape cancels", BoxButtons::RetryCancel, VK_ESCAPE, Answer::Cancel},
    {"Return agrees to nothing", BoxButtons::YesNo, VK_RETURN, Answer::No},
};

TEST_F(QuestionBoxesTest, AreAnsweredByKeyboard) {
  RunAndClose([&] {
    for (const std::string& text : {std::string("Text"), LongText()}) {
      for (const KeyCase& row : kKeyCases) {
        SCOPED_TRACE(row.what);
        auto person = Person([&row] {
          const HWND box = WaitForBox();
          WaitFor([box] { return IsChild(box, FocusOf(box)) != FALSE; });
          PressKey(FocusOf(box), row.key);
        });
        EXPECT_EQ(window.Ask({.title = "Title", .text = text, .buttons = row.buttons}), row.answer);
      }
    }
  });
}

TEST_F(QuestionBoxesTest, GiveTheSafeAnswerWhenTheirFrameIsClosed) {
  RunAndClose([&] {
    for (const std::string& text : {std::string("Text"), LongText()}) {
      for (const BoxButtons buttons :
           {BoxButtons::Ok, BoxButtons::RetryCancel, BoxButtons::YesNo}) {
        auto person = Person([] { CloseFrame(WaitForBox()); });
        EXPECT_EQ(window.Ask({.title = "Title", .text = text, .buttons = buttons}),
                  SafeAnswer(buttons));
      }
    }
  });
}

/// What a person sees of a box before it is closed.
struct SeenBox {
  std::string title;
  std::string text;
  bool owner_enabled = true;
  bool topmost = false;
  RECT place{};
};

SeenBox LookAndClose() {
  const HWND box = WaitForBox();
  SeenBox seen{.title = TextOf(box), .text = TextOf(BoxItem(box, kBoxText))};
  seen.owner_enabled = IsWindowEnabled(FindMain()) != FALSE;
  seen.topmost = (GetWindowLongA(box, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
  GetWindowRect(box, &seen.place);
  CloseFrame(box);
  return seen;
}

TEST_F(QuestionBoxesTest, ShowTheTextAsItIsWritten) {
  RunAndClose([&] {
    auto person = Person(&LookAndClose);
    window.Ask({.title = "Korvo & Stra\u00dfe", .text = "C:\\A & B\r\nNumber: 70"});
    const SeenBox seen = person.get();
    EXPECT_EQ(seen.title,
              "Korvo & Stra\xDF"
              "e");
    EXPECT_EQ(seen.text, "C:\\A & B\r\nNumber: 70");
    EXPECT_FALSE(seen.owner_enabled) << "the window waits";
    EXPECT_TRUE(IsWindowEnabled(FindMain())) << "until the box is gone";
  });
}

TEST_F(QuestionBoxesTest, ShowAllOfATextWithNul) {
  RunAndClose([&] {
    auto person = Person(&LookAndClose);
    window.Ask({.title = "Title", .text = std::string("a\0b", 3)});
    EXPECT_EQ(person.get().text, "a?b");
  });
}

TEST_F(QuestionBoxesTest, TakeTheTitleOfTheWindowWhenTheyHaveNone) {
  RunAndClose([&] {
    window.SetTitle("Korvo Update");
    auto person = Person(&LookAndClose);
    window.Ask({.title = "", .text = "Text"});
    EXPECT_EQ(person.get().title, "Korvo Update");
  });
}

TEST_F(QuestionBoxesTest, StayAboveAllWindowsWhenAsked) {
  RunAndClose([&] {
    for (const std::string& text : {std::string("Text"), LongText()}) {
      for (const bool topmost : {true, false}) {
        auto person = Person(&LookAndClose);
        window.Ask({.title = "Title", .text = text, .topmost = topmost});
        EXPECT_EQ(person.get().topmost, topmost);
      }
    }
  });
}

TEST_F(QuestionBoxesTest, KeepTheirButtonsOnTheScreenUnderALongText) {
  RunAndClose([&] {
    auto person = Person(&LookAndClose);
    window.Ask({.title = "Title", .text = LongText(), .icon = BoxIcon::Critical});
    const SeenBox seen = person.get();
    EXPECT_LE(seen.place.bottom, GetSystemMetrics(SM_CYSCREEN));
    EXPECT_GE(seen.place.top, 0);
    EXPECT_EQ(seen.text, LongText()) << "all of it can be read and copied";
  });
}

TEST_F(QuestionBoxesTest, ShowTheirIcon) {
  constexpr std::pair<BoxIcon, UINT> kIcons[] = {{BoxIcon::Information, 32516},
                                                 {BoxIcon::Question, 32514},
                                                 {BoxIcon::Critical, 32513},
                                                 {BoxIcon::None, 0}};
  RunAndClose([&] {
    for (const auto& [icon, number] : kIcons) {
      auto person = Person([] {
        constexpr int kIconItem = 20;
        const HWND box = WaitForBox();
        const LRESULT shown = SendMessageA(BoxItem(box, kIconItem), STM_GETICON, 0, 0);
        CloseFrame(box);
        return reinterpret_cast<HICON>(shown);
      });
      window.Ask({.title = "Title", .text = LongText(), .icon = icon});
      HICON expected = nullptr;
      if (number != 0) {
        expected = LoadIconA(nullptr, reinterpret_cast<LPCSTR>(static_cast<UINT_PTR>(number)));
      }
      EXPECT_EQ(person.get(), expected);
    }
  });
}

TEST(AskBox, NeedsNoOwner) {
  const HWND before = FindMain();
  ASSERT_EQ(before, nullptr);
  auto person = std::async(std::launch::async, [] {
    HWND box = nullptr;
    WaitFor([&box] {
      box = FindWindowA("#32770", "ZentUpdate");
      return IsWindowVisible(box) != FALSE;
    });
    CloseFrame(box);
  });
  EXPECT_EQ(AskBox(nullptr, {.title = "", .text = "Text", .buttons = BoxButtons::RetryCancel}),
            Answer::Cancel);
}

}  // namespace
}  // namespace zent::testing
