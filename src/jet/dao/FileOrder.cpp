#include <algorithm>

#include "jet/dao/TableOrder.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::size_t kRowsAhead = 256;  // looked up at once

}  // namespace

Result<bool> FileOrder::IsThere(RowPointer row) {
  const Result<Table*> table = table_();
  if (!table.ok()) return table.error();
  const Result<StoredRow> stored = table.value()->store().rows().Fetch(row);
  if (stored.ok()) return true;
  if (stored.number() == kRecordDeleted) return false;
  // Its page may have been given to another owner.
  return stored.number() == kCannotOpenDatabase ? Result<bool>(false)
                                                : Result<bool>(stored.error());
}

Result<bool> FileOrder::Extend(std::size_t place) {
  if (place < rows_.size()) return true;
  const Result<Table*> table = table_();
  if (!table.ok()) return table.error();
  RowScan scan(table.value()->store().rows());
  if (!rows_.empty()) scan.MoveBehind(rows_.back());
  for (std::size_t count = 0; count < kRowsAhead; ++count) {
    Result<bool> more = scan.Next();
    if (!more.ok()) return more;
    if (!more.value()) break;
    rows_.push_back(scan.at());
  }
  return place < rows_.size();
}

RowOrder::Found FileOrder::Step(std::size_t place) {
  for (;; ++place) {
    const Result<bool> more = Extend(place);
    if (!more.ok()) return more.error();
    at_ = place;
    if (!more.value()) return std::optional<RowPointer>();
    const Result<bool> there = IsThere(rows_[place]);
    if (!there.ok()) return there.error();
    if (place >= reached_) {
      reached_ = place + 1;
      if (!there.value()) ++gone_;
    }
    if (there.value()) return std::optional<RowPointer>(rows_[place]);
  }
}

// Begins anew, so that rows added meanwhile are found.
RowOrder::Found FileOrder::First() {
  most_ = visited();
  rows_.clear();
  reached_ = 0;
  gone_ = 0;
  return Step(0);
}

RowOrder::Found FileOrder::Last() {
  for (;;) {
    const Result<bool> more = Extend(rows_.size());
    if (!more.ok()) return more.error();
    if (!more.value()) break;
  }
  at_ = rows_.size();
  reached_ = at_;
  return Previous();
}

RowOrder::Found FileOrder::Previous() {
  while (at_ > 0) {
    --at_;
    const Result<bool> there = IsThere(rows_[at_]);
    if (!there.ok()) return there.error();
    if (there.value()) return std::optional<RowPointer>(rows_[at_]);
  }
  return std::optional<RowPointer>();
}

Result<bool> FileOrder::GoTo(RowPointer row) {
  Result<bool> there = IsThere(row);
  if (!there.ok() || !there.value()) return there;
  while (rows_.empty() || rows_.back() < row) {
    Result<bool> more = Extend(rows_.size());
    if (!more.ok() || !more.value()) return more;
  }
  Added(row);
  at_ = static_cast<std::size_t>(std::lower_bound(rows_.begin(), rows_.end(), row) - rows_.begin());
  reached_ = std::max(reached_, at_ + 1);
  return true;
}

// Its place stays: a row that is not there is passed over.
void FileOrder::Deleted() {
  ++gone_;
  if (most_ > 0) --most_;
}

// One that lies behind what was seen is found in its turn.
void FileOrder::Added(RowPointer row) {
  const auto place = std::lower_bound(rows_.begin(), rows_.end(), row);
  if (place == rows_.end() || *place == row) return;
  const auto index = static_cast<std::size_t>(place - rows_.begin());
  rows_.insert(place, row);
  if (index <= at_) ++at_;
  if (index < reached_) ++reached_;
}

}  // namespace zent::jet
