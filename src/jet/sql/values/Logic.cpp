#include "jet/sql/values/Logic.h"

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

constexpr std::int32_t kAllBits = -1;

/// Null, bool or Long.
Result<Value> BitsOf(const Value& value) {
  if (IsNull(value) || std::holds_alternative<bool>(value)) return value;
  if (!IsNumber(value)) return JetError(kCriteriaTypeMismatch);
  const Result<std::int32_t> bits = RoundToLong(DoubleOf(value));
  if (!bits.ok()) return bits.error();
  return Value(bits.value());
}

std::int32_t Bits(const Value& value) { return static_cast<std::int32_t>(WholeOf(value)); }

/// Bool where both operands are.
Value Result32(std::int32_t bits, bool as_bool) { return as_bool ? Value(bits != 0) : Value(bits); }

/// The operand that decides alone: 0 for And, all bits for Or.
Value WithNull(const Value& a, const Value& b, std::int32_t deciding) {
  for (const Value* operand : {&a, &b}) {
    if (!IsNull(*operand) && Bits(*operand) == deciding) return *operand;
  }
  return Null();
}

Value CombineBits(ExpressionKind kind, const Value& a, const Value& b) {
  const bool null = IsNull(a) || IsNull(b);
  const bool as_bool = std::holds_alternative<bool>(a) && std::holds_alternative<bool>(b);
  switch (kind) {
    case ExpressionKind::And:
      return null ? WithNull(a, b, 0) : Result32(Bits(a) & Bits(b), as_bool);
    case ExpressionKind::Or:
      return null ? WithNull(a, b, kAllBits) : Result32(Bits(a) | Bits(b), as_bool);
    case ExpressionKind::Xor:
      return null ? Value(Null()) : Result32(Bits(a) ^ Bits(b), as_bool);
    default:
      return null ? Value(Null()) : Result32(~(Bits(a) ^ Bits(b)), as_bool);  // Eqv
  }
}

Value NotBits(const Value& value) {
  if (IsNull(value)) return value;
  return Result32(~Bits(value), std::holds_alternative<bool>(value));
}

}  // namespace

Result<bool> IsTrue(const Value& value) {
  if (IsNull(value)) return false;
  if (!IsNumber(value)) return JetError(kCriteriaTypeMismatch);
  return DoubleOf(value) != 0;
}

Result<Value> LogicalNot(const Value& value) {
  Result<Value> bits = BitsOf(value);
  if (!bits.ok()) return bits;
  return NotBits(bits.value());
}

Result<Value> Combine(ExpressionKind kind, const Value& a, const Value& b) {
  Result<Value> left = BitsOf(a);
  if (!left.ok()) return left;
  Result<Value> right = BitsOf(b);
  if (!right.ok()) return right;
  if (kind == ExpressionKind::Imp) {
    return CombineBits(ExpressionKind::Or, NotBits(left.value()), right.value());
  }
  return CombineBits(kind, left.value(), right.value());
}

}  // namespace zent::jet
