#include <utility>

#include "jet/sql/execution/RowSource.h"

namespace zent::jet {
namespace {

/// The first key that lies behind all that begin with `high`; nothing when there is none.
std::optional<std::string> Behind(std::string high) {
  while (!high.empty() && high.back() == '\xFF') high.pop_back();
  if (high.empty()) return std::nullopt;
  high.back() = static_cast<char>(static_cast<unsigned char>(high.back()) + 1);
  return high;
}

}  // namespace

IndexSource::IndexSource(RowFrame& frame, std::size_t table, IndexPlan plan, Evaluator& evaluator)
    : frame_(frame),
      table_(table),
      plan_(std::move(plan)),
      evaluator_(evaluator),
      cursor_(frame.table(table).store().indexes()[plan_.index].tree().Cursor()) {}

Status IndexSource::Restart() {
  ranges_ = KeyRangesOf(plan_, evaluator_, frame_);
  next_range_ = 0;
  entered_ = false;
  return {};
}

Result<bool> IndexSource::EnterRange() {
  const std::size_t place = plan_.backwards ? ranges_.size() - 1 - next_range_ : next_range_;
  ++next_range_;
  first_key_ = std::move(ranges_[place].low);
  behind_ = Behind(std::move(ranges_[place].high));
  if (!plan_.backwards) return cursor_.Seek(first_key_);
  if (behind_) {
    Result<bool> sought = cursor_.Seek(*behind_);
    if (!sought.ok()) return sought;
    if (sought.value()) return cursor_.Previous();
  }
  return cursor_.SeekLast();
}

bool IndexSource::InRange() const {
  if (plan_.backwards) return cursor_.Compare(first_key_, {}) >= 0;
  return !behind_ || cursor_.Compare(*behind_, {}) < 0;
}

Result<bool> IndexSource::Step() { return plan_.backwards ? cursor_.Previous() : cursor_.Next(); }

Result<bool> IndexSource::Next() {
  for (;;) {
    if (!entered_ && next_range_ == ranges_.size()) return false;
    Result<bool> found = entered_ ? Step() : EnterRange();
    if (!found.ok()) return found;
    entered_ = found.value() && InRange();
    if (!entered_) continue;
    const Status fetched = frame_.Fetch(table_, cursor_.row());
    if (!fetched.ok()) return fetched.error();
    return true;
  }
}

}  // namespace zent::jet
