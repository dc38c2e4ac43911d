#include "jet/sql/values/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

struct AsDouble {
  double operator()(bool value) const { return value ? -1 : 0; }
  double operator()(std::uint8_t value) const { return value; }
  double operator()(std::int16_t value) const { return value; }
  double operator()(std::int32_t value) const { return value; }
  double operator()(Currency value) const {
    return static_cast<double>(value.ten_thousandths) / static_cast<double>(kCurrencyUnit);
  }
  double operator()(float value) const { return static_cast<double>(value); }
  double operator()(double value) const { return value; }
  double operator()(Date value) const { return value.days; }
  double operator()(const Decimal& value) const { return ToDouble(value); }
  template <typename Other>
  double operator()(const Other& /*no number*/) const {
    return 0;
  }
};

Decimal MakeDecimal(std::int64_t number, std::uint8_t scale) {
  const auto bits = static_cast<std::uint64_t>(number);
  const std::uint64_t magnitude = number < 0 ? 0 - bits : bits;
  return {.negative = number < 0,
          .scale = scale,
          .magnitude = {0, 0, static_cast<std::uint32_t>(magnitude >> 32U),
                        static_cast<std::uint32_t>(magnitude)}};
}

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
    return MakeDecimal(amount->ten_thousandths, 4);
  }
  if (const auto* decimal = std::get_if<Decimal>(&value)) return *decimal;
  return std::nullopt;
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
