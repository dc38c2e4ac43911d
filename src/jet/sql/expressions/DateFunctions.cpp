#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"
#include "jet/sql/expressions/Functions.h"
#include "jet/sql/values/Conversion.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

constexpr int kMonths = 12;
constexpr int kQuarterMonths = 3;
constexpr double kDaySeconds = 86400;
constexpr int kDaysAWeek = 7;

enum class Unit { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Result<Unit> UnitOf(const Value& value) {
  constexpr std::array<std::pair<std::string_view, Unit>, 10> kUnits = {{{"yyyy", Unit::Year},
                                                                         {"q", Unit::Quarter},
                                                                         {"m", Unit::Month},
                                                                         {"y", Unit::DayOfYear},
                                                                         {"d", Unit::Day},
                                                                         {"w", Unit::Weekday},
                                                                         {"ww", Unit::Week},
                                                                         {"h", Unit::Hour},
                                                                         {"n", Unit::Minute},
                                                                         {"s", Unit::Second}}};
  const auto* const text = std::get_if<Text>(&value);
  for (const auto& [name, unit] : kUnits) {
    if (text != nullptr && EqualsIgnoringCase(name, *text)) return unit;
  }
  return JetError(kInvalidArgument);
}

Result<DateParts> PartsOf(const Value& value) {
  const ColumnDefinition column = {.type = ColumnType::Date};
  const Result<Value> date = ConvertForColumn(column, value);
  if (!date.ok()) return date.error();
  const std::optional<DateParts> parts = SplitDate(std::get<Date>(date.value()));
  if (!parts) return JetError(kDataTypeConversion);
  return *parts;
}

/// The day's number, without the time.
std::int32_t DayNumber(const DateParts& parts) {
  const std::optional<Date> day =
      JoinDate({.year = parts.year, .month = parts.month, .day = parts.day});
  return day ? static_cast<std::int32_t>(day->days) : 0;
}

/// Sunday is 1.
int WeekdayOf(std::int32_t day) { return ((day - 1) % kDaysAWeek + kDaysAWeek) % kDaysAWeek + 1; }

double SecondsOf(const DateParts& parts) {
  return DayNumber(parts) * kDaySeconds + parts.hour * 3600 + parts.minute * 60 + parts.second;
}

Result<Value> FromSeconds(double seconds) {
  const double day = std::floor(seconds / kDaySeconds);
  const double time = (seconds - day * kDaySeconds) / kDaySeconds;
  const Date date{day < 0 ? day - time : day + time};
  if (!SplitDate(date)) return JetError(kInvalidArgument);
  return Value(date);
}

/// The same day of another month, or its last one.
Result<Value> AddMonths(DateParts parts, double months) {
  const double all = parts.year * static_cast<double>(kMonths) + parts.month - 1 + months;
  if (!(all >= 0 && all < 10000.0 * kMonths)) return JetError(kInvalidArgument);
  parts.year = static_cast<int>(all) / kMonths;
  parts.month = static_cast<int>(all) % kMonths + 1;
  parts.millisecond = 0;
  for (int tries = 0; tries < 4; ++tries, --parts.day) {
    if (const std::optional<Date> date = JoinDate(parts)) return Value(*date);
  }
  return JetError(kInvalidArgument);
}

std::int32_t PartOf(Unit unit, const DateParts& parts) {
  switch (unit) {
    case Unit::Year:
      return parts.year;
    case Unit::Quarter:
      return (parts.month - 1) / kQuarterMonths + 1;
    case Unit::Month:
      return parts.month;
    case Unit::DayOfYear:
      return DayNumber(parts) - DayNumber({.year = parts.year, .month = 1, .day = 1}) + 1;
    case Unit::Day:
      return parts.day;
    case Unit::Weekday:
      return WeekdayOf(DayNumber(parts));
    case Unit::Week: {
      const std::int32_t first = DayNumber({.year = parts.year, .month = 1, .day = 1});
      return (DayNumber(parts) - first + WeekdayOf(first) - 1) / kDaysAWeek + 1;
    }
    case Unit::Hour:
      return parts.hour;
    case Unit::Minute:
      return parts.minute;
    case Unit::Second:
      return parts.second;
  }
  return 0;
}

/// Quarters since an early one.
int Quarters(const DateParts& parts) { return parts.year * 4 + (parts.month - 1) / kQuarterMonths; }

/// How many of `unit` a point in time lies behind an early one, counted in whole units.
double Count(Unit unit, const DateParts& parts) {
  const double day = DayNumber(parts);
  switch (unit) {
    case Unit::Year:
      return parts.year;
    case Unit::Quarter:
      return Quarters(parts);
    case Unit::Month:
      return parts.year * static_cast<double>(kMonths) + parts.month;
    case Unit::Week:
      return std::floor((day - 1) / kDaysAWeek);
    case Unit::Hour:
      return std::floor(SecondsOf(parts) / 3600);
    case Unit::Minute:
      return std::floor(SecondsOf(parts) / 60);
    case Unit::Second:
      return SecondsOf(parts);
    default:
      return day;
  }
}

}  // namespace

Result<Value> DateAddFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  const Result<Unit> unit = UnitOf(arguments[0]);
  if (!unit.ok()) return unit.error();
  if (IsNull(arguments[1]) || IsNull(arguments[2])) return Value(Null());
  if (!IsNumber(arguments[1])) return JetError(kCriteriaTypeMismatch);
  const Result<DateParts> parts = PartsOf(arguments[2]);
  if (!parts.ok()) return parts.error();
  const double number = std::nearbyint(DoubleOf(arguments[1]));
  const double seconds = SecondsOf(parts.value());
  switch (unit.value()) {
    case Unit::Year:
      return AddMonths(parts.value(), number * kMonths);
    case Unit::Quarter:
      return AddMonths(parts.value(), number * kQuarterMonths);
    case Unit::Month:
      return AddMonths(parts.value(), number);
    case Unit::Week:
      return FromSeconds(seconds + number * kDaysAWeek * kDaySeconds);
    case Unit::Hour:
      return FromSeconds(seconds + number * 3600);
    case Unit::Minute:
      return FromSeconds(seconds + number * 60);
    case Unit::Second:
      return FromSeconds(seconds + number);
    default:
      return FromSeconds(seconds + number * kDaySeconds);
  }
}

Result<Value> DateDiffFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  const Result<Unit> unit = UnitOf(arguments[0]);
  if (!unit.ok()) return unit.error();
  if (IsNull(arguments[1]) || IsNull(arguments[2])) return Value(Null());
  const Result<DateParts> from = PartsOf(arguments[1]);
  if (!from.ok()) return from.error();
  const Result<DateParts> to = PartsOf(arguments[2]);
  if (!to.ok()) return to.error();
  double distance = Count(unit.value(), to.value()) - Count(unit.value(), from.value());
  if (unit.value() == Unit::Weekday) distance = std::trunc(distance / kDaysAWeek);
  const Result<std::int32_t> whole = RoundToLong(distance);
  if (!whole.ok()) return whole.error();
  return Value(whole.value());
}

Result<Value> DatePartOfFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  const Result<Unit> unit = UnitOf(arguments[0]);
  if (!unit.ok()) return unit.error();
  if (IsNull(arguments[1])) return Value(Null());
  const Result<DateParts> parts = PartsOf(arguments[1]);
  if (!parts.ok()) return parts.error();
  return Value(PartOf(unit.value(), parts.value()));
}

Result<Value> WeekdayFunction(Arguments arguments, const EvaluationContext& /*context*/) {
  if (IsNull(arguments[0])) return Value(Null());
  const Result<DateParts> parts = PartsOf(arguments[0]);
  if (!parts.ok()) return parts.error();
  return Value(PartOf(Unit::Weekday, parts.value()));
}

}  // namespace zent::jet
