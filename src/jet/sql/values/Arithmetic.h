#pragma once

#include <string>

#include "base/Status.h"
#include "jet/format/Value.h"
#include "jet/sql/syntax/Expression.h"

/// Arithmetic and joining of texts. Null gives null, except in Concatenate.
namespace zent::jet {

/// `kind` is Add, Subtract, Multiply, Divide, IntegerDivide, Modulo, Power or Concatenate.
///
/// Whole numbers give Long, or double where Long is too small; Currency with Currency and whole
/// numbers stays Currency; a date and a number give a date, two dates their distance in days.
/// Decimal counts as double. A text that is a number counts as one; Add joins two texts. Whole
/// division and remainder round their operands first. kCriteriaTypeMismatch for others,
/// kDivisionByZero, kOverflow.
Result<Value> Calculate(ExpressionKind kind, const Value& a, const Value& b);

Result<Value> Negated(const Value& value);

}  // namespace zent::jet
