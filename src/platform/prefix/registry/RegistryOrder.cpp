#include "platform/prefix/registry/RegistryOrder.h"

#include <utf8proc.h>

#include <string>

#include "base/Utf.h"

namespace zent {
namespace {

/// The UTF-16 of the small letters; surrogates have no case and stay.
std::u16string SmallLetters(std::string_view name) {
  std::u16string units = ToUtf16(name);
  for (char16_t& unit : units) {
    const auto lower = static_cast<char32_t>(utf8proc_tolower(unit));
    if (lower < 0x10000) unit = static_cast<char16_t>(lower);
  }
  return units;
}

}  // namespace

bool ComesBefore(std::string_view a, std::string_view b) {
  return SmallLetters(a) < SmallLetters(b);
}

}  // namespace zent
