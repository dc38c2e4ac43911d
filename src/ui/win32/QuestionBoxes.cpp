#include "ui/win32/QuestionBoxes.h"

#include <algorithm>

#include "platform/win32/AnsiText.h"
#include "ui/Answers.h"
#include "ui/win32/LongBox.h"
#include "ui/win32/WindowText.h"

namespace zent {
namespace {

/// A longer text would push the buttons off the screen.
constexpr auto kMostLines = 25;
constexpr std::size_t kMostBytes = 2000;

UINT FlagsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::RetryCancel:
      return MB_RETRYCANCEL | MB_DEFBUTTON1;
    case BoxButtons::YesNo:
      return MB_YESNO | MB_DEFBUTTON2;
    case BoxButtons::Ok:
      break;
  }
  return MB_OK;
}

UINT FlagsOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Question:
      return MB_ICONQUESTION;
    case BoxIcon::Critical:
      return MB_ICONERROR;
    case BoxIcon::None:
      return 0;
    case BoxIcon::Information:
      break;
  }
  return MB_ICONINFORMATION;
}

/// The answer of the button `id`; nothing else, not even a box that could not be shown, agrees.
Answer AnswerOf(BoxButtons buttons, int id) {
  if (id == IDRETRY && HasButton(buttons, Answer::Retry)) return Answer::Retry;
  if (id == IDYES && HasButton(buttons, Answer::Yes)) return Answer::Yes;
  return SafeAnswer(buttons);
}

bool IsLong(const std::string& text) {
  return text.size() > kMostBytes || std::count(text.begin(), text.end(), '\n') > kMostLines;
}

}  // namespace

Answer AskBox(HWND owner, const MessageQuestion& question) {
  const std::string title = BoxTitle(owner, question.title);
  std::string text = ShownAnsiOf(question.text);
  std::replace(text.begin(), text.end(), '\0', '?');  // the system would end the text there
  if (IsLong(text)) return AnswerOf(question.buttons, ShowLongBox(owner, title, text, question));
  UINT flags = FlagsOf(question.buttons) | FlagsOf(question.icon) | MB_SETFOREGROUND;
  // Both mean it; not every system knows the first.
  if (question.topmost) flags |= MB_TOPMOST | MB_SYSTEMMODAL;
  if (owner == nullptr && !question.topmost) flags |= MB_TASKMODAL;
  return AnswerOf(question.buttons, MessageBoxA(owner, text.c_str(), title.c_str(), flags));
}

}  // namespace zent
