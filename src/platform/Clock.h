#pragma once

#include <chrono>

namespace zent {

/// A moment of the local time zone.
struct LocalTime {
  int year = 0;
  int month = 0;  ///< 1 to 12
  int day = 0;    ///< 1 to 31
  int hour = 0;   ///< 0 to 23
  int minute = 0;
  int second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() = 0;
  /// Time since an unstated start; never runs backward, and knows no midnight.
  virtual std::chrono::milliseconds Ticks() = 0;
  virtual void Sleep(std::chrono::milliseconds time) = 0;
};

}  // namespace zent
