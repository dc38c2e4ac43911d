#include "jet/sql/expressions/ColumnBinder.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/sql/expressions/Functions.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {

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
  }
  for (Expression& operand : expression.operands) {
    Status bound = Bind(operand);
    if (!bound.ok()) return bound;
  }
  return {};
}

Status ColumnBinder::BindColumn(Expression& column) {
  column.column = kUnboundColumn;
  for (std::size_t i = 0; i < scope_.size(); ++i) {
    const bool same = SameKey(scope_[i].name, column.name) &&
                      (column.table.empty() || SameKey(scope_[i].table, column.table));
    if (!same) continue;
    if (column.column != kUnboundColumn) return JetError(kAmbiguousField, column.name);
    column.column = i;
  }
  if (column.column != kUnboundColumn) return {};
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
