#include "jet/sql/execution/SelectNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {
namespace {

constexpr std::size_t kFirstExpressionNumber = 1000;

const std::string& ShownName(const TableSource& source) {
  return source.alias.empty() ? source.name : source.alias;
}

SelectColumn ColumnOf(const TableSource& source, const std::string& name) {
  Expression column = Node(ExpressionKind::Column, {}, name);
  column.table = ShownName(source);
  return {.expression = std::move(column)};
}

/// Characters of a text, which take two bytes each in Jet 4; else bytes.
std::uint16_t SizeOf(JetVersion version, const ColumnDefinition& column) {
  const bool wide = column.type == ColumnType::Text && version == JetVersion::Jet4;
  return static_cast<std::uint16_t>(wide ? column.length / 2U : column.length);
}

/// The place of a column number: ORDER BY 2.
std::optional<std::size_t> NumberedColumn(const Expression& term) {
  const auto* const number = std::get_if<std::int16_t>(&term.value);
  if (term.kind != ExpressionKind::Literal || number == nullptr || *number < 1) return std::nullopt;
  return static_cast<std::size_t>(*number) - 1;
}

}  // namespace

void TurnRightJoin(SelectStatement& select, std::vector<std::size_t>& textual) {
  textual.resize(select.from.size());
  std::iota(textual.begin(), textual.end(), std::size_t{0});
  if (select.from.size() < 2 || select.from[1].kind != JoinKind::Right) return;
  std::swap(select.from[0].source, select.from[1].source);
  select.from[1].kind = JoinKind::Left;
  std::swap(textual[0], textual[1]);
}

std::vector<ScopeColumn> NamesOf(const SelectStatement& select, RowFrame& frame) {
  std::vector<ScopeColumn> names;
  for (std::size_t i = 0; i < frame.table_count(); ++i) {
    for (const ColumnDefinition& column : frame.table(i).definition().columns) {
      names.push_back({ShownName(select.from[i].source), column.name});
    }
  }
  return names;
}

Status ExpandColumns(SelectStatement& select, RowFrame& frame,
                     const std::vector<std::size_t>& textual) {
  std::vector<SelectColumn> columns;
  for (SelectColumn& column : select.columns) {
    if (column.expression) {
      columns.push_back(std::move(column));
      continue;
    }
    bool found = false;
    for (const std::size_t i : textual) {
      const TableSource& source = select.from[i].source;
      if (!column.table.empty() && !SameKey(column.table, ShownName(source))) continue;
      found = true;
      const Table& table = frame.table(i);
      for (const std::size_t position : table.display_order()) {
        columns.push_back(ColumnOf(source, table.definition().columns[position].name));
      }
    }
    if (!found) {
      return column.table.empty() ? JetErrorBecause(kSyntaxError, "no table to take all of", "*")
                                  : JetError(kNoSuchTable, column.table);
    }
  }
  select.columns = std::move(columns);
  return {};
}

Status ResolveOrder(SelectStatement& select, const ColumnBinder& binder) {
  for (OrderTerm& term : select.order_by) {
    const std::optional<std::size_t> number = NumberedColumn(term.expression);
    if (number) {
      if (*number >= select.columns.size()) {
        return JetErrorBecause(kSyntaxError, "there is no such column",
                               PrintExpression(term.expression));
      }
      term.expression = *select.columns[*number].expression;
      continue;
    }
    if (term.expression.kind != ExpressionKind::Column || !term.expression.table.empty()) continue;
    const Result<std::size_t> place = binder.PlaceOfColumn(term.expression);
    if (!place.ok()) return place.error();
    if (place.value() != kUnboundColumn) continue;
    const auto named = std::find_if(
        select.columns.begin(), select.columns.end(),
        [&](const SelectColumn& column) { return SameKey(column.alias, term.expression.name); });
    if (named != select.columns.end()) term.expression = *named->expression;
  }
  return {};
}

std::vector<ResultColumn> DescribeColumns(const SelectStatement& select, RowFrame& frame) {
  std::vector<ResultColumn> described;
  std::vector<std::string> owners;  // as the statement calls the tables
  for (std::size_t i = 0; i < select.columns.size(); ++i) {
    const Expression& expression = *select.columns[i].expression;
    ResultColumn column{.name = select.columns[i].alias};
    std::string& owner = owners.emplace_back();
    if (expression.kind == ExpressionKind::Column && expression.column < frame.column_count()) {
      std::size_t table = frame.table_count() - 1;
      while (frame.first_column(table) > expression.column) --table;
      const ColumnDefinition& definition =
          frame.table(table).definition().columns[expression.column - frame.first_column(table)];
      column.table = frame.table(table).name();
      owner = ShownName(select.from[table].source);
      column.column = definition.name;
      column.type = definition.type;
      column.size = SizeOf(frame.table(table).definition().version, definition);
      if (definition.type == ColumnType::Numeric) {
        column.precision = definition.precision();
        column.scale = definition.scale();
      }
      if (column.name.empty()) column.name = definition.name;
    }
    if (column.name.empty()) column.name = fmt::format("Expr{}", kFirstExpressionNumber + i);
    described.push_back(std::move(column));
  }
  // Columns of several tables that share their name are told apart by the table.
  for (std::size_t i = 0; i < described.size(); ++i) {
    const bool shared = std::any_of(described.begin(), described.end(), [&](const ResultColumn& c) {
      return SameKey(c.column, described[i].column) &&
             !SameKey(owners[static_cast<std::size_t>(&c - described.data())], owners[i]);
    });
    if (shared && select.columns[i].alias.empty() && !described[i].column.empty()) {
      described[i].name = select.columns[i].expression->table.empty()
                              ? described[i].table + "." + described[i].column
                              : select.columns[i].expression->table + "." + described[i].column;
    }
  }
  return described;
}

}  // namespace zent::jet
