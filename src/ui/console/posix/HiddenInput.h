#pragma once

#include <memory>

namespace zent {

/// Keeps a terminal from showing what is typed, as long as it lives. A signal that would end the
/// program meanwhile waits until the terminal shows it again, and tells so through `interrupt`; the
/// key that would suspend the program is an ordinary one. Does nothing when `fd` is no terminal.
class HiddenInput {
 public:
  explicit HiddenInput(int fd);
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;
  ~HiddenInput();

  /// A descriptor that can be read as soon as such a signal waits; -1 when there is none.
  int interrupt() const;

 private:
  struct Terminal;
  std::unique_ptr<Terminal> terminal_;
};

}  // namespace zent
