#include <utility>

#include "jet/sql/syntax/ExpressionParser.h"
#include "jet/sql/syntax/StatementParsers.h"

// INSERT, UPDATE and DELETE.
namespace zent::jet {
namespace {

Status ParseValues(TokenStream& tokens, std::vector<Expression>& values) {
  Status open = tokens.ExpectMark("(");
  if (!open.ok()) return open;
  do {
    Result<Expression> value = ExpressionParser(tokens).Parse();
    if (!value.ok()) return value.error();
    values.push_back(std::move(value.value()));
  } while (tokens.TakeMark(","));
  return tokens.ExpectMark(")");
}

Status ParseAssignments(TokenStream& tokens, std::vector<Assignment>& assignments) {
  do {
    Result<Expression> column = ExpressionParser(tokens).ParseColumn();
    if (!column.ok()) return column.error();
    Status equals = tokens.ExpectMark("=");
    if (!equals.ok()) return equals;
    Result<Expression> value = ExpressionParser(tokens).Parse();
    if (!value.ok()) return value.error();
    assignments.push_back({std::move(column.value()), std::move(value.value())});
  } while (tokens.TakeMark(","));
  return {};
}

/// The rows come from VALUES or from a query.
Result<Statement> ParseRows(TokenStream& tokens, InsertStatement insert) {
  if (tokens.IsKeyword("SELECT")) {
    Result<SelectStatement> select = ParseSelect(tokens);
    if (!select.ok()) return select.error();
    if (!select.value().into.empty()) return tokens.Error("INTO cannot stand here");
    insert.select = std::move(select.value());
    return Statement(std::move(insert));
  }
  if (!tokens.TakeKeyword("VALUES")) return tokens.Error("VALUES or SELECT expected");
  const Status done = ParseValues(tokens, insert.values);
  if (!done.ok()) return done.error();
  if (!insert.columns.empty() && insert.columns.size() != insert.values.size()) {
    return tokens.Error("there are not as many values as columns");
  }
  return Statement(std::move(insert));
}

}  // namespace

Status ParseDatabase(TokenStream& tokens, std::string& database) {
  if (!tokens.TakeKeyword("IN")) return {};
  const auto* const path = std::get_if<Text>(&tokens.Peek().value);
  if (path == nullptr || path->empty()) return tokens.Error("path between quotes expected");
  database = *path;
  tokens.Skip();
  return {};
}

Status ParseNames(TokenStream& tokens, std::vector<std::string>& columns) {
  Status open = tokens.ExpectMark("(");
  if (!open.ok()) return open;
  do {
    Result<std::string> name = tokens.ExpectName("a column");
    if (!name.ok()) return name.error();
    columns.push_back(std::move(name.value()));
  } while (tokens.TakeMark(","));
  return tokens.ExpectMark(")");
}

Result<Statement> ParseInsert(TokenStream& tokens) {
  tokens.Skip();
  const Status into = tokens.ExpectKeyword("INTO");
  if (!into.ok()) return into.error();
  Result<std::string> table = tokens.ExpectName("a table");
  if (!table.ok()) return table.error();
  InsertStatement insert{.table = std::move(table.value())};

  // The other file may be named before or behind the columns.
  Status done = ParseDatabase(tokens, insert.database);
  if (done.ok() && tokens.IsMark("(")) done = ParseNames(tokens, insert.columns);
  if (done.ok() && insert.database.empty()) done = ParseDatabase(tokens, insert.database);
  if (!done.ok()) return done.error();
  return ParseRows(tokens, std::move(insert));
}

Result<Statement> ParseUpdate(TokenStream& tokens) {
  tokens.Skip();
  Result<TableSource> table = ParseTableSource(tokens);
  if (!table.ok()) return table.error();
  UpdateStatement update{.table = std::move(table.value())};
  Status done = tokens.ExpectKeyword("SET");
  if (done.ok()) done = ParseAssignments(tokens, update.assignments);
  if (done.ok()) done = ParseWhere(tokens, update.where);
  if (!done.ok()) return done.error();
  return Statement(std::move(update));
}

Result<Statement> ParseDelete(TokenStream& tokens) {
  tokens.Skip();
  // "*" or "t.*" may stand for the rows.
  if (tokens.IsName() && tokens.IsMark(".", 1)) {
    tokens.Skip();
    tokens.Skip();
    const Status all = tokens.ExpectMark("*");
    if (!all.ok()) return all.error();
  } else {
    (void)tokens.TakeMark("*");
  }
  const Status from = tokens.ExpectKeyword("FROM");
  if (!from.ok()) return from.error();
  Result<TableSource> table = ParseTableSource(tokens);
  if (!table.ok()) return table.error();
  DeleteStatement statement{.table = std::move(table.value())};
  const Status done = ParseWhere(tokens, statement.where);
  if (!done.ok()) return done.error();
  return Statement(std::move(statement));
}

}  // namespace zent::jet
