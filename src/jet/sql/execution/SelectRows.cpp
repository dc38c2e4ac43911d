#include <cmath>

#include "jet/format/JetErrors.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/execution/SelectQuery.h"

namespace zent::jet {
namespace {

constexpr double kAllPercent = 100;

}  // namespace

std::optional<RowPointer> SelectQuery::base_row() const {
  if (base_table() == nullptr || !begun_ || over_) return std::nullopt;
  return frame_.at(0);
}

Table* SelectQuery::base_table() const {
  const bool of_rows = !grouped_ && !select_.distinct && frame_.table_count() == 1;
  return of_rows ? &frame_.table(0) : nullptr;
}

Status SelectQuery::Restart() {
  begun_ = true;
  over_ = false;
  limit_.reset();
  if (select_.top && select_.top_percent) {
    if (Status counted = CountRows(); !counted.ok()) return counted;
  } else if (select_.top) {
    limit_ = *select_.top;
  }
  return Begin();
}

Status SelectQuery::Begin() {
  given_ = 0;
  last_key_.clear();
  seen_.clear();
  seen_bytes_ = 0;
  return rows_->Restart();
}

/// Goes through all rows, to know what a share of them is.
Status SelectQuery::CountRows() {
  if (Status begun = Begin(); !begun.ok()) return begun;
  std::int64_t rows = 0;
  for (;; ++rows) {
    const Result<bool> found = NextDistinct();
    if (!found.ok()) return found.error();
    if (!found.value()) break;
  }
  const double share = static_cast<double>(rows) * *select_.top / kAllPercent;
  limit_ = static_cast<std::int64_t>(std::ceil(share));
  return {};
}

Result<bool> SelectQuery::Next() {
  if (!begun_) {
    const Status begun = Restart();
    if (!begun.ok()) {
      begun_ = true;
      over_ = true;
      return begun.error();
    }
  }
  if (over_) return false;
  Result<bool> found = NextWanted();
  over_ = !found.ok() || !found.value();
  return found;
}

Result<bool> SelectQuery::NextWanted() {
  if (limit_ && given_ >= *limit_ && (select_.order_by.empty() || given_ == 0)) return false;
  Result<bool> found = NextDistinct();
  if (!found.ok() || !found.value()) return found;
  ++given_;
  if (!limit_ || select_.order_by.empty() || given_ < *limit_) return found;
  if (given_ > *limit_) return IsLikeLast();
  const Status keyed = AppendRowKey(*rows_, select_.order_by, evaluator_, last_key_);
  if (!keyed.ok()) return keyed.error();
  return true;
}

/// Whether the row is in order where the last one within the limit is.
Result<bool> SelectQuery::IsLikeLast() {
  std::string key;
  const Status keyed = AppendRowKey(*rows_, select_.order_by, evaluator_, key);
  if (!keyed.ok()) return keyed.error();
  return key == last_key_;
}

Result<bool> SelectQuery::NextDistinct() {
  for (;;) {
    Result<bool> found = rows_->Next();
    if (!found.ok() || !found.value()) return found;
    if (const Status projected = Project(); !projected.ok()) return projected.error();
    if (!select_.distinct) return true;
    std::string key;
    for (const Value& value : row_) AppendOrderKey(value, false, key);
    seen_bytes_ += key.size() + sizeof(std::string);
    if (seen_bytes_ > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
    if (seen_.insert(std::move(key)).second) return true;
  }
}

Status SelectQuery::Project() {
  for (std::size_t i = 0; i < row_.size(); ++i) {
    const Expression& expression = *select_.columns[i].expression;
    if (!grouped_ && expression.kind == ExpressionKind::Column) {
      if (Status loaded = frame_.Load(expression.column, row_[i]); !loaded.ok()) return loaded;
      continue;
    }
    Result<Value> value = evaluator_.Evaluate(expression, *rows_);
    if (!value.ok()) return value.error();
    row_[i] = std::move(value.value());
  }
  return {};
}

}  // namespace zent::jet
