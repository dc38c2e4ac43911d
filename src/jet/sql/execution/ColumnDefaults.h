#pragma once

#include <optional>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Table.h"
#include "jet/sql/expressions/Evaluator.h"

namespace zent::jet {

/// What columns of new rows hold when nothing is said: the expression of their DefaultValue
/// property, as 0, "new", =Now(), Yes. One that cannot be read or worked out is as none.
class ColumnDefaults {
 public:
  ColumnDefaults(const Table& table, EvaluationContext context);

  /// Of the column at `position`, of its type; null without one.
  Value For(std::size_t position);

 private:
  const Table& table_;
  Evaluator evaluator_;
  std::vector<std::optional<Expression>> expressions_;  ///< by position
};

}  // namespace zent::jet
