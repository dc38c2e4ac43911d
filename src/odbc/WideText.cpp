#include "odbc/WideText.h"

#include <algorithm>
#include <utility>

#include "base/Utf.h"

namespace zent::odbc {
namespace {

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

}  // namespace

std::vector<SQLWCHAR> ToWide(std::string_view utf8) {
  const std::u16string text = ToUtf16(utf8);
  std::vector<SQLWCHAR> wide(text.begin(), text.end());
  wide.push_back(0);
  return wide;
}

std::string FromWide(const std::vector<SQLWCHAR>& buffer, std::size_t length) {
  const std::size_t count = std::min(length, buffer.size());
  return FromUtf16(std::u16string(buffer.data(), buffer.data() + count));
}

std::string WideTextPieces::Add(const SQLWCHAR* units, std::size_t count) {
  std::u16string text = std::exchange(kept_, {});
  text.append(units, units + count);
  if (!text.empty() && IsHighSurrogate(text.back())) {
    kept_ = text.back();
    text.pop_back();
  }
  return FromUtf16(text);
}

std::string WideTextPieces::Finish() { return FromUtf16(std::exchange(kept_, {})); }

}  // namespace zent::odbc
