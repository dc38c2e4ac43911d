#include "jet/sql/execution/SelectQuery.h"

#include <algorithm>
#include <utility>

#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/syntax/Printer.h"

// How a query is made; SelectRows.cpp gives its rows.
namespace zent::jet {

SelectQuery::SelectQuery(SqlSession& session, const SelectStatement& select,
                         const OuterScope& outer)
    : session_(session),
      scope_(session.catalog.pager()),
      select_(select),
      outer_(outer),
      frame_(outer.row),
      subqueries_(session),
      evaluator_(session.context, &subqueries_) {}

Result<std::unique_ptr<Query>> SelectQuery::Make(SqlSession& session, const SelectStatement& select,
                                                 const OuterScope& outer) {
  std::unique_ptr<SelectQuery> query(new SelectQuery(session, select, outer));
  if (!query->scope_.status().ok()) return query->scope_.status().error();
  for (const auto step :
       {&SelectQuery::OpenTables, &SelectQuery::BindNames, &SelectQuery::PlanRows}) {
    const Status done = (query.get()->*step)();
    if (!done.ok()) return done.error();
  }
  return std::unique_ptr<Query>(std::move(query));
}

Status SelectQuery::OpenTables() {
  std::vector<std::size_t> textual;
  TurnRightJoin(select_, textual);
  for (const JoinedTable& joined : select_.from) {
    Result<Table*> table = session_.catalog.OpenTable(joined.source.name);
    if (!table.ok()) return table.error();
    frame_.AddTable(*table.value());
  }
  names_ = NamesOf(select_, frame_);
  return ExpandColumns(select_, frame_, textual);
}

Status SelectQuery::BindNames() {
  ColumnBinder binder(names_, outer_.columns);
  if (Status resolved = ResolveOrder(select_, binder); !resolved.ok()) return resolved;
  Status bound;
  VisitExpressions(select_, [&](Expression& expression) {
    if (bound.ok()) bound = binder.Bind(expression);
  });
  if (bound.ok()) bound = binder.Finish();
  if (!bound.ok()) return bound;
  outer_reach_ = binder.outer_reach();
  if (select_.where && HasAggregate(*select_.where)) {
    return JetError(kAggregateInWhere, PrintExpression(*select_.where));
  }
  columns_ = DescribeColumns(select_, frame_);
  row_.resize(columns_.size());
  return {};
}

bool SelectQuery::IsGrouped() const {
  bool grouped = !select_.group_by.empty() || select_.having;
  VisitExpressions(select_, [&](const Expression& expression) {
    grouped = grouped || HasAggregate(expression);
  });
  return grouped;
}

/// Makes columns, HAVING and ORDER BY read the groups.
Status SelectQuery::PlanGroups(Grouping& grouping) {
  grouping.groups = select_.group_by;
  std::vector<Expression*> over_groups;
  for (SelectColumn& column : select_.columns) over_groups.push_back(&*column.expression);
  if (select_.having) over_groups.push_back(&*select_.having);
  for (OrderTerm& term : select_.order_by) over_groups.push_back(&term.expression);
  for (Expression* const expression : over_groups) {
    Status done = TakeAggregates(*expression, grouping.groups.size(), grouping.aggregates);
    if (done.ok()) done = UseGroups(*expression, grouping.groups);
    if (!done.ok()) return done;
  }
  if (select_.having) grouping.having = &*select_.having;
  return {};
}

/// COUNT(*) of a whole table is in its definition.
void SelectQuery::UseRowCount(const Grouping& grouping) {
  const bool counts_alone =
      std::all_of(grouping.aggregates.begin(), grouping.aggregates.end(),
                  [](const Expression& aggregate) { return aggregate.operands.empty(); });
  if (!counts_alone || !grouping.groups.empty() || select_.where || frame_.table_count() != 1) {
    return;
  }
  const Result<std::uint32_t> rows = frame_.table(0).store().RowCount();
  if (rows.ok()) grouped_->SetRowCount(static_cast<std::int32_t>(rows.value()));
}

Status SelectQuery::PlanRows() {
  for (std::size_t i = 0; i < select_.from.size(); ++i) {
    // A join reads its own table and those before.
    if (!select_.from[i].on || i + 1 == select_.from.size()) continue;
    const TestedColumn later{.first_unknown = frame_.first_column(i + 1),
                             .end_unknown = frame_.column_count()};
    if (select_.from[i].on->query.get() == nullptr && !IsConstant(*select_.from[i].on, later)) {
      return JetError(kJoinNotSupported);
    }
  }
  const bool is_grouped = IsGrouped();
  Grouping grouping;
  if (is_grouped) {
    if (Status planned = PlanGroups(grouping); !planned.ok()) return planned;
  }
  joined_ = std::make_unique<JoinStream>(frame_, evaluator_, select_.from,
                                         select_.where ? &*select_.where : nullptr);
  const bool by_columns =
      !is_grouped && !select_.from.empty() &&
      std::all_of(select_.order_by.begin(), select_.order_by.end(), [](const OrderTerm& term) {
        return term.expression.kind == ExpressionKind::Column;
      });
  const bool ordered = joined_->Plan(by_columns ? std::span<const OrderTerm>(select_.order_by)
                                                : std::span<const OrderTerm>()) ||
                       select_.order_by.empty();
  rows_ = joined_.get();
  if (is_grouped) {
    grouped_ = std::make_unique<GroupedStream>(*rows_, std::move(grouping), evaluator_);
    rows_ = grouped_.get();
  }
  if (!ordered) {
    sorted_ = std::make_unique<SortedStream>(*rows_, select_.order_by, evaluator_);
    rows_ = sorted_.get();
  }
  return AddSubqueries();
}

Status SelectQuery::AddSubqueries() {
  OuterScope inside{.columns = names_, .row = &frame_};
  inside.columns.insert(inside.columns.end(), outer_.columns.begin(), outer_.columns.end());
  const OuterScope alone;
  Status done;
  const auto add = [&](const Expression& expression, const OuterScope& scope) {
    if (done.ok()) done = subqueries_.Add(expression, scope);
  };
  for (const JoinedTable& table : select_.from) {
    if (table.on) add(*table.on, inside);
  }
  if (select_.where) add(*select_.where, inside);
  // Groups are no rows of the tables.
  const OuterScope& behind = grouped_ ? alone : inside;
  for (const SelectColumn& column : select_.columns) add(*column.expression, behind);
  if (select_.having) add(*select_.having, behind);
  for (const OrderTerm& term : select_.order_by) add(term.expression, behind);
  if (!done.ok()) return done;
  if (subqueries_.outer_reach() > names_.size()) {
    outer_reach_ = std::max(outer_reach_, subqueries_.outer_reach() - names_.size());
  }
  return {};
}

}  // namespace zent::jet
