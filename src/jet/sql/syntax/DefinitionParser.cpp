#include <utility>

#include "jet/sql/syntax/StatementParsers.h"

// CREATE, ALTER and DROP.
namespace zent::jet {
namespace {

/// The word that says what kind of constraint comes; false when there is none.
bool IsConstraint(const TokenStream& tokens) {
  return tokens.IsKeyword("CONSTRAINT") ||
         (tokens.IsKeyword("PRIMARY") && tokens.IsKeyword("KEY", 1)) || tokens.IsKeyword("UNIQUE");
}

/// "[CONSTRAINT name] PRIMARY KEY" or "[CONSTRAINT name] UNIQUE".
Status ParseConstraintHead(TokenStream& tokens, IndexSpecification& constraint) {
  if (tokens.TakeKeyword("CONSTRAINT")) {
    Result<std::string> name = tokens.ExpectName("a constraint");
    if (!name.ok()) return name.error();
    constraint.name = std::move(name.value());
  }
  constraint.unique = true;
  if (tokens.TakeKeyword("UNIQUE")) return {};
  if (!tokens.TakeKeyword("PRIMARY")) {
    return tokens.Error("PRIMARY KEY or UNIQUE expected; other constraints are not supported");
  }
  constraint.primary = true;
  return tokens.ExpectKeyword("KEY");
}

Status ParseTableConstraint(TokenStream& tokens, CreateTableStatement& create) {
  IndexSpecification constraint;
  Status done = ParseConstraintHead(tokens, constraint);
  std::vector<std::string> names;
  if (done.ok()) done = ParseNames(tokens, names);
  if (!done.ok()) return done;
  for (std::string& name : names) constraint.columns.push_back({std::move(name)});
  create.constraints.push_back(std::move(constraint));
  return {};
}

/// Fills `constraint` when the column just read carries one.
Status ParseColumnConstraint(TokenStream& tokens, const ColumnSpecification& column,
                             std::optional<IndexSpecification>& constraint) {
  if (!IsConstraint(tokens)) return {};
  constraint.emplace();
  constraint->columns.push_back({column.name});
  return ParseConstraintHead(tokens, *constraint);
}

Status ParseTablePart(TokenStream& tokens, CreateTableStatement& create) {
  // A column may be called "Unique": then a type follows.
  if (IsConstraint(tokens) && !(tokens.IsKeyword("UNIQUE") && !tokens.IsMark("(", 1))) {
    return ParseTableConstraint(tokens, create);
  }
  Result<ColumnSpecification> column = ParseColumnSpecification(tokens);
  if (!column.ok()) return column.error();
  std::optional<IndexSpecification> constraint;
  Status done = ParseColumnConstraint(tokens, column.value(), constraint);
  if (!done.ok()) return done;
  create.columns.push_back(std::move(column.value()));
  if (constraint) create.constraints.push_back(*std::move(constraint));
  return {};
}

Result<Statement> ParseCreateTable(TokenStream& tokens) {
  Result<std::string> table = tokens.ExpectName("a table");
  if (!table.ok()) return table.error();
  CreateTableStatement create{.table = std::move(table.value())};
  const Status open = tokens.ExpectMark("(");
  if (!open.ok()) return open.error();
  do {
    const Status part = ParseTablePart(tokens, create);
    if (!part.ok()) return part.error();
  } while (tokens.TakeMark(","));
  const Status close = tokens.ExpectMark(")");
  if (!close.ok()) return close.error();
  if (create.columns.empty()) return tokens.Error("a table needs a column");
  return Statement(std::move(create));
}

Status ParseIndexColumns(TokenStream& tokens, IndexSpecification& index) {
  Status open = tokens.ExpectMark("(");
  if (!open.ok()) return open;
  do {
    Result<std::string> name = tokens.ExpectName("a column");
    if (!name.ok()) return name.error();
    const bool descending = tokens.TakeKeyword("DESC");
    if (!descending) (void)tokens.TakeKeyword("ASC");
    index.columns.push_back({std::move(name.value()), descending});
  } while (tokens.TakeMark(","));
  return tokens.ExpectMark(")");
}

Status ParseIndexOption(TokenStream& tokens, IndexSpecification& index) {
  if (!tokens.TakeKeyword("WITH")) return {};
  if (tokens.TakeKeyword("PRIMARY")) {
    index.primary = true;
    index.unique = true;
    return {};
  }
  bool* const option = tokens.IsKeyword("DISALLOW") ? &index.disallow_null : &index.ignore_null;
  if (!tokens.TakeKeyword("DISALLOW") && !tokens.TakeKeyword("IGNORE")) {
    return tokens.Error("PRIMARY, DISALLOW NULL or IGNORE NULL expected");
  }
  *option = true;
  return tokens.ExpectKeyword("NULL");
}

Result<Statement> ParseCreateIndex(TokenStream& tokens, bool unique) {
  Result<std::string> name = tokens.ExpectName("an index");
  if (!name.ok()) return name.error();
  const Status on = tokens.ExpectKeyword("ON");
  if (!on.ok()) return on.error();
  Result<std::string> table = tokens.ExpectName("a table");
  if (!table.ok()) return table.error();

  CreateIndexStatement create{.table = std::move(table.value())};
  create.index.name = std::move(name.value());
  create.index.unique = unique;
  Status done = ParseIndexColumns(tokens, create.index);
  if (done.ok()) done = ParseIndexOption(tokens, create.index);
  if (!done.ok()) return done.error();
  return Statement(std::move(create));
}

Result<Statement> ParseAddColumn(TokenStream& tokens, std::string table) {
  (void)tokens.TakeKeyword("COLUMN");
  Result<ColumnSpecification> column = ParseColumnSpecification(tokens);
  if (!column.ok()) return column.error();
  AddColumnStatement add{.table = std::move(table), .column = std::move(column.value())};
  const Status done = ParseColumnConstraint(tokens, add.column, add.constraint);
  if (!done.ok()) return done.error();
  return Statement(std::move(add));
}

}  // namespace

Result<Statement> ParseCreate(TokenStream& tokens) {
  tokens.Skip();
  if (tokens.TakeKeyword("TABLE")) return ParseCreateTable(tokens);
  const bool unique = tokens.TakeKeyword("UNIQUE");
  if (tokens.TakeKeyword("INDEX")) return ParseCreateIndex(tokens, unique);
  return tokens.Error("TABLE or INDEX expected");
}

Result<Statement> ParseAlter(TokenStream& tokens) {
  tokens.Skip();
  const Status word = tokens.ExpectKeyword("TABLE");
  if (!word.ok()) return word.error();
  Result<std::string> table = tokens.ExpectName("a table");
  if (!table.ok()) return table.error();
  if (tokens.TakeKeyword("ADD")) return ParseAddColumn(tokens, std::move(table.value()));
  if (tokens.TakeKeyword("DROP")) {
    (void)tokens.TakeKeyword("COLUMN");
    Result<std::string> column = tokens.ExpectName("a column");
    if (!column.ok()) return column.error();
    return Statement(DropColumnStatement{std::move(table.value()), std::move(column.value())});
  }
  if (!tokens.TakeKeyword("ALTER")) return tokens.Error("ADD, ALTER or DROP expected");
  (void)tokens.TakeKeyword("COLUMN");
  Result<ColumnSpecification> column = ParseColumnSpecification(tokens);
  if (!column.ok()) return column.error();
  return Statement(AlterColumnStatement{std::move(table.value()), std::move(column.value())});
}

Result<Statement> ParseDrop(TokenStream& tokens) {
  tokens.Skip();
  const bool is_index = tokens.IsKeyword("INDEX");
  if (!is_index && !tokens.IsKeyword("TABLE")) return tokens.Error("TABLE or INDEX expected");
  tokens.Skip();
  Result<std::string> name = tokens.ExpectName(is_index ? "an index" : "a table");
  if (!name.ok()) return name.error();
  if (!is_index) return Statement(DropTableStatement{std::move(name.value())});
  const Status on = tokens.ExpectKeyword("ON");
  if (!on.ok()) return on.error();
  Result<std::string> table = tokens.ExpectName("a table");
  if (!table.ok()) return table.error();
  return Statement(DropIndexStatement{std::move(name.value()), std::move(table.value())});
}

}  // namespace zent::jet
