#include "jet/sql/execution/SortedStream.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/sql/execution/OrderKey.h"

namespace zent::jet {

Status AppendRowKey(RowValues& rows, std::span<const OrderTerm> order, Evaluator& evaluator,
                    std::string& key) {
  for (const OrderTerm& term : order) {
    const Result<Value> value = evaluator.Evaluate(term.expression, rows);
    if (!value.ok()) return value.error();
    AppendOrderKey(value.value(), term.descending, key);
  }
  return {};
}

Status SortedStream::Restart() {
  gathered_ = false;
  next_ = 0;
  keys_.clear();
  places_.clear();
  entries_.clear();
  return rows_.Restart();
}

Status SortedStream::Gather() {
  gathered_ = true;
  for (;;) {
    const Result<bool> found = rows_.Next();
    if (!found.ok()) return found.error();
    if (!found.value()) break;
    entries_.push_back({.key = keys_.size(), .place = places_.size()});
    if (Status keyed = AppendRowKey(rows_, order_, evaluator_, keys_); !keyed.ok()) return keyed;
    entries_.back().end = keys_.size();
    rows_.NotePlace(places_);
    const std::size_t kept =
        keys_.size() + places_.size() * sizeof(std::uint32_t) + entries_.size() * sizeof(Entry);
    if (kept > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
  }
  // The rows of equal keys keep their order.
  const std::string_view keys = keys_;
  std::sort(entries_.begin(), entries_.end(), [keys](const Entry& a, const Entry& b) {
    const int order = keys.substr(a.key, a.end - a.key).compare(keys.substr(b.key, b.end - b.key));
    return order != 0 ? order < 0 : a.place < b.place;
  });
  return {};
}

Result<bool> SortedStream::Next() {
  if (!gathered_) {
    if (const Status gathered = Gather(); !gathered.ok()) return gathered.error();
  }
  if (next_ == entries_.size()) return false;
  const Status gone = rows_.GoTo(places_.data() + entries_[next_++].place);
  if (!gone.ok()) return gone.error();
  return true;
}

}  // namespace zent::jet
