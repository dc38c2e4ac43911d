#include <utility>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/Query.h"
#include "jet/sql/execution/RowFrame.h"
#include "jet/sql/execution/SelectNames.h"
#include "jet/sql/execution/StatementRunners.h"
#include "jet/sql/execution/Subqueries.h"
#include "jet/sql/execution/ValidationRules.h"
#include "jet/sql/values/Conversion.h"

// UPDATE and DELETE.
namespace zent::jet {
namespace {

/// The query for the rows of a table that pass a test.
SelectStatement RowsOf(const TableSource& table, const std::optional<Expression>& where) {
  SelectStatement select;
  Expression one;
  one.value = true;
  select.columns.push_back({.expression = std::move(one)});
  select.from.push_back({.source = table});
  select.where = where;
  return select;
}

/// Where these rows are. They are gathered before the first change, so that no row is met again
/// where its change has put it.
Result<std::vector<RowPointer>> FindRows(SqlSession& session, const TableSource& table,
                                         const std::optional<Expression>& where) {
  Result<std::unique_ptr<Query>> query = MakeQuery(session, RowsOf(table, where));
  if (!query.ok()) return query.error();
  std::vector<RowPointer> rows;
  for (;;) {
    const Result<bool> found = query.value()->Next();
    if (!found.ok()) return found.error();
    if (!found.value()) return rows;
    rows.push_back(*query.value()->base_row());
  }
}

/// Works out the new values of rows.
class Updater {
 public:
  Updater(SqlSession& session, Table& table)
      : table_(table),
        frame_(nullptr),
        subqueries_(session),
        evaluator_(session.context, &subqueries_) {
    frame_.AddTable(table);
  }

  Status Bind(const UpdateStatement& update) {
    assignments_ = update.assignments;
    const SelectStatement names = RowsOf(update.table, std::nullopt);
    const OuterScope scope{.columns = NamesOf(names, frame_), .row = &frame_};
    ColumnBinder binder(scope.columns);
    for (Assignment& assignment : assignments_) {
      Status bound = binder.Bind(assignment.column);
      if (bound.ok()) bound = binder.Bind(assignment.value);
      if (!bound.ok()) return bound;
    }
    if (Status all = binder.Finish(); !all.ok()) return all;
    for (const Assignment& assignment : assignments_) {
      if (Status added = subqueries_.Add(assignment.value, scope); !added.ok()) return added;
    }
    return {};
  }

  Status Update(RowPointer at) {
    if (Status fetched = frame_.Fetch(0, at); !fetched.ok()) return fetched;
    std::vector<ColumnChange> changes;
    for (const Assignment& assignment : assignments_) {
      const std::size_t position = assignment.column.column;
      const Result<Value> value = evaluator_.Evaluate(assignment.value, frame_);
      if (!value.ok()) return value.error();
      Result<Value> converted =
          ConvertForColumn(table_.definition().columns[position], value.value());
      if (!converted.ok()) return converted.error();
      changes.push_back({position, std::move(converted.value())});
    }
    frame_.SetNulls(0);
    return table_.Update(at, changes);
  }

 private:
  Table& table_;
  RowFrame frame_;
  Subqueries subqueries_;
  Evaluator evaluator_;
  std::vector<Assignment> assignments_;
};

Result<Table*> OpenForChange(SqlSession& session, const std::string& name) {
  Result<Table*> table = session.catalog.OpenTable(name);
  if (!table.ok()) return table;
  if (const Status writable = table.value()->Writable(); !writable.ok()) return writable.error();
  AddValidationRules(*table.value(), session.context);
  return table;
}

}  // namespace

Result<std::int64_t> RunUpdate(SqlSession& session, const UpdateStatement& update) {
  const Result<Table*> table = OpenForChange(session, update.table.name);
  if (!table.ok()) return table.error();
  Updater updater(session, *table.value());
  if (const Status bound = updater.Bind(update); !bound.ok()) return bound.error();
  const Result<std::vector<RowPointer>> rows = FindRows(session, update.table, update.where);
  if (!rows.ok()) return rows.error();
  for (const RowPointer row : rows.value()) {
    const Status updated = updater.Update(row);
    if (!updated.ok()) return updated.error();
  }
  return static_cast<std::int64_t>(rows.value().size());
}

Result<std::int64_t> RunDelete(SqlSession& session, const DeleteStatement& statement) {
  const Result<Table*> table = OpenForChange(session, statement.table.name);
  if (!table.ok()) return table.error();
  const Result<std::vector<RowPointer>> rows = FindRows(session, statement.table, statement.where);
  if (!rows.ok()) return rows.error();
  std::int64_t deleted = 0;
  for (const RowPointer row : rows.value()) {
    const Status done = table.value()->Delete(row);
    // A row may have gone with another that it refers to.
    if (done.number() == kRecordDeleted) continue;
    if (!done.ok()) return done.error();
    ++deleted;
  }
  return deleted;
}

}  // namespace zent::jet
