#include "platform/prefix/session/HostStart.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "platform/posix/PosixErrors.h"

namespace zent {
namespace {

/// What the started processes tell us through the pipe; each is one write, and so never mixed.
struct Report {
  enum class Kind : int { Started, FolderFailed, ProgramFailed };
  Kind kind = Kind::Started;
  int value = 0;  ///< the process id, or the errno of a failure
};

bool IsReplaced(std::string_view own, const std::vector<std::string>& by) {
  const std::string_view name = own.substr(0, own.find('='));
  return std::any_of(by.begin(), by.end(), [&](const std::string& variable) {
    return variable.substr(0, variable.find('=')) == name;
  });
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

void Tell(int pipe, Report::Kind kind, int value) {
  const Report report{kind, value};
  while (::write(pipe, &report, sizeof report) < 0 && errno == EINTR) {
  }
}

/// Every descriptor but the standard streams ends with the exec.
void GiveUpDescriptors(int standard_error) {
  const int nothing = ::open("/dev/null", O_RDWR);
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (nothing >= 0 && nothing != stream) ::dup2(nothing, stream);
  }
  if (standard_error >= 0) ::dup2(standard_error, STDERR_FILENO);
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

/// The end of a pipe with a number above the standard streams, which the child replaces.
UniqueFd AboveStreams(int fd) {
  if (fd > STDERR_FILENO) return UniqueFd(fd);
  const UniqueFd low(fd);
  return UniqueFd(::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

ExecTexts::ExecTexts(const HostCommand& command)
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

bool ExecTexts::AreWhole() const {
  const auto has_nul = [](const std::string& text) { return text.find('\0') != std::string::npos; };
  return std::none_of(texts_.begin(), texts_.end(), has_nul) &&
         std::none_of(variables_.begin(), variables_.end(), has_nul) && !has_nul(folder_);
}

Result<StartPipe> StartPipe::Open() {
  std::array<int, 2> ends = {-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return ErrorOfErrno(errno);
  StartPipe pipe{.reader = AboveStreams(ends[0]), .writer = AboveStreams(ends[1])};
  if (!pipe.reader.ok() || !pipe.writer.ok()) return StandardError(kTooManyFiles);
  return pipe;
}

SignalsBlocked::SignalsBlocked() {
  sigset_t all;
  ::sigfillset(&all);
  ::pthread_sigmask(SIG_SETMASK, &all, &before_);
}

SignalsBlocked::~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

void TellStarted(int pipe, pid_t process) { Tell(pipe, Report::Kind::Started, process); }

void TellFailed(int pipe, int error) { Tell(pipe, Report::Kind::ProgramFailed, error); }

void BecomeProgram(const ExecTexts& texts, int pipe, int standard_error) {
  if (::chdir(texts.folder()) != 0) {
    Tell(pipe, Report::Kind::FolderFailed, errno);
    ::_exit(127);
  }
  GiveUpDescriptors(standard_error);
  ResetSignals();
  // Nobody may be left to read it: a program that runs on must not end by its own complaint.
  if (standard_error >= 0) ::signal(SIGPIPE, SIG_IGN);
  ::execve(texts.program(), texts.argv(), texts.envp());
  TellFailed(pipe, errno);
  ::_exit(127);
}

Result<std::uint32_t> ReadStart(int pipe) {
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

}  // namespace zent
