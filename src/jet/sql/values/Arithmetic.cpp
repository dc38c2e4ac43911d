#include "jet/sql/values/Arithmetic.h"

#include <cmath>
#include <limits>
#include <optional>

#include "jet/format/JetErrors.h"
#include "jet/sql/values/Conversion.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

/// A number for calculation: texts become double.
Result<Value> OperandOf(const Value& value) {
  if (IsNumber(value)) return value;
  if (const auto* text = std::get_if<Text>(&value)) {
    const std::optional<double> number = NumberInText(*text);
    if (number) return Value(*number);
  }
  return JetError(kCriteriaTypeMismatch);
}

Result<Value> Finite(double number) {
  if (!std::isfinite(number)) return JetError(kOverflow);
  return Value(number);
}

Value WholeResult(std::int64_t number) {
  if (number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max()) {
    return static_cast<std::int32_t>(number);
  }
  return static_cast<double>(number);
}

/// Ten-thousandths of Currency or a whole number; nothing for others.
std::optional<std::int64_t> AmountOf(const Value& value) {
  if (const auto* amount = std::get_if<Currency>(&value)) return amount->ten_thousandths;
  if (IsWhole(value)) return WholeOf(value) * kCurrencyUnit;
  return std::nullopt;
}

/// a * b / 10000 in parts that do not lose digits; the last four are rounded. False: overflow.
bool MultiplyAmounts(std::int64_t a, std::int64_t b, std::int64_t& product) {
  const std::int64_t a_whole = a / kCurrencyUnit;
  const std::int64_t a_rest = a % kCurrencyUnit;
  const std::int64_t b_whole = b / kCurrencyUnit;
  const std::int64_t b_rest = b % kCurrencyUnit;
  const std::int64_t low = a_rest * b_rest;
  const std::int64_t half = low < 0 ? -kCurrencyUnit / 2 : kCurrencyUnit / 2;
  std::int64_t whole = 0;
  return !__builtin_mul_overflow(a_whole, b_whole, &whole) &&
         !__builtin_mul_overflow(whole, kCurrencyUnit, &product) &&
         !__builtin_add_overflow(product, a_whole * b_rest, &product) &&
         !__builtin_add_overflow(product, a_rest * b_whole, &product) &&
         !__builtin_add_overflow(product, (low + half) / kCurrencyUnit, &product);
}

Result<Value> CalculateAmounts(ExpressionKind kind, std::int64_t a, std::int64_t b) {
  std::int64_t amount = 0;
  bool fits = false;
  if (kind == ExpressionKind::Add) fits = !__builtin_add_overflow(a, b, &amount);
  if (kind == ExpressionKind::Subtract) fits = !__builtin_sub_overflow(a, b, &amount);
  if (kind == ExpressionKind::Multiply) fits = MultiplyAmounts(a, b, amount);
  if (!fits) return JetError(kOverflow);
  return Value(Currency{amount});
}

template <typename Number>
Number Apply(ExpressionKind kind, Number a, Number b) {
  if (kind == ExpressionKind::Add) return a + b;
  return kind == ExpressionKind::Subtract ? a - b : a * b;
}

/// Add, Subtract and Multiply of two numbers.
Result<Value> CalculateSum(ExpressionKind kind, const Value& a, const Value& b) {
  if (IsWhole(a) && IsWhole(b)) return WholeResult(Apply(kind, WholeOf(a), WholeOf(b)));
  const bool dates = std::holds_alternative<Date>(a) != std::holds_alternative<Date>(b) ||
                     (std::holds_alternative<Date>(a) && kind == ExpressionKind::Add);
  const std::optional<std::int64_t> a_amount = AmountOf(a);
  const std::optional<std::int64_t> b_amount = AmountOf(b);
  if (a_amount && b_amount) return CalculateAmounts(kind, *a_amount, *b_amount);
  Result<Value> sum = Finite(Apply(kind, DoubleOf(a), DoubleOf(b)));
  if (!sum.ok() || !dates || kind == ExpressionKind::Multiply) return sum;
  return Value(Date{DoubleOf(sum.value())});
}

Result<Value> CalculateWhole(ExpressionKind kind, double a, double b) {
  const Result<std::int32_t> left = RoundToLong(a);
  if (!left.ok()) return left.error();
  const Result<std::int32_t> right = RoundToLong(b);
  if (!right.ok()) return right.error();
  if (right.value() == 0) return JetError(kDivisionByZero);
  const std::int64_t dividend = left.value();
  return WholeResult(kind == ExpressionKind::Modulo ? dividend % right.value()
                                                    : dividend / right.value());
}

Result<Value> CalculateNumbers(ExpressionKind kind, const Value& a, const Value& b) {
  switch (kind) {
    case ExpressionKind::Divide:
      if (DoubleOf(b) == 0) return JetError(kDivisionByZero);
      return Finite(DoubleOf(a) / DoubleOf(b));
    case ExpressionKind::IntegerDivide:
    case ExpressionKind::Modulo:
      return CalculateWhole(kind, DoubleOf(a), DoubleOf(b));
    case ExpressionKind::Power:
      if (DoubleOf(a) == 0 && DoubleOf(b) < 0) return JetError(kDivisionByZero);
      return Finite(std::pow(DoubleOf(a), DoubleOf(b)));
    default:
      return CalculateSum(kind, a, b);
  }
}

Result<Value> Concatenated(const Value& a, const Value& b) {
  if (IsNull(a) && IsNull(b)) return Value(Null());
  std::string joined;
  for (const Value* part : {&a, &b}) {
    const Result<std::string> text = TextOf(*part);
    if (!text.ok()) return text.error();
    joined += text.value();
  }
  return Value(std::move(joined));
}

}  // namespace

Result<Value> Calculate(ExpressionKind kind, const Value& a, const Value& b) {
  if (kind == ExpressionKind::Concatenate) return Concatenated(a, b);
  if (IsNull(a) || IsNull(b)) return Value(Null());
  if (kind == ExpressionKind::Add && std::holds_alternative<Text>(a) &&
      std::holds_alternative<Text>(b)) {
    return Concatenated(a, b);
  }
  Result<Value> left = OperandOf(a);
  if (!left.ok()) return left;
  Result<Value> right = OperandOf(b);
  if (!right.ok()) return right;
  return CalculateNumbers(kind, left.value(), right.value());
}

Result<Value> Negated(const Value& value) {
  if (const auto* date = std::get_if<Date>(&value)) return Value(Date{-date->days});
  if (const auto* decimal = std::get_if<Decimal>(&value)) {
    Decimal negated = *decimal;
    negated.negative = !negated.negative;
    return Value(negated);
  }
  return Calculate(ExpressionKind::Subtract, std::int32_t{0}, value);
}

}  // namespace zent::jet
