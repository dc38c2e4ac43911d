#include "jet/sql/execution/RowSource.h"

#include <algorithm>
#include <functional>
#include <string_view>

#include "jet/format/JetErrors.h"
#include "jet/sql/execution/OrderKey.h"

namespace zent::jet {
namespace {

std::uint32_t HashOf(std::string_view key) {
  return static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
}

unsigned ClassBit(const Value& value) { return 1U << static_cast<unsigned>(KeyClassOf(value)); }

}  // namespace

Status ScanSource::Restart() {
  scan_.emplace(frame_.table(table_).store().rows());
  return {};
}

Result<bool> ScanSource::Next() {
  Result<bool> found = scan_->Next();
  if (!found.ok() || !found.value()) return found;
  const Status set = frame_.Set(table_, scan_->at(), scan_->bytes(), scan_->page());
  if (!set.ok()) return set.error();
  return true;
}

/// False for a row that equals nothing, since one of its values is null.
Result<bool> LookupSource::HashOwn(std::uint32_t& hash) {
  key_.clear();
  for (std::size_t i = 0; i < equals_.size(); ++i) {
    const Result<Value> value = evaluator_.Evaluate(*equals_[i].first, frame_);
    if (!value.ok()) return value.error();
    if (IsNull(value.value())) return false;
    classes_[i] |= ClassBit(value.value());
    AppendOrderKey(value.value(), false, key_);
  }
  hash = HashOf(key_);
  return true;
}

Status LookupSource::Build() {
  built_ = true;
  classes_.assign(equals_.size(), 0);
  ScanSource scan(frame_, table_);
  if (Status started = scan.Restart(); !started.ok()) return started;
  for (;;) {
    const Result<bool> found = scan.Next();
    if (!found.ok()) return found.error();
    if (!found.value()) break;
    Entry entry{.at = frame_.at(table_)};
    const Result<bool> hashed = HashOwn(entry.hash);
    if (!hashed.ok()) return hashed.error();
    if (!hashed.value()) continue;
    if ((entries_.size() + 1) * sizeof(Entry) > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
    entries_.push_back(entry);
  }
  std::sort(entries_.begin(), entries_.end());
  return {};
}

Status LookupSource::Restart() {
  if (!built_) {
    if (Status built = Build(); !built.ok()) return built;
  }
  next_ = 0;
  end_ = 0;
  std::string key;
  bool comparable = true;
  for (std::size_t i = 0; i < equals_.size(); ++i) {
    const Result<Value> value = evaluator_.Evaluate(*equals_[i].second, frame_);
    if (!value.ok()) return value.error();
    if (IsNull(value.value())) return {};
    comparable = comparable && (classes_[i] & ~ClassBit(value.value())) == 0;
    AppendOrderKey(value.value(), false, key);
  }
  end_ = entries_.size();
  if (!comparable) return {};
  const auto below = [](const Entry& entry, std::uint32_t hash) { return entry.hash < hash; };
  const auto above = [](std::uint32_t hash, const Entry& entry) { return hash < entry.hash; };
  const std::uint32_t hash = HashOf(key);
  const auto first = std::lower_bound(entries_.begin(), entries_.end(), hash, below);
  next_ = static_cast<std::size_t>(first - entries_.begin());
  end_ = static_cast<std::size_t>(std::upper_bound(first, entries_.end(), hash, above) -
                                  entries_.begin());
  return {};
}

Result<bool> LookupSource::Next() {
  if (next_ == end_) return false;
  const Status fetched = frame_.Fetch(table_, entries_[next_++].at);
  if (!fetched.ok()) return fetched.error();
  return true;
}

}  // namespace zent::jet
