#include "ui/win32/InputBox.h"

#include <algorithm>

#include "platform/win32/AnsiText.h"
#include "ui/win32/Dialog.h"
#include "ui/win32/DialogUnits.h"
#include "ui/win32/PasswordTimer.h"
#include "ui/win32/WindowText.h"

namespace zent {
namespace {

constexpr int kPrompt = 200;
constexpr int kEdit = 201;

// Dialog units.
constexpr int kWidth = 180;
constexpr int kWidest = 320;
constexpr int kEditHeight = 14;

class InputBox : public Dialog {
 public:
  explicit InputBox(const InputQuestion& question)
      : prompt_(ShownAnsiOf(question.prompt)), hidden_(question.hidden) {}

  std::optional<std::string> Ask(HWND owner, const std::string& title) {
    return Show(owner, title, false) == IDOK ? std::move(text_) : std::nullopt;
  }

 protected:
  void Fill() override {
    Add("Static", prompt_, SS_LEFT | SS_NOPREFIX, kPrompt);
    const DWORD hiding = hidden_ ? ES_PASSWORD : 0;
    Add("Edit", "", WS_TABSTOP | ES_LEFT | ES_AUTOHSCROLL | hiding, kEdit, WS_EX_CLIENTEDGE);
    // By style alone the control shows what the system likes, and not always a star.
    if (hidden_) SendMessageA(Item(kEdit), EM_SETPASSWORDCHAR, '*', 0);
    Add("Button", "OK", WS_TABSTOP | BS_DEFPUSHBUTTON, IDOK);
    Add("Button", "Cancel", WS_TABSTOP | BS_PUSHBUTTON, IDCANCEL);
  }

  SIZE Arrange() override {
    const DialogUnits unit = units();
    const SIZE prompt = WrappedTextSize(fonts().text(), prompt_, unit.X(kWidest));
    const int width = std::max({static_cast<int>(prompt.cx), unit.X(kWidth), TitleWidth()});
    const int left = unit.X(kMargin);
    int top = unit.Y(kMargin);
    Place(kPrompt, left, top, width, prompt.cy);
    top += static_cast<int>(prompt.cy) + unit.Y(kGap);
    Place(kEdit, left, top, width, unit.Y(kEditHeight));
    top += unit.Y(kEditHeight) + unit.Y(kMargin);
    const int button = unit.X(kButtonWidth);
    const int cancel_left = left + width - button;
    Place(IDOK, cancel_left - unit.X(kGap) - button, top, button, unit.Y(kButtonHeight));
    Place(IDCANCEL, cancel_left, top, button, unit.Y(kButtonHeight));
    return {2 * left + width, top + unit.Y(kButtonHeight) + unit.Y(kMargin)};
  }

  HWND FirstFocus() const override { return Item(kEdit); }

  void OnEnd(int id) override {
    if (id != IDOK) return;
    std::string typed = AnsiTextOf(Item(kEdit));
    text_ = TextOfAnsi(typed);
    if (hidden_) SecureZeroMemory(typed.data(), typed.size());
  }

 private:
  std::string prompt_;
  bool hidden_;
  std::optional<std::string> text_;
};

}  // namespace

std::optional<std::string> AskInput(HWND owner, const InputQuestion& question) {
  std::optional<PasswordTimer> timer;
  if (question.hidden) timer.emplace();
  return InputBox(question).Ask(owner, BoxTitle(owner, question.title));
}

}  // namespace zent
