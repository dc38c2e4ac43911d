#include "jet/sql/syntax/ExpressionParser.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/syntax/StatementParsers.h"

namespace zent::jet {
namespace {

bool IsAggregate(std::string_view name) {
  constexpr std::array<std::string_view, 7> kNames = {"COUNT", "MIN",   "MAX", "SUM",
                                                      "AVG",   "FIRST", "LAST"};
  return std::any_of(kNames.begin(), kNames.end(),
                     [&](std::string_view known) { return EqualsIgnoringCase(known, name); });
}

Expression Constant(Value value) {
  Expression node;
  node.value = std::move(value);
  return node;
}

}  // namespace

Result<Expression> ExpressionParser::ParseFrom(Binding lowest) {
  if (!tokens_.Enter()) return JetErrorBecause(kQueryTooComplex, "nested too deeply");
  Result<Expression> left = ParsePrefixed();
  if (left.ok()) left = ParseTail(std::move(left.value()), lowest);
  tokens_.Leave();
  return left;
}

Result<Expression> ExpressionParser::ParseTail(Expression left, Binding lowest) {
  for (;;) {
    const BinaryOperator* const next = NextOperator();
    Result<Expression> grown = Expression();
    if (next != nullptr && next->binding >= lowest) {
      if (next->kind == ExpressionKind::NotLike) tokens_.Skip();
      tokens_.Skip();
      Result<Expression> right = ParseFrom(Above(next->binding));
      if (!right.ok()) return right;
      std::vector<Expression> operands;
      operands.push_back(std::move(left));
      operands.push_back(std::move(right.value()));
      grown = Checked(Node(next->kind, std::move(operands)));
    } else if (lowest <= Binding::Comparison &&
               (tokens_.IsKeyword("IN") || tokens_.IsKeyword("BETWEEN") ||
                tokens_.IsKeyword("IS") || tokens_.IsKeyword("NOT"))) {
      grown = ParseComparisonTail(std::move(left));
    } else {
      return left;
    }
    if (!grown.ok()) return grown;
    left = std::move(grown.value());
  }
}

Result<Expression> ExpressionParser::ParseComparisonTail(Expression left) {
  if (tokens_.TakeKeyword("IS")) {
    const bool negated = tokens_.TakeKeyword("NOT");
    const Status null = tokens_.ExpectKeyword("NULL");
    if (!null.ok()) return null.error();
    std::vector<Expression> operands;
    operands.push_back(std::move(left));
    return Checked(
        Node(negated ? ExpressionKind::IsNotNull : ExpressionKind::IsNull, std::move(operands)));
  }
  const bool negated = tokens_.TakeKeyword("NOT");
  if (tokens_.TakeKeyword("IN")) {
    return ParseList(negated ? ExpressionKind::NotIn : ExpressionKind::In, std::move(left));
  }
  if (tokens_.TakeKeyword("BETWEEN")) {
    return ParseBetween(negated ? ExpressionKind::NotBetween : ExpressionKind::Between,
                        std::move(left));
  }
  return tokens_.Error("IN, BETWEEN or LIKE expected");
}

Result<Expression> ExpressionParser::ParseList(ExpressionKind kind, Expression first) {
  const Status open = tokens_.ExpectMark("(");
  if (!open.ok()) return open.error();
  std::vector<Expression> operands;
  operands.push_back(std::move(first));
  if (tokens_.IsKeyword("SELECT")) {
    return ParseQuery(
        kind == ExpressionKind::In ? ExpressionKind::InQuery : ExpressionKind::NotInQuery,
        std::move(operands));
  }
  do {
    Result<Expression> item = Parse();
    if (!item.ok()) return item;
    operands.push_back(std::move(item.value()));
  } while (tokens_.TakeMark(","));
  const Status close = tokens_.ExpectMark(")");
  if (!close.ok()) return close.error();
  return Checked(Node(kind, std::move(operands)));
}

// Behind the bracket that opens it.
Result<Expression> ExpressionParser::ParseQuery(ExpressionKind kind,
                                                std::vector<Expression> operands) {
  if (!tokens_.Enter()) return JetErrorBecause(kQueryTooComplex, "nested too deeply");
  if (!tokens_.IsKeyword("SELECT")) return tokens_.Error("SELECT expected");
  Result<SelectStatement> select = ParseSelect(tokens_);
  tokens_.Leave();
  if (!select.ok()) return select.error();
  if (!select.value().into.empty()) return tokens_.Error("INTO cannot stand here");
  const Status close = tokens_.ExpectMark(")");
  if (!close.ok()) return close.error();
  return Checked(QueryNode(kind, std::move(operands), std::move(select.value())));
}

Result<Expression> ExpressionParser::ParseBetween(ExpressionKind kind, Expression first) {
  Result<Expression> low = ParseFrom(Binding::Concatenate);
  if (!low.ok()) return low;
  const Status between = tokens_.ExpectKeyword("AND");
  if (!between.ok()) return between.error();
  Result<Expression> high = ParseFrom(Binding::Concatenate);
  if (!high.ok()) return high;
  std::vector<Expression> operands;
  operands.push_back(std::move(first));
  operands.push_back(std::move(low.value()));
  operands.push_back(std::move(high.value()));
  return Checked(Node(kind, std::move(operands)));
}

bool ExpressionParser::IsComparisonNext() const {
  const std::size_t word = tokens_.IsKeyword("NOT") ? 1 : 0;
  if (tokens_.IsKeyword("IN", word) || tokens_.IsKeyword("BETWEEN", word) ||
      tokens_.IsKeyword("LIKE", word) || tokens_.IsKeyword("IS")) {
    return true;
  }
  const BinaryOperator* const next = NextOperator();
  return next != nullptr && next->binding == Binding::Comparison;
}

Result<Expression> ExpressionParser::ParsePrefixed() {
  if (!implied_.empty() && IsComparisonNext()) {
    return Node(ExpressionKind::Column, {}, std::string(implied_));
  }
  if (tokens_.TakeKeyword("NOT")) return ParsePrefix(ExpressionKind::Not, Binding::Not);
  if (tokens_.TakeMark("-")) return ParsePrefix(ExpressionKind::Negate, Binding::Negate);
  if (tokens_.TakeMark("+")) return ParseFrom(Binding::Negate);
  return ParseOperand();
}

Result<Expression> ExpressionParser::ParsePrefix(ExpressionKind kind, Binding operand) {
  Result<Expression> inner = ParseFrom(operand);
  if (!inner.ok()) return inner;
  std::vector<Expression> operands;
  operands.push_back(std::move(inner.value()));
  return Checked(Node(kind, std::move(operands)));
}

Result<Expression> ExpressionParser::ParseOperand() {
  const Token& token = tokens_.Peek();
  if (token.kind == TokenKind::Literal) {
    Expression literal = Constant(token.value);
    tokens_.Skip();
    return literal;
  }
  if (tokens_.IsMark("?")) return JetError(kTooFewParameters, "1");
  if (tokens_.IsKeyword("EXISTS") && tokens_.IsMark("(", 1)) {
    tokens_.Skip();
    tokens_.Skip();
    return ParseQuery(ExpressionKind::Exists, {});
  }
  if (tokens_.TakeMark("(")) {
    if (tokens_.IsKeyword("SELECT")) return ParseQuery(ExpressionKind::Subquery, {});
    Result<Expression> inner = Parse();
    if (!inner.ok()) return inner;
    const Status close = tokens_.ExpectMark(")");
    if (!close.ok()) return close.error();
    return inner;
  }
  return ParseWord();
}

Result<Expression> ExpressionParser::ParseWord() {
  if (tokens_.TakeKeyword("NULL")) return Constant(Null());
  if (tokens_.TakeKeyword("TRUE")) return Constant(true);
  if (tokens_.TakeKeyword("FALSE")) return Constant(false);
  // Left and Right are functions here, though reserved for joins.
  const bool is_call = tokens_.Peek().kind == TokenKind::Word && tokens_.IsMark("(", 1);
  if (is_call && (tokens_.IsName() || tokens_.IsKeyword("LEFT") || tokens_.IsKeyword("RIGHT"))) {
    return ParseCall();
  }
  if (!tokens_.IsName()) return tokens_.Error("expression expected");
  return ParseColumn();
}

Result<Expression> ExpressionParser::ParseCall() {
  std::string name = tokens_.Peek().text;
  tokens_.Skip();
  tokens_.Skip();
  const bool aggregate = IsAggregate(name);
  const ExpressionKind kind = aggregate ? ExpressionKind::Aggregate : ExpressionKind::Function;
  std::vector<Expression> operands;
  if (EqualsIgnoringCase(name, "COUNT") && tokens_.TakeMark("*")) {
    const Status close = tokens_.ExpectMark(")");
    if (!close.ok()) return close.error();
    return Node(kind, {}, std::move(name));
  }
  if (!tokens_.IsMark(")")) {
    do {
      Result<Expression> operand = Parse();
      if (!operand.ok()) return operand;
      operands.push_back(std::move(operand.value()));
    } while (tokens_.TakeMark(","));
  }
  if (aggregate && operands.size() != 1) return tokens_.Error(name + " has one argument");
  const Status close = tokens_.ExpectMark(")");
  if (!close.ok()) return close.error();
  return Checked(Node(kind, std::move(operands), std::move(name)));
}

Result<Expression> ExpressionParser::ParseColumn() {
  Result<std::string> name = tokens_.ExpectName("a column");
  if (!name.ok()) return name.error();
  Expression column = Node(ExpressionKind::Column, {}, std::move(name.value()));
  if (tokens_.TakeMark(".") || tokens_.TakeMark("!")) {
    Result<std::string> inner = tokens_.ExpectName("a column");
    if (!inner.ok()) return inner.error();
    column.table = std::exchange(column.name, std::move(inner.value()));
  }
  return column;
}

const BinaryOperator* ExpressionParser::NextOperator() const {
  const Token& token = tokens_.Peek();
  if (token.kind != TokenKind::Word && token.kind != TokenKind::Mark) return nullptr;
  if (tokens_.IsKeyword("NOT") && tokens_.IsKeyword("LIKE", 1)) return FindOperator("NOT LIKE");
  return FindOperator(token.text);
}

Result<Expression> ExpressionParser::Checked(Expression node) const {
  if (node.height <= kMaxExpressionHeight) return node;
  return JetErrorBecause(kQueryTooComplex, "too many operators");
}

}  // namespace zent::jet
