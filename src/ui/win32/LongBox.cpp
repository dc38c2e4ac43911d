#include "ui/win32/LongBox.h"

#include <span>

#include "ui/win32/Dialog.h"
#include "ui/win32/DialogUnits.h"

namespace zent {
namespace {

/// The identifiers of a message box.
constexpr int kIcon = 20;
constexpr int kText = 65535;

// Dialog units.
constexpr int kTextWidth = 280;
constexpr int kTextHeight = 150;

struct BoxButton {
  int id;
  const char* caption;
  bool by_return;
};
constexpr BoxButton kOk[] = {{IDOK, "OK", true}};
constexpr BoxButton kRetryCancel[] = {{IDRETRY, "&Retry", true}, {IDCANCEL, "&Cancel", false}};
constexpr BoxButton kYesNo[] = {{IDYES, "&Yes", false}, {IDNO, "&No", true}};

std::span<const BoxButton> ButtonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::RetryCancel:
      return kRetryCancel;
    case BoxButtons::YesNo:
      return kYesNo;
    case BoxButtons::Ok:
      break;
  }
  return kOk;
}

struct IconSound {
  LPSTR icon;  ///< its number, as a macro of the system makes it; null: none
  UINT sound;
};

IconSound IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Question:
      return {reinterpret_cast<LPSTR>(IDI_QUESTION), MB_ICONQUESTION};
    case BoxIcon::Critical:
      return {reinterpret_cast<LPSTR>(IDI_ERROR), MB_ICONERROR};
    case BoxIcon::None:
      return {nullptr, MB_OK};
    case BoxIcon::Information:
      break;
  }
  return {reinterpret_cast<LPSTR>(IDI_INFORMATION), MB_ICONINFORMATION};
}

class LongBox : public Dialog {
 public:
  LongBox(const std::string& text, const MessageQuestion& question)
      : text_(text), buttons_(ButtonsOf(question.buttons)), icon_(IconOf(question.icon)) {}

  int Ask(HWND owner, const std::string& title, bool topmost) {
    MessageBeep(icon_.sound);
    return Show(owner, title, topmost);
  }

 protected:
  void Fill() override {
    if (icon_.icon != nullptr) AddIcon();
    Add("Edit", "", WS_TABSTOP | WS_VSCROLL | ES_LEFT | ES_MULTILINE | ES_READONLY, kText,
        WS_EX_CLIENTEDGE);
    SendMessageA(Item(kText), EM_LIMITTEXT, 0, 0);
    SetWindowTextA(Item(kText), text_.c_str());
    for (const BoxButton& row : buttons_) {
      const DWORD style = row.by_return ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON;
      Add("Button", row.caption, WS_TABSTOP | style, row.id);
    }
  }

  SIZE Arrange() override {
    const DialogUnits unit = units();
    const int left = unit.X(kMargin);
    const int top = unit.Y(kMargin);
    const int text_left = left + PlaceIcon(left, top);
    Place(kText, text_left, top, unit.X(kTextWidth), unit.Y(kTextHeight));

    const int width = text_left + unit.X(kTextWidth) + left;
    const int button_top = top + unit.Y(kTextHeight) + unit.Y(kMargin);
    const int step = unit.X(kButtonWidth) + unit.X(kGap);
    int button_left = width - left - static_cast<int>(buttons_.size()) * step + unit.X(kGap);
    for (const BoxButton& row : buttons_) {
      Place(row.id, button_left, button_top, unit.X(kButtonWidth), unit.Y(kButtonHeight));
      button_left += step;
    }
    return {width, button_top + unit.Y(kButtonHeight) + unit.Y(kMargin)};
  }

  HWND FirstFocus() const override {
    for (const BoxButton& row : buttons_) {
      if (row.by_return) return Item(row.id);
    }
    return Item(buttons_.front().id);
  }

  void OnEnd(int) override {}

 private:
  void AddIcon() {
    Add("Static", "", SS_ICON, kIcon);
    const auto icon = reinterpret_cast<WPARAM>(LoadIconA(nullptr, icon_.icon));
    SendMessageA(Item(kIcon), STM_SETICON, icon, 0);
  }

  /// The width that the icon takes, with the margin behind it.
  int PlaceIcon(int left, int top) const {
    if (icon_.icon == nullptr) return 0;
    const int size = GetSystemMetrics(SM_CXICON);
    Place(kIcon, left, top, size, size);
    return size + left;
  }

  const std::string& text_;
  std::span<const BoxButton> buttons_;
  IconSound icon_;
};

}  // namespace

int ShowLongBox(HWND owner, const std::string& title, const std::string& text,
                const MessageQuestion& question) {
  return LongBox(text, question).Ask(owner, title, question.topmost);
}

}  // namespace zent
