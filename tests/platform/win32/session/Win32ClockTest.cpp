#include <gtest/gtest.h>

#include <ctime>

#include "platform/win32/session/Win32Clock.h"

namespace zent {
namespace {

using std::chrono::milliseconds;

TEST(Win32Clock, TellsTheLocalTime) {
  Win32Clock clock;
  const std::time_t before = std::time(nullptr);
  const LocalTime now = clock.Now();
  const std::time_t after = std::time(nullptr);

  std::tm parts = {};
  parts.tm_year = now.year - 1900;
  parts.tm_mon = now.month - 1;
  parts.tm_mday = now.day;
  parts.tm_hour = now.hour;
  parts.tm_min = now.minute;
  parts.tm_sec = now.second;
  parts.tm_isdst = -1;
  const std::time_t told = std::mktime(&parts);
  EXPECT_LE(before, told + 1);
  EXPECT_LE(told, after);
}

TEST(Win32Clock, SleepsAtLeastAsLongAsAsked) {
  Win32Clock clock;
  const milliseconds before = clock.Ticks();
  clock.Sleep(milliseconds(60));
  // The counter moves in steps of up to 16 milliseconds.
  EXPECT_GE(clock.Ticks() - before, milliseconds(40));
}

TEST(Win32Clock, DoesNotSleepForATimeThatHasPassed) {
  Win32Clock clock;
  const milliseconds before = clock.Ticks();
  clock.Sleep(milliseconds(0));
  clock.Sleep(milliseconds(-1));
  EXPECT_LT(clock.Ticks() - before, std::chrono::hours(1));
}

TEST(Win32Clock, GoesOnWhereTheSystemsCounterBeginsAnew) {
  Win32Clock clock;
  struct Reading {
    const char* what;
    std::uint32_t counter;
    milliseconds told;
  };
  constexpr milliseconds kTurn{0x100000000};
  constexpr Reading kReadings[] = {
      {"the first", 0xFFFFFF00, milliseconds(0xFFFFFF00)},
      {"the same again", 0xFFFFFF00, milliseconds(0xFFFFFF00)},
      {"behind the wrap", 0x10, kTurn + milliseconds(0x10)},
      {"long behind it", 0xF0000000, kTurn + milliseconds(0xF0000000)},
      {"behind the next", 0, 2 * kTurn},
  };
  for (const Reading& row : kReadings) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(clock.AtCounter(row.counter), row.told);
  }
}

}  // namespace
}  // namespace zent
