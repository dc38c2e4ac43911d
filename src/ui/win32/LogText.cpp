#include "ui/win32/LogText.h"

#include "base/Text.h"
#include "base/Utf.h"
#include "platform/win32/AnsiText.h"

namespace zent {
namespace {

bool IsPlain(char c) { return (c >= ' ' && c <= '~') || c == '\t'; }

/// The one character `bytes` in the machine's code page.
std::string ToAnsiCharacter(std::string_view bytes) {
  std::size_t at = 0;
  const char32_t c = NextCodePoint(bytes, at);
  const bool broken = at != bytes.size() || !IsUtf8(bytes);
  if (broken || c == 0) return "?";  // a NUL would end the box's text
  std::string ansi = ShownAnsiOf(bytes);
  // A character of two units that the code page lacks may come back as two marks.
  return ansi.empty() || ansi == "??" ? "?" : ansi;
}

std::size_t PositionsOf(const std::string& ansi, bool counts_bytes) {
  if (ansi.size() == 1 || counts_bytes) return ansi.size();
  return ToUtf16(TextOfAnsi(ansi)).size();
}

}  // namespace

BoxText ToBoxText(std::string_view text, bool after_cr, bool counts_bytes) {
  BoxText box;
  box.ansi.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char first = text[at];
    const std::size_t length = IsPlain(first) ? 1 : SkipCharacters(text.substr(at), 1);
    const bool ends_line = first == '\r' || first == '\n';
    if (ends_line) {
      const bool ended_already = first == '\n' && after_cr;
      if (!ended_already) box.ansi += kLineBreak;
      box.positions += ended_already ? 0 : kLineBreak.size();
    } else if (IsPlain(first)) {
      box.ansi += first;
      ++box.positions;
    } else {
      const std::string ansi = ToAnsiCharacter(text.substr(at, length));
      box.ansi += ansi;
      box.positions += PositionsOf(ansi, counts_bytes);
    }
    after_cr = first == '\r';
    at += length;
  }
  return box;
}

}  // namespace zent
