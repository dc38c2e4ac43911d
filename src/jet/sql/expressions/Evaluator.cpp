#include "jet/sql/expressions/Evaluator.h"

#include <optional>
#include <utility>
#include <vector>

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

Result<Value> Evaluator::Evaluate(const Expression& expression, RowValues& row) {
  switch (expression.kind) {
    case ExpressionKind::Literal:
    case ExpressionKind::Column:
    case ExpressionKind::Aggregate: {
      Value unused;
      const Result<const Value*> value = Operand(expression, row, unused);
      if (!value.ok()) return value.error();
      return *value.value();
    }
    case ExpressionKind::Function:
      return Call(expression, row);
    case ExpressionKind::In:
    case ExpressionKind::NotIn:
      return IsAmong(expression, row);
    case ExpressionKind::Between:
    case ExpressionKind::NotBetween:
      return IsBetween(expression, row);
    case ExpressionKind::Subquery:
    case ExpressionKind::Exists:
    case ExpressionKind::InQuery:
    case ExpressionKind::NotInQuery:
      return RunSubquery(expression, row);
    default:
      break;
  }
  Value first_place;
  const Result<const Value*> first = Operand(expression.operands[0], row, first_place);
  if (!first.ok()) return first.error();
  if (expression.operands.size() == 1) return Unary(expression, *first.value());
  if (Decides(expression.kind, *first.value())) return *first.value();
  Value second_place;
  const Result<const Value*> second = Operand(expression.operands[1], row, second_place);
  if (!second.ok()) return second.error();
  return Apply(expression, *first.value(), *second.value());
}

Result<const Value*> Evaluator::Operand(const Expression& expression, RowValues& row,
                                        Value& place) {
  switch (expression.kind) {
    case ExpressionKind::Literal:
      return &expression.value;
    case ExpressionKind::Column:
    case ExpressionKind::Aggregate:
      if (expression.column == kUnboundColumn) return JetError(kTooFewParameters, "1");
      return row.At(expression.column);
    default:
      break;
  }
  Result<Value> value = Evaluate(expression, row);
  if (!value.ok()) return value.error();
  place = std::move(value.value());
  return &place;
}

Result<Value> Evaluator::Unary(const Expression& expression, const Value& value) {
  switch (expression.kind) {
    case ExpressionKind::IsNull:
      return Value(IsNull(value));
    case ExpressionKind::IsNotNull:
      return Value(!IsNull(value));
    case ExpressionKind::Not:
      return LogicalNot(value);
    default:
      return Negated(value);
  }
}

Result<Value> Evaluator::RunSubquery(const Expression& expression, RowValues& row) {
  if (subqueries_ == nullptr) return JetErrorBecause(kSyntaxError, "no query can stand here");
  if (expression.kind == ExpressionKind::Subquery) return subqueries_->Single(expression, row);
  if (expression.kind == ExpressionKind::Exists) return subqueries_->Exists(expression, row);
  Result<Value> value = Evaluate(expression.operands[0], row);
  if (!value.ok()) return value;
  Result<Value> among = subqueries_->IsAmong(expression, value.value(), row);
  if (!among.ok() || expression.kind == ExpressionKind::InQuery) return among;
  return LogicalNot(among.value());
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

Result<bool> Evaluator::Test(const Expression& test, RowValues& row) {
  const Result<Value> value = Evaluate(test, row);
  if (!value.ok()) return value.error();
  return IsTrue(value.value());
}

Result<Value> Evaluator::Call(const Expression& expression, RowValues& row) {
  const Function* const function = expression.column == kUnboundColumn
                                       ? FindFunction(expression.name)
                                       : FunctionAt(expression.column);
  if (function == nullptr) return JetError(kUndefinedFunction, expression.name);
  if (expression.operands.size() < function->fewest ||
      expression.operands.size() > function->most) {
    return JetErrorBecause(kSyntaxError, "wrong number of arguments", expression.name);
  }
  if (function->call == nullptr) {
    const Result<bool> first = Test(expression.operands[0], row);
    if (!first.ok()) return first.error();
    return Evaluate(expression.operands[first.value() ? 1 : 2], row);
  }
  std::vector<Value> arguments;
  arguments.reserve(expression.operands.size());
  for (const Expression& operand : expression.operands) {
    Result<Value> argument = Evaluate(operand, row);
    if (!argument.ok()) return argument;
    arguments.push_back(std::move(argument.value()));
  }
  return function->call(arguments, context_);
}

Result<Value> Evaluator::IsAmong(const Expression& expression, RowValues& row) {
  Value first_place;
  const Result<const Value*> first = Operand(expression.operands[0], row, first_place);
  if (!first.ok()) return first.error();
  Value among = false;
  for (std::size_t i = 1; i < expression.operands.size(); ++i) {
    Value item_place;
    const Result<const Value*> item = Operand(expression.operands[i], row, item_place);
    if (!item.ok()) return item.error();
    Result<Value> same = CompareBy(ExpressionKind::Equal, *first.value(), *item.value());
    if (!same.ok()) return same;
    if (same.value() == Value(true)) {
      among = true;
      break;
    }
    if (IsNull(same.value())) among = Null();
  }
  return expression.kind == ExpressionKind::In ? Result<Value>(among) : LogicalNot(among);
}

Result<Value> Evaluator::IsBetween(const Expression& expression, RowValues& row) {
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
