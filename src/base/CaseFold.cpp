#include "base/CaseFold.h"

#include <utf8proc.h>

#include "base/Utf.h"

namespace zent {
namespace {

char32_t UpperOf(char32_t c) {
  if (c < 0x80) return c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c;
  return static_cast<char32_t>(utf8proc_toupper(static_cast<utf8proc_int32_t>(c)));
}

}  // namespace

std::string FoldName(std::string_view name) {
  std::string folded;
  folded.reserve(name.size());
  for (std::size_t at = 0; at < name.size();) {
    const auto byte = static_cast<unsigned char>(name[at]);
    const std::size_t start = at;
    const char32_t c = NextCodePoint(name, at);
    // A byte that is no UTF-8 stands for itself alone, so that two such names stay two.
    if (c == 0xFFFD && at == start + 1 && byte >= 0x80) {
      folded.push_back(name[start]);
    } else {
      AppendUtf8(UpperOf(c), folded);
    }
  }
  return folded;
}

bool SameName(std::string_view a, std::string_view b) { return FoldName(a) == FoldName(b); }

}  // namespace zent
