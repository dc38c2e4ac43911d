#include "base/CodePage.h"

#include <algorithm>
#include <array>

#include "base/Utf.h"

namespace zent {
namespace {

// What the bytes 80 to 9F stand for; all others stand for the character of the same number.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char AnsiOf(char32_t code_point) {
  if (code_point < 0x80 || (code_point >= 0xA0 && code_point <= 0xFF)) {
    return static_cast<char>(code_point);
  }
  const auto* const found = std::find(kHighControls.begin(), kHighControls.end(), code_point);
  if (found == kHighControls.end()) return '?';
  return static_cast<char>(0x80 + (found - kHighControls.begin()));
}

}  // namespace

std::string FromAnsi(std::string_view ansi) {
  if (IsAscii(ansi)) return std::string(ansi);
  std::string utf8;
  utf8.reserve(ansi.size() + ansi.size() / 4);
  for (const char c : ansi) {
    const auto byte = static_cast<unsigned char>(c);
    AppendUtf8(byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80U] : byte, utf8);
  }
  return utf8;
}

std::string ToAnsi(std::string_view utf8) {
  if (IsAscii(utf8)) return std::string(utf8);
  std::string ansi;
  ansi.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) ansi.push_back(AnsiOf(NextCodePoint(utf8, at)));
  return ansi;
}

}  // namespace zent
