#include "platform/prefix/session/WaitedStart.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <thread>
#include <utility>

#include "base/CodePage.h"
#include "platform/ErrorOutput.h"
#include "platform/posix/PosixErrors.h"
#include "platform/prefix/session/HostStart.h"

namespace zent {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kStep(10);
constexpr int kEndedBySignal = 128;  // as shells count
// As much as a pipe holds: what the program has started itself may write on and on.
constexpr int kReadsInOneGo = 16;

// One that is let go of stays our child without anybody waiting for it, and is gone when we are.
class WaitedProgram : public RunningProgram {
 public:
  WaitedProgram(pid_t process, UniqueFd standard_error)
      : process_(process), standard_error_(std::move(standard_error)) {}

  Result<std::optional<ProgramEnd>> Wait(milliseconds time) override {
    const auto latest = steady_clock::now() + time;
    for (;;) {
      if (const Status looked = LookForEnd(); !looked.ok()) return looked.error();
      // In this order: what was written before the end is in the pipe by now.
      ReadErrorOutput();
      if (exit_code_) return std::optional(ProgramEnd{*exit_code_, output_.Text(FromAnsi)});
      const auto left = std::chrono::ceil<milliseconds>(latest - steady_clock::now());
      if (left <= milliseconds(0)) return std::optional<ProgramEnd>();
      std::this_thread::sleep_for(std::min(left, kStep));
    }
  }

 private:
  Status LookForEnd() {
    if (exit_code_) return {};
    int state = 0;
    const pid_t ended = ::waitpid(process_, &state, WNOHANG);
    if (ended < 0 && errno != EINTR) return ErrorOfErrno(errno);
    if (ended != process_) return {};
    const int code = WIFSIGNALED(state) ? kEndedBySignal + WTERMSIG(state) : WEXITSTATUS(state);
    exit_code_ = static_cast<std::uint32_t>(code);
    return {};
  }

  void ReadErrorOutput() {
    std::array<char, 4096> buffer = {};
    for (int reads = 0; reads < kReadsInOneGo; ++reads) {
      const ssize_t count = ::read(standard_error_.get(), buffer.data(), buffer.size());
      if (count <= 0) return;
      output_.Add({buffer.data(), static_cast<std::size_t>(count)});
    }
  }

  pid_t process_;
  UniqueFd standard_error_;
  ErrorOutput output_;
  std::optional<std::uint32_t> exit_code_;
};

void HearOfChildren() {
  struct sigaction present = {};
  ::sigaction(SIGCHLD, nullptr, &present);
  if (present.sa_handler == SIG_IGN) ::signal(SIGCHLD, SIG_DFL);
}

[[noreturn]] void StartInSession(const ExecTexts& texts, int pipe, int standard_error) {
  ::setsid();
  TellStarted(pipe, ::getpid());
  BecomeProgram(texts, pipe, standard_error);
}

}  // namespace

Result<std::unique_ptr<RunningProgram>> StartWaited(const HostCommand& command) {
  const ExecTexts texts(command);
  if (!texts.AreWhole()) return StandardError(kInvalidProcedureCall);
  Result<StartPipe> start = StartPipe::Open();
  if (!start.ok()) return start.error();
  Result<StartPipe> errors = StartPipe::Open();
  if (!errors.ok()) return errors.error();
  UniqueFd& reader = errors.value().reader;
  if (::fcntl(reader.get(), F_SETFL, O_NONBLOCK) != 0) return ErrorOfErrno(errno);

  HearOfChildren();
  pid_t child = -1;
  int error = 0;
  {
    const SignalsBlocked blocked;
    child = ::fork();
    error = errno;
    if (child == 0) {
      StartInSession(texts, start.value().writer.get(), errors.value().writer.get());
    }
  }
  if (child < 0) return ErrorOfErrno(error);

  start.value().writer.Reset();
  errors.value().writer.Reset();
  const Result<std::uint32_t> started = ReadStart(start.value().reader.get());
  if (started.ok()) {
    return std::unique_ptr<RunningProgram>(
        std::make_unique<WaitedProgram>(child, std::move(reader)));
  }
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return started.error();
}

}  // namespace zent
