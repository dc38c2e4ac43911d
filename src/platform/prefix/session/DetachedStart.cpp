#include "platform/prefix/session/DetachedStart.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

#include "platform/posix/PosixErrors.h"
#include "platform/posix/UniqueFd.h"

namespace zent {
namespace {

/// What the started processes tell us through the pipe; each is one write, and so never mixed.
struct Report {
  enum class Kind : int { Started, FolderFailed, ProgramFailed };
  Kind kind = Kind::Started;
  int value = 0;  ///< the process id, or the errno of a failure
};

/// The texts of one start in the form that the system takes. Made before the fork: after it nothing
/// may be allocated, since another thread may have held the allocator.
class ExecTexts {
 public:
  explicit ExecTexts(const HostCommand& command)
      : program_(command.program.string()), folder_(command.folder.string()) {
    texts_.push_back(program_);
    texts_.insert(texts_.end(), command.arguments.begin(), command.arguments.end());
    variables_ = command.environment;
    for (char** own = environ; own != nullptr && *own != nullptr; ++own) {
      if (!IsReplaced(*own, command.environment)) variables_.emplace_back(*own);
    }
    argv_ = Pointers(texts_);
    envp_ = Pointers(variables_);
  }
  ExecTexts(const ExecTexts&) = delete;
  ExecTexts& operator=(const ExecTexts&) = delete;

  /// False when a text holds a NUL, at which the system would cut it.
  bool AreWhole() const {
    const auto has_nul = [](const std::string& text) {
      return text.find('\0') != std::string::npos;
    };
    return std::none_of(texts_.begin(), texts_.end(), has_nul) &&
           std::none_of(variables_.begin(), variables_.end(), has_nul) && !has_nul(folder_);
  }

  const char* program() const { return program_.c_str(); }
  const char* folder() const { return folder_.c_str(); }
  char* const* argv() const { return argv_.data(); }
  char* const* envp() const { return envp_.data(); }

 private:
  static bool IsReplaced(std::string_view own, const std::vector<std::string>& by) {
    const std::string_view name = own.substr(0, own.find('='));
    return std::any_of(by.begin(), by.end(), [&](const std::string& variable) {
      return variable.substr(0, variable.find('=')) == name;
    });
  }

  static std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
  }

  std::string program_;
  std::string folder_;
  std::vector<std::string> texts_;
  std::vector<std::string> variables_;
  std::vector<char*> argv_;
  std::vector<char*> envp_;
};

void Tell(int pipe, Report::Kind kind, int value) {
  const Report report{kind, value};
  while (::write(pipe, &report, sizeof report) < 0 && errno == EINTR) {
  }
}

/// The standard streams become empty ones; every other descriptor ends with the exec.
void GiveUpDescriptors() {
  const int nothing = ::open("/dev/null", O_RDWR);
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (nothing >= 0 && nothing != stream) ::dup2(nothing, stream);
  }
  // A kernel that does not know the call leaves it to O_CLOEXEC, with which we open everything.
  ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
}

void ResetSignals() {
  struct sigaction standard = {};
  standard.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number) ::sigaction(number, &standard, nullptr);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// The second child: becomes the program.
[[noreturn]] void BecomeProgram(const ExecTexts& texts, int pipe) {
  if (::chdir(texts.folder()) != 0) {
    Tell(pipe, Report::Kind::FolderFailed, errno);
    ::_exit(127);
  }
  GiveUpDescriptors();
  ResetSignals();
  ::execve(texts.program(), texts.argv(), texts.envp());
  Tell(pipe, Report::Kind::ProgramFailed, errno);
  ::_exit(127);
}

/// The first child: ends at once, so that the second one belongs to the system.
[[noreturn]] void StartAndLeave(const ExecTexts& texts, int pipe) {
  ::setsid();
  const pid_t program = ::fork();
  if (program == 0) BecomeProgram(texts, pipe);
  if (program < 0) {
    Tell(pipe, Report::Kind::ProgramFailed, errno);
  } else {
    Tell(pipe, Report::Kind::Started, program);
  }
  ::_exit(0);
}

RuntimeError StartError(const Report& report) {
  if (report.kind == Report::Kind::FolderFailed) return StandardError(kPathNotFound);
  switch (report.value) {
    case EACCES:
    case EPERM:
      return StandardError(kPermissionDenied);
    case ENOEXEC:
    case E2BIG:
      return StandardError(kInvalidProcedureCall);
    case ENOTDIR:
      return StandardError(kFileNotFound);
    default:
      return ErrorOfErrno(report.value);
  }
}

/// Reads until every writer is gone: the first child has left, and the program has taken over
/// (which closes its end) or said why not.
Result<std::uint32_t> ReadOutcome(int pipe) {
  std::uint32_t process = 0;
  Report failure;
  for (;;) {
    Report report;
    const ssize_t count = ::read(pipe, &report, sizeof report);
    if (count < 0 && errno == EINTR) continue;
    if (count != static_cast<ssize_t>(sizeof report)) break;
    if (report.kind == Report::Kind::Started) {
      process = static_cast<std::uint32_t>(report.value);
    } else {
      failure = report;
    }
  }
  if (failure.kind != Report::Kind::Started) return StartError(failure);
  if (process == 0) return StandardError(kDeviceIoError);
  return process;
}

/// The end of a pipe with a number above the standard streams, which the child replaces.
UniqueFd AboveStreams(int fd) {
  if (fd > STDERR_FILENO) return UniqueFd(fd);
  const UniqueFd low(fd);
  return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

Result<std::uint32_t> StartDetached(const HostCommand& command) {
  const ExecTexts texts(command);
  if (!texts.AreWhole()) return StandardError(kInvalidProcedureCall);
  std::array<int, 2> ends = {-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return ErrorOfErrno(errno);
  const UniqueFd reader(ends[0]);
  UniqueFd writer = AboveStreams(ends[1]);
  if (!writer.ok()) return ErrorOfErrno(errno);

  // No handler of ours may run in the child.
  sigset_t all;
  sigset_t before;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before);
  const pid_t child = ::fork();
  const int error = errno;
  if (child == 0) StartAndLeave(texts, writer.get());
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (child < 0) return ErrorOfErrno(error);

  writer.Reset();
  Result<std::uint32_t> outcome = ReadOutcome(reader.get());
  while (::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return outcome;
}

}  // namespace zent
