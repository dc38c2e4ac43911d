#include <limits>
#include <utility>

#include "jet/sql/syntax/ExpressionParser.h"
#include "jet/sql/syntax/StatementParsers.h"

namespace zent::jet {
namespace {

constexpr std::int32_t kAllPercent = 100;

Status ParseInto(TokenStream& tokens, std::optional<Expression>& place) {
  Result<Expression> parsed = ExpressionParser(tokens).Parse();
  if (!parsed.ok()) return parsed.error();
  place = std::move(parsed.value());
  return {};
}

class SelectParser {
 public:
  explicit SelectParser(TokenStream& tokens) : tokens_(tokens) {}

  Result<SelectStatement> Parse() {
    Status done = ParseBody();
    while (done.ok() && tokens_.IsKeyword("UNION")) done = ParseUnion();
    if (done.ok()) done = ParseOrder();
    if (!done.ok()) return done.error();
    return std::move(select_);
  }

 private:
  /// Everything that a query of a union can have.
  Status ParseBody() {
    Status start = tokens_.ExpectKeyword("SELECT");
    if (!start.ok()) return start;
    for (const auto step :
         {&SelectParser::ParsePredicate, &SelectParser::ParseColumns, &SelectParser::ParseTarget,
          &SelectParser::ParseFrom, &SelectParser::ParseFilter, &SelectParser::ParseGroups}) {
      Status done = (this->*step)();
      if (!done.ok()) return done;
    }
    return {};
  }

  Status ParseUnion() {
    tokens_.Skip();
    SelectParser term(tokens_);
    term.select_.union_all = tokens_.TakeKeyword("ALL");
    Status done = term.ParseBody();
    if (!done.ok()) return done;
    if (!term.select_.into.empty()) return tokens_.Error("INTO stands in the first query alone");
    select_.unions.push_back(std::move(term.select_));
    return {};
  }

  Status ParsePredicate() {
    if (tokens_.TakeKeyword("DISTINCT")) {
      select_.distinct = true;
    } else if (!tokens_.TakeKeyword("ALL")) {
      (void)tokens_.TakeKeyword("DISTINCTROW");  // rows of one table are distinct as they are
    }
    if (!tokens_.TakeKeyword("TOP")) return {};
    const Result<std::int32_t> rows =
        tokens_.ExpectNumber(1, std::numeric_limits<std::int32_t>::max(), "number of rows");
    if (!rows.ok()) return rows.error();
    select_.top = rows.value();
    select_.top_percent = tokens_.TakeKeyword("PERCENT");
    if (select_.top_percent && rows.value() > kAllPercent) {
      return tokens_.Error("at most 100 percent");
    }
    return {};
  }

  Status ParseTarget() {
    if (!tokens_.TakeKeyword("INTO")) return {};
    Result<std::string> table = tokens_.ExpectName("a table");
    if (!table.ok()) return table.error();
    select_.into = std::move(table.value());
    return ParseDatabase(tokens_, select_.into_database);
  }

  Status ParseColumns() {
    do {
      SelectColumn column;
      Status done = ParseColumn(column);
      if (!done.ok()) return done;
      select_.columns.push_back(std::move(column));
    } while (tokens_.TakeMark(","));
    return {};
  }

  Status ParseColumn(SelectColumn& column) {
    if (tokens_.TakeMark("*")) return {};
    if (tokens_.IsName() && (tokens_.IsMark(".", 1) || tokens_.IsMark("!", 1)) &&
        tokens_.IsMark("*", 2)) {
      column.table = tokens_.Peek().text;
      for (int i = 0; i < 3; ++i) tokens_.Skip();
      return {};
    }
    Status done = ParseInto(tokens_, column.expression);
    if (!done.ok() || !tokens_.TakeKeyword("AS")) return done;
    Result<std::string> alias = tokens_.ExpectName("a column");
    if (!alias.ok()) return alias.error();
    column.alias = std::move(alias.value());
    return {};
  }

  Status ParseFrom() {
    if (!tokens_.TakeKeyword("FROM")) return {};
    do {
      // Joins that stand first may be in brackets, one pair for each.
      int brackets = 0;
      while (select_.from.empty() && tokens_.TakeMark("(")) ++brackets;
      Status done = ParseTable(JoinKind::Cross);
      if (!done.ok()) return done;
      Status joined = ParseJoins(brackets);
      if (!joined.ok()) return joined;
    } while (tokens_.TakeMark(","));
    return {};
  }

  Status ParseJoins(int brackets) {
    for (;;) {
      JoinKind kind = JoinKind::Inner;
      if (brackets > 0 && tokens_.TakeMark(")")) {
        --brackets;
        continue;
      }
      if (tokens_.TakeKeyword("LEFT")) {
        kind = JoinKind::Left;
        (void)tokens_.TakeKeyword("OUTER");
      } else if (tokens_.IsKeyword("RIGHT")) {
        if (select_.from.size() != 1) {
          return tokens_.Error("RIGHT JOIN joins the first two tables alone");
        }
        tokens_.Skip();
        kind = JoinKind::Right;
        (void)tokens_.TakeKeyword("OUTER");
      } else if (!tokens_.TakeKeyword("INNER") && !tokens_.IsKeyword("JOIN")) {
        break;
      }
      Status done = ParseJoin(kind);
      if (!done.ok()) return done;
    }
    return brackets == 0 ? Status() : tokens_.ExpectMark(")");
  }

  Status ParseJoin(JoinKind kind) {
    Status join = tokens_.ExpectKeyword("JOIN");
    if (!join.ok()) return join;
    Status table = ParseTable(kind);
    if (!table.ok()) return table;
    Status on = tokens_.ExpectKeyword("ON");
    if (!on.ok()) return on;
    return ParseInto(tokens_, select_.from.back().on);
  }

  Status ParseTable(JoinKind kind) {
    if (tokens_.IsMark("(")) return tokens_.Error("only the first joins stand in brackets");
    Result<TableSource> source = ParseTableSource(tokens_);
    if (!source.ok()) return source.error();
    select_.from.push_back({.kind = kind, .source = std::move(source.value())});
    return {};
  }

  Status ParseFilter() { return ParseWhere(tokens_, select_.where); }

  Status ParseGroups() {
    if (tokens_.TakeKeyword("GROUP")) {
      Status by = tokens_.ExpectKeyword("BY");
      if (!by.ok()) return by;
      do {
        Result<Expression> group = ExpressionParser(tokens_).Parse();
        if (!group.ok()) return group.error();
        select_.group_by.push_back(std::move(group.value()));
      } while (tokens_.TakeMark(","));
    }
    return tokens_.TakeKeyword("HAVING") ? ParseInto(tokens_, select_.having) : Status();
  }

  Status ParseOrder() {
    if (!tokens_.TakeKeyword("ORDER")) return {};
    Status by = tokens_.ExpectKeyword("BY");
    if (!by.ok()) return by;
    do {
      Result<Expression> term = ExpressionParser(tokens_).Parse();
      if (!term.ok()) return term.error();
      const bool descending = tokens_.TakeKeyword("DESC");
      if (!descending) (void)tokens_.TakeKeyword("ASC");
      select_.order_by.push_back({std::move(term.value()), descending});
    } while (tokens_.TakeMark(","));
    return {};
  }

  TokenStream& tokens_;
  SelectStatement select_;
};

}  // namespace

Result<SelectStatement> ParseSelect(TokenStream& tokens) { return SelectParser(tokens).Parse(); }

Result<TableSource> ParseTableSource(TokenStream& tokens) {
  Result<std::string> name = tokens.ExpectName("a table");
  if (!name.ok()) return name.error();
  // Taken for another name of the table, the word would make an inner join of it.
  for (const std::string_view kind : {"FULL", "CROSS", "NATURAL"}) {
    if (!tokens.IsKeyword(kind)) continue;
    if (tokens.IsKeyword("JOIN", 1) || tokens.IsKeyword("OUTER", 1)) {
      return tokens.Error("INNER, LEFT or RIGHT JOIN expected");
    }
  }
  TableSource source{std::move(name.value())};
  if (!tokens.TakeKeyword("AS") && !tokens.IsName()) return source;
  Result<std::string> alias = tokens.ExpectName("a table");
  if (!alias.ok()) return alias.error();
  source.alias = std::move(alias.value());
  return source;
}

Status ParseWhere(TokenStream& tokens, std::optional<Expression>& where) {
  return tokens.TakeKeyword("WHERE") ? ParseInto(tokens, where) : Status();
}

}  // namespace zent::jet
