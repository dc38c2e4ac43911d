#pragma once

#include <windows.h>

#include <string>
#include <string_view>

/// Texts of windows, in ANSI.
namespace zent {

/// The text of a control or the title of a window.
std::string AnsiTextOf(HWND window);

/// The title of a question box: `title` (UTF-8), or that of `owner` for a box without one.
std::string BoxTitle(HWND owner, std::string_view title);

/// Pixels that `text` takes when it is wrapped at `width`; an "&" counts as written.
SIZE WrappedTextSize(HFONT font, const std::string& text, int width);

}  // namespace zent
