#include "xml/Tags.h"

#include <algorithm>
#include <optional>
#include <string>

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

/// Takes whatever looks like a tag for one.
bool SeemsToHaveTagWithMoreThan(std::size_t limit, std::string_view text) {
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

bool Has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// A character that XML does not have. `text` is UTF-8.
bool HasForbiddenCharacter(std::string_view text) {
  const auto is_control = [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  };
  return std::any_of(text.begin(), text.end(), is_control) || Has(text, "\xEF\xBF\xBE") ||
         Has(text, "\xEF\xBF\xBF");
}

/// What the parser reads as a whole.
struct Aside {
  std::string_view open;
  std::string_view close;
};

const Aside* AsideAt(std::string_view rest) {
  static constexpr Aside kAsides[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  const auto* const found =
      std::find_if(std::begin(kAsides), std::end(kAsides),
                   [rest](const Aside& aside) { return rest.starts_with(aside.open); });
  return found == std::end(kAsides) ? nullptr : found;
}

/// `text` without comments, CDATA sections and processing instructions. Nothing where the parser
/// may see them otherwise: behind a fault it reads on, and from the middle of one that it has given
/// up; and in a document type their marks may stand between quotes.
std::optional<std::string> WithoutAsides(std::string_view text) {
  constexpr std::size_t kLongest = 5'000'000;  // half of what the parser takes
  if (Has(text, "<!DOCTYPE") || HasForbiddenCharacter(text)) return {};
  std::string rest;
  std::size_t from = 0;
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at)) {
    const Aside* const aside = AsideAt(text.substr(at));
    if (aside == nullptr) {
      ++at;
      continue;
    }
    const std::size_t begin = at + aside->open.size();
    const std::size_t end = text.find(aside->close, begin);
    if (end == std::string_view::npos || end - begin > kLongest) return {};
    // The parser is particular about the names of instructions.
    if (aside->open == "<?" && Has(text.substr(begin, end - begin), "<")) return {};
    rest.append(text.substr(from, at - from));
    at = from = end + aside->close.size();
  }
  return rest.append(text.substr(from));
}

}  // namespace

bool HasTagWithMoreThan(std::size_t limit, std::string_view text) {
  if (!SeemsToHaveTagWithMoreThan(limit, text)) return false;
  const std::optional<std::string> tags = WithoutAsides(text);
  return !tags || SeemsToHaveTagWithMoreThan(limit, *tags);
}

}  // namespace zent::xml
