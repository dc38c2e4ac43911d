#pragma once

#include <functional>
#include <string_view>

#include "base/Status.h"
#include "jet/sql/expressions/Functions.h"

namespace zent::jet {

class Catalog;

/// What statements run on. All it refers to must outlive the result sets made from it.
struct SqlSession {
  Catalog& catalog;
  EvaluationContext context = {};
  /// The file of `INSERT INTO t IN "path"` and `SELECT ... INTO t IN "path"`, in an open
  /// transaction. Whoever gives it commits and closes it. Without it such statements are refused.
  std::function<Result<Catalog*>(std::string_view path)> open_other = {};
};

}  // namespace zent::jet
