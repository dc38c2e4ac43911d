#include "fakes/ui/FakeClock.h"

#include <numeric>

namespace zent::testing {

LocalTime FakeClock::Now() {
  const auto day = std::chrono::floor<std::chrono::days>(now_);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(std::chrono::floor<std::chrono::seconds>(now_ - day));
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = static_cast<int>(time.hours().count()),
          .minute = static_cast<int>(time.minutes().count()),
          .second = static_cast<int>(time.seconds().count())};
}

std::chrono::milliseconds FakeClock::Ticks() {
  Advance(per_look);
  return ticks;
}

void FakeClock::Sleep(std::chrono::milliseconds time) {
  sleeps.push_back(time);
  Advance(time);
}

void FakeClock::SetNow(const LocalTime& now) {
  now_ = std::chrono::sys_days(std::chrono::year(now.year) /
                               std::chrono::month(static_cast<unsigned>(now.month)) /
                               std::chrono::day(static_cast<unsigned>(now.day))) +
         std::chrono::hours(now.hour) + std::chrono::minutes(now.minute) +
         std::chrono::seconds(now.second);
}

void FakeClock::Advance(std::chrono::milliseconds time) {
  ticks += time;
  now_ += time;
}

std::chrono::milliseconds FakeClock::Slept() const {
  return std::accumulate(sleeps.begin(), sleeps.end(), std::chrono::milliseconds(0));
}

}  // namespace zent::testing
