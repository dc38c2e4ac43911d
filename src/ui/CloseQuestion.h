#pragma once

#include "ui/UpdateWindow.h"

namespace zent {

/// What a window asks the user who closes it while Form_Load is at work; it goes by the title of
/// the window.
inline MessageQuestion CloseQuestion() {
  return {.text =
              "The update is still running.\r\n\r\n"
              "If you close it now, it ends after its present step. What was done so far "
              "stays done, and the application may not work until the update has been run "
              "again.\r\n\r\nDo you want to close the update?",
          .buttons = BoxButtons::YesNo,
          .icon = BoxIcon::Question};
}

}  // namespace zent
