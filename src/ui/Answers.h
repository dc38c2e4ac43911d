#pragma once

#include "ui/UpdateWindow.h"

namespace zent {

/// The answer of a box that nobody answers: nothing is done again and nothing is agreed to.
constexpr Answer SafeAnswer(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::RetryCancel:
      return Answer::Cancel;
    case BoxButtons::YesNo:
      return Answer::No;
    case BoxButtons::Ok:
      break;
  }
  return Answer::Ok;
}

/// True when a box with these buttons has one for `answer`.
constexpr bool HasButton(BoxButtons buttons, Answer answer) {
  switch (answer) {
    case Answer::Ok:
      return buttons == BoxButtons::Ok;
    case Answer::Retry:
    case Answer::Cancel:
      return buttons == BoxButtons::RetryCancel;
    case Answer::Yes:
    case Answer::No:
      return buttons == BoxButtons::YesNo;
  }
  return false;
}

}  // namespace zent
