#pragma once

#include <optional>

#include "ui/console/ConsoleInput.h"
#include "ui/console/posix/HiddenInput.h"
#include "ui/console/posix/LineReader.h"

namespace zent {

/// The lines of a descriptor: a terminal, pipe or file.
class PosixConsoleInput : public ConsoleInput {
 public:
  /// Does not own `fd`.
  explicit PosixConsoleInput(int fd) : fd_(fd), lines_(fd) {}

  /// While the typing is hidden, a signal that would end the program interrupts the wait.
  Reading Next(std::optional<std::chrono::milliseconds> wait) override {
    return lines_.Next(wait, hidden_ ? hidden_->interrupt() : -1);
  }
  void HideTyping() override { hidden_.emplace(fd_); }
  void ShowTyping() override { hidden_.reset(); }

 private:
  int fd_;
  LineReader lines_;
  std::optional<HiddenInput> hidden_;
};

}  // namespace zent
