#pragma once

#include "base/Status.h"
#include "jet/sql/syntax/Statement.h"
#include "jet/sql/syntax/TokenStream.h"

/// One parser for each kind of statement. Each starts at the statement's first word, which is
/// known, and stops behind the statement's last token.
namespace zent::jet {

Result<SelectStatement> ParseSelect(TokenStream& tokens);
Result<Statement> ParseInsert(TokenStream& tokens);
Result<Statement> ParseUpdate(TokenStream& tokens);
Result<Statement> ParseDelete(TokenStream& tokens);
Result<Statement> ParseCreate(TokenStream& tokens);
Result<Statement> ParseAlter(TokenStream& tokens);
Result<Statement> ParseDrop(TokenStream& tokens);

/// A table with its alias, if it has one: "t", "t AS a", "t a".
Result<TableSource> ParseTableSource(TokenStream& tokens);
/// Fills `database` with the path when an IN "path" comes next.
Status ParseDatabase(TokenStream& tokens, std::string& database);
/// Fills `where` when a WHERE comes next.
Status ParseWhere(TokenStream& tokens, std::optional<Expression>& where);
/// Fills `columns` with names between brackets.
Status ParseNames(TokenStream& tokens, std::vector<std::string>& columns);
/// A column of a data definition: name and type.
Result<ColumnSpecification> ParseColumnSpecification(TokenStream& tokens);

}  // namespace zent::jet
