#include "jet/sql/expressions/ColumnBinder.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/sql/expressions/Functions.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

Result<std::size_t> PlaceIn(const std::vector<ScopeColumn>& scope, const Expression& column) {
  std::size_t place = kUnboundColumn;
  for (std::size_t i = 0; i < scope.size(); ++i) {
    const bool same = SameKey(scope[i].name, column.name) &&
                      (column.table.empty() || SameKey(scope[i].table, column.table));
    if (!same) continue;
    if (place != kUnboundColumn) return JetError(kAmbiguousField, column.name);
    place = i;
  }
  return place;
}

}  // namespace

Status ColumnBinder::Bind(Expression& expression) {
  if (expression.kind == ExpressionKind::Column) return BindColumn(expression);
  if (expression.kind == ExpressionKind::Function) {
    const Function* const function = FindFunction(expression.name);
    if (function == nullptr) return JetError(kUndefinedFunction, expression.name);
    const std::size_t count = expression.operands.size();
    if (count < function->fewest || count > function->most) {
      return JetErrorBecause(kSyntaxError, "wrong number of arguments",
                             PrintExpression(expression));
    }
    expression.column = PlaceOf(*function);
  }
  for (Expression& operand : expression.operands) {
    Status bound = Bind(operand);
    if (!bound.ok()) return bound;
  }
  return {};
}

Result<std::size_t> ColumnBinder::PlaceOfColumn(const Expression& column) const {
  for (const std::vector<ScopeColumn>* const scope : {&scope_, &outer_}) {
    Result<std::size_t> place = PlaceIn(*scope, column);
    if (!place.ok()) return place;
    if (place.value() == kUnboundColumn) continue;
    return place.value() + (scope == &outer_ ? scope_.size() : 0);
  }
  return kUnboundColumn;
}

Status ColumnBinder::BindColumn(Expression& column) {
  const Result<std::size_t> place = PlaceOfColumn(column);
  if (!place.ok()) return place.error();
  column.column = place.value();
  if (column.column != kUnboundColumn) {
    if (column.column >= scope_.size()) {
      outer_reach_ = std::max(outer_reach_, column.column - scope_.size() + 1);
    }
    return {};
  }
  std::string name = PrintExpression(column);
  const bool known = std::any_of(parameters_.begin(), parameters_.end(),
                                 [&](const std::string& other) { return SameKey(other, name); });
  if (!known) parameters_.push_back(std::move(name));
  return {};
}

Status ColumnBinder::Finish() const {
  if (parameters_.empty()) return {};
  std::string names;
  for (const std::string& name : parameters_) names += (names.empty() ? "" : ", ") + name;
  return JetErrorBecause(kTooFewParameters, names + " not found",
                         std::to_string(parameters_.size()));
}

}  // namespace zent::jet
