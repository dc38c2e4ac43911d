#include "jet/sql/expressions/Functions.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"
#include "jet/sql/syntax/DateLiteral.h"
#include "jet/sql/values/Conversion.h"
#include "jet/sql/values/Logic.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

Result<Value> ChooseFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  const Result<bool> first = IsTrue(arguments[0]);
  if (!first.ok()) return first.error();
  return arguments[first.value() ? 1 : 2];
}

Result<Value> IsNullFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  return Value(IsNull(arguments[0]));
}

Result<Value> IsDateFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  const auto* const text = std::get_if<Text>(&arguments[0]);
  return Value(std::holds_alternative<Date>(arguments[0]) ||
               (text != nullptr && ParseDateText(*text).has_value()));
}

Result<Value> IsNumericFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  const auto* const text = std::get_if<Text>(&arguments[0]);
  const bool date = std::holds_alternative<Date>(arguments[0]);
  return Value((IsNumber(arguments[0]) && !date) ||
               (text != nullptr && NumberInText(*text).has_value()));
}

Result<Value> NzFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (!IsNull(arguments[0])) return arguments[0];
  return arguments.size() > 1 ? arguments[1] : Value(Text());
}

Result<Value> NowFunction(Arguments /*arguments*/, const EvaluationContext& context) {
  return Value(context.now);
}

Result<Value> DateFunction(Arguments /*arguments*/, const EvaluationContext& context) {
  return Value(Date{std::trunc(context.now.days)});
}

/// To the type, as assignment to a column of it does; null is an error, as in BASIC.
template <ColumnType kType>
Result<Value> ConvertFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  ColumnDefinition column;
  column.type = kType;
  if (IsNull(arguments[0])) return JetError(kDataTypeConversion);
  return ConvertForColumn(column, arguments[0]);
}

/// The number that a text begins with, 0 without one. Blanks do not count.
Result<Value> ValFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (IsNull(arguments[0])) return JetError(kDataTypeConversion);
  Result<std::string> text = TextOf(arguments[0]);
  if (!text.ok()) return text.error();
  std::string& digits = text.value();
  std::erase(digits, ' ');
  // No number is longer than what stands before the first other character.
  digits.resize(std::min(digits.find_first_not_of("+-.0123456789eE"), digits.size()));
  digits.resize(std::min<std::size_t>(digits.size(), 64));
  for (; !digits.empty(); digits.pop_back()) {
    if (const std::optional<double> number = NumberInText(digits)) return Value(*number);
  }
  return Value(0.0);
}

Result<Value> AbsFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (IsNull(arguments[0])) return arguments[0];
  if (!IsNumber(arguments[0])) return JetError(kCriteriaTypeMismatch);
  return Value(std::abs(DoubleOf(arguments[0])));
}

Result<Value> IntFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (IsNull(arguments[0])) return arguments[0];
  if (!IsNumber(arguments[0])) return JetError(kCriteriaTypeMismatch);
  return Value(std::floor(DoubleOf(arguments[0])));
}

template <int DateParts::*kPart>
Result<Value> DatePartFunction(Arguments arguments, const EvaluationContext& context) {
  if (IsNull(arguments[0])) return arguments[0];
  Result<Value> date = ConvertFunction<ColumnType::Date>(arguments, context);
  if (!date.ok()) return date;
  const std::optional<DateParts> parts = SplitDate(std::get<Date>(date.value()));
  if (!parts) return JetError(kDataTypeConversion);
  return Value(static_cast<std::int32_t>((*parts).*kPart));
}

constexpr std::array kFunctions = {
    Function{"IIf", 3, 3, ChooseFunction},
    Function{"IsNull", 1, 1, IsNullFunction},
    Function{"IsDate", 1, 1, IsDateFunction},
    Function{"IsNumeric", 1, 1, IsNumericFunction},
    Function{"Nz", 1, 2, NzFunction},
    Function{"Left", 2, 2, LeftFunction},
    Function{"Right", 2, 2, RightFunction},
    Function{"Mid", 2, 3, MidFunction},
    Function{"Len", 1, 1, LenFunction},
    Function{"Trim", 1, 1, TrimFunction},
    Function{"LTrim", 1, 1, LTrimFunction},
    Function{"RTrim", 1, 1, RTrimFunction},
    Function{"UCase", 1, 1, UCaseFunction},
    Function{"LCase", 1, 1, LCaseFunction},
    Function{"InStr", 2, 3, InStrFunction},
    Function{"Now", 0, 0, NowFunction},
    Function{"Date", 0, 0, DateFunction},
    Function{"Year", 1, 1, DatePartFunction<&DateParts::year>},
    Function{"Month", 1, 1, DatePartFunction<&DateParts::month>},
    Function{"Day", 1, 1, DatePartFunction<&DateParts::day>},
    Function{"CStr", 1, 1, ConvertFunction<ColumnType::Memo>},
    Function{"CInt", 1, 1, ConvertFunction<ColumnType::Int>},
    Function{"CLng", 1, 1, ConvertFunction<ColumnType::Long>},
    Function{"CDbl", 1, 1, ConvertFunction<ColumnType::Double>},
    Function{"CCur", 1, 1, ConvertFunction<ColumnType::Currency>},
    Function{"CDate", 1, 1, ConvertFunction<ColumnType::Date>},
    Function{"CBool", 1, 1, ConvertFunction<ColumnType::Bool>},
    Function{"Val", 1, 1, ValFunction},
    Function{"Abs", 1, 1, AbsFunction},
    Function{"Int", 1, 1, IntFunction},
};

}  // namespace

const Function* FindFunction(std::string_view name) {
  const auto* const found =
      std::find_if(kFunctions.begin(), kFunctions.end(),
                   [&](const Function& row) { return EqualsIgnoringCase(row.name, name); });
  return found == kFunctions.end() ? nullptr : found;
}

}  // namespace zent::jet
