#pragma once

#include <chrono>
#include <optional>

#include "ui/console/ConsoleInput.h"
#include "ui/console/LineBuffer.h"

namespace zent {

/// Lines of a terminal, pipe or file, read no further than needed.
class LineReader {
 public:
  using State = ConsoleInput::State;
  using Reading = ConsoleInput::Reading;

  /// Does not own `fd`.
  explicit LineReader(int fd) : fd_(fd) {}

  /// The next line, waiting `wait` for it, or without limit. LF and CR LF end a line, and so does
  /// the end of the input behind at least one character. A line is cut at 64 KB. `interrupt` is a
  /// descriptor that ends the wait when it can be read, -1 for none.
  Reading Next(std::optional<std::chrono::milliseconds> wait, int interrupt = -1);

 private:
  enum class Arrival { Input, Timeout, Interrupt };

  Arrival WaitForInput(std::optional<std::chrono::steady_clock::time_point> end,
                       int interrupt) const;
  bool Fill();

  int fd_;
  LineBuffer lines_;
};

}  // namespace zent
