#include "jet/sql/expressions/Aggregate.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/values/Arithmetic.h"
#include "jet/sql/values/Comparison.h"

namespace zent::jet {

Aggregator::Aggregator(std::string_view name) : kind_(Kind::Count) {
  constexpr std::pair<std::string_view, Kind> kNames[] = {
      {"MIN", Kind::Min},     {"MAX", Kind::Max},     {"SUM", Kind::Sum},
      {"AVG", Kind::Average}, {"FIRST", Kind::First}, {"LAST", Kind::Last}};
  for (const auto& [known, kind] : kNames) {
    if (EqualsIgnoringCase(known, name)) kind_ = kind;
  }
}

Status Aggregator::Add(const Value& value) {
  if (kind_ == Kind::First || kind_ == Kind::Last) {
    if (count_ == 0 || kind_ == Kind::Last) value_ = value;
    count_ = 1;
    return {};
  }
  if (IsNull(value)) return {};
  ++count_;
  if (kind_ == Kind::Count) return {};
  if (kind_ == Kind::Sum || kind_ == Kind::Average) {
    const Value before = count_ == 1 ? Value(std::int32_t{0}) : value_;
    Result<Value> sum = Calculate(ExpressionKind::Add, before, value);
    if (!sum.ok()) return sum.error();
    value_ = std::move(sum.value());
    return {};
  }
  if (count_ == 1) {
    value_ = value;
    return {};
  }
  const Result<std::optional<int>> order = CompareValues(value, value_);
  if (!order.ok()) return order.error();
  const int compared = order.value().value_or(0);
  if (kind_ == Kind::Min ? compared < 0 : compared > 0) value_ = value;
  return {};
}

Result<Value> Aggregator::Total() const {
  if (kind_ == Kind::Count) return Value(count_);
  if (kind_ != Kind::Average || count_ == 0) return value_;
  return Calculate(ExpressionKind::Divide, value_, count_);
}

bool HasAggregate(const Expression& expression) {
  return expression.kind == ExpressionKind::Aggregate ||
         std::any_of(expression.operands.begin(), expression.operands.end(), HasAggregate);
}

Status TakeAggregates(Expression& expression, std::size_t first_column,
                      std::vector<Expression>& taken) {
  if (expression.kind == ExpressionKind::Aggregate) {
    if (std::any_of(expression.operands.begin(), expression.operands.end(), HasAggregate)) {
      return JetErrorBecause(kCriteriaTypeMismatch, "an aggregate within another");
    }
    expression.column = first_column + taken.size();
    taken.push_back(expression);
    return {};
  }
  for (Expression& operand : expression.operands) {
    Status done = TakeAggregates(operand, first_column, taken);
    if (!done.ok()) return done;
  }
  return {};
}

}  // namespace zent::jet
