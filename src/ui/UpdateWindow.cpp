#include "ui/UpdateWindow.h"

namespace zent {

void RaiseClick(WindowEvents& events, WindowButton button) {
  switch (button) {
    case WindowButton::Close:
      return events.cmdClose_Click();
    case WindowButton::Continue:
      return events.cmdContinue_Click();
    case WindowButton::Install360:
      return events.cmdInstall360_Click();
  }
}

}  // namespace zent
