#include "jet/sql/values/Conversion.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <optional>

#include "base/Text.h"
#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"
#include "jet/sql/syntax/DateLiteral.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

std::string GeneralDate(Date date) {
  const std::optional<DateParts> parts = SplitDate(date);
  if (!parts) return {};
  const int hour = parts->hour % 12 == 0 ? 12 : parts->hour % 12;
  const std::string time = fmt::format("{}:{:02}:{:02} {}", hour, parts->minute, parts->second,
                                       parts->hour < 12 ? "AM" : "PM");
  std::string day = fmt::format("{}/{}/{}", parts->month, parts->day, parts->year);
  const bool midnight = parts->hour == 0 && parts->minute == 0 && parts->second == 0;
  if (midnight) return day;
  return day == "12/30/1899" ? time : day + " " + time;
}

/// Without the zeros that end the decimals.
std::string Shortened(std::string text) {
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

Result<double> NumberFor(const Value& value) {
  if (IsNumber(value)) return DoubleOf(value);
  const auto* const text = std::get_if<Text>(&value);
  const std::optional<double> number = text == nullptr ? std::nullopt : NumberInText(*text);
  if (!number) return JetError(kDataTypeConversion);
  return *number;
}

template <typename Whole>
Result<Value> ToWhole(double number) {
  const double rounded = std::nearbyint(number);
  if (!(rounded >= std::numeric_limits<Whole>::min() &&
        rounded <= std::numeric_limits<Whole>::max())) {
    return JetError(kNumericOverflow);
  }
  return Value(static_cast<Whole>(rounded));
}

Result<Value> ToByte(const Value& value, double number) {
  // Yes is all bits.
  if (std::holds_alternative<bool>(value) && number != 0) {
    return Value(std::numeric_limits<std::uint8_t>::max());
  }
  return ToWhole<std::uint8_t>(number);
}

Result<Value> ToSingle(double number) {
  if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) {
    return JetError(kNumericOverflow);
  }
  return Value(static_cast<float>(number));
}

Result<Value> ToCurrency(const Value& value, double number) {
  constexpr double kLimit = 9.2233720368547758e18;
  if (std::optional<Decimal> exact = DecimalOf(value)) {
    const Result<Decimal> scaled = Rescale(*exact, 28, 4);
    if (!scaled.ok()) return JetError(kNumericOverflow);
    const Result<Currency> amount = ParseCurrency(DecimalText(scaled.value()));
    if (!amount.ok()) return JetError(kNumericOverflow);
    return Value(amount.value());
  }
  if (const auto* text = std::get_if<Text>(&value)) {
    const Result<Currency> amount = ParseCurrency(TrimBlanks(*text));
    if (amount.ok()) return Value(amount.value());
  }
  const double amount = std::nearbyint(number * 10000);
  if (!(std::abs(amount) < kLimit)) return JetError(kNumericOverflow);
  return Value(Currency{static_cast<std::int64_t>(amount)});
}

Result<Value> ToDecimal(const ColumnDefinition& column, const Value& value, double number) {
  std::optional<Decimal> decimal = DecimalOf(value);
  if (!decimal) {
    std::string digits = fmt::format("{:.15g}", number);
    if (digits.find('e') != std::string::npos) {
      digits = fmt::format("{:.{}f}", number, column.scale());
    }
    if (const auto* text = std::get_if<Text>(&value)) {
      if (ParseDecimal(TrimBlanks(*text)).ok()) digits = std::string(TrimBlanks(*text));
    }
    const Result<Decimal> parsed = ParseDecimal(digits);
    if (!parsed.ok()) return JetError(kNumericOverflow);
    decimal = parsed.value();
  }
  const Result<Decimal> scaled = Rescale(*decimal, column.precision(), column.scale());
  if (!scaled.ok()) return JetError(kNumericOverflow);
  return Value(scaled.value());
}

Result<Value> ToDate(const Value& value) {
  if (const auto* text = std::get_if<Text>(&value)) {
    if (const std::optional<Date> date = ParseDateText(*text)) return Value(*date);
  }
  const Result<double> days = NumberFor(value);
  if (!days.ok() || !SplitDate(Date{days.value()})) return JetError(kDataTypeConversion);
  return Value(Date{days.value()});
}

Result<Value> ToBool(const Value& value) {
  if (const auto* text = std::get_if<Text>(&value)) {
    for (const char* yes : {"true", "yes", "on"}) {
      if (EqualsIgnoringCase(TrimBlanks(*text), yes)) return Value(true);
    }
    for (const char* no : {"false", "no", "off"}) {
      if (EqualsIgnoringCase(TrimBlanks(*text), no)) return Value(false);
    }
  }
  const Result<double> number = NumberFor(value);
  if (!number.ok()) return number.error();
  return Value(number.value() != 0);
}

Result<Value> ToText(const ColumnDefinition& column, const Value& value) {
  Result<std::string> text = TextOf(value);
  if (!text.ok()) return JetError(kDataTypeConversion);
  if (column.type == ColumnType::Text && ToUtf16(text.value()).size() > column.length / 2U) {
    return JetError(kFieldTooSmall);
  }
  return Value(std::move(text.value()));
}

Result<Value> ToBinary(const ColumnDefinition& column, const Value& value) {
  const auto* const bytes = std::get_if<Binary>(&value);
  if (bytes == nullptr) return JetError(kDataTypeConversion);
  if (column.type == ColumnType::Binary && bytes->bytes.size() > column.length) {
    return JetError(kFieldTooSmall);
  }
  return value;
}

Result<Value> ToGuid(const Value& value) {
  if (std::holds_alternative<Guid>(value)) return value;
  const auto* const text = std::get_if<Text>(&value);
  if (text == nullptr) return JetError(kDataTypeConversion);
  const Result<Guid> guid = ParseGuid(*text);
  if (!guid.ok()) return guid.error();
  return Value(guid.value());
}

Result<Value> ToNumber(const ColumnDefinition& column, const Value& value) {
  const Result<double> number = NumberFor(value);
  if (!number.ok()) return number.error();
  switch (column.type) {
    case ColumnType::Byte:
      return ToByte(value, number.value());
    case ColumnType::Int:
      return ToWhole<std::int16_t>(number.value());
    case ColumnType::Long:
      return ToWhole<std::int32_t>(number.value());
    case ColumnType::Currency:
      return ToCurrency(value, number.value());
    case ColumnType::Single:
      return ToSingle(number.value());
    case ColumnType::Double:
      return Value(number.value());
    case ColumnType::Numeric:
      return ToDecimal(column, value, number.value());
    default:
      return JetError(kDataTypeConversion);
  }
}

struct TextPrinter {
  std::string operator()(const Null& /*null*/) const { return {}; }
  std::string operator()(bool value) const { return value ? "-1" : "0"; }
  std::string operator()(std::uint8_t value) const { return fmt::format("{}", value); }
  std::string operator()(std::int16_t value) const { return fmt::format("{}", value); }
  std::string operator()(std::int32_t value) const { return fmt::format("{}", value); }
  std::string operator()(Currency value) const { return Shortened(CurrencyText(value)); }
  std::string operator()(float value) const { return fmt::format("{:.7G}", value); }
  std::string operator()(double value) const { return fmt::format("{:.15G}", value); }
  std::string operator()(Date value) const { return GeneralDate(value); }
  std::string operator()(const Text& value) const { return value; }
  std::string operator()(const Binary& value) const { return value.bytes; }
  std::string operator()(const Guid& value) const { return GuidText(value); }
  std::string operator()(const Decimal& value) const { return DecimalText(value); }
};

}  // namespace

Result<std::string> TextOf(const Value& value) {
  if (std::holds_alternative<Binary>(value)) return JetError(kCriteriaTypeMismatch);
  return std::visit(TextPrinter(), value);
}

Result<Value> ConvertForColumn(const ColumnDefinition& column, const Value& value) {
  if (IsNull(value)) return column.type == ColumnType::Bool ? Value(false) : value;
  switch (column.type) {
    case ColumnType::Bool:
      return ToBool(value);
    case ColumnType::Date:
      return ToDate(value);
    case ColumnType::Text:
    case ColumnType::Memo:
      return ToText(column, value);
    case ColumnType::Binary:
    case ColumnType::Ole:
      return ToBinary(column, value);
    case ColumnType::Guid:
      return ToGuid(value);
    default:
      return ToNumber(column, value);
  }
}

}  // namespace zent::jet
