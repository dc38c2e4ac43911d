#include <algorithm>
#include <string>

#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/Functions.h"
#include "jet/sql/values/Conversion.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

constexpr char16_t kCaseDistance = 0x20;

bool AnyNull(Arguments arguments) {
  return std::any_of(arguments.begin(), arguments.end(), IsNull);
}

Result<std::u16string> UnitsOf(const Value& value) {
  const Result<std::string> text = TextOf(value);
  if (!text.ok()) return text.error();
  return ToUtf16(text.value());
}

/// A place or length of at least `lowest`.
Result<std::size_t> CountOf(const Value& value, std::int32_t lowest) {
  if (!IsNumber(value)) return JetError(kCriteriaTypeMismatch);
  const Result<std::int32_t> count = RoundToLong(DoubleOf(value));
  if (!count.ok()) return count.error();
  if (count.value() < lowest) return JetError(kInvalidArgument);
  return static_cast<std::size_t>(count.value());
}

Value TextValue(std::u16string_view units) { return FromUtf16(units); }

template <typename Change>
Result<Value> Changed(const Value& value, Change change) {
  if (IsNull(value)) return value;
  Result<std::u16string> units = UnitsOf(value);
  if (!units.ok()) return units.error();
  return TextValue(change(units.value()));
}

std::u16string_view WithoutFirst(std::u16string_view units) {
  units.remove_prefix(std::min(units.find_first_not_of(u' '), units.size()));
  return units;
}

std::u16string_view WithoutLast(std::u16string_view units) {
  return units.substr(0, units.find_last_not_of(u' ') + 1);
}

// The capitals of ASCII and Latin-1 stand 32 before their small letters.
bool IsSmall(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7);
}
char16_t Capital(char16_t c) { return static_cast<char16_t>(IsSmall(c) ? c - kCaseDistance : c); }
char16_t Small(char16_t c) {
  const auto small = static_cast<char16_t>(c + kCaseDistance);
  return IsSmall(small) && !IsSmall(c) ? small : c;
}

}  // namespace

Result<Value> LeftFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (AnyNull(arguments)) return Value(Null());
  const Result<std::size_t> count = CountOf(arguments[1], 0);
  if (!count.ok()) return count.error();
  return Changed(arguments[0],
                 [&](std::u16string_view units) { return units.substr(0, count.value()); });
}

Result<Value> RightFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (AnyNull(arguments)) return Value(Null());
  const Result<std::size_t> count = CountOf(arguments[1], 0);
  if (!count.ok()) return count.error();
  return Changed(arguments[0], [&](std::u16string_view units) {
    return units.substr(units.size() - std::min(count.value(), units.size()));
  });
}

Result<Value> MidFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (AnyNull(arguments)) return Value(Null());
  const Result<std::size_t> start = CountOf(arguments[1], 1);
  if (!start.ok()) return start.error();
  std::size_t length = std::u16string_view::npos;
  if (arguments.size() > 2) {
    const Result<std::size_t> count = CountOf(arguments[2], 0);
    if (!count.ok()) return count.error();
    length = count.value();
  }
  return Changed(arguments[0], [&](std::u16string_view units) {
    return units.substr(std::min(start.value() - 1, units.size()), length);
  });
}

Result<Value> LenFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (AnyNull(arguments)) return Value(Null());
  const Result<std::u16string> units = UnitsOf(arguments[0]);
  if (!units.ok()) return units.error();
  return Value(static_cast<std::int32_t>(units.value().size()));
}

Result<Value> TrimFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  return Changed(arguments[0],
                 [](std::u16string_view units) { return WithoutLast(WithoutFirst(units)); });
}

Result<Value> LTrimFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  return Changed(arguments[0], WithoutFirst);
}

Result<Value> RTrimFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  return Changed(arguments[0], WithoutLast);
}

Result<Value> UCaseFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  return Changed(arguments[0], [](std::u16string& units) {
    std::transform(units.begin(), units.end(), units.begin(), Capital);
    return std::u16string_view(units);
  });
}

Result<Value> LCaseFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  return Changed(arguments[0], [](std::u16string& units) {
    std::transform(units.begin(), units.end(), units.begin(), Small);
    return std::u16string_view(units);
  });
}

Result<Value> InStrFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (AnyNull(arguments)) return Value(Null());
  std::size_t start = 1;
  if (arguments.size() == 3) {
    const Result<std::size_t> given = CountOf(arguments[0], 1);
    if (!given.ok()) return given.error();
    start = given.value();
    arguments = arguments.subspan(1);
  }
  Result<std::u16string> text = UnitsOf(arguments[0]);
  if (!text.ok()) return text.error();
  Result<std::u16string> part = UnitsOf(arguments[1]);
  if (!part.ok()) return part.error();
  for (std::u16string* units : {&text.value(), &part.value()}) {
    std::transform(units->begin(), units->end(), units->begin(), Small);
  }
  const std::size_t found = text.value().find(part.value(), start - 1);
  return Value(static_cast<std::int32_t>(found == std::u16string::npos ? 0 : found + 1));
}

}  // namespace zent::jet
