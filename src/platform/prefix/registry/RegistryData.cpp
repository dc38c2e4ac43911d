#include "platform/prefix/registry/RegistryData.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "base/Utf.h"
#include "platform/prefix/registry/RegistryEscapes.h"
#include "platform/prefix/registry/RegistryLines.h"

namespace zent {
namespace {

constexpr std::size_t kLongestHexLine = 76;
constexpr std::size_t kDwordSize = 4;

bool IsStringType(std::uint32_t type) {
  return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz;
}

/// The whole of `digits` as a hexadecimal number.
std::optional<std::uint32_t> ParseHexNumber(std::string_view digits) {
  std::uint32_t number = 0;
  const char* const end = digits.data() + digits.size();
  const std::from_chars_result read = std::from_chars(digits.data(), end, number, 16);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

/// Takes `start` off `text` when it begins with it.
bool TakeStart(std::string_view& text, std::string_view start) {
  if (text.substr(0, start.size()) != start) return false;
  text.remove_prefix(start.size());
  return true;
}

/// Takes `(type):` off `text`.
std::optional<std::uint32_t> TakeType(std::string_view& text) {
  const std::size_t close = text.find("):");
  if (text.empty() || text.front() != '(' || close == std::string_view::npos) return std::nullopt;
  const std::optional<std::uint32_t> type = ParseHexNumber(text.substr(1, close - 1));
  text.remove_prefix(close + 2);
  return type;
}

std::string Utf16Bytes(std::string_view text) {
  std::string bytes;
  for (const char16_t unit : ToUtf16(text)) {
    bytes.push_back(static_cast<char>(unit & 0xFFU));
    bytes.push_back(static_cast<char>(unit >> 8U));
  }
  return bytes;
}

/// A text in double quotes, with the closing NUL that the file leaves out.
std::optional<RegistryValue> ParseQuoted(std::uint32_t type, std::string_view quoted) {
  if (quoted.size() < 2 || quoted.front() != '"') return std::nullopt;
  if (FindUnescaped(quoted, '"', 1) != quoted.size() - 1) return std::nullopt;
  std::string text = Unescape(quoted.substr(1, quoted.size() - 2));
  text.push_back('\0');
  return RegistryValue{type, IsStringType(type) ? text : Utf16Bytes(text)};
}

std::optional<RegistryValue> ParseDword(std::string_view digits) {
  const std::optional<std::uint32_t> number = ParseHexNumber(digits);
  if (!number) return std::nullopt;
  RegistryValue value{kRegDword, {}};
  for (std::size_t i = 0; i < kDwordSize; ++i) {
    value.data.push_back(static_cast<char>((*number >> (8 * i)) & 0xFFU));
  }
  return value;
}

/// Hexadecimal data in one line without blanks; each line but the last ends in a backslash.
std::optional<std::string> JoinHexLines(std::string_view text) {
  std::string joined;
  for (std::size_t at = 0; at < text.size();) {
    const TextLine line = ReadLine(text, at);
    at = line.next;
    for (const char c : line.text) {
      if (c != ' ' && c != '\t') joined.push_back(c);
    }
    if (at >= text.size()) break;
    if (joined.empty() || joined.back() != '\\') return std::nullopt;
    joined.pop_back();
  }
  return joined;
}

/// Bytes of one or two digits with commas between, also behind the last.
std::optional<RegistryValue> ParseHex(std::uint32_t type, std::string_view text) {
  const std::optional<std::string> joined = JoinHexLines(text);
  if (!joined) return std::nullopt;
  const std::string_view digits = *joined;
  std::string bytes;
  for (std::size_t at = 0; at < digits.size();) {
    const std::size_t end = std::min(digits.find(',', at), digits.size());
    const std::optional<std::uint32_t> byte = ParseHexNumber(digits.substr(at, end - at));
    if (!byte || end - at > 2) return std::nullopt;
    bytes.push_back(static_cast<char>(*byte));
    at = end + 1;
  }
  return RegistryValue{type, IsStringType(type) ? FromUtf16Bytes(bytes) : bytes};
}

std::string FormatHexLines(std::string line, const RegistryValue& value,
                           std::string_view line_break) {
  const std::string bytes = IsStringType(value.type) ? Utf16Bytes(value.data) : value.data;
  line += value.type == kRegBinary ? "hex:" : fmt::format("hex({:x}):", value.type);
  std::string lines;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    line += fmt::format("{:02x}", static_cast<unsigned char>(bytes[i]));
    if (i + 1 == bytes.size()) break;
    line.push_back(',');
    if (line.size() <= kLongestHexLine) continue;
    lines += line + "\\" + std::string(line_break);
    line = "  ";
  }
  return lines + line + std::string(line_break);
}

}  // namespace

std::optional<RegistryValue> ParseValueData(std::string_view data) {
  while (!data.empty() && (data.back() == ' ' || data.back() == '\t')) data.remove_suffix(1);
  if (!data.empty() && data.front() == '"') return ParseQuoted(kRegSz, data);
  if (TakeStart(data, "dword:")) return ParseDword(data);
  if (TakeStart(data, "hex:")) return ParseHex(kRegBinary, data);
  const bool quoted = TakeStart(data, "str");
  if (!quoted && !TakeStart(data, "hex")) return std::nullopt;
  const std::optional<std::uint32_t> type = TakeType(data);
  if (!type) return std::nullopt;
  return quoted ? ParseQuoted(*type, data) : ParseHex(*type, data);
}

std::string FormatValueLines(std::string_view name, const RegistryValue& value,
                             std::string_view line_break) {
  std::string line = name.empty() ? "@=" : fmt::format("\"{}\"=", EscapeText(name));
  if (IsStringType(value.type) && !value.data.empty() && value.data.back() == '\0') {
    if (value.type != kRegSz) line += fmt::format("str({:x}):", value.type);
    const std::string_view text = value.data;
    line += fmt::format("\"{}\"", EscapeText(text.substr(0, text.size() - 1)));
    return line.append(line_break);
  }
  if (value.type == kRegDword && value.data.size() == kDwordSize) {
    std::uint32_t number = 0;
    for (std::size_t i = kDwordSize; i > 0; --i) {
      number = (number << 8U) | static_cast<unsigned char>(value.data[i - 1]);
    }
    return line + fmt::format("dword:{:08x}", number).append(line_break);
  }
  return FormatHexLines(std::move(line), value, line_break);
}

}  // namespace zent
