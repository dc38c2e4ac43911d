#include "scenarios/kill/TracedRun.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "scenarios/kill/SystemCalls.h"

namespace zent::testing {
namespace {

namespace fs = std::filesystem;

constexpr int kRefused = 126;  // exit code: the kernel does not let itself be watched
constexpr int kNotStarted = 127;

[[noreturn]] void BecomeWatched(const TracedProgram& program) {
  std::vector<char*> argv;
  for (const std::string& argument : program.arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  const int nothing = ::open("/dev/null", O_RDWR);
  for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) ::dup2(nothing, fd);
  ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  if (::chdir(program.folder.c_str()) != 0) ::_exit(kNotStarted);
  if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(kRefused);
  ::execv(argv[0], argv.data());
  ::_exit(kNotStarted);
}

/// A program that stands at the start or the end of its system calls.
class Watched {
 public:
  explicit Watched(const TracedProgram& program) : process_(::fork()) {
    if (process_ == 0) BecomeWatched(program);
  }
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;
  ~Watched() { Kill(); }

  /// Waits for the start of the program; what kept it from starting, or nothing.
  std::string Start() {
    if (process_ < 0 || !Wait()) return "no process";
    if (WIFEXITED(status_) && WEXITSTATUS(status_) == kRefused) return "ptrace is refused here";
    if (!WIFSTOPPED(status_)) return "the program does not start";
    constexpr long kOptions = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
    if (::ptrace(PTRACE_SETOPTIONS, process_, nullptr, kOptions) == 0) return "";
    return std::string("ptrace is refused here: ") + std::strerror(errno);
  }

  /// Goes on to the start of the next system call; nothing when the program ended.
  std::optional<SystemCall> NextCall() {
    int signal = 0;
    while (::ptrace(PTRACE_SYSCALL, process_, nullptr, static_cast<long>(signal)) == 0 && Wait()) {
      if (!WIFSTOPPED(status_)) return std::nullopt;
      const bool at_call = WSTOPSIG(status_) == (SIGTRAP | 0x80);
      signal = at_call ? 0 : WSTOPSIG(status_);
      if (!at_call) continue;
      struct __ptrace_syscall_info info = {};
      const long size = ::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info);
      if (size <= 0) return std::nullopt;
      if (info.op != PTRACE_SYSCALL_INFO_ENTRY) continue;
      SystemCall call = {.number = info.entry.nr};
      std::copy(std::begin(info.entry.args), std::end(info.entry.args), call.arguments.begin());
      return call;
    }
    return std::nullopt;
  }

  /// Where a descriptor of the program leads; empty for none.
  fs::path PathOf(int fd) const {
    const fs::path proc = fs::path("/proc") / std::to_string(process_);
    std::error_code error;
    return fs::read_symlink(fd == AT_FDCWD ? proc / "cwd" : proc / "fd" / std::to_string(fd),
                            error);
  }

  void Kill() {
    if (ended_ || process_ <= 0) return;
    ::kill(process_, SIGKILL);
    while (!ended_ && Wait()) continue;
  }

  /// 128 and the signal's number when a signal ended it; -1 while it runs.
  int exit_code() const {
    if (!ended_) return -1;
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : 128 + WTERMSIG(status_);
  }

 private:
  bool Wait() {
    while (::waitpid(process_, &status_, 0) < 0) {
      if (errno != EINTR) return false;
    }
    ended_ = !WIFSTOPPED(status_);
    return true;
  }

  pid_t process_;
  int status_ = 0;
  bool ended_ = false;
};

bool ChangesIn(const fs::path& folder, const Watched& watched, const SystemCall& call) {
  const Changes changes = ChangesOf(call);
  if (changes != Changes::Descriptor) return changes == Changes::Path;
  const std::string path = watched.PathOf(static_cast<int>(call.arguments[0])).string();
  return path.compare(0, folder.string().size(), folder.string()) == 0;
}

}  // namespace

TracedEnd RunTraced(const TracedProgram& program, std::size_t kill_at) {
  const fs::path folder = fs::canonical(program.folder);
  Watched watched(program);
  TracedEnd end;
  end.error = watched.Start();
  if (!end.error.empty()) return end;

  while (const std::optional<SystemCall> call = watched.NextCall()) {
    if (!ChangesIn(folder, watched, *call)) continue;
    end.calls.push_back(NameOf(*call));
    if (end.calls.size() != kill_at) continue;
    watched.Kill();
    end.killed = true;
    return end;
  }
  end.exit_code = watched.exit_code();
  if (end.exit_code < 0) end.error = "the system calls cannot be read";
  return end;
}

}  // namespace zent::testing
