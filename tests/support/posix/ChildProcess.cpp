#include "support/posix/ChildProcess.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string_view>

#include "platform/posix/ReplaceFile.h"
#include "platform/posix/UniqueFd.h"

namespace zent::testing {
namespace {

constexpr uid_t kOrdinaryUser = 65534;

struct Pipe {
  Pipe() {
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) == 0) {
      read = UniqueFd(ends[0]);
      write = UniqueFd(ends[1]);
    }
  }
  UniqueFd read;
  UniqueFd write;
};

std::string ReadAll(const UniqueFd& fd) {
  std::string text;
  std::array<char, 4096> buffer = {};
  for (;;) {
    const ssize_t size = ::read(fd.get(), buffer.data(), buffer.size());
    if (size <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(size));
  }
}

/// Does not return. Success is told by closing the pipe, failure by a text in it.
[[noreturn]] void HoldUntilKilled(const std::filesystem::path& file, Hold how, UniqueFd answer) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (how == Hold::Program) {
    ::execl(file.c_str(), file.c_str(), "1000", nullptr);
  } else {
    const int fd = ::open(file.c_str(), how == Hold::Writing ? O_RDWR : O_RDONLY);
    bool held = fd >= 0;
    if (held && how == Hold::Mapped) {
      held = ::mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE, fd, 0) != MAP_FAILED;
      ::close(fd);
    }
    if (held) {
      answer.Reset();
      for (;;) ::pause();
    }
  }
  WriteAll(answer.get(), "failed");
  ::_exit(1);
}

}  // namespace

HoldingProcess::HoldingProcess(const std::filesystem::path& file, Hold how) {
  Pipe answer;
  process_ = ::fork();
  if (process_ == 0) HoldUntilKilled(file, how, std::move(answer.write));
  answer.write.Reset();
  ok_ = process_ > 0 && ReadAll(answer.read).empty();
}

HoldingProcess::~HoldingProcess() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

std::string RunInChild(const std::function<std::string()>& work) {
  Pipe answer;
  const pid_t child = ::fork();
  if (child == 0) {
    WriteAll(answer.write.get(), "=" + work());
    ::_exit(0);
  }
  answer.write.Reset();
  const std::string text = ReadAll(answer.read);
  if (child > 0) ::waitpid(child, nullptr, 0);
  return text.empty() ? "no answer" : text.substr(1);
}

std::string RunAsOrdinaryUser(const std::function<std::string()>& work) {
  return RunInChild([&]() -> std::string {
    if (::geteuid() == 0 && (::setresgid(kOrdinaryUser, kOrdinaryUser, kOrdinaryUser) != 0 ||
                             ::setresuid(kOrdinaryUser, kOrdinaryUser, kOrdinaryUser) != 0)) {
      return "the rights of root stayed";
    }
    return work();
  });
}

void GiveToOrdinaryUser(const std::filesystem::path& path) {
  if (::geteuid() != 0) return;
  ::lchown(path.c_str(), kOrdinaryUser, kOrdinaryUser);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
    ::lchown(entry.path().c_str(), kOrdinaryUser, kOrdinaryUser);
  }
}

}  // namespace zent::testing
