#include "platform/ErrorOutput.h"

#include <algorithm>

#include "base/Utf.h"

namespace zent {
namespace {

constexpr std::size_t kLongestSequence = 4;  // bytes of a character in UTF-8

/// `bytes` without the beginning of a character at their end; unchanged when they are no UTF-8.
std::string_view WholeCharacters(std::string_view bytes) {
  for (std::size_t less = 0; less < std::min(kLongestSequence, bytes.size()); ++less) {
    const std::string_view shorter = bytes.substr(0, bytes.size() - less);
    if (IsUtf8(shorter)) return shorter;
  }
  return bytes;
}

}  // namespace

void ErrorOutput::Add(std::string_view bytes) {
  const std::string_view fitting = bytes.substr(0, kLimit - bytes_.size());
  bytes_ += fitting;
  cut_ = cut_ || fitting.size() < bytes.size();
}

std::string ErrorOutput::Text(std::string (*of_ansi)(std::string_view)) const {
  const std::string_view whole = cut_ ? WholeCharacters(bytes_) : std::string_view(bytes_);
  return IsUtf8(whole) ? std::string(whole) : of_ansi(whole);
}

}  // namespace zent
