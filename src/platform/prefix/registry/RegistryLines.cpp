#include "platform/prefix/registry/RegistryLines.h"

#include <algorithm>

#include "platform/prefix/registry/RegistryEscapes.h"

namespace zent {
namespace {

constexpr std::string_view kNameDivider = "\\\\";

bool IsContinued(std::string_view line) { return !line.empty() && line.back() == '\\'; }

}  // namespace

TextLine ReadLine(std::string_view file, std::size_t at) {
  const std::size_t feed = file.find('\n', at);
  if (feed == std::string_view::npos) return {file.substr(at), file.size()};
  std::string_view text = file.substr(at, feed - at);
  if (!text.empty() && text.back() == '\r') text.remove_suffix(1);
  return {text, feed + 1};
}

std::optional<KeyLine> ParseKeyLine(std::string_view line) {
  if (line.empty() || line.front() != '[') return std::nullopt;
  const std::size_t close = FindUnescaped(line, ']', 1);
  if (close == std::string_view::npos) return std::nullopt;
  return KeyLine{line.substr(1, close - 1), close + 1};
}

std::optional<std::string_view> NextKeyName(std::string_view path, std::size_t& at) {
  while (path.substr(std::min(at, path.size()), kNameDivider.size()) == kNameDivider) {
    at += kNameDivider.size();
  }
  const std::size_t start = at;
  while (at < path.size() && path.substr(at, kNameDivider.size()) != kNameDivider) {
    at += path[at] == '\\' ? 2U : 1U;
  }
  at = std::min(at, path.size());
  if (start >= at) return std::nullopt;
  return path.substr(start, at - start);
}

std::optional<ValueLines> ReadValueLines(std::string_view file, std::size_t at) {
  TextLine line = ReadLine(file, at);
  if (line.text.empty()) return std::nullopt;
  ValueLines value;
  std::size_t equals = 1;
  if (line.text.front() == '"') {
    const std::size_t quote = FindUnescaped(line.text, '"', 1);
    if (quote == std::string_view::npos) return std::nullopt;
    value.name = Unescape(line.text.substr(1, quote - 1));
    equals = quote + 1;
  } else if (line.text.front() != '@') {
    return std::nullopt;
  }
  if (equals >= line.text.size() || line.text[equals] != '=') return std::nullopt;

  const std::size_t data = at + equals + 1;
  std::size_t end = at + line.text.size();
  value.next = line.next;
  if (file.substr(data, 3) == "hex") {
    while (IsContinued(line.text) && line.next < file.size()) {
      line = ReadLine(file, line.next);
      if (!IsHexContinuation(line.text)) break;
      end = value.next + line.text.size();
      value.next = line.next;
    }
  }
  value.data = file.substr(data, end - data);
  return value;
}

bool IsHexContinuation(std::string_view line) {
  return line.find_first_not_of("0123456789abcdefABCDEF, \t\\") == std::string_view::npos &&
         line.find_first_not_of(" \t") != std::string_view::npos;
}

}  // namespace zent
