#pragma once

#include <string_view>

#include "base/Status.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

/// The tree of a statement, which may end in ";". kSyntaxError with the place for what is no such
/// statement or not supported,
/// kTooFewParameters for one that wants parameters, kQueryTooComplex for one nested too deeply.
Result<Statement> ParseStatement(std::string_view statement);

/// The tree of an expression alone, as in the validation rule of a table.
Result<Expression> ParseExpression(std::string_view text);
/// The validation rule of a column: comparisons without a left side are about `column`.
Result<Expression> ParseRule(std::string_view text, std::string_view column);

}  // namespace zent::jet
