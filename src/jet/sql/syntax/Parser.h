#pragma once

#include <string_view>

#include "base/Status.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

/// The tree of a statement, which may end in ";". kSyntaxError with the place for what is no such
/// statement or not supported (queries within queries, UNION, RIGHT JOIN, foreign keys),
/// kTooFewParameters for one that wants parameters, kQueryTooComplex for one nested too deeply.
Result<Statement> ParseStatement(std::string_view statement);

/// The tree of an expression alone, as in a validation rule.
Result<Expression> ParseExpression(std::string_view text);

}  // namespace zent::jet
