#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <sstream>
#include <string>
#include <thread>

#include "ui/console/ConsoleWindow.h"
#include "ui/console/posix/HiddenInput.h"
#include "ui/console/posix/InputPipe.h"
#include "ui/console/posix/PosixConsoleInput.h"

namespace zent {
namespace {

using std::chrono::milliseconds;

/// Both ends of a terminal: what the user types goes into `user`, a program reads `program`.
class PseudoTerminal {
 public:
  PseudoTerminal() { EXPECT_EQ(::openpty(&user_, &program_, nullptr, nullptr, nullptr), 0); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;
  ~PseudoTerminal() {
    ::close(user_);
    ::close(program_);
  }

  int program() const { return program_; }
  bool Shows() const { return (Settings().c_lflag & ECHO) != 0; }
  bool CanSuspend() const { return Settings().c_cc[VSUSP] != _POSIX_VDISABLE; }
  /// Waits until input is hidden, 10 seconds at most.
  bool WaitUntilHidden() const {
    for (int i = 0; i < 2000 && Shows(); ++i) std::this_thread::sleep_for(milliseconds(5));
    return !Shows();
  }
  bool Type(const std::string& keys) const {
    return ::write(user_, keys.data(), keys.size()) == static_cast<ssize_t>(keys.size());
  }
  /// What the terminal has shown so far.
  std::string Shown() const {
    ::fcntl(user_, F_SETFL, O_NONBLOCK);
    std::string shown(4096, '\0');
    const ssize_t count = ::read(user_, shown.data(), shown.size());
    shown.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return shown;
  }

 private:
  termios Settings() const {
    termios settings = {};
    ::tcgetattr(program_, &settings);
    return settings;
  }

  int user_ = -1;
  int program_ = -1;
};

struct TypedCase {
  const char* what;
  const char* keys;
  std::optional<std::string> text;
};

const TypedCase kTypedCases[] = {
    {"Enter ends the text", "secret\n", "secret"},
    {"blanks belong to it", "  a b \n", "  a b "},
    {"Enter alone is an empty text", "\n", ""},
    {"the end-of-file key cancels", "\x04", std::nullopt},
    {"the key that suspends is an ordinary one",
     "a\x1A"
     "b\n",
     "a\x1A"
     "b"},
    {"the erase key works", "secrez\x7Ft\n", "secret"},
};

TEST(HiddenInput, KeepsATerminalFromShowingWhatIsTyped) {
  for (const TypedCase& row : kTypedCases) {
    SCOPED_TRACE(row.what);
    const PseudoTerminal terminal;
    std::ostringstream output;
    PosixConsoleInput input(terminal.program());
    ConsoleWindow window(input, output, true);
    std::optional<std::string> text = "unset";
    std::thread asking(
        [&] { text = window.AskText({.title = "Login", .prompt = "Password:", .hidden = true}); });
    EXPECT_TRUE(terminal.WaitUntilHidden());
    EXPECT_TRUE(terminal.Type(row.keys));
    asking.join();

    EXPECT_EQ(text, row.text);
    EXPECT_EQ(terminal.Shown(), "");
    EXPECT_EQ(output.str(), "Login\nPassword:\n> \n");
    EXPECT_TRUE(terminal.Shows()) << "the terminal shows again what is typed";
    EXPECT_TRUE(terminal.CanSuspend());
  }
}

TEST(HiddenInput, DropsWhatWasTypedBeforeTheQuestion) {
  const PseudoTerminal terminal;
  ASSERT_TRUE(terminal.Type("too early\n"));
  pollfd arrival = {terminal.program(), POLLIN, 0};
  ASSERT_EQ(::poll(&arrival, 1, 10000), 1);
  const HiddenInput hidden(terminal.program());
  EXPECT_FALSE(terminal.Shows());
  ::fcntl(terminal.program(), F_SETFL, O_NONBLOCK);
  char byte = 0;
  EXPECT_EQ(::read(terminal.program(), &byte, 1), -1);
}

TEST(HiddenInput, DoesNothingToAPipe) {
  const testing::InputPipe pipe;
  const HiddenInput hidden(pipe.fd());
  EXPECT_EQ(hidden.interrupt(), -1);
}

struct SignalCase {
  const char* what;
  int number;
  const char* keys;  ///< that raise it; nullptr: it is sent
};

constexpr SignalCase kSignalCases[] = {
    {"the interrupt key", SIGINT, "half\x03"},
    {"the quit key", SIGQUIT, "\x1C"},
    {"a termination from outside", SIGTERM, nullptr},
};

/// What became of a program that a signal met while it asked. Exit codes of LeadSession.
enum class Outcome : int { AsItShould = 0, NotHidden, NotEnded, NotShown };

/// A session of its own, as a login has it: runs a program that asks, lets the signal come, and
/// looks at the terminal afterwards.
Outcome LeadSession(const PseudoTerminal& terminal, const SignalCase& row) {
  ::setsid();
  ::ioctl(terminal.program(), TIOCSCTTY, 0);
  const pid_t program = ::fork();
  if (program == 0) {
    std::ostringstream output;
    PosixConsoleInput input(terminal.program());
    ConsoleWindow(input, output, true).AskText({.title = "T", .prompt = "?", .hidden = true});
    ::_exit(0);
  }
  ::signal(SIGINT, SIG_IGN);
  ::signal(SIGQUIT, SIG_IGN);
  if (!terminal.WaitUntilHidden()) return Outcome::NotHidden;
  if (row.keys != nullptr) {
    terminal.Type(row.keys);
  } else {
    ::kill(program, row.number);
  }
  int status = 0;
  ::waitpid(program, &status, 0);
  if (!WIFSIGNALED(status) || WTERMSIG(status) != row.number) return Outcome::NotEnded;
  return terminal.Shows() ? Outcome::AsItShould : Outcome::NotShown;
}

TEST(HiddenInput, LeavesTheTerminalAsItWasWhenASignalEndsTheProgram) {
  for (const SignalCase& row : kSignalCases) {
    SCOPED_TRACE(row.what);
    const PseudoTerminal terminal;
    const pid_t leader = ::fork();
    if (leader == 0) {
      ::alarm(30);
      ::_exit(static_cast<int>(LeadSession(terminal, row)));
    }
    int status = 0;
    ASSERT_EQ(::waitpid(leader, &status, 0), leader);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(static_cast<Outcome>(WEXITSTATUS(status)), Outcome::AsItShould);
  }
}

TEST(HiddenInput, DoesNotEndTheWaitForASignalThatIsIgnored) {
  const auto before = ::signal(SIGHUP, SIG_IGN);
  {
    const PseudoTerminal terminal;
    const HiddenInput hidden(terminal.program());
    ::raise(SIGHUP);
    ::raise(SIGHUP);
    char bytes[256] = {};
    EXPECT_EQ(::read(hidden.interrupt(), bytes, sizeof bytes), -1);
  }
  ::signal(SIGHUP, before);
}

}  // namespace
}  // namespace zent
