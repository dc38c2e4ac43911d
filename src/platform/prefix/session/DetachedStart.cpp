#include "platform/prefix/session/DetachedStart.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/PosixErrors.h"
#include "platform/prefix/session/HostStart.h"

namespace zent {
namespace {

/// The first child: ends at once, so that the second one, the program, belongs to the system.
[[noreturn]] void StartAndLeave(const ExecTexts& texts, int pipe) {
  ::setsid();
  const pid_t program = ::fork();
  if (program == 0) BecomeProgram(texts, pipe, -1);
  if (program < 0) {
    TellFailed(pipe, errno);
  } else {
    TellStarted(pipe, program);
  }
  ::_exit(0);
}

}  // namespace

Result<std::uint32_t> StartDetached(const HostCommand& command) {
  const ExecTexts texts(command);
  if (!texts.AreWhole()) return StandardError(kInvalidProcedureCall);
  Result<StartPipe> pipe = StartPipe::Open();
  if (!pipe.ok()) return pipe.error();

  pid_t child = -1;
  int error = 0;
  {
    const SignalsBlocked blocked;
    child = ::fork();
    error = errno;
    if (child == 0) StartAndLeave(texts, pipe.value().writer.get());
  }
  if (child < 0) return ErrorOfErrno(error);

  pipe.value().writer.Reset();
  Result<std::uint32_t> outcome = ReadStart(pipe.value().reader.get());
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return outcome;
}

}  // namespace zent
