#include <gtest/gtest.h>

#include <tuple>

#include "fakes/ui/FakeClock.h"

namespace zent::testing {
namespace {

using std::chrono::milliseconds;

std::tuple<int, int, int, int, int, int> Fields(const LocalTime& time) {
  return {time.year, time.month, time.day, time.hour, time.minute, time.second};
}

TEST(FakeClock, SleepMovesTicksAndLocalTime) {
  FakeClock clock;
  clock.SetNow({2007, 12, 31, 23, 59, 58});
  clock.per_look = milliseconds(0);
  const auto start = clock.Ticks();

  clock.Sleep(milliseconds(1500));
  clock.Sleep(milliseconds(600));

  EXPECT_EQ(clock.Ticks() - start, milliseconds(2100));
  EXPECT_EQ(clock.Slept(), milliseconds(2100));
  EXPECT_EQ(clock.sleeps.size(), 2U);
  EXPECT_EQ(Fields(clock.Now()), Fields({2008, 1, 1, 0, 0, 0}));
}

TEST(FakeClock, ALoopThatOnlyLooksComesToItsEnd) {
  FakeClock clock;
  const auto end = clock.Ticks() + milliseconds(5000);
  int looks = 0;
  while (clock.Ticks() < end) ++looks;
  EXPECT_EQ(looks, 4999);
}

TEST(FakeClock, SettingTheTimeLeavesTheTicks) {
  FakeClock clock;
  EXPECT_EQ(Fields(clock.Now()), Fields({2006, 5, 4, 3, 2, 1}));
  clock.ticks = milliseconds(7);
  clock.SetNow({1999, 2, 28, 12, 0, 0});
  EXPECT_EQ(clock.ticks, milliseconds(7));
  clock.Advance(std::chrono::hours(24));
  EXPECT_EQ(Fields(clock.Now()), Fields({1999, 3, 1, 12, 0, 0}));
}

}  // namespace
}  // namespace zent::testing
