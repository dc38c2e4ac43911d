#pragma once

#include <cstdint>

#include "platform/Clock.h"

namespace zent {

/// The time of the machine, in its time zone.
class Win32Clock : public Clock {
 public:
  LocalTime Now() override;
  /// The time since the system's start, also beyond the 49.7 days after which its counter of that
  /// begins anew.
  std::chrono::milliseconds Ticks() override { return AtCounter(Counter()); }
  void Sleep(std::chrono::milliseconds time) override;

  /// The time at this reading of the system's counter; readings come in their order.
  std::chrono::milliseconds AtCounter(std::uint32_t counter);

 private:
  static std::uint32_t Counter();

  std::uint64_t ticks_ = 0;  ///< of the last reading; its lower half is the counter
};

}  // namespace zent
