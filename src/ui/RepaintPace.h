#pragma once

#include <chrono>

namespace zent {

/// Decides which messages are painted at once. Nearly all are: a painting costs far more than a
/// message, so those of a long burst share one painting each 20 milliseconds, and any number of
/// messages takes a time in proportion to their number. Where a painting takes longer than that,
/// paintings take half of the time.
class RepaintPace {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// True when the message of this moment is to be painted; it then counts as painted.
  bool Due(TimePoint now);
  /// What that painting took.
  void Took(TimePoint::duration time);

 private:
  TimePoint paid_until_;  ///< the paintings so far, one interval each, laid end to end
};

}  // namespace zent
