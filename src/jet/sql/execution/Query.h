#pragma once

#include <memory>
#include <vector>

#include "base/Status.h"
#include "jet/sql/execution/ResultSet.h"
#include "jet/sql/execution/SqlSession.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/expressions/Evaluator.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

/// What a query within an expression sees of the query around it.
struct OuterScope {
  std::vector<ScopeColumn> columns = {};
  RowValues* row = nullptr;
};

/// A result set that can begin anew.
class Query : public ResultSet {
 public:
  /// For the outer row as it is then. The first Next does it by itself.
  virtual Status Restart() = 0;
  /// How many of the outer columns, from the first on, it needs; 0: its rows are always the same.
  virtual std::size_t outer_reach() const = 0;
};

/// The query `select` with its unions.
Result<std::unique_ptr<Query>> MakeQuery(SqlSession& session, const SelectStatement& select,
                                         const OuterScope& outer = {});

}  // namespace zent::jet
