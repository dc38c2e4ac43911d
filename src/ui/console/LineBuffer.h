#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zent {

/// Cuts what was read into lines. LF and CR LF end a line. A line is cut at 64 KB.
class LineBuffer {
 public:
  void Append(std::string_view read);
  /// Takes the first whole line off what was read.
  std::optional<std::string> Take();
  /// At the end of the input: takes what stands behind the last line's end, if anything does.
  std::optional<std::string> TakeRest();

 private:
  std::string pending_;    ///< read, and not yet handed out
  bool too_long_ = false;  ///< the rest of the present line is dropped
};

}  // namespace zent
