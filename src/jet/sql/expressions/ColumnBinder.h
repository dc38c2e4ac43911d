#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/sql/syntax/Expression.h"

namespace zent::jet {

/// A column that expressions can name; its place in the list is its place in the row.
struct ScopeColumn {
  std::string table;  ///< name or alias of its table
  std::string name;
};

/// Looks up the names in the expressions of one statement.
class ColumnBinder {
 public:
  /// `outer` are the columns of the query around this one. They are found where `scope` has no such
  /// name, and numbered behind its columns.
  explicit ColumnBinder(std::vector<ScopeColumn> scope, std::vector<ScopeColumn> outer = {})
      : scope_(std::move(scope)), outer_(std::move(outer)) {}

  /// Fills `column` of every column in `expression`. kAmbiguousField for a name of several tables,
  /// kUndefinedFunction for a function that is not known, kSyntaxError for one with too few or too
  /// many arguments. A name that is no column counts as a parameter. Queries within are left alone.
  Status Bind(Expression& expression);

  /// The place in the row that the name has; kUnboundColumn when it is no column.
  Result<std::size_t> PlaceOfColumn(const Expression& column) const;
  /// How many of the outer columns, from the first on, the expressions so far need.
  std::size_t outer_reach() const { return outer_reach_; }

  /// After all expressions: kTooFewParameters with the number of names that are no columns.
  Status Finish() const;

 private:
  Status BindColumn(Expression& column);

  std::vector<ScopeColumn> scope_;
  std::vector<ScopeColumn> outer_;
  std::size_t outer_reach_ = 0;
  std::vector<std::string> parameters_;
};

}  // namespace zent::jet
