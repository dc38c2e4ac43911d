#include "scenarios/HostProgram.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace zent::testing {
namespace {

[[noreturn]] void BecomeProgram(const std::vector<std::string>& arguments,
                                const std::string& folder, int output) {
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  const int nothing = ::open("/dev/null", O_RDONLY);
  ::dup2(nothing, STDIN_FILENO);
  ::dup2(output, STDOUT_FILENO);
  ::dup2(output, STDERR_FILENO);
  if (::chdir(folder.c_str()) == 0) ::execv(argv[0], argv.data());
  ::_exit(127);
}

}  // namespace

ProgramEnd RunHostProgram(const std::vector<std::string>& arguments, const std::string& folder) {
  std::array<int, 2> pipe_ends = {};
  if (::pipe2(pipe_ends.data(), O_CLOEXEC) != 0) return {};
  const pid_t child = ::fork();
  if (child == 0) BecomeProgram(arguments, folder, pipe_ends[1]);
  ::close(pipe_ends[1]);

  ProgramEnd end;
  std::array<char, 4096> piece = {};
  while (true) {
    const ssize_t got = ::read(pipe_ends[0], piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    end.output.append(piece.data(), static_cast<std::size_t>(got));
  }
  ::close(pipe_ends[0]);

  int status = 0;
  ::waitpid(child, &status, 0);
  end.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return end;
}

}  // namespace zent::testing
