#include "ui/win32/WindowText.h"

#include "platform/win32/AnsiText.h"

namespace zent {

std::string AnsiTextOf(HWND window) {
  const int length = GetWindowTextLengthA(window);
  if (length <= 0) return {};
  // The system writes a NUL behind the text, where the string has its own.
  std::string text(static_cast<std::size_t>(length), '\0');
  const int got = GetWindowTextA(window, text.data(), length + 1);
  text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return text;
}

std::string BoxTitle(HWND owner, std::string_view title) {
  if (!title.empty()) return ShownAnsiOf(title);
  return owner != nullptr ? AnsiTextOf(owner) : "ZentUpdate";
}

SIZE WrappedTextSize(HFONT font, const std::string& text, int width) {
  const HDC screen = GetDC(nullptr);
  const HGDIOBJ before = SelectObject(screen, font);
  RECT place{0, 0, width, 0};
  DrawTextA(screen, text.c_str(), -1, &place,
            DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS);
  SelectObject(screen, before);
  ReleaseDC(nullptr, screen);
  return {place.right, place.bottom};
}

}  // namespace zent
