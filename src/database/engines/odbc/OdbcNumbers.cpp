#include "database/engines/odbc/OdbcNumbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <type_traits>

#include "base/Text.h"
#include "odbc/OdbcErrors.h"

namespace zent {
namespace {

RuntimeError NoNumber() {
  return odbc::EngineError(odbc::kDataTypeConversion, "Data type conversion error.");
}

RuntimeError Overflow() {
  return odbc::EngineError(odbc::kNumericOverflow, "Numeric field overflow.");
}

/// A value as the shortest text that reads back as the same number; words stay what they are.
struct NumberText {
  std::string operator()(bool value) const { return value ? "-1" : "0"; }
  std::string operator()(float value) const { return fmt::format("{}", value); }
  std::string operator()(double value) const { return fmt::format("{}", value); }
  std::string operator()(DateSerial value) const { return fmt::format("{}", value.days); }
  std::string operator()(Currency value) const { return FieldValue(value).AsText(); }
  std::string operator()(const DecimalText& value) const { return value.digits; }
  std::string operator()(const std::string& value) const { return std::string(TrimBlanks(value)); }
  template <typename Other>
  std::string operator()(const Other& value) const {
    if constexpr (std::is_integral_v<Other>) {
      return fmt::format("{}", static_cast<std::int64_t>(value));
    } else {
      return {};
    }
  }
};

/// The whole of `text` as a number; nothing for "inf" and the like.
template <typename Number>
std::optional<Number> Parse(std::string_view text) {
  if (text.substr(0, 1) == "+") text.remove_prefix(1);
  if (text.find_first_of("nN") != std::string_view::npos) return std::nullopt;
  Number number = {};
  const char* const end = text.data() + text.size();
  const std::from_chars_result read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

std::string TextOf(const FieldValue& value) { return std::visit(NumberText(), value.content()); }

}  // namespace

Result<std::int64_t> WholeNumber(const FieldValue& value, std::int64_t least, std::int64_t most) {
  const std::string text = TextOf(value);
  std::optional<std::int64_t> whole = Parse<std::int64_t>(text);
  if (!whole) {
    const std::optional<double> number = Parse<double>(text);
    if (!number) return NoNumber();
    constexpr double kBehindLast = 9223372036854775808.0;
    if (!(*number > -kBehindLast && *number < kBehindLast)) return Overflow();
    // The mode of rounding is the usual one: a half goes to the even number.
    whole = std::llrint(*number);
  }
  if (*whole < least || *whole > most) return Overflow();
  return *whole;
}

Result<double> FloatingNumber(const FieldValue& value) {
  // Not by way of the text: a single is the number that it is, not the shortest one.
  if (const auto* single = std::get_if<float>(&value.content())) return double{*single};
  const std::optional<double> number = Parse<double>(TextOf(value));
  if (!number) return NoNumber();
  return *number;
}

Result<std::string> ExactDigits(const FieldValue& value, int places) {
  const std::string text = TextOf(value);
  const std::optional<double> number = Parse<double>(text);
  if (!number) return NoNumber();
  if (text.find_first_of("eE") == std::string::npos) return text;
  // Of a negative scale the column itself rounds to tens and hundreds.
  return fmt::format("{:.{}f}", *number, std::max(places, 0));
}

}  // namespace zent
