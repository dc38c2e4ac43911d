#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "jet/format/Value.h"
#include "jet/sql/syntax/Expression.h"

/// Statements of the Access dialect as trees. Names are as written, without brackets.
namespace zent::jet {

struct TableSource {
  std::string name;
  std::string alias = {};  ///< empty without one
  bool operator==(const TableSource&) const = default;
};

enum class JoinKind {
  Cross,
  Inner,
  Left,
  Right,  ///< the second table alone
};

/// A table and how it joins those before it.
struct JoinedTable {
  JoinKind kind = JoinKind::Cross;  ///< always of the first
  TableSource source;
  std::optional<Expression> on = {};  ///< without one for Cross alone
  bool operator==(const JoinedTable&) const = default;
};

/// A column of the result: an expression, or all columns (of `table` when it is not empty).
struct SelectColumn {
  std::optional<Expression> expression = {};  ///< nothing: all columns
  std::string table = {};
  std::string alias = {};
  bool operator==(const SelectColumn&) const = default;
};

struct OrderTerm {
  Expression expression;
  bool descending = false;
  bool operator==(const OrderTerm&) const = default;
};

struct SelectStatement {
  bool distinct = false;
  std::optional<std::int32_t> top = {};  ///< rows; those equal to the last in order come along
  bool top_percent = false;              ///< `top` is a share of the rows instead
  std::vector<SelectColumn> columns = {};
  std::vector<JoinedTable> from = {};  ///< empty: one row of the expressions
  std::optional<Expression> where = {};
  std::vector<Expression> group_by = {};
  std::optional<Expression> having = {};
  /// The queries whose rows come behind; `order_by` is then that of all. Those here have neither
  /// unions nor an order.
  std::vector<SelectStatement> unions = {};
  bool union_all = false;  ///< of one of `unions`: rows that are there already come as well
  std::vector<OrderTerm> order_by = {};
  std::string into = {};           ///< table to be made of the rows; empty: none
  std::string into_database = {};  ///< path of another file for it
  bool operator==(const SelectStatement&) const = default;
};

/// Calls `visit` with each expression of `select` itself, not with those of its unions.
template <typename Select, typename Visit>
void VisitExpressions(Select& select, Visit visit) {
  for (auto& column : select.columns) {
    if (column.expression) visit(*column.expression);
  }
  for (auto& table : select.from) {
    if (table.on) visit(*table.on);
  }
  if (select.where) visit(*select.where);
  for (auto& group : select.group_by) visit(group);
  if (select.having) visit(*select.having);
  for (auto& term : select.order_by) visit(term.expression);
}

struct InsertStatement {
  std::string table = {};
  std::vector<std::string> columns = {};  ///< empty: all, in the table's (or the query's) order
  std::string database = {};              ///< path of another file; empty: this one
  std::vector<Expression> values = {};
  std::optional<SelectStatement> select = {};  ///< in place of `values`
  bool operator==(const InsertStatement&) const = default;
};

struct Assignment {
  Expression column;  ///< of kind Column
  Expression value;
  bool operator==(const Assignment&) const = default;
};

struct UpdateStatement {
  TableSource table;
  std::vector<Assignment> assignments = {};
  std::optional<Expression> where = {};
  bool operator==(const UpdateStatement&) const = default;
};

struct DeleteStatement {
  TableSource table;
  std::optional<Expression> where = {};
  bool operator==(const DeleteStatement&) const = default;
};

struct ColumnSpecification {
  std::string name = {};
  ColumnType type = ColumnType::Long;
  std::uint16_t size = 0;      ///< text: characters, binary: bytes, the others 0
  std::uint8_t precision = 0;  ///< of a decimal
  std::uint8_t scale = 0;
  bool auto_number = false;
  bool required = false;
  bool operator==(const ColumnSpecification&) const = default;
};

struct IndexTerm {
  std::string column;
  bool descending = false;
  bool operator==(const IndexTerm&) const = default;
};

struct IndexSpecification {
  std::string name = {};  ///< a constraint may be without one
  std::vector<IndexTerm> columns = {};
  bool unique = false;
  bool primary = false;
  bool disallow_null = false;
  bool ignore_null = false;
  bool operator==(const IndexSpecification&) const = default;
};

/// FOREIGN KEY (columns) REFERENCES referenced_table (referenced_columns).
struct ForeignKeySpecification {
  std::string name = {};  ///< empty: one is made up
  std::vector<std::string> columns = {};
  std::string referenced_table = {};
  std::vector<std::string> referenced_columns = {};  ///< empty: the primary key
  bool cascades_updates = false;
  bool cascades_deletes = false;
  bool operator==(const ForeignKeySpecification&) const = default;
};

struct CreateTableStatement {
  std::string table = {};
  std::vector<ColumnSpecification> columns = {};
  std::vector<IndexSpecification> constraints = {};  ///< primary or unique
  std::vector<ForeignKeySpecification> foreign_keys = {};
  bool operator==(const CreateTableStatement&) const = default;
};

struct CreateIndexStatement {
  std::string table = {};
  IndexSpecification index = {};
  bool operator==(const CreateIndexStatement&) const = default;
};

struct AddColumnStatement {
  std::string table = {};
  ColumnSpecification column = {};
  std::optional<IndexSpecification> constraint = {};  ///< on that column alone
  std::optional<ForeignKeySpecification> foreign_key = {};
  bool operator==(const AddColumnStatement&) const = default;
};

struct AddConstraintStatement {
  std::string table = {};
  std::optional<IndexSpecification> index = {};  ///< primary or unique
  std::optional<ForeignKeySpecification> foreign_key = {};
  bool operator==(const AddConstraintStatement&) const = default;
};

/// Takes away an index or a relationship.
struct DropConstraintStatement {
  std::string table = {};
  std::string constraint = {};
  bool operator==(const DropConstraintStatement&) const = default;
};

struct AlterColumnStatement {
  std::string table = {};
  ColumnSpecification column = {};
  bool operator==(const AlterColumnStatement&) const = default;
};

struct DropColumnStatement {
  std::string table = {};
  std::string column = {};
  bool operator==(const DropColumnStatement&) const = default;
};

struct DropTableStatement {
  std::string table = {};
  bool operator==(const DropTableStatement&) const = default;
};

struct DropIndexStatement {
  std::string index = {};
  std::string table = {};
  bool operator==(const DropIndexStatement&) const = default;
};

using Statement = std::variant<SelectStatement, InsertStatement, UpdateStatement, DeleteStatement,
                               CreateTableStatement, CreateIndexStatement, AddColumnStatement,
                               AddConstraintStatement, AlterColumnStatement, DropColumnStatement,
                               DropConstraintStatement, DropTableStatement, DropIndexStatement>;

}  // namespace zent::jet
