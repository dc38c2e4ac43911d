#include "platform/win32/session/Win32Clock.h"

#include <windows.h>

#include <algorithm>

namespace zent {
namespace {

/// INFINITE would wait for ever; no caller waits as long.
constexpr std::chrono::milliseconds kLongestSleep = std::chrono::hours(24);

}  // namespace

LocalTime Win32Clock::Now() {
  SYSTEMTIME now = {};
  GetLocalTime(&now);
  return {.year = now.wYear,
          .month = now.wMonth,
          .day = now.wDay,
          .hour = now.wHour,
          .minute = now.wMinute,
          .second = now.wSecond};
}

std::uint32_t Win32Clock::Counter() { return GetTickCount(); }

std::chrono::milliseconds Win32Clock::AtCounter(std::uint32_t counter) {
  // The difference of the counters is right across their wrap as well.
  ticks_ += counter - static_cast<std::uint32_t>(ticks_);
  return std::chrono::milliseconds(ticks_);
}

void Win32Clock::Sleep(std::chrono::milliseconds time) {
  if (time <= std::chrono::milliseconds(0)) return;
  ::Sleep(static_cast<DWORD>(std::min(time, kLongestSleep).count()));
}

}  // namespace zent
