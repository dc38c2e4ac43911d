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
/// Of a number: the nearest one.
double DoubleOf(const Value& value);
/// A number as a decimal without loss; nothing for single, double and date.
std::optional<Decimal> DecimalOf(const Value& value);

/// True of a decimal that is the shortest one of all that are nearest to its double, as those below
/// 2^52 units of their last digit are. Of others nothing is said.
bool HasFewDigits(const Decimal& decimal);
/// Below, equal to or above 0, as a whole number, a currency value or a decimal is to a double.
/// That counts as the shortest decimal it is nearest to, so that what equals it is equal to each
/// other.
int CompareToDouble(const Value& exact, double number);

/// The number that a text is: blanks, sign, digits with point and exponent. Nothing for any other.
std::optional<double> NumberInText(std::string_view text);

/// The nearest whole number, the even one of two that are as near; kOverflow outside Long.
Result<std::int32_t> RoundToLong(double number);

}  // namespace zent::jet
