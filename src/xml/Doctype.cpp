#include "xml/Doctype.h"

#include <cstddef>

namespace zent::xml {
namespace {

constexpr std::size_t kEnd = std::string_view::npos;

/// Position behind the comment or processing instruction at `at`, or `at` where there is none.
std::size_t SkipAside(std::string_view text, std::size_t at) {
  const std::string_view rest = text.substr(at);
  const std::string_view close = rest.starts_with("<!--") ? std::string_view("-->")
                                 : rest.starts_with("<?") ? std::string_view("?>")
                                                          : std::string_view();
  if (close.empty()) return at;
  const std::size_t end = text.find(close, at + 2);
  return end == kEnd ? text.size() : end + close.size();
}

/// Position behind the declaration that begins at `at`: its quoted texts, what stands in its
/// brackets and the asides there may hold any mark.
std::size_t SkipDeclaration(std::string_view text, std::size_t at) {
  int open = 0;
  while (at < text.size()) {
    const std::size_t behind = SkipAside(text, at);
    if (behind != at) {
      at = behind;
      continue;
    }
    const char mark = text[at];
    if (mark == '"' || mark == '\'') at = text.find(mark, at + 1);
    if (at == kEnd) break;
    if (mark == '<') ++open;
    if (mark == '>' && --open == 0) return at + 1;
    ++at;
  }
  return text.size();
}

}  // namespace

std::string_view DoctypeOf(std::string_view text) {
  std::size_t at = 0;
  while ((at = text.find('<', at)) != kEnd) {
    const std::size_t behind = SkipAside(text, at);
    if (behind == at) break;
    at = behind;
  }
  if (at == kEnd || !text.substr(at).starts_with("<!DOCTYPE")) return {};
  return text.substr(at, SkipDeclaration(text, at) - at);
}

}  // namespace zent::xml
