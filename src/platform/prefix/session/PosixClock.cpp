#include "platform/prefix/session/PosixClock.h"

#include <ctime>
#include <thread>

namespace zent {

LocalTime PosixClock::Now() {
  const std::time_t now = std::time(nullptr);
  ::tzset();  // localtime_r alone need not look at TZ
  std::tm local = {};
  ::localtime_r(&now, &local);
  return {.year = local.tm_year + 1900,
          .month = local.tm_mon + 1,
          .day = local.tm_mday,
          .hour = local.tm_hour,
          .minute = local.tm_min,
          .second = local.tm_sec};
}

std::chrono::milliseconds PosixClock::Ticks() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

void PosixClock::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace zent
