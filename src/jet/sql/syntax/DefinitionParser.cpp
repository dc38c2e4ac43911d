#include <utility>

#include "jet/sql/syntax/StatementParsers.h"

// CREATE, ALTER and DROP.
namespace zent::jet {
namespace {

/// The word that says what kind of constraint comes; false when there is none.
bool IsConstraint(const TokenStream& tokens) {
  return tokens.IsKeyword("CONSTRAINT") ||
         (tokens.IsKeyword("PRIMARY") && tokens.IsKeyword("KEY", 1)) ||
         tokens.IsKeyword("UNIQUE") || tokens.IsKeyword("REFERENCES") ||
         (tokens.IsKeyword("FOREIGN") && tokens.IsKeyword("KEY", 1));
}

/// The same where a column could stand. One may be called "Unique" or "References": a type follows.
bool IsTableConstraint(const TokenStream& tokens) {
  if (tokens.IsKeyword("UNIQUE")) return tokens.IsMark("(", 1);
  return !tokens.IsKeyword("REFERENCES") && IsConstraint(tokens);
}

/// A constraint is one of both.
struct Constraint {
  IndexSpecification index;
  std::optional<ForeignKeySpecification> foreign_key;
};

/// "ON UPDATE CASCADE" and "ON DELETE CASCADE", in any order; NO ACTION is what is done without.
Status ParseActions(TokenStream& tokens, ForeignKeySpecification& key) {
  while (tokens.TakeKeyword("ON")) {
    bool& cascades = tokens.IsKeyword("UPDATE") ? key.cascades_updates : key.cascades_deletes;
    if (!tokens.TakeKeyword("UPDATE") && !tokens.TakeKeyword("DELETE")) {
      return tokens.Error("UPDATE or DELETE expected");
    }
    if (tokens.TakeKeyword("NO")) {
      Status action = tokens.ExpectKeyword("ACTION");
      if (!action.ok()) return action;
      cascades = false;
      continue;
    }
    Status cascade = tokens.ExpectKeyword("CASCADE");
    if (!cascade.ok()) return cascade;
    cascades = true;
  }
  return {};
}

/// From REFERENCES on.
Status ParseReference(TokenStream& tokens, ForeignKeySpecification& key) {
  Status word = tokens.ExpectKeyword("REFERENCES");
  if (!word.ok()) return word;
  Result<std::string> table = tokens.ExpectName("a table");
  if (!table.ok()) return table.error();
  key.referenced_table = std::move(table.value());
  if (tokens.IsMark("(")) {
    Status names = ParseNames(tokens, key.referenced_columns);
    if (!names.ok()) return names;
  }
  return ParseActions(tokens, key);
}

/// "[CONSTRAINT name]", then "PRIMARY KEY", "UNIQUE", or what begins a foreign key.
Status ParseConstraintHead(TokenStream& tokens, Constraint& constraint) {
  std::string name;
  if (tokens.TakeKeyword("CONSTRAINT")) {
    Result<std::string> given = tokens.ExpectName("a constraint");
    if (!given.ok()) return given.error();
    name = std::move(given.value());
  }
  if (tokens.IsKeyword("REFERENCES") || tokens.IsKeyword("FOREIGN")) {
    constraint.foreign_key.emplace().name = std::move(name);
    return {};
  }
  constraint.index.name = std::move(name);
  constraint.index.unique = true;
  if (tokens.TakeKeyword("UNIQUE")) return {};
  if (!tokens.TakeKeyword("PRIMARY")) {
    return tokens.Error("PRIMARY KEY, UNIQUE, FOREIGN KEY or REFERENCES expected");
  }
  constraint.index.primary = true;
  return tokens.ExpectKeyword("KEY");
}

/// A constraint of the whole table: its columns are named.
Status ParseTableConstraint(TokenStream& tokens, Constraint& constraint) {
  Status done = ParseConstraintHead(tokens, constraint);
  if (!done.ok()) return done;
  if (constraint.foreign_key) {
    done = tokens.ExpectKeyword("FOREIGN");
    if (done.ok()) done = tokens.ExpectKeyword("KEY");
    if (done.ok()) done = ParseNames(tokens, constraint.foreign_key->columns);
    return done.ok() ? ParseReference(tokens, *constraint.foreign_key) : done;
  }
  std::vector<std::string> names;
  done = ParseNames(tokens, names);
  for (std::string& name : names) constraint.index.columns.push_back({std::move(name)});
  return done;
}

/// Fills `constraint` when the column just read carries one.
Status ParseColumnConstraint(TokenStream& tokens, const ColumnSpecification& column,
                             std::optional<Constraint>& constraint) {
  if (!IsConstraint(tokens)) return {};
  constraint.emplace();
  Status done = ParseConstraintHead(tokens, *constraint);
  if (!done.ok()) return done;
  if (!constraint->foreign_key) {
    constraint->index.columns.push_back({column.name});
    return {};
  }
  constraint->foreign_key->columns.push_back(column.name);
  return ParseReference(tokens, *constraint->foreign_key);
}

void Add(Constraint constraint, CreateTableStatement& create) {
  if (constraint.foreign_key) {
    create.foreign_keys.push_back(*std::move(constraint.foreign_key));
  } else {
    create.constraints.push_back(std::move(constraint.index));
  }
}

Status ParseTablePart(TokenStream& tokens, CreateTableStatement& create) {
  if (IsTableConstraint(tokens)) {
    Constraint constraint;
    Status done = ParseTableConstraint(tokens, constraint);
    if (done.ok()) Add(std::move(constraint), create);
    return done;
  }
  Result<ColumnSpecification> column = ParseColumnSpecification(tokens);
  if (!column.ok()) return column.error();
  std::optional<Constraint> constraint;
  Status done = ParseColumnConstraint(tokens, column.value(), constraint);
  if (!done.ok()) return done;
  create.columns.push_back(std::move(column.value()));
  if (constraint) Add(*std::move(constraint), create);
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

Result<Statement> ParseAddConstraint(TokenStream& tokens, std::string table) {
  Constraint constraint;
  const Status done = ParseTableConstraint(tokens, constraint);
  if (!done.ok()) return done.error();
  AddConstraintStatement add{.table = std::move(table),
                             .foreign_key = std::move(constraint.foreign_key)};
  if (!add.foreign_key) add.index = std::move(constraint.index);
  return Statement(std::move(add));
}

Result<Statement> ParseAddColumn(TokenStream& tokens, std::string table) {
  if (IsTableConstraint(tokens)) {
    return ParseAddConstraint(tokens, std::move(table));
  }
  (void)tokens.TakeKeyword("COLUMN");
  Result<ColumnSpecification> column = ParseColumnSpecification(tokens);
  if (!column.ok()) return column.error();
  AddColumnStatement add{.table = std::move(table), .column = std::move(column.value())};
  std::optional<Constraint> constraint;
  const Status done = ParseColumnConstraint(tokens, add.column, constraint);
  if (!done.ok()) return done.error();
  if (constraint && constraint->foreign_key) {
    add.foreign_key = std::move(constraint->foreign_key);
  } else if (constraint) {
    add.constraint = std::move(constraint->index);
  }
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
    if (tokens.TakeKeyword("CONSTRAINT")) {
      Result<std::string> name = tokens.ExpectName("a constraint");
      if (!name.ok()) return name.error();
      return Statement(DropConstraintStatement{std::move(table.value()), std::move(name.value())});
    }
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
