#include "platform/prefix/registry/RegistryEscapes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/Utf.h"

namespace zent {
namespace {

struct ControlLetter {
  char16_t code;
  char letter;
};

constexpr std::array kControlLetters = {
    ControlLetter{7, 'a'},  ControlLetter{8, 'b'},  ControlLetter{9, 't'},  ControlLetter{10, 'n'},
    ControlLetter{11, 'v'}, ControlLetter{12, 'f'}, ControlLetter{13, 'r'}, ControlLetter{27, 'e'},
};

constexpr std::size_t kMostHexDigits = 4;
constexpr std::size_t kMostOctalDigits = 3;

/// The value of a digit in the base, or -1.
int DigitOf(char16_t c, int base) {
  int digit = -1;
  if (c >= '0' && c <= '9') digit = c - '0';
  if (c >= 'a' && c <= 'f') digit = c - 'a' + 10;
  if (c >= 'A' && c <= 'F') digit = c - 'A' + 10;
  return digit < base ? digit : -1;
}

void AppendControl(char16_t code, char16_t next, std::string& escaped) {
  const auto* const row =
      std::find_if(kControlLetters.begin(), kControlLetters.end(),
                   [code](const ControlLetter& control) { return control.code == code; });
  if (row != kControlLetters.end()) {
    escaped += {'\\', row->letter};
  } else if (DigitOf(next, 8) >= 0) {
    // The full three digits, so that the reader does not take the next character for one of them.
    escaped += fmt::format("\\{:03o}", static_cast<unsigned>(code));
  } else {
    escaped += fmt::format("\\{:o}", static_cast<unsigned>(code));
  }
}

std::string Escape(std::string_view text, std::string_view marked) {
  const std::u16string units = ToUtf16(text);
  std::string escaped;
  escaped.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    const char16_t next = i + 1 < units.size() ? units[i + 1] : u'\0';
    if (unit < 32) {
      AppendControl(unit, next, escaped);
    } else if (unit > 127) {
      escaped += DigitOf(next, 16) >= 0 ? fmt::format("\\x{:04x}", static_cast<unsigned>(unit))
                                        : fmt::format("\\x{:x}", static_cast<unsigned>(unit));
    } else {
      if (marked.find(static_cast<char>(unit)) != std::string_view::npos) escaped.push_back('\\');
      escaped.push_back(static_cast<char>(unit));
    }
  }
  return escaped;
}

/// The number that at most `most` digits of the base at `at` make; moves `at` behind them.
char16_t ReadNumber(std::string_view escaped, std::size_t& at, std::size_t most, int base) {
  int number = 0;
  for (std::size_t i = 0; i < most && at < escaped.size(); ++i, ++at) {
    const int digit = DigitOf(static_cast<unsigned char>(escaped[at]), base);
    if (digit < 0) break;
    number = number * base + digit;
  }
  return static_cast<char16_t>(number);
}

bool IsDigitAt(std::string_view escaped, std::size_t at, int base) {
  return at < escaped.size() && DigitOf(static_cast<unsigned char>(escaped[at]), base) >= 0;
}

/// Takes the escape whose backslash stands right before `at`.
char16_t ReadEscape(std::string_view escaped, std::size_t& at) {
  if (IsDigitAt(escaped, at, 8)) return ReadNumber(escaped, at, kMostOctalDigits, 8);
  const char letter = escaped[at++];
  if (letter == 'x' && IsDigitAt(escaped, at, 16)) {
    return ReadNumber(escaped, at, kMostHexDigits, 16);
  }
  const auto* const row =
      std::find_if(kControlLetters.begin(), kControlLetters.end(),
                   [letter](const ControlLetter& control) { return control.letter == letter; });
  if (row != kControlLetters.end()) return row->code;
  return static_cast<unsigned char>(letter);
}

bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c != '\\' && static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string EscapeText(std::string_view text) { return Escape(text, "\"\\"); }

std::string EscapeKeyName(std::string_view name) { return Escape(name, "\\[]"); }

std::string Unescape(std::string_view escaped) {
  if (IsPlain(escaped)) return std::string(escaped);
  std::u16string units;
  units.reserve(escaped.size());
  for (std::size_t at = 0; at < escaped.size();) {
    const bool ascii_next =
        at + 1 < escaped.size() && static_cast<unsigned char>(escaped[at + 1]) < 0x80;
    if (escaped[at] == '\\' && ascii_next) {
      units.push_back(ReadEscape(escaped, ++at));
    } else if (escaped[at] == '\\') {
      // Before a raw character, or at the end, it is only a mark.
      ++at;
    } else {
      const std::size_t start = at;
      NextCodePoint(escaped, at);
      units += ToUtf16(escaped.substr(start, at - start));
    }
  }
  return FromUtf16(units);
}

std::size_t FindUnescaped(std::string_view escaped, char mark, std::size_t at) {
  while (at < escaped.size() && escaped[at] != mark) at += escaped[at] == '\\' ? 2U : 1U;
  return at < escaped.size() ? at : std::string_view::npos;
}

std::string WellFormedText(std::string_view text) { return FromUtf16(ToUtf16(text)); }

}  // namespace zent
