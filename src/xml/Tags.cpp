#include "xml/Tags.h"

namespace zent::xml {
namespace {

/// The number of quoted values in the tag that `rest` begins with, up to its end.
std::size_t ValuesIn(std::string_view rest) {
  std::size_t values = 0;
  for (std::size_t at = 0; (at = rest.find_first_of(">\"'", at)) != std::string_view::npos; ++at) {
    if (rest[at] == '>') break;
    ++values;
    at = rest.find(rest[at], at + 1);
    if (at == std::string_view::npos) break;
  }
  return values;
}

}  // namespace

bool HasTagWithMoreThan(std::size_t limit, std::string_view text) {
  // No tag holds the mark that begins the next one, not even quoted.
  for (std::size_t at = text.find('<'); at != std::string_view::npos;) {
    const std::size_t next = text.find('<', at + 1);
    const std::string_view tag = text.substr(at, next - at);
    constexpr std::size_t kShortest = 4;  // a="b is no shorter
    if (tag.size() / kShortest > limit && !tag.starts_with("<!") && !tag.starts_with("<?") &&
        ValuesIn(tag) > limit) {
      return true;
    }
    at = next;
  }
  return false;
}

}  // namespace zent::xml
