#pragma once

#include <chrono>
#include <vector>

#include "platform/Clock.h"

namespace zent::testing {

/// A clock that moves only when it is told or looked at: Sleep moves it by the time given and does
/// not wait, and each look at the ticks by `per_look`, so that a loop that only looks comes to its
/// end. Starts at 2006-05-04 03:02:01.
class FakeClock : public Clock {
 public:
  LocalTime Now() override;
  std::chrono::milliseconds Ticks() override;
  void Sleep(std::chrono::milliseconds time) override;

  /// Sets the local time; the ticks stay.
  void SetNow(const LocalTime& now);
  /// Moves both by `time`.
  void Advance(std::chrono::milliseconds time);
  /// The sum of `sleeps`.
  std::chrono::milliseconds Slept() const;

  std::chrono::milliseconds ticks{1000};
  std::chrono::milliseconds per_look{1};
  std::vector<std::chrono::milliseconds> sleeps;

 private:
  std::chrono::sys_time<std::chrono::milliseconds> now_ =
      std::chrono::sys_days(std::chrono::year(2006) / 5 / 4) + std::chrono::hours(3) +
      std::chrono::minutes(2) + std::chrono::seconds(1);
};

}  // namespace zent::testing
