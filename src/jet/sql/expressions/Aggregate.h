#pragma once

#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/format/Value.h"
#include "jet/sql/syntax/Expression.h"

/// Functions over the rows of a group.
namespace zent::jet {

/// Gathers COUNT, MIN, MAX, SUM, AVG, FIRST or LAST. Null does not count but for the last two;
/// without any value COUNT is 0 and the others are null.
class Aggregator {
 public:
  /// `name` in any case.
  explicit Aggregator(std::string_view name);

  /// For COUNT(*) any value that is not null, once a row.
  Status Add(const Value& value);
  Result<Value> Total() const;

 private:
  enum class Kind { Count, Min, Max, Sum, Average, First, Last };

  Kind kind_;
  std::int32_t count_ = 0;
  Value value_;
};

bool HasAggregate(const Expression& expression);

/// Puts the aggregates of `expression` behind those in `taken` and gives each the column
/// `first_column` plus its place in `taken`. kCriteriaTypeMismatch for one within another.
Status TakeAggregates(Expression& expression, std::size_t first_column,
                      std::vector<Expression>& taken);

}  // namespace zent::jet
