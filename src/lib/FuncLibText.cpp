#include <fmt/format.h>

#include <charconv>
#include <limits>
#include <system_error>

#include "base/Text.h"
#include "lib/FuncLib.h"

namespace zent {
namespace {

constexpr std::string_view kDigits = "0123456789";

bool StartsWithNumber(std::string_view text) {
  if (text.starts_with('.')) text.remove_prefix(1);
  return !text.empty() && kDigits.find(text.front()) != std::string_view::npos;
}

/// Tells which end of the range `number`, a well-formed one that the type cannot hold, lies beyond.
/// Only the power of ten of its first digit that is not 0 matters; an exponent too long for an int
/// outweighs any number of digits that fits into memory.
bool IsBeyondLargest(std::string_view number) {
  const std::size_t exponent_at = number.find_first_of("eE");
  const std::string_view digits = number.substr(0, exponent_at);
  int exponent = 0;
  if (exponent_at != std::string_view::npos) {
    std::string_view rest = number.substr(exponent_at + 1);
    const bool negative = rest.starts_with('-');
    if (rest.starts_with('+')) rest.remove_prefix(1);
    const std::errc read = std::from_chars(rest.data(), rest.data() + rest.size(), exponent).ec;
    if (read == std::errc::result_out_of_range) return !negative;
  }
  const auto point = static_cast<long long>(MinOf(digits.find('.'), digits.size()));
  const auto first = static_cast<long long>(digits.find_first_not_of("0."));
  return point - first + exponent > 0;
}

/// The position behind the attribute that `text` starts with, and behind its ";". In braces a ";"
/// is part of the value, and so is a doubled "}".
std::size_t EndOfAttribute(std::string_view text) {
  std::size_t at = MinOf(text.find_first_not_of(' ', text.find('=') + 1), text.size());
  if (text.substr(at, 1) == "{") {
    at = text.find('}', at);
    while (at != std::string_view::npos && text.substr(at + 1, 1) == "}") {
      at = text.find('}', at + 2);
    }
  }
  const std::size_t end = text.find(';', MinOf(at, text.size()));
  return end == std::string_view::npos ? text.size() : end + 1;
}

/// Moves `text` behind its first "PWD=", the value and the ";", and what it passes to `masked`,
/// with stars for those; false without such an attribute.
bool MaskNextPassword(std::string_view& text, std::string& masked) {
  const std::size_t start = FindIgnoringCase(text, "PWD=");
  if (start == std::string_view::npos) return false;
  masked.append(text.substr(0, start));
  text.remove_prefix(start);
  const std::size_t end = EndOfAttribute(text);
  masked.append(CountCharacters(text.substr(0, end)), '*');
  text.remove_prefix(end);
  return true;
}

}  // namespace

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos ||
         text.find_first_not_of('\0') == std::string_view::npos;
}

std::string StripQuotes(std::string_view text) {
  if (text.starts_with('"')) text.remove_prefix(1);
  if (text.ends_with('"')) text.remove_suffix(1);
  return std::string(text);
}

double LeadingNumber(std::string_view text) {
  text.remove_prefix(MinOf(text.find_first_not_of(" \t"), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (!StartsWithNumber(text)) return 0;

  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::result_out_of_range) {
    const std::string_view read = text.substr(0, static_cast<std::size_t>(end - text.data()));
    number = IsBeyondLargest(read) ? std::numeric_limits<double>::max() : 0;
  }
  return negative ? -number : number;
}

std::string ScrambleText(SystemInfo& system, std::string_view text) {
  if (IsBlank(text)) return std::string(text);
  std::string bytes = system.ToAnsi(text);
  for (char& byte : bytes) byte = static_cast<char>(0xFF - static_cast<unsigned char>(byte));
  return system.FromAnsi(bytes);
}

std::string MaskPassword(std::string_view connect_text) {
  std::string masked;
  MaskNextPassword(connect_text, masked);
  return masked.append(connect_text);
}

std::string MaskPasswords(std::string_view text) {
  std::string masked;
  while (MaskNextPassword(text, masked)) {
  }
  return masked.append(text);
}

std::string AddBackslash(std::string_view path) {
  if (IsBlank(path)) return {};
  std::string folder(TrimBlanks(path));
  if (!folder.ends_with('\\') && !folder.ends_with('/')) folder.push_back('\\');
  return folder;
}

std::string GetFileName(std::string_view path) {
  return std::string(path.substr(path.find_last_of("\\/") + 1));  // npos + 1 is 0: all of it
}

std::string GetFileExtension(std::string_view name, bool with_dot) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || dot + 1 == name.size()) return {};
  return std::string(name.substr(with_dot ? dot : dot + 1));
}

std::string MakeTimeStampedName(std::string_view name, std::string_view mode,
                                const LocalTime& time) {
  if (IsBlank(name)) return {};
  const std::size_t dot = name.rfind('.');
  std::string stamped(name.substr(0, dot));
  if (mode != "TimeOnly") {
    stamped += fmt::format(" {:04}-{:02}-{:02}", time.year, time.month, time.day);
  }
  if (mode != "DateOnly") {
    stamped += fmt::format(" {:02}-{:02}-{:02}", time.hour, time.minute, time.second);
  }
  const std::string extension = GetFileExtension(name);
  if (!IsBlank(extension)) stamped += "." + extension;
  return stamped;
}

}  // namespace zent
