#include "database/port/FieldValue.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstddef>
#include <string>
#include <type_traits>

#include "base/Utf.h"

namespace zent {
namespace {

/// A number of `precision` digits without its trailing zeros: in full as long as no more than that
/// many places are needed, else with an exponent of at least two digits.
std::string NumberText(double number, int precision) {
  if (number == 0) return "0";
  if (!std::isfinite(number)) return std::isnan(number) ? "NaN" : number < 0 ? "-inf" : "inf";
  std::string scientific = fmt::format("{:.{}e}", std::abs(number), precision - 1);
  const std::size_t exponent_at = scientific.find('e');
  const int exponent = std::stoi(scientific.substr(exponent_at + 1));
  std::string digits = scientific.substr(0, 1);
  if (exponent_at > 2) digits += scientific.substr(2, exponent_at - 2);
  digits.erase(digits.find_last_not_of('0') + 1);

  const std::string sign = number < 0 ? "-" : "";
  const int count = static_cast<int>(digits.size());
  if (exponent >= precision || count - 1 - exponent > precision) {
    if (count > 1) digits.insert(1, ".");
    return fmt::format("{}{}E{:+03d}", sign, digits, exponent);
  }
  if (exponent < 0) {
    return sign + "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  }
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= whole) return sign + digits + std::string(whole - digits.size(), '0');
  return sign + digits.substr(0, whole) + "." + digits.substr(whole);
}

std::string CurrencyText(Currency value) {
  // The lowest amount has no positive counterpart: its magnitude is taken without a sign.
  const auto bits = static_cast<std::uint64_t>(value.ten_thousandths);
  const bool negative = value.ten_thousandths < 0;
  const std::uint64_t magnitude = negative ? 0 - bits : bits;
  std::string text =
      fmt::format("{}{}.{:04}", negative ? "-" : "", magnitude / 10000, magnitude % 10000);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

/// The years 100 to 9999 are dates; what lies outside is shown as a number.
std::string DateText(DateSerial value) {
  constexpr double kFirstDay = -657434;
  constexpr double kBehindLastDay = 2958466;
  if (!(value.days > kFirstDay - 1 && value.days < kBehindLastDay)) {
    return NumberText(value.days, 15);
  }
  constexpr long kSecondsADay = 86400;
  auto day = static_cast<long>(std::trunc(value.days));
  long second = std::lround(std::abs(value.days - std::trunc(value.days)) * kSecondsADay);
  if (second == kSecondsADay) {
    second = 0;
    day += 1;
  }
  const long hour = second / 3600;
  std::string time = fmt::format("{}:{:02}:{:02} {}", (hour + 11) % 12 + 1, second / 60 % 60,
                                 second % 60, hour < 12 ? "AM" : "PM");
  if (day == 0) return time;
  const std::chrono::sys_days start = std::chrono::year(1899) / 12 / 30;
  const std::chrono::year_month_day date(start + std::chrono::days(day));
  const std::string text =
      fmt::format("{}/{}/{}", static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(date.year()));
  return second == 0 ? text : text + " " + time;
}

std::string GuidText(const Guid& guid) {
  std::string text = "{guid {";
  for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += fmt::format("{:02X}", guid.bytes[i]);
  }
  return text + "}}";
}

struct TextOf {
  std::string operator()(std::monostate /*null*/) const { return {}; }
  std::string operator()(bool value) const { return value ? "True" : "False"; }
  std::string operator()(float value) const { return NumberText(static_cast<double>(value), 7); }
  std::string operator()(double value) const { return NumberText(value, 15); }
  std::string operator()(Currency value) const { return CurrencyText(value); }
  std::string operator()(const DecimalText& value) const { return value.digits; }
  std::string operator()(DateSerial value) const { return DateText(value); }
  std::string operator()(const std::string& value) const { return value; }
  std::string operator()(const BinaryBytes& value) const { return FromUtf16Bytes(value.bytes); }
  std::string operator()(const Guid& value) const { return GuidText(value); }
  template <typename Integer>
  requires std::is_integral_v<Integer> std::string operator()(Integer value) const {
    return fmt::format("{}", static_cast<std::int64_t>(value));
  }
};

}  // namespace

std::string FieldValue::AsText() const { return std::visit(TextOf{}, content_); }

bool FieldValue::IsBlank() const {
  const std::string text = AsText();
  return text.find_first_not_of(' ') == std::string::npos;
}

}  // namespace zent
