#pragma once

#include <sys/types.h>

#include <csignal>
#include <cstdint>
#include <string>
#include <vector>

#include "base/Status.h"
#include "platform/posix/UniqueFd.h"
#include "platform/prefix/session/HostCommand.h"

/// What every start of a host program is made of. A start forks, and the child becomes the program;
/// a pipe that closes with that tells what has become of it.
namespace zent {

/// The texts of one start in the form that the system takes. Made before the fork: after it nothing
/// may be allocated, since another thread may have held the allocator.
class ExecTexts {
 public:
  explicit ExecTexts(const HostCommand& command);
  ExecTexts(const ExecTexts&) = delete;
  ExecTexts& operator=(const ExecTexts&) = delete;

  /// False when a text holds a NUL, at which the system would cut it.
  bool AreWhole() const;

  const char* program() const { return program_.c_str(); }
  const char* folder() const { return folder_.c_str(); }
  char* const* argv() const { return argv_.data(); }
  char* const* envp() const { return envp_.data(); }

 private:
  std::string program_;
  std::string folder_;
  std::vector<std::string> texts_;
  std::vector<std::string> variables_;
  std::vector<char*> argv_;
  std::vector<char*> envp_;
};

/// Both ends of a pipe, with numbers above the standard streams, which the child replaces.
struct StartPipe {
  static Result<StartPipe> Open();

  UniqueFd reader;
  UniqueFd writer;
};

/// While this lives no signal comes: no handler of ours may run in the child.
class SignalsBlocked {
 public:
  SignalsBlocked();
  ~SignalsBlocked();
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_ = {};
};

// --- In a child, where nothing may be allocated. `pipe` is the writer of a StartPipe. ---

/// Tells the process id of the program, before it is there.
void TellStarted(int pipe, pid_t process);
/// Tells why there is no program: an errno.
void TellFailed(int pipe, int error);
/// Becomes the program: its standard streams are empty, but for the standard error that is given
/// (-1: none); no other descriptor of ours is open in it, and every signal has its default.
[[noreturn]] void BecomeProgram(const ExecTexts& texts, int pipe, int standard_error);

// --- In the parent ---

/// Reads until the child has become the program (which closes its end) or has said why not; the
/// process id that was told. Close the parent's own writer before.
Result<std::uint32_t> ReadStart(int pipe);

}  // namespace zent
