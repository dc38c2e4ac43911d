#include "jet/sql/values/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

constexpr std::uint64_t kExactDoubles = std::uint64_t{1} << 52;
constexpr int kMostDecimals = 28;
constexpr std::uint8_t kCurrencyDecimals = 4;

Decimal MakeDecimal(std::int64_t number, std::uint8_t scale) {
  const auto bits = static_cast<std::uint64_t>(number);
  const std::uint64_t magnitude = number < 0 ? 0 - bits : bits;
  return {.negative = number < 0,
          .scale = scale,
          .magnitude = {0, 0, static_cast<std::uint32_t>(magnitude >> 32U),
                        static_cast<std::uint32_t>(magnitude)}};
}

double ToDouble(Currency value) {
  const Decimal decimal = MakeDecimal(value.ten_thousandths, kCurrencyDecimals);
  if (!HasFewDigits(decimal)) return ToDouble(decimal);
  return static_cast<double>(value.ten_thousandths) / static_cast<double>(kCurrencyUnit);
}

/// The shortest of the decimals that are nearest to `number`; nothing when it has too many digits.
std::optional<Decimal> ShortestDecimal(double number) {
  std::array<char, 32> buffer = {};
  const auto [end, problem] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                            std::chars_format::scientific);
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::size_t mark = text.find('e');
  if (problem != std::errc() || mark == std::string_view::npos) return std::nullopt;
  std::string_view power = text.substr(mark + 1);
  if (power.starts_with('+')) power.remove_prefix(1);
  int exponent = 0;
  std::from_chars(power.data(), power.data() + power.size(), exponent);

  std::string digits(text.substr(0, mark));
  const std::size_t point = digits.find('.');
  if (point != std::string::npos) {
    exponent -= static_cast<int>(digits.size() - point - 1);
    digits.erase(point, 1);
  }
  if (exponent < -kMostDecimals) return std::nullopt;
  if (exponent > 0) digits.append(static_cast<std::size_t>(exponent), '0');
  Result<Decimal> decimal = ParseDecimal(digits);
  if (!decimal.ok()) return std::nullopt;
  if (exponent < 0) decimal.value().scale = static_cast<std::uint8_t>(-exponent);
  return decimal.value();
}

struct AsDouble {
  double operator()(bool value) const { return value ? -1 : 0; }
  double operator()(std::uint8_t value) const { return value; }
  double operator()(std::int16_t value) const { return value; }
  double operator()(std::int32_t value) const { return value; }
  double operator()(Currency value) const { return ToDouble(value); }
  double operator()(float value) const { return static_cast<double>(value); }
  double operator()(double value) const { return value; }
  double operator()(Date value) const { return value.days; }
  double operator()(const Decimal& value) const { return ToDouble(value); }
  template <typename Other>
  double operator()(const Other& /*no number*/) const {
    return 0;
  }
};

}  // namespace

bool IsNumber(const Value& value) {
  return !IsNull(value) && !std::holds_alternative<Text>(value) &&
         !std::holds_alternative<Binary>(value) && !std::holds_alternative<Guid>(value);
}

bool IsWhole(const Value& value) {
  return std::holds_alternative<bool>(value) || std::holds_alternative<std::uint8_t>(value) ||
         std::holds_alternative<std::int16_t>(value) || std::holds_alternative<std::int32_t>(value);
}

std::int64_t WholeOf(const Value& value) { return static_cast<std::int64_t>(DoubleOf(value)); }

double DoubleOf(const Value& value) { return std::visit(AsDouble(), value); }

std::optional<Decimal> DecimalOf(const Value& value) {
  if (IsWhole(value)) return MakeDecimal(WholeOf(value), 0);
  if (const auto* amount = std::get_if<Currency>(&value)) {
    return MakeDecimal(amount->ten_thousandths, kCurrencyDecimals);
  }
  if (const auto* decimal = std::get_if<Decimal>(&value)) return *decimal;
  return std::nullopt;
}

bool HasFewDigits(const Decimal& decimal) {
  const std::uint64_t low = (std::uint64_t{decimal.magnitude[2]} << 32U) | decimal.magnitude[3];
  return decimal.magnitude[0] == 0 && decimal.magnitude[1] == 0 && low < kExactDoubles;
}

int CompareToDouble(const Value& exact, double number) {
  const double nearest = DoubleOf(exact);
  if (nearest != number) return nearest < number ? -1 : nearest > number ? 1 : 0;
  const Decimal decimal = DecimalOf(exact).value_or(Decimal());
  if (HasFewDigits(decimal)) return 0;
  const std::optional<Decimal> shortest = ShortestDecimal(number);
  if (shortest) return Compare(decimal, *shortest);
  // The double is 10^28, which is beyond all decimals.
  return decimal.negative ? 1 : -1;
}

std::optional<double> NumberInText(std::string_view text) {
  text = TrimBlanks(text);
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  // from_chars would take another sign, "inf" and "nan" as well.
  const bool starts = !text.empty() && ((text.front() >= '0' && text.front() <= '9') ||
                                        (text.front() == '.' && text.size() > 1));
  double number = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (!starts || problem != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return negative ? -number : number;
}

Result<std::int32_t> RoundToLong(double number) {
  const double rounded = std::nearbyint(number);  // half to even, as the default mode of C++ is
  if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
        rounded <= std::numeric_limits<std::int32_t>::max())) {
    return JetError(kOverflow);
  }
  return static_cast<std::int32_t>(rounded);
}

}  // namespace zent::jet
