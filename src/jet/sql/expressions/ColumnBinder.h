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
  explicit ColumnBinder(std::vector<ScopeColumn> scope) : scope_(std::move(scope)) {}

  /// Fills `column` of every column in `expression`. kAmbiguousField for a name of several tables,
  /// kUndefinedFunction for a function that is not known, kSyntaxError for one with too few or too
  /// many arguments. A name that is no column counts as a parameter.
  Status Bind(Expression& expression);

  /// After all expressions: kTooFewParameters with the number of names that are no columns.
  Status Finish() const;

 private:
  Status BindColumn(Expression& column);

  std::vector<ScopeColumn> scope_;
  std::vector<std::string> parameters_;
};

}  // namespace zent::jet
