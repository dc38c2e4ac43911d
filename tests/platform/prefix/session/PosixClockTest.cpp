#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "platform/prefix/session/PosixClock.h"

namespace zent {
namespace {

/// Sets the time zone of this process as long as it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* zone) { ::setenv("TZ", zone, 1); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() { ::unsetenv("TZ"); }
};

std::time_t SecondsOf(const LocalTime& time) {
  std::tm fields = {};
  fields.tm_year = time.year - 1900;
  fields.tm_mon = time.month - 1;
  fields.tm_mday = time.day;
  fields.tm_hour = time.hour;
  fields.tm_min = time.minute;
  fields.tm_sec = time.second;
  return ::timegm(&fields);
}

struct ZoneCase {
  const char* what;
  const char* zone;
  int offset;  ///< seconds east of Greenwich
};

constexpr ZoneCase kZoneCases[] = {
    {"Greenwich", "UTC0", 0},
    {"east, with half an hour", "AAA-5:30", 5 * 3600 + 1800},
    {"west", "BBB+8", -8 * 3600},
};

TEST(PosixClock, TellsTheTimeOfTheTimeZone) {
  PosixClock clock;
  for (const ZoneCase& row : kZoneCases) {
    SCOPED_TRACE(row.what);
    const TimeZone zone(row.zone);
    const std::time_t before = std::time(nullptr);
    const std::time_t shown = SecondsOf(clock.Now()) - row.offset;
    EXPECT_LE(before, shown);
    EXPECT_LE(shown, std::time(nullptr));
  }
}

TEST(PosixClock, SleepsAtLeastAsLongAsAsked) {
  PosixClock clock;
  const auto start = clock.Ticks();
  clock.Sleep(std::chrono::milliseconds(30));
  const auto slept = clock.Ticks() - start;
  EXPECT_GE(slept, std::chrono::milliseconds(29));
  EXPECT_LT(slept, std::chrono::seconds(10));
}

TEST(PosixClock, DoesNotSleepForNoTimeOrLess) {
  PosixClock clock;
  const auto start = clock.Ticks();
  clock.Sleep(std::chrono::milliseconds(0));
  clock.Sleep(std::chrono::hours(-1));
  EXPECT_LT(clock.Ticks() - start, std::chrono::seconds(5));
}

TEST(PosixClock, TicksNeverRunBackward) {
  PosixClock clock;
  auto last = clock.Ticks();
  for (int i = 0; i < 1000; ++i) {
    const auto now = clock.Ticks();
    ASSERT_GE(now, last);
    last = now;
  }
}

}  // namespace
}  // namespace zent
