#include "ui/console/posix/HiddenInput.h"

#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>

namespace zent {
namespace {

/// The signals that end a program from outside, without those that this program ignores.
sigset_t EndingSignals() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    struct sigaction present = {};
    ::sigaction(number, nullptr, &present);
    if (present.sa_handler != SIG_IGN) ::sigaddset(&signals, number);
  }
  return signals;
}

}  // namespace

struct HiddenInput::Terminal {
  int fd = -1;
  int signals = -1;
  termios shown = {};
  sigset_t mask = {};
};

HiddenInput::HiddenInput(int fd) {
  termios shown = {};
  if (::tcgetattr(fd, &shown) != 0) return;
  terminal_ = std::make_unique<Terminal>();
  terminal_->fd = fd;
  terminal_->shown = shown;

  const sigset_t ending = EndingSignals();
  ::pthread_sigmask(SIG_BLOCK, &ending, &terminal_->mask);
  terminal_->signals = ::signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);

  termios hidden = shown;
  hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
  hidden.c_cc[VSUSP] = _POSIX_VDISABLE;
  // What was typed before the question was shown, and is not its answer.
  ::tcsetattr(fd, TCSAFLUSH, &hidden);
}

HiddenInput::~HiddenInput() {
  if (terminal_ == nullptr) return;
  ::tcsetattr(terminal_->fd, TCSADRAIN, &terminal_->shown);
  if (terminal_->signals >= 0) ::close(terminal_->signals);
  // Last, because a signal that waits may end the program here.
  ::pthread_sigmask(SIG_SETMASK, &terminal_->mask, nullptr);
}

int HiddenInput::interrupt() const { return terminal_ != nullptr ? terminal_->signals : -1; }

}  // namespace zent
