#include "xml/XPathText.h"

#include <cstddef>

namespace zent::xml {
namespace {

bool IsNameByte(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
         (byte >= 'a' && byte <= 'z') || byte == '_' || byte == '-' || byte == '.';
}

}  // namespace

RuntimeError Unusable(std::string_view xpath, const std::string& reason, int number) {
  constexpr std::size_t kMostShown = 200;
  std::string shown(xpath.substr(0, kMostShown));
  if (xpath.size() > kMostShown) shown += "...";
  return {number, "The XPath expression \"" + shown + "\" cannot be used: " + reason};
}

std::optional<std::string> FirstPrefix(std::string_view xpath) {
  for (std::size_t at = 0; at < xpath.size(); ++at) {
    const char mark = xpath[at];
    if (mark == '"' || mark == '\'') {
      at = xpath.find(mark, at + 1);
      if (at == std::string_view::npos) return {};
    }
    if (mark != ':') continue;
    if (xpath.substr(at).starts_with("::")) {  // an axis
      ++at;
      continue;
    }
    std::size_t start = at;
    while (start > 0 && IsNameByte(xpath[start - 1])) --start;
    const std::string_view prefix = xpath.substr(start, at - start);
    if (!prefix.empty() && prefix != "xml") return std::string(prefix);
  }
  return {};
}

}  // namespace zent::xml
