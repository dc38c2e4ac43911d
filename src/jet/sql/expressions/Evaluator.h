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
  /// The value stays where it is until the row changes.
  virtual Result<const Value*> At(std::size_t column) = 0;
};

/// Runs the queries within expressions, which may read the columns of `row`.
class SubqueryRunner {
 public:
  virtual ~SubqueryRunner() = default;
  /// The one value of a query of kind Subquery: the first row's, null without a row.
  virtual Result<Value> Single(const Expression& subquery, RowValues& row) = 0;
  /// Whether the query of an Exists has a row.
  virtual Result<Value> Exists(const Expression& exists, RowValues& row) = 0;
  /// Whether `value` is among the rows of the query of an InQuery; null as for lists.
  virtual Result<Value> IsAmong(const Expression& in, const Value& value, RowValues& row) = 0;
};

/// Works out expressions whose names are looked up (ColumnBinder). Aggregates read the column that
/// they were given (TakeAggregates). Patterns that are literals are compiled once: an expression
/// must stay where it is as long as the evaluator lives.
class Evaluator {
 public:
  /// Without `subqueries` expressions hold none; it must outlive the evaluator.
  explicit Evaluator(EvaluationContext context, SubqueryRunner* subqueries = nullptr)
      : context_(context), subqueries_(subqueries) {}

  /// AND and OR leave out their second operand where the first decides, IIf the one not chosen.
  Result<Value> Evaluate(const Expression& expression, RowValues& row);

  /// Whether `test` takes the row: null is no.
  Result<bool> Test(const Expression& test, RowValues& row);

 private:
  /// The value of an operand, without a copy where it stands somewhere; else in `place`.
  Result<const Value*> Operand(const Expression& expression, RowValues& row, Value& place);
  Result<Value> Unary(const Expression& expression, const Value& value);
  Result<Value> Apply(const Expression& expression, const Value& a, const Value& b);
  Result<Value> RunSubquery(const Expression& expression, RowValues& row);
  Result<Value> Call(const Expression& expression, RowValues& row);
  Result<Value> IsAmong(const Expression& expression, RowValues& row);
  Result<Value> IsBetween(const Expression& expression, RowValues& row);
  Result<Value> IsLike(const Expression& expression, const Value& text, const Value& pattern);

  EvaluationContext context_;
  SubqueryRunner* subqueries_;
  std::map<const Expression*, LikePattern> patterns_;
};

}  // namespace zent::jet
