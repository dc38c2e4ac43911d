#pragma once

#include <windows.h>

#include "ui/UpdateWindow.h"

namespace zent {

/// As UpdateWindow::Ask, by the system's own message box; a text too long for the screen stands in
/// a box of the same look that can be scrolled. `owner` may be null; a box without a title takes
/// the owner's.
///
/// Return answers OK, Retry or No: trying again harms nothing, while Yes restarts computers. Escape
/// and the frame's close answer OK or Cancel; the system gives a Yes/No box neither.
Answer AskBox(HWND owner, const MessageQuestion& question);

}  // namespace zent
