#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Value.h"

/// Values as numbers.
namespace zent::jet {

/// A currency value counts ten-thousandths.
inline constexpr std::int64_t kCurrencyUnit = 10000;

/// True for all numbers, Yes/No (-1 and 0) and dates (their days).
bool IsNumber(const Value& value);
/// True for Yes/No, Byte, Int and Long.
bool IsWhole(const Value& value);
/// Of a whole number.
std::int64_t WholeOf(const Value& value);
/// Of a number.
double DoubleOf(const Value& value);
/// A number as a decimal without loss; nothing for single, double and date.
std::optional<Decimal> DecimalOf(const Value& value);

/// The number that a text is: blanks, sign, digits with point and exponent. Nothing for any other.
std::optional<double> NumberInText(std::string_view text);

/// The nearest whole number, the even one of two that are as near; kOverflow outside Long.
Result<std::int32_t> RoundToLong(double number);

}  // namespace zent::jet
