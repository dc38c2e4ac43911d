#include "jet/sql/execution/KeyBounds.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "jet/format/ValueText.h"
#include "jet/sql/values/Comparison.h"
#include "jet/sql/values/Conversion.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

constexpr std::size_t kLongestPrefix = 100;

template <typename Whole>
std::optional<KeyBounds> WholeBounds(double number) {
  const double low = std::floor(number);
  const double high = std::ceil(number);
  if (!(low >= std::numeric_limits<Whole>::min() && high <= std::numeric_limits<Whole>::max())) {
    return std::nullopt;
  }
  return KeyBounds{static_cast<Whole>(low), static_cast<Whole>(high)};
}

/// Keys tell 0 from -0, comparisons do not.
template <typename Make>
std::optional<KeyBounds> DoubleBounds(double number, Make make) {
  if (std::isnan(number)) return std::nullopt;
  if (number == 0) return KeyBounds{make(-0.0), make(0.0)};
  return KeyBounds{make(number), make(number)};
}

std::optional<KeyBounds> SingleBounds(double number) {
  constexpr float kMost = std::numeric_limits<float>::max();
  if (!(std::abs(number) < static_cast<double>(kMost))) return std::nullopt;
  if (number == 0) return KeyBounds{-0.0F, 0.0F};
  const auto near = static_cast<float>(number);
  const auto found = static_cast<double>(near);
  return KeyBounds{found > number ? std::nextafter(near, -kMost) : near,
                   found < number ? std::nextafter(near, kMost) : near};
}

/// Currency and decimal: those values alone that the column can hold without loss.
std::optional<KeyBounds> ExactBounds(const ColumnDefinition& column, const Value& value) {
  if (!DecimalOf(value)) return std::nullopt;
  const Result<Value> converted = ConvertForColumn(column, value);
  if (!converted.ok()) return std::nullopt;
  const Result<std::optional<int>> order = CompareValues(converted.value(), value);
  if (!order.ok() || order.value() != 0) return std::nullopt;
  return KeyBounds{converted.value(), converted.value()};
}

std::optional<KeyBounds> NumberBounds(const ColumnDefinition& column, const Value& value) {
  const double number = DoubleOf(value);
  switch (column.type) {
    case ColumnType::Bool:
      if (number != 0 && number != -1) return std::nullopt;
      return KeyBounds{number != 0, number != 0};
    case ColumnType::Byte:
      return WholeBounds<std::uint8_t>(number);
    case ColumnType::Int:
      return WholeBounds<std::int16_t>(number);
    case ColumnType::Long:
      return WholeBounds<std::int32_t>(number);
    case ColumnType::Single:
      return SingleBounds(number);
    case ColumnType::Double:
      return DoubleBounds(number, [](double exact) { return Value(exact); });
    case ColumnType::Date:
      return DoubleBounds(number, [](double exact) { return Value(Date{exact}); });
    case ColumnType::Currency:
    case ColumnType::Numeric:
      return ExactBounds(column, value);
    default:
      return std::nullopt;
  }
}

bool IsSafe(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == ' ';
}

}  // namespace

std::optional<KeyBounds> BoundsOf(const ColumnDefinition& column, const Value& value) {
  if (IsNumber(value)) return NumberBounds(column, value);
  if (std::holds_alternative<Text>(value) && column.type == ColumnType::Text) {
    return KeyBounds{value, value};
  }
  if (column.type != ColumnType::Guid) return std::nullopt;
  if (std::holds_alternative<Guid>(value)) return KeyBounds{value, value};
  const auto* const text = std::get_if<Text>(&value);
  if (text == nullptr) return std::nullopt;
  const Result<Guid> guid = ParseGuid(*text);
  if (!guid.ok()) return std::nullopt;
  return KeyBounds{guid.value(), guid.value()};
}

std::string_view SafePrefix(std::string_view prefix) {
  std::size_t length = 0;
  while (length < std::min(prefix.size(), kLongestPrefix) && IsSafe(prefix[length])) ++length;
  while (length > 0 && prefix[length - 1] == ' ') --length;
  return prefix.substr(0, length);
}

}  // namespace zent::jet
