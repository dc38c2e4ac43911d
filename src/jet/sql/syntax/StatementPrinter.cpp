#include <fmt/format.h>

#include "jet/sql/syntax/ColumnTypes.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

/// The texts of `items` with commas between.
template <typename Items, typename Print>
std::string List(const Items& items, Print print) {
  std::string text;
  for (const auto& item : items) text += (text.empty() ? "" : ", ") + print(item);
  return text;
}

std::string Print(const TableSource& source) {
  std::string text = PrintName(source.name);
  if (!source.alias.empty()) text += " AS " + PrintName(source.alias);
  return text;
}

std::string Print(const SelectColumn& column) {
  if (!column.expression) return column.table.empty() ? "*" : PrintName(column.table) + ".*";
  std::string text = PrintExpression(*column.expression);
  if (!column.alias.empty()) text += " AS " + PrintName(column.alias);
  return text;
}

std::string PrintFrom(const std::vector<JoinedTable>& from) {
  std::string text;
  for (const JoinedTable& table : from) {
    if (table.kind == JoinKind::Cross && !text.empty()) text += ", ";
    if (table.kind == JoinKind::Inner) text += " INNER JOIN ";
    if (table.kind == JoinKind::Left) text += " LEFT JOIN ";
    if (table.kind == JoinKind::Right) text += " RIGHT JOIN ";
    text += Print(table.source);
    if (table.on) text += " ON " + PrintExpression(*table.on);
  }
  return text;
}

std::string PrintWhere(const std::optional<Expression>& where) {
  return where ? " WHERE " + PrintExpression(*where) : "";
}

std::string Print(const IndexTerm& term) {
  return PrintName(term.column) + (term.descending ? " DESC" : "");
}

std::string Print(const ColumnSpecification& column) {
  std::string text = fmt::format("{} {}", PrintName(column.name),
                                 ColumnTypeNameOf(column.type, column.auto_number));
  if (column.size > 0) text += fmt::format("({})", column.size);
  if (column.precision > 0) text += fmt::format("({}, {})", column.precision, column.scale);
  if (column.required) text += " NOT NULL";
  return text;
}

std::string PrintConstraintHead(const IndexSpecification& constraint) {
  return (constraint.name.empty() ? "" : "CONSTRAINT " + PrintName(constraint.name) + " ") +
         (constraint.primary ? "PRIMARY KEY" : "UNIQUE");
}

const char* PrintIndexOption(const IndexSpecification& index) {
  if (index.primary) return " WITH PRIMARY";
  if (index.disallow_null) return " WITH DISALLOW NULL";
  return index.ignore_null ? " WITH IGNORE NULL" : "";
}

/// Behind its column a key does not name it.
std::string Print(const ForeignKeySpecification& key, bool behind_column = false) {
  std::string text = key.name.empty() ? "" : "CONSTRAINT " + PrintName(key.name) + " ";
  if (!behind_column) text += "FOREIGN KEY (" + List(key.columns, PrintName) + ") ";
  text += "REFERENCES " + PrintName(key.referenced_table);
  if (!key.referenced_columns.empty()) text += " (" + List(key.referenced_columns, PrintName) + ")";
  if (key.cascades_updates) text += " ON UPDATE CASCADE";
  if (key.cascades_deletes) text += " ON DELETE CASCADE";
  return text;
}

std::string PrintConstraint(const IndexSpecification& constraint) {
  const auto term = [](const IndexTerm& item) { return Print(item); };
  return PrintConstraintHead(constraint) + " (" + List(constraint.columns, term) + ")";
}

/// A query without its unions and order.
std::string PrintBody(const SelectStatement& select) {
  std::string text = select.distinct ? "SELECT DISTINCT " : "SELECT ";
  if (select.top)
    text += fmt::format("TOP {} {}", *select.top, select.top_percent ? "PERCENT " : "");
  text += List(select.columns, [](const SelectColumn& column) { return Print(column); });
  if (!select.into.empty()) text += " INTO " + PrintName(select.into);
  if (!select.into_database.empty()) text += " IN " + PrintText(select.into_database);
  if (!select.from.empty()) text += " FROM " + PrintFrom(select.from);
  text += PrintWhere(select.where);
  if (!select.group_by.empty()) text += " GROUP BY " + List(select.group_by, PrintExpression);
  if (select.having) text += " HAVING " + PrintExpression(*select.having);
  return text;
}

struct StatementPrinter {
  std::string operator()(const SelectStatement& select) const { return PrintSelect(select); }

  std::string operator()(const InsertStatement& insert) const {
    std::string text = "INSERT INTO " + PrintName(insert.table);
    if (!insert.database.empty()) text += " IN " + PrintText(insert.database);
    if (!insert.columns.empty()) text += " (" + List(insert.columns, PrintName) + ")";
    if (insert.select) return text + " " + PrintSelect(*insert.select);
    return text + " VALUES (" + List(insert.values, PrintExpression) + ")";
  }

  std::string operator()(const UpdateStatement& update) const {
    const auto print = [](const Assignment& assignment) {
      return PrintExpression(assignment.column) + " = " + PrintExpression(assignment.value);
    };
    return "UPDATE " + Print(update.table) + " SET " + List(update.assignments, print) +
           PrintWhere(update.where);
  }

  std::string operator()(const DeleteStatement& statement) const {
    return "DELETE * FROM " + Print(statement.table) + PrintWhere(statement.where);
  }

  std::string operator()(const CreateTableStatement& create) const {
    const auto column = [](const ColumnSpecification& item) { return Print(item); };
    std::string text = List(create.columns, column);
    for (const IndexSpecification& constraint : create.constraints) {
      text += ", " + PrintConstraint(constraint);
    }
    for (const ForeignKeySpecification& key : create.foreign_keys) text += ", " + Print(key);
    return "CREATE TABLE " + PrintName(create.table) + " (" + text + ")";
  }

  std::string operator()(const CreateIndexStatement& create) const {
    const bool unique = create.index.unique && !create.index.primary;
    const auto term = [](const IndexTerm& item) { return Print(item); };
    return fmt::format("CREATE {}INDEX {} ON {} ({}){}", unique ? "UNIQUE " : "",
                       PrintName(create.index.name), PrintName(create.table),
                       List(create.index.columns, term), PrintIndexOption(create.index));
  }

  std::string operator()(const AddColumnStatement& add) const {
    return "ALTER TABLE " + PrintName(add.table) + " ADD COLUMN " + Print(add.column) +
           (add.constraint ? " " + PrintConstraintHead(*add.constraint) : "") +
           (add.foreign_key ? " " + Print(*add.foreign_key, true) : "");
  }
  std::string operator()(const AddConstraintStatement& add) const {
    return "ALTER TABLE " + PrintName(add.table) + " ADD " +
           (add.index ? PrintConstraint(*add.index) : "") +
           (add.foreign_key ? Print(*add.foreign_key) : "");
  }
  std::string operator()(const DropConstraintStatement& drop) const {
    return "ALTER TABLE " + PrintName(drop.table) + " DROP CONSTRAINT " +
           PrintName(drop.constraint);
  }
  std::string operator()(const AlterColumnStatement& alter) const {
    return "ALTER TABLE " + PrintName(alter.table) + " ALTER COLUMN " + Print(alter.column);
  }
  std::string operator()(const DropColumnStatement& drop) const {
    return "ALTER TABLE " + PrintName(drop.table) + " DROP COLUMN " + PrintName(drop.column);
  }
  std::string operator()(const DropTableStatement& drop) const {
    return "DROP TABLE " + PrintName(drop.table);
  }
  std::string operator()(const DropIndexStatement& drop) const {
    return "DROP INDEX " + PrintName(drop.index) + " ON " + PrintName(drop.table);
  }
};

}  // namespace

std::string PrintSelect(const SelectStatement& select) {
  std::string text = PrintBody(select);
  for (const SelectStatement& term : select.unions) {
    text += (term.union_all ? " UNION ALL " : " UNION ") + PrintBody(term);
  }
  if (select.order_by.empty()) return text;
  return text + " ORDER BY " + List(select.order_by, [](const OrderTerm& term) {
           return PrintExpression(term.expression) + (term.descending ? " DESC" : "");
         });
}

std::string PrintStatement(const Statement& statement) {
  return std::visit(StatementPrinter(), statement);
}

}  // namespace zent::jet
