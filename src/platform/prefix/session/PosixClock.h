#pragma once

#include "platform/Clock.h"

namespace zent {

/// The time of the host, in the time zone of its user (TZ, or the system's).
class PosixClock : public Clock {
 public:
  LocalTime Now() override;
  std::chrono::milliseconds Ticks() override;
  void Sleep(std::chrono::milliseconds time) override;
};

}  // namespace zent
