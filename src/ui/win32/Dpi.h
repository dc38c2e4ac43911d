#pragma once

#include <windows.h>

namespace zent {

/// Sent when a window comes to a screen of another density: the new one in the low word of WPARAM,
/// the place to take as a RECT in LPARAM. Headers for old systems do not name it.
constexpr UINT kDpiChanged = 0x02E0;

/// Dots per inch at which a pixel of the layout is one of the screen.
constexpr int kDesignDpi = 96;

/// Makes the windows of this thread be drawn in the pixels of each screen, as far as the system
/// can: by screen, else by the density of the system, else the system stretches nothing by itself.
void DrawInScreenPixels();

/// Dots per inch of the screen that shows `window`.
int DpiOf(HWND window);

/// Dots per inch that fonts and sizes given by the system are made for.
int SystemDpi();

/// The size of a whole window, frame included, whose inside has the size `client`.
SIZE WindowSizeFor(HWND window, SIZE client, int dpi);

}  // namespace zent
