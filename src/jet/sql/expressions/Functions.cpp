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

/// The value behind the first test that is true; null without one.
Result<Value> SwitchFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (arguments.size() % 2 != 0) return JetError(kInvalidArgument);
  for (std::size_t i = 0; i < arguments.size(); i += 2) {
    const Result<bool> chosen = IsTrue(arguments[i]);
    if (!chosen.ok()) return chosen.error();
    if (chosen.value()) return arguments[i + 1];
  }
  return Value(Null());
}

/// The value of that number, from 1 on; null when there is none.
Result<Value> ChooseFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (!IsNumber(arguments[0])) return JetError(kInvalidArgument);
  const double number = std::trunc(DoubleOf(arguments[0]));
  if (!(number >= 1 && number < static_cast<double>(arguments.size()))) return Value(Null());
  return arguments[static_cast<std::size_t>(number)];
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
    Function{"IIf", 3, 3, nullptr},
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
    Function{"Hour", 1, 1, DatePartFunction<&DateParts::hour>},
    Function{"Minute", 1, 1, DatePartFunction<&DateParts::minute>},
    Function{"Second", 1, 1, DatePartFunction<&DateParts::second>},
    Function{"Weekday", 1, 1, WeekdayFunction},
    Function{"DateAdd", 3, 3, DateAddFunction},
    Function{"DateDiff", 3, 3, DateDiffFunction},
    Function{"DatePart", 2, 2, DatePartOfFunction},
    Function{"Switch", 2, 28, SwitchFunction},
    Function{"Choose", 2, 28, ChooseFunction},
    Function{"CStr", 1, 1, ConvertFunction<ColumnType::Memo>},
    Function{"CInt", 1, 1, ConvertFunction<ColumnType::Int>},
    Function{"CLng", 1, 1, ConvertFunction<ColumnType::Long>},
    Function{"CDbl", 1, 1, ConvertFunction<ColumnType::Double>},
    Function{"CCur", 1, 1, ConvertFunction<ColumnType::Currency>},
    Function{"CDate", 1, 1, ConvertFunction<ColumnType::Date>},
    Function{"CByte", 1, 1, ConvertFunction<ColumnType::Byte>},
    Function{"CSng", 1, 1, ConvertFunction<ColumnType::Single>},
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

const Function* FunctionAt(std::size_t place) {
  return place < kFunctions.size() ? &kFunctions[place] : nullptr;
}

std::size_t PlaceOf(const Function& function) {
  return static_cast<std::size_t>(&function - kFunctions.data());
}

}  // namespace zent::jet
