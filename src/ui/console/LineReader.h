#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace zent {

/// Lines of a terminal, pipe or file, read no further than needed.
class LineReader {
 public:
  enum class State {
    Line,       ///< `line` holds it, without its end
    End,        ///< nothing comes any more (a terminal may go on after its end-of-file key)
    Nothing,    ///< no whole line within the time
    Interrupt,  ///< the other descriptor became readable first
  };
  struct Reading {
    State state = State::Nothing;
    std::string line = {};
  };

  /// Does not own `fd`.
  explicit LineReader(int fd) : fd_(fd) {}

  /// The next line, waiting `wait` for it, or without limit. LF and CR LF end a line, and so does
  /// the end of the input behind at least one character. A line is cut at 64 KB. `interrupt` is a
  /// descriptor that ends the wait when it can be read, -1 for none.
  Reading Next(std::optional<std::chrono::milliseconds> wait, int interrupt = -1);

 private:
  enum class Arrival { Input, Timeout, Interrupt };

  std::optional<std::string> TakeLine();
  Arrival WaitForInput(std::optional<std::chrono::steady_clock::time_point> end,
                       int interrupt) const;
  bool Fill();

  int fd_;
  std::string pending_;    ///< read, and not yet handed out
  bool too_long_ = false;  ///< the rest of the present line is dropped
};

}  // namespace zent
