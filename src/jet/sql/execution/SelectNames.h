#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/sql/execution/ResultSet.h"
#include "jet/sql/execution/RowFrame.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/syntax/Statement.h"

/// The names of a query.
namespace zent::jet {

/// Makes a RIGHT JOIN the LEFT JOIN of the other direction. `textual` gets the places of the tables
/// in the order in which they were written.
void TurnRightJoin(SelectStatement& select, std::vector<std::size_t>& textual);

/// The names of the columns of `frame`, whose tables are those of `select`.
std::vector<ScopeColumn> NamesOf(const SelectStatement& select, RowFrame& frame);

/// Puts an expression for each column in place of "*" and "t.*". kNoSuchTable for an unknown t.
Status ExpandColumns(SelectStatement& select, RowFrame& frame,
                     const std::vector<std::size_t>& textual);

/// Puts the expressions of the columns in place of their numbers and aliases in ORDER BY; an alias
/// counts where no column of the tables has that name.
Status ResolveOrder(SelectStatement& select, const ColumnBinder& binder);

/// What the result shows of its columns, whose names are looked up.
std::vector<ResultColumn> DescribeColumns(const SelectStatement& select, RowFrame& frame);

}  // namespace zent::jet
