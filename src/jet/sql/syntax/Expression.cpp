#include "jet/sql/syntax/Expression.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Text.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {
namespace {

constexpr std::array kOperators = {
    BinaryOperator{"IMP", ExpressionKind::Imp, Binding::Imp},
    BinaryOperator{"EQV", ExpressionKind::Eqv, Binding::Eqv},
    BinaryOperator{"XOR", ExpressionKind::Xor, Binding::Xor},
    BinaryOperator{"OR", ExpressionKind::Or, Binding::Or},
    BinaryOperator{"AND", ExpressionKind::And, Binding::And},
    BinaryOperator{"=", ExpressionKind::Equal, Binding::Comparison},
    BinaryOperator{"<>", ExpressionKind::NotEqual, Binding::Comparison},
    BinaryOperator{"<", ExpressionKind::Less, Binding::Comparison},
    BinaryOperator{"<=", ExpressionKind::LessOrEqual, Binding::Comparison},
    BinaryOperator{">", ExpressionKind::Greater, Binding::Comparison},
    BinaryOperator{">=", ExpressionKind::GreaterOrEqual, Binding::Comparison},
    BinaryOperator{"LIKE", ExpressionKind::Like, Binding::Comparison},
    BinaryOperator{"NOT LIKE", ExpressionKind::NotLike, Binding::Comparison},
    BinaryOperator{"&", ExpressionKind::Concatenate, Binding::Concatenate},
    BinaryOperator{"+", ExpressionKind::Add, Binding::Add},
    BinaryOperator{"-", ExpressionKind::Subtract, Binding::Add},
    BinaryOperator{"MOD", ExpressionKind::Modulo, Binding::Modulo},
    BinaryOperator{"\\", ExpressionKind::IntegerDivide, Binding::IntegerDivide},
    BinaryOperator{"*", ExpressionKind::Multiply, Binding::Multiply},
    BinaryOperator{"/", ExpressionKind::Divide, Binding::Multiply},
    BinaryOperator{"^", ExpressionKind::Power, Binding::Power},
};

/// Levels of the highest expression of `select`.
int HeightOf(const SelectStatement& select) {
  int height = 0;
  VisitExpressions(select, [&](const Expression& expression) {
    height = std::max<int>(height, expression.height);
  });
  for (const SelectStatement& term : select.unions) height = std::max(height, HeightOf(term));
  return height;
}

}  // namespace

QueryHolder::QueryHolder() = default;
QueryHolder::QueryHolder(SelectStatement select)
    : select_(std::make_unique<SelectStatement>(std::move(select))) {}
QueryHolder::~QueryHolder() = default;
QueryHolder::QueryHolder(const QueryHolder& other)
    : select_(other.select_ ? std::make_unique<SelectStatement>(*other.select_) : nullptr) {}
QueryHolder::QueryHolder(QueryHolder&& other) noexcept = default;
QueryHolder& QueryHolder::operator=(const QueryHolder& other) {
  if (this != &other) *this = QueryHolder(other);
  return *this;
}
QueryHolder& QueryHolder::operator=(QueryHolder&& other) noexcept = default;

bool QueryHolder::operator==(const QueryHolder& other) const {
  if (!select_ || !other.select_) return !select_ && !other.select_;
  return *select_ == *other.select_;
}

Expression Node(ExpressionKind kind, std::vector<Expression> operands, std::string name) {
  Expression node;
  node.kind = kind;
  node.name = std::move(name);
  node.operands = std::move(operands);
  for (const Expression& operand : node.operands) {
    node.height = std::max(node.height, static_cast<std::uint16_t>(operand.height + 1));
  }
  return node;
}

Expression QueryNode(ExpressionKind kind, std::vector<Expression> operands, SelectStatement query) {
  Expression node = Node(kind, std::move(operands));
  const int height = std::max<int>(node.height, HeightOf(query) + 1);
  node.height = static_cast<std::uint16_t>(std::min<int>(height, kMaxExpressionHeight + 1));
  node.query = QueryHolder(std::move(query));
  return node;
}

const BinaryOperator* FindOperator(std::string_view text) {
  const auto* const found =
      std::find_if(kOperators.begin(), kOperators.end(),
                   [&](const BinaryOperator& row) { return EqualsIgnoringCase(row.text, text); });
  return found == kOperators.end() ? nullptr : found;
}

const BinaryOperator* FindOperator(ExpressionKind kind) {
  const auto* const found =
      std::find_if(kOperators.begin(), kOperators.end(),
                   [&](const BinaryOperator& row) { return row.kind == kind; });
  return found == kOperators.end() ? nullptr : found;
}

Binding BindingOf(ExpressionKind kind) {
  if (const BinaryOperator* found = FindOperator(kind)) return found->binding;
  switch (kind) {
    case ExpressionKind::In:
    case ExpressionKind::NotIn:
    case ExpressionKind::Between:
    case ExpressionKind::NotBetween:
    case ExpressionKind::InQuery:
    case ExpressionKind::NotInQuery:
    case ExpressionKind::IsNull:
    case ExpressionKind::IsNotNull:
      return Binding::Comparison;
    case ExpressionKind::Not:
      return Binding::Not;
    case ExpressionKind::Negate:
      return Binding::Negate;
    default:
      return Binding::Operand;
  }
}

}  // namespace zent::jet
