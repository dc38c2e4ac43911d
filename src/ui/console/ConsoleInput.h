#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace zent {

/// Where the lines come from that a person types at a console window, or what stands in for them.
class ConsoleInput {
 public:
  enum class State : std::uint8_t {
    Line,       ///< `line` holds it, without its end
    End,        ///< nothing comes any more (a terminal may go on after its end-of-file key)
    Nothing,    ///< no whole line within the time
    Interrupt,  ///< the program is to end
  };
  struct Reading {
    State state = State::Nothing;
    std::string line = {};  ///< as it was typed, at most 64 KB
  };

  virtual ~ConsoleInput() = default;
  /// The next line, waiting `wait` for it, or without limit.
  virtual Reading Next(std::optional<std::chrono::milliseconds> wait) = 0;
  /// Drops what was typed before, and keeps what is typed from being shown until ShowTyping. Does
  /// nothing to an input that shows nothing.
  virtual void HideTyping() = 0;
  virtual void ShowTyping() = 0;
};

}  // namespace zent
