#include <algorithm>
#include <optional>
#include <utility>

#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/sql/execution/ColumnDefaults.h"
#include "jet/sql/execution/NoRow.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/execution/Query.h"
#include "jet/sql/execution/StatementRunners.h"
#include "jet/sql/execution/Subqueries.h"
#include "jet/sql/execution/ValidationRules.h"
#include "jet/sql/values/Conversion.h"

// INSERT.
namespace zent::jet {
namespace {

/// Puts rows into one table.
class Inserter {
 public:
  Inserter(Table& table, EvaluationContext context) : table_(table), defaults_(table, context) {}

  /// Values go to these columns from now on.
  void SetColumns(std::vector<std::size_t> positions) { positions_ = std::move(positions); }
  const std::vector<std::size_t>& columns() const { return positions_; }

  Status Insert(const std::vector<Value>& given) {
    const std::vector<ColumnDefinition>& columns = table_.definition().columns;
    std::vector<bool> said(columns.size(), false);
    std::vector<Value> values(columns.size());
    for (std::size_t i = 0; i < positions_.size(); ++i) {
      Result<Value> value = ConvertForColumn(columns[positions_[i]], given[i]);
      if (!value.ok()) return value.error();
      values[positions_[i]] = std::move(value.value());
      said[positions_[i]] = true;
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
      if (!said[i]) values[i] = defaults_.For(i);
    }
    return table_.Insert(values).status();
  }

 private:
  Table& table_;
  ColumnDefaults defaults_;
  std::vector<std::size_t> positions_;
};

/// The positions of the columns that the statement names; all without names.
Result<std::vector<std::size_t>> NamedColumns(const Table& table,
                                              const std::vector<std::string>& names) {
  if (names.empty()) return table.display_order();
  std::vector<std::size_t> positions;
  for (const std::string& name : names) {
    const Result<std::size_t> position = table.PositionOf(name);
    if (!position.ok()) return JetError(kUnknownInsertField, name);
    if (std::find(positions.begin(), positions.end(), position.value()) != positions.end()) {
      return JetErrorBecause(kFieldDefinedTwice, name);
    }
    positions.push_back(position.value());
  }
  return positions;
}

/// Without names the columns of a query go to those of their names, or, where they have others, to
/// all in order.
Result<std::vector<std::size_t>> ColumnsFor(const Table& table, const InsertStatement& insert,
                                            const std::vector<ResultColumn>& from) {
  if (insert.columns.empty()) {
    std::vector<std::string> names;
    names.reserve(from.size());
    for (const ResultColumn& column : from) names.push_back(column.name);
    Result<std::vector<std::size_t>> positions = NamedColumns(table, names);
    if (positions.ok() || table.display_order().size() != from.size()) return positions;
  }
  Result<std::vector<std::size_t>> positions = NamedColumns(table, insert.columns);
  if (positions.ok() && positions.value().size() != from.size()) {
    return JetError(kValueCountDiffers);
  }
  return positions;
}

Result<std::int64_t> InsertValues(SqlSession& session, const InsertStatement& insert,
                                  Table& table) {
  Inserter inserter(table, session.context);
  Result<std::vector<std::size_t>> positions = NamedColumns(table, insert.columns);
  if (!positions.ok()) return positions.error();
  if (positions.value().size() != insert.values.size()) return JetError(kValueCountDiffers);
  inserter.SetColumns(std::move(positions.value()));

  std::vector<Expression> expressions = insert.values;
  ColumnBinder binder({});
  Subqueries subqueries(session);
  for (Expression& expression : expressions) {
    Status bound = binder.Bind(expression);
    if (bound.ok()) bound = subqueries.Add(expression, {});
    if (!bound.ok()) return bound.error();
  }
  if (const Status all = binder.Finish(); !all.ok()) return all.error();
  Evaluator evaluator(session.context, &subqueries);
  NoRow no_row;
  std::vector<Value> values;
  for (const Expression& expression : expressions) {
    Result<Value> value = evaluator.Evaluate(expression, no_row);
    if (!value.ok()) return value.error();
    values.push_back(std::move(value.value()));
  }
  const Status inserted = inserter.Insert(values);
  if (!inserted.ok()) return inserted.error();
  return std::int64_t{1};
}

/// Whether the query or one within it may read the table.
bool MayRead(const SelectStatement& select, const std::string& table);
bool MayRead(const Expression& expression, const std::string& table) {
  return (expression.query.get() != nullptr && MayRead(*expression.query.get(), table)) ||
         std::any_of(expression.operands.begin(), expression.operands.end(),
                     [&](const Expression& operand) { return MayRead(operand, table); });
}
bool MayRead(const SelectStatement& select, const std::string& table) {
  bool reads = std::any_of(select.from.begin(), select.from.end(), [&](const JoinedTable& joined) {
    return SameKey(joined.source.name, table);
  });
  VisitExpressions(select,
                   [&](const Expression& expression) { reads |= MayRead(expression, table); });
  return reads || std::any_of(select.unions.begin(), select.unions.end(),
                              [&](const SelectStatement& t) { return MayRead(t, table); });
}

/// All rows of a query, to be put into a table that it reads.
Result<std::vector<std::vector<Value>>> GatherRows(Query& query) {
  std::vector<std::vector<Value>> rows;
  std::size_t kept = 0;
  for (;;) {
    const Result<bool> found = query.Next();
    if (!found.ok()) return found.error();
    if (!found.value()) return rows;
    kept += KeptBytes(query.row());
    if (kept > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
    rows.push_back(query.row());
  }
}

/// `own`: the table is one of the session's file, under whatever name the statement calls that.
Result<std::int64_t> InsertRows(SqlSession& session, const InsertStatement& insert, Table& table,
                                bool own) {
  Result<std::unique_ptr<Query>> query = MakeQuery(session, *insert.select);
  if (!query.ok()) return query.error();
  Result<std::vector<std::size_t>> positions = ColumnsFor(table, insert, query.value()->columns());
  if (!positions.ok()) return positions.error();
  Inserter inserter(table, session.context);
  inserter.SetColumns(std::move(positions.value()));

  std::int64_t rows = 0;
  if (own && MayRead(*insert.select, insert.table)) {
    const Result<std::vector<std::vector<Value>>> gathered = GatherRows(*query.value());
    if (!gathered.ok()) return gathered.error();
    query.value().reset();
    for (const std::vector<Value>& row : gathered.value()) {
      const Status inserted = inserter.Insert(row);
      if (!inserted.ok()) return inserted.error();
      ++rows;
    }
    return rows;
  }
  for (;; ++rows) {
    const Result<bool> found = query.value()->Next();
    if (!found.ok()) return found.error();
    if (!found.value()) return rows;
    const Status inserted = inserter.Insert(query.value()->row());
    if (!inserted.ok()) return inserted.error();
  }
}

}  // namespace

Result<Catalog*> CatalogOf(SqlSession& session, const std::string& path) {
  if (path.empty()) return &session.catalog;
  if (!session.open_other) {
    return JetErrorBecause(kInvalidOperation, "no other file can be opened here");
  }
  return session.open_other(path);
}

Result<std::int64_t> RunInsert(SqlSession& session, const InsertStatement& insert) {
  const Result<Catalog*> catalog = CatalogOf(session, insert.database);
  if (!catalog.ok()) return catalog.error();
  const Result<Table*> table = catalog.value()->OpenTable(insert.table);
  if (!table.ok()) return table.error();
  if (const Status writable = table.value()->Writable(); !writable.ok()) return writable.error();
  AddValidationRules(*table.value(), session.context);
  const bool own = catalog.value() == &session.catalog;
  return insert.select ? InsertRows(session, insert, *table.value(), own)
                       : InsertValues(session, insert, *table.value());
}

}  // namespace zent::jet
