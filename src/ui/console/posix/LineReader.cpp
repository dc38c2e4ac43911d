#include "ui/console/posix/LineReader.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <string_view>
#include <utility>

namespace zent {
namespace {

using Clock = std::chrono::steady_clock;

/// No caller waits as long; keeps the sum with the present time within its range.
constexpr std::chrono::milliseconds kLongestWait = std::chrono::hours(24);

/// Milliseconds until `end` for poll(): -1 without an end, rounded up so as not to wake early.
int PollTime(std::optional<Clock::time_point> end) {
  if (!end) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now()).count();
  return static_cast<int>(std::max(left, decltype(left){0}));
}

}  // namespace

LineReader::Reading LineReader::Next(std::optional<std::chrono::milliseconds> wait, int interrupt) {
  std::optional<Clock::time_point> end;
  if (wait) end = Clock::now() + std::min(*wait, kLongestWait);
  for (;;) {
    if (auto line = lines_.Take()) return {State::Line, *std::move(line)};
    switch (WaitForInput(end, interrupt)) {
      case Arrival::Timeout:
        return {State::Nothing};
      case Arrival::Interrupt:
        return {State::Interrupt};
      case Arrival::Input:
        break;
    }
    if (Fill()) continue;
    auto rest = lines_.TakeRest();
    return rest ? Reading{State::Line, *std::move(rest)} : Reading{State::End};
  }
}

LineReader::Arrival LineReader::WaitForInput(std::optional<Clock::time_point> end,
                                             int interrupt) const {
  for (;;) {
    std::array<pollfd, 2> watched = {pollfd{fd_, POLLIN, 0}, pollfd{interrupt, POLLIN, 0}};
    const int ready = ::poll(watched.data(), watched.size(), PollTime(end));
    if (ready > 0) return watched[1].revents != 0 ? Arrival::Interrupt : Arrival::Input;
    if (ready == 0 && end && Clock::now() >= *end) return Arrival::Timeout;
    if (ready < 0 && errno != EINTR) return Arrival::Input;  // the read says what is wrong
  }
}

/// Reads what is there; false at the end of the input, for which an unreadable one counts.
bool LineReader::Fill() {
  std::array<char, 4096> bytes = {};
  const ssize_t count = ::read(fd_, bytes.data(), bytes.size());
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  lines_.Append({bytes.data(), static_cast<std::size_t>(count)});
  return count > 0;
}

}  // namespace zent
