#include "jet/sql/expressions/Evaluator.h"

#include <optional>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/values/Arithmetic.h"
#include "jet/sql/values/Comparison.h"
#include "jet/sql/values/Conversion.h"
#include "jet/sql/values/Logic.h"

namespace zent::jet {
namespace {

bool Holds(ExpressionKind kind, int order) {
  switch (kind) {
    case ExpressionKind::Equal:
      return order == 0;
    case ExpressionKind::NotEqual:
      return order != 0;
    case ExpressionKind::Less:
      return order < 0;
    case ExpressionKind::LessOrEqual:
      return order <= 0;
    case ExpressionKind::Greater:
      return order > 0;
    default:
      return order >= 0;
  }
}

Result<Value> CompareBy(ExpressionKind kind, const Value& a, const Value& b) {
  const Result<std::optional<int>> order = CompareValues(a, b);
  if (!order.ok()) return order.error();
  if (!order.value()) return Value(Null());
  return Value(Holds(kind, *order.value()));
}

/// True when `left` alone decides an AND or OR.
bool Decides(ExpressionKind kind, const Value& left) {
  const auto* const known = std::get_if<bool>(&left);
  return known != nullptr &&
         ((kind == ExpressionKind::And && !*known) || (kind == ExpressionKind::Or && *known));
}

}  // namespace

Result<Value> Evaluator::Evaluate(const Expression& expression, const RowValues& row) {
  switch (expression.kind) {
    case ExpressionKind::Literal:
      return expression.value;
    case ExpressionKind::Column:
    case ExpressionKind::Aggregate:
      if (expression.column == kUnboundColumn) return JetError(kTooFewParameters, "1");
      return row.At(expression.column);
    case ExpressionKind::Function:
      return Call(expression, row);
    case ExpressionKind::In:
    case ExpressionKind::NotIn:
      return IsAmong(expression, row);
    case ExpressionKind::Between:
    case ExpressionKind::NotBetween:
      return IsBetween(expression, row);
    default:
      break;
  }
  Result<Value> first = Evaluate(expression.operands[0], row);
  if (!first.ok()) return first;
  switch (expression.kind) {
    case ExpressionKind::IsNull:
      return Value(IsNull(first.value()));
    case ExpressionKind::IsNotNull:
      return Value(!IsNull(first.value()));
    case ExpressionKind::Not:
      return LogicalNot(first.value());
    case ExpressionKind::Negate:
      return Negated(first.value());
    default:
      break;
  }
  if (Decides(expression.kind, first.value())) return first;
  Result<Value> second = Evaluate(expression.operands[1], row);
  if (!second.ok()) return second;
  return Apply(expression, first.value(), second.value());
}

Result<Value> Evaluator::Apply(const Expression& expression, const Value& a, const Value& b) {
  const ExpressionKind kind = expression.kind;
  switch (BindingOf(kind)) {
    case Binding::Imp:
    case Binding::Eqv:
    case Binding::Xor:
    case Binding::Or:
    case Binding::And:
      return Combine(kind, a, b);
    case Binding::Comparison:
      if (kind == ExpressionKind::Like || kind == ExpressionKind::NotLike) {
        return IsLike(expression, a, b);
      }
      return CompareBy(kind, a, b);
    default:
      return Calculate(kind, a, b);
  }
}

Result<bool> Evaluator::Test(const Expression& test, const RowValues& row) {
  const Result<Value> value = Evaluate(test, row);
  if (!value.ok()) return value.error();
  return IsTrue(value.value());
}

Result<Value> Evaluator::Call(const Expression& expression, const RowValues& row) {
  const Function* const function = FindFunction(expression.name);
  if (function == nullptr) return JetError(kUndefinedFunction, expression.name);
  if (expression.operands.size() < function->fewest ||
      expression.operands.size() > function->most) {
    return JetErrorBecause(kSyntaxError, "wrong number of arguments", expression.name);
  }
  if (EqualsIgnoringCase(expression.name, "IIf")) {
    const Result<bool> first = Test(expression.operands[0], row);
    if (!first.ok()) return first.error();
    return Evaluate(expression.operands[first.value() ? 1 : 2], row);
  }
  std::vector<Value> arguments;
  for (const Expression& operand : expression.operands) {
    Result<Value> argument = Evaluate(operand, row);
    if (!argument.ok()) return argument;
    arguments.push_back(std::move(argument.value()));
  }
  return function->call(arguments, context_);
}

Result<Value> Evaluator::IsAmong(const Expression& expression, const RowValues& row) {
  Result<Value> first = Evaluate(expression.operands[0], row);
  if (!first.ok()) return first;
  Value among = false;
  for (std::size_t i = 1; i < expression.operands.size(); ++i) {
    Result<Value> item = Evaluate(expression.operands[i], row);
    if (!item.ok()) return item;
    Result<Value> same = CompareBy(ExpressionKind::Equal, first.value(), item.value());
    if (!same.ok()) return same;
    if (same.value() == Value(true)) {
      among = true;
      break;
    }
    if (IsNull(same.value())) among = Null();
  }
  return expression.kind == ExpressionKind::In ? Result<Value>(among) : LogicalNot(among);
}

Result<Value> Evaluator::IsBetween(const Expression& expression, const RowValues& row) {
  std::vector<Value> values;
  for (const Expression& operand : expression.operands) {
    Result<Value> value = Evaluate(operand, row);
    if (!value.ok()) return value;
    values.push_back(std::move(value.value()));
  }
  Result<Value> low = CompareBy(ExpressionKind::GreaterOrEqual, values[0], values[1]);
  if (!low.ok()) return low;
  Result<Value> high = CompareBy(ExpressionKind::LessOrEqual, values[0], values[2]);
  if (!high.ok()) return high;
  Result<Value> within = Combine(ExpressionKind::And, low.value(), high.value());
  if (!within.ok() || expression.kind == ExpressionKind::Between) return within;
  return LogicalNot(within.value());
}

Result<Value> Evaluator::IsLike(const Expression& expression, const Value& text,
                                const Value& pattern) {
  if (IsNull(text) || IsNull(pattern)) return Value(Null());
  const Result<std::string> shown = TextOf(text);
  if (!shown.ok()) return shown.error();
  const bool wanted = expression.kind == ExpressionKind::Like;
  const auto known = patterns_.find(&expression);
  if (known != patterns_.end()) return Value(known->second.Matches(shown.value()) == wanted);

  const Result<std::string> written = TextOf(pattern);
  if (!written.ok()) return written.error();
  Result<LikePattern> compiled = LikePattern::Compile(written.value());
  if (!compiled.ok()) return compiled.error();
  const bool matches = compiled.value().Matches(shown.value());
  if (expression.operands[1].kind == ExpressionKind::Literal) {
    patterns_.emplace(&expression, std::move(compiled.value()));
  }
  return Value(matches == wanted);
}

}  // namespace zent::jet
