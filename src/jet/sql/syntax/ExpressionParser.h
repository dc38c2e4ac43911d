#pragma once

#include "base/Status.h"
#include "jet/sql/syntax/Expression.h"
#include "jet/sql/syntax/TokenStream.h"

namespace zent::jet {

/// Reads expressions off a stream, by the binding of the operators. Brackets, NOT and signs nest at
/// most 100 deep; deeper ones and trees above kMaxExpressionHeight are kQueryTooComplex.
class ExpressionParser {
 public:
  explicit ExpressionParser(TokenStream& tokens) : tokens_(tokens) {}
  /// `implied` is the column that a comparison without a left side is about, as in ">0".
  ExpressionParser(TokenStream& tokens, std::string_view implied)
      : tokens_(tokens), implied_(implied) {}

  Result<Expression> Parse() { return ParseFrom(Binding::None); }

  /// A column's name, perhaps behind its table's: "t.c" or "t!c".
  Result<Expression> ParseColumn();

 private:
  Result<Expression> ParseFrom(Binding lowest);
  Result<Expression> ParseTail(Expression left, Binding lowest);
  Result<Expression> ParseComparisonTail(Expression left);
  Result<Expression> ParseList(ExpressionKind kind, Expression first);
  Result<Expression> ParseQuery(ExpressionKind kind, std::vector<Expression> operands);
  Result<Expression> ParseBetween(ExpressionKind kind, Expression first);
  Result<Expression> ParsePrefixed();
  Result<Expression> ParsePrefix(ExpressionKind kind, Binding operand);
  Result<Expression> ParseOperand();
  Result<Expression> ParseWord();
  Result<Expression> ParseCall();
  const BinaryOperator* NextOperator() const;
  Result<Expression> Checked(Expression node) const;

  bool IsComparisonNext() const;

  TokenStream& tokens_;
  std::string_view implied_ = {};
};

}  // namespace zent::jet
