#include "platform/WebAddress.h"

#include "base/Text.h"
#include "base/Utf.h"

namespace zent {
namespace {

bool HasBlankOrControl(std::string_view address) {
  for (std::size_t at = 0; at < address.size();) {
    const char32_t c = NextCodePoint(address, at);
    if (c <= U' ' || (c >= 0x7F && c <= 0xA0)) return true;
  }
  return false;
}

}  // namespace

bool IsWebAddress(std::string_view address) {
  if (!IsUtf8(address) || HasBlankOrControl(address)) return false;
  const auto begins_with = [&](std::string_view scheme) {
    return address.size() > scheme.size() &&
           EqualsIgnoringCase(address.substr(0, scheme.size()), scheme);
  };
  return begins_with("http://") || begins_with("https://");
}

}  // namespace zent
