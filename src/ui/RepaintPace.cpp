#include "ui/RepaintPace.h"

#include <algorithm>

namespace zent {
namespace {

constexpr std::chrono::milliseconds kInterval{20};
/// A burst of 50 messages (an error report, a list of files) is painted one by one.
constexpr std::chrono::milliseconds kCredit = 50 * kInterval;

}  // namespace

bool RepaintPace::Due(TimePoint now) {
  if (paid_until_ >= now + kCredit) return false;
  paid_until_ = std::max(paid_until_, now) + kInterval;
  return true;
}

void RepaintPace::Took(TimePoint::duration time) {
  const TimePoint::duration share = 2 * time;
  if (share > kInterval) paid_until_ += share - kInterval;
}

}  // namespace zent
