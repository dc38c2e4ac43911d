#include "base/Text.h"

#include <algorithm>

namespace zent {
namespace {

char LowerOf(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsContinuationByte(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

}  // namespace

std::string ToLower(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), LowerOf);
  return lower;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return LowerOf(x) == LowerOf(y); });
}

std::size_t FindIgnoringCase(std::string_view text, std::string_view pattern, std::size_t from) {
  if (from > text.size()) return std::string_view::npos;
  const auto* const begin = text.data() + from;
  const auto* const end = text.data() + text.size();
  const auto* const found = std::search(begin, end, pattern.begin(), pattern.end(),
                                        [](char x, char y) { return LowerOf(x) == LowerOf(y); });
  if (found == end && !pattern.empty()) return std::string_view::npos;
  return static_cast<std::size_t>(found - text.data());
}

std::string ReplaceAllIgnoringCase(std::string_view text, std::string_view pattern,
                                   std::string_view replacement) {
  if (pattern.empty()) return std::string(text);
  std::string replaced;
  std::size_t from = 0;
  for (std::size_t at = FindIgnoringCase(text, pattern); at != std::string_view::npos;
       at = FindIgnoringCase(text, pattern, from)) {
    replaced.append(text, from, at - from);
    replaced.append(replacement);
    from = at + pattern.size();
  }
  replaced.append(text.substr(from));
  return replaced;
}

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::size_t CountCharacters(std::string_view utf8) {
  return static_cast<std::size_t>(
      std::count_if(utf8.begin(), utf8.end(), [](char c) { return !IsContinuationByte(c); }));
}

std::size_t SkipCharacters(std::string_view utf8, std::size_t count) {
  std::size_t at = 0;
  for (; at < utf8.size() && count > 0; --count) {
    ++at;
    while (at < utf8.size() && IsContinuationByte(utf8[at])) ++at;
  }
  return at;
}

std::string_view FirstCharacters(std::string_view utf8, std::size_t count) {
  return utf8.substr(0, SkipCharacters(utf8, count));
}

std::string OneLine(std::string_view utf8) {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  std::string line;
  for (std::size_t at = 0; at < utf8.size(); ++at) {
    auto byte = static_cast<unsigned char>(utf8[at]);
    // C2 begins the characters from U+0080 to U+00BF; the other byte is their number.
    const bool high = byte == 0xC2 && at + 1 < utf8.size() &&
                      static_cast<unsigned char>(utf8[at + 1]) >= 0x80 &&
                      static_cast<unsigned char>(utf8[at + 1]) < 0xA0;
    if (high) byte = static_cast<unsigned char>(utf8[++at]);
    if (byte == '\n') {
      line += "\\n";
    } else if (byte == '\r') {
      line += "\\r";
    } else if (byte == '\t') {
      line += "\\t";
    } else if (high || byte < 0x20 || byte == 0x7F) {
      line += {'\\', 'x', kHexDigits[byte >> 4U], kHexDigits[byte & 0xFU]};
    } else {
      line.push_back(static_cast<char>(byte));
    }
  }
  return line;
}

}  // namespace zent
