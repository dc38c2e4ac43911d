#pragma once

#include <windows.h>

#include <string>

#include "ui/UpdateWindow.h"

namespace zent {

/// Shows `text` in a box that can be scrolled, with the buttons, icon and place of `question`;
/// title and text are ANSI. The identifier of the button that ended it, IDCANCEL for none.
int ShowLongBox(HWND owner, const std::string& title, const std::string& text,
                const MessageQuestion& question);

}  // namespace zent
