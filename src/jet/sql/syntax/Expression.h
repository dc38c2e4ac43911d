#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/Value.h"

/// Expressions of the Access dialect as trees.
namespace zent::jet {

struct SelectStatement;

/// The query within an expression; a copy has a query of its own.
class QueryHolder {
 public:
  QueryHolder();
  explicit QueryHolder(SelectStatement select);
  ~QueryHolder();
  QueryHolder(const QueryHolder& other);
  QueryHolder(QueryHolder&& other) noexcept;
  QueryHolder& operator=(const QueryHolder& other);
  QueryHolder& operator=(QueryHolder&& other) noexcept;

  /// Null when there is none.
  const SelectStatement* get() const { return select_.get(); }
  SelectStatement* get() { return select_.get(); }
  bool operator==(const QueryHolder& other) const;

 private:
  std::unique_ptr<SelectStatement> select_;
};

enum class ExpressionKind : std::uint8_t {
  Literal,    ///< `value`
  Column,     ///< `name`, perhaps of `table`
  Function,   ///< `name` of the operands
  Aggregate,  ///< `name` (COUNT, MIN, MAX, SUM, AVG, FIRST, LAST) of one operand; COUNT without
              ///< one: COUNT(*)
  In,         ///< the first operand is among the others
  NotIn,
  Between,  ///< the first operand lies within the second and third, both included
  NotBetween,
  Subquery,  ///< the one value of `query`
  Exists,    ///< `query` has a row
  InQuery,   ///< the operand is among the values of `query`
  NotInQuery,
  IsNull,
  IsNotNull,
  Not,
  Negate,
  // Operators of two operands.
  Imp,
  Eqv,
  Xor,
  Or,
  And,
  Equal,
  NotEqual,
  Less,
  LessOrEqual,
  Greater,
  GreaterOrEqual,
  Like,
  NotLike,
  Concatenate,
  Add,
  Subtract,
  Modulo,
  IntegerDivide,
  Multiply,
  Divide,
  Power,
};

/// Trees are at most this high, so that walking them cannot exhaust the stack.
inline constexpr std::uint16_t kMaxExpressionHeight = 500;

inline constexpr std::size_t kUnboundColumn = std::numeric_limits<std::size_t>::max();

struct Expression {
  ExpressionKind kind = ExpressionKind::Literal;
  Value value = {};
  std::string table = {};  ///< empty when not said
  std::string name = {};
  std::vector<Expression> operands = {};
  QueryHolder query = {};
  std::uint16_t height = 1;             ///< levels of the tree, this one included
  std::size_t column = kUnboundColumn;  ///< place in the row, once names are looked up

  bool operator==(const Expression&) const = default;
};

/// A node above `operands`, its height counted.
Expression Node(ExpressionKind kind, std::vector<Expression> operands, std::string name = {});

/// A node over a query, whose levels count as its own.
Expression QueryNode(ExpressionKind kind, std::vector<Expression> operands, SelectStatement query);

/// How strongly operators bind, the weakest first. All those of two operands group from the left.
enum class Binding : std::uint8_t {
  None,
  Imp,
  Eqv,
  Xor,
  Or,
  And,
  Not,
  Comparison,  ///< IN, BETWEEN, LIKE and IS as well
  Concatenate,
  Add,
  Modulo,
  IntegerDivide,
  Multiply,
  Negate,
  Power,
  Operand,  ///< literals, names, calls
};

/// The next stronger binding.
constexpr Binding Above(Binding binding) {
  return static_cast<Binding>(static_cast<std::uint8_t>(binding) + 1);
}

struct BinaryOperator {
  std::string_view text;
  ExpressionKind kind;
  Binding binding;
};

/// The operator of two operands that is written `text` (any case); null for anything else. NOT LIKE
/// goes by "NOT LIKE".
const BinaryOperator* FindOperator(std::string_view text);
/// The same by its kind.
const BinaryOperator* FindOperator(ExpressionKind kind);

Binding BindingOf(ExpressionKind kind);

}  // namespace zent::jet
