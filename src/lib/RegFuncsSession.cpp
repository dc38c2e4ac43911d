#include <algorithm>
#include <chrono>

#include "lib/RegFuncs.h"

namespace zent {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kPollStep{50};
// No wait is meant to be longer; keeps sums of times within their type.
constexpr double kLongestWaitSeconds = 1e9;

milliseconds WaitOf(double seconds) {
  if (!(seconds > 0)) return milliseconds(0);  // NaN too
  return milliseconds(
      static_cast<milliseconds::rep>(std::min(seconds, kLongestWaitSeconds) * 1000));
}

}  // namespace

std::string GetOSVersionText(SystemInfo& system) {
  const OsVersion version = system.Version();
  std::string text = "Win";
  if (version.platform == kPlatformNt) text = "NT ";
  if (version.platform == kPlatform9x) text = "95 ";
  return text + std::to_string(version.major) + "." + std::to_string(version.minor);
}

bool CloseWindowByTitle(Shell& shell, Clock& clock, UpdateWindow& window, std::string_view title,
                        double seconds) {
  // Windows without a title are many, and nobody means them.
  if (title.empty()) return true;
  const auto is_gone = [&] { return shell.FindWindowByTitle(title) == WindowHandle::None; };
  const WindowHandle found = shell.FindWindowByTitle(title);
  if (found == WindowHandle::None) return true;

  // A window that refuses the message may still close by itself.
  [[maybe_unused]] const Status posted = shell.PostClose(found);
  const milliseconds end = clock.Ticks() + WaitOf(seconds);
  while (!is_gone()) {
    if (clock.Ticks() > end || window.CloseRequested()) return false;
    window.ProcessEvents(kPollStep);
  }
  return true;
}

void Pause(Clock& clock, UpdateWindow& window, double seconds, bool keep_responsive,
           int sleep_step_ms) {
  const milliseconds step(sleep_step_ms);
  const milliseconds end = clock.Ticks() + WaitOf(seconds);
  for (milliseconds left = end - clock.Ticks(); left > milliseconds(0);
       left = end - clock.Ticks()) {
    if (keep_responsive && window.CloseRequested()) return;
    if (step > milliseconds(0)) {
      clock.Sleep(std::min(step, left));
      if (keep_responsive) window.ProcessEvents(milliseconds(0));
    } else if (keep_responsive) {
      window.ProcessEvents(std::min(kPollStep, left));
    } else {
      clock.Sleep(left);
    }
  }
}

bool EnableShutdownPrivilege(Shell& shell) { return shell.AcquireShutdownPrivilege(); }

Status ShutdownWindows(const Platform& machine, const ShutdownFlags& flags) {
  std::uint32_t action = kShutDown;
  if (flags.restart) action = kRestart;
  if (flags.power_off) action = kPowerOff;
  if (flags.force) action += kForce;

  const bool needs_privilege = GetOSVersionText(machine.system).starts_with("NT");
  if (needs_privilege && !EnableShutdownPrivilege(machine.shell)) {
    return StandardError(kPermissionDenied);
  }
  return machine.shell.EndSession(action);
}

}  // namespace zent
