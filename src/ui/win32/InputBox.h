#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "ui/UpdateWindow.h"

namespace zent {

/// As UpdateWindow::AskText. `owner` may be null; a box without a title takes the owner's. A hidden
/// text shows stars from its first character on; besides, the timer for passwords runs.
std::optional<std::string> AskInput(HWND owner, const InputQuestion& question);

}  // namespace zent
