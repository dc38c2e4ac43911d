#include "ui/console/TerminalText.h"

#include <cstddef>

#include "base/Utf.h"

namespace zent {
namespace {

constexpr char32_t kDelete = 0x7F;
constexpr char32_t kReplacement = 0xFFFD;

bool IsUpperControl(char32_t c) { return c >= 0x80 && c <= 0x9F; }
bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

void AppendShown(char32_t c, std::string& shown) {
  if (c == U'\n' || c == U'\t') {
    shown.push_back(static_cast<char>(c));
  } else if (c < U' ' || c == kDelete) {
    shown.push_back('^');
    shown.push_back(static_cast<char>(c ^ 0x40U));
  } else if (IsUpperControl(c) || IsSurrogate(c)) {
    AppendUtf8(kReplacement, shown);
  } else {
    AppendUtf8(c, shown);
  }
}

}  // namespace

std::string ForTerminal(std::string_view text) {
  std::string shown;
  shown.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t c = NextCodePoint(text, at);
    if (c == U'\r') {
      if (at < text.size() && text[at] == '\n') ++at;
      shown.push_back('\n');
    } else {
      AppendShown(c, shown);
    }
  }
  return shown;
}

}  // namespace zent
