#pragma once

#include "base/Status.h"
#include "jet/format/Value.h"
#include "jet/sql/syntax/Expression.h"

/// Logic with null as the third value. Whole numbers combine bit by bit, as in BASIC: Yes is -1.
namespace zent::jet {

/// Whether a row is taken: null is no, a number yes unless it is 0; kCriteriaTypeMismatch for
/// others.
Result<bool> IsTrue(const Value& value);

Result<Value> LogicalNot(const Value& value);

/// `kind` is And, Or, Xor, Eqv or Imp. Null unless the other operand alone decides.
Result<Value> Combine(ExpressionKind kind, const Value& a, const Value& b);

}  // namespace zent::jet
