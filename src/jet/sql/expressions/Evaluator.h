#pragma once

#include <map>

#include "base/Status.h"
#include "jet/sql/expressions/Functions.h"
#include "jet/sql/syntax/Expression.h"
#include "jet/sql/values/Like.h"

namespace zent::jet {

/// The row that an expression reads. A value may have to be fetched from other pages.
class RowValues {
 public:
  virtual ~RowValues() = default;
  virtual Result<Value> At(std::size_t column) const = 0;
};

/// Works out expressions whose names are looked up (ColumnBinder). Aggregates read the column that
/// they were given (TakeAggregates). Patterns that are literals are compiled once: an expression
/// must stay where it is as long as the evaluator lives.
class Evaluator {
 public:
  explicit Evaluator(EvaluationContext context) : context_(context) {}

  /// AND and OR leave out their second operand where the first decides, IIf the one not chosen.
  Result<Value> Evaluate(const Expression& expression, const RowValues& row);

  /// Whether `test` takes the row: null is no.
  Result<bool> Test(const Expression& test, const RowValues& row);

 private:
  Result<Value> Apply(const Expression& expression, const Value& a, const Value& b);
  Result<Value> Call(const Expression& expression, const RowValues& row);
  Result<Value> IsAmong(const Expression& expression, const RowValues& row);
  Result<Value> IsBetween(const Expression& expression, const RowValues& row);
  Result<Value> IsLike(const Expression& expression, const Value& text, const Value& pattern);

  EvaluationContext context_;
  std::map<const Expression*, LikePattern> patterns_;
};

}  // namespace zent::jet
