#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zent {

/// The beginning of what a program writes to its standard error; the rest is dropped, so that a
/// program that never stops writing costs nothing.
class ErrorOutput {
 public:
  static constexpr std::size_t kLimit = 4096;  ///< bytes

  void Add(std::string_view bytes);

  /// The text: bytes that are UTF-8 as they are, others by `of_ansi`. A character that the limit
  /// cuts is left out.
  std::string Text(std::string (*of_ansi)(std::string_view)) const;

 private:
  std::string bytes_;
  bool cut_ = false;
};

}  // namespace zent
