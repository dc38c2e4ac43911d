#include "jet/sql/syntax/Parser.h"

#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/sql/syntax/ExpressionParser.h"
#include "jet/sql/syntax/StatementParsers.h"

namespace zent::jet {
namespace {

Result<Statement> ParseSelectStatement(TokenStream& tokens) {
  Result<SelectStatement> select = ParseSelect(tokens);
  if (!select.ok()) return select.error();
  return Statement(std::move(select.value()));
}

struct StatementKind {
  std::string_view word;
  Result<Statement> (*parse)(TokenStream& tokens);
};

constexpr StatementKind kStatements[] = {
    {"SELECT", ParseSelectStatement},
    {"INSERT", ParseInsert},
    {"UPDATE", ParseUpdate},
    {"DELETE", ParseDelete},
    {"CREATE", ParseCreate},
    {"ALTER", ParseAlter},
    {"DROP", ParseDrop},
};

Result<Statement> ParseKnown(TokenStream& tokens) {
  for (const StatementKind& row : kStatements) {
    if (tokens.IsKeyword(row.word)) return row.parse(tokens);
  }
  if (tokens.IsKeyword("PARAMETERS")) return JetError(kTooFewParameters, "1");
  return tokens.Error("SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER or DROP expected");
}

}  // namespace

Result<Statement> ParseStatement(std::string_view statement) {
  Result<std::vector<Token>> split = Tokenize(statement);
  if (!split.ok()) return split.error();
  TokenStream tokens(statement, std::move(split.value()));
  Result<Statement> parsed = ParseKnown(tokens);
  if (!parsed.ok()) return parsed;
  (void)tokens.TakeMark(";");
  if (tokens.Peek().kind != TokenKind::End) return tokens.Error("end of the statement expected");
  return parsed;
}

Result<Expression> ParseExpression(std::string_view text) { return ParseRule(text, {}); }

Result<Expression> ParseRule(std::string_view text, std::string_view column) {
  Result<std::vector<Token>> split = Tokenize(text);
  if (!split.ok()) return split.error();
  TokenStream tokens(text, std::move(split.value()));
  Result<Expression> parsed = ExpressionParser(tokens, column).Parse();
  if (parsed.ok() && tokens.Peek().kind != TokenKind::End) {
    return tokens.Error("operator expected");
  }
  return parsed;
}

}  // namespace zent::jet
