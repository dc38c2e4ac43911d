#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Status.h"
#include "jet/format/Value.h"

/// Values as text and back, in the plain forms that depend on no country's settings.
namespace zent::jet {

/// "-12.3400": four decimals always.
std::string CurrencyText(Currency value);
/// Of digits with at most four decimals; kDataTypeConversion for anything else or out of range.
Result<Currency> ParseCurrency(std::string_view text);

/// "{00112233-4455-6677-8899-AABBCCDDEEFF}".
std::string GuidText(const Guid& guid);
/// With or without braces, any case.
Result<Guid> ParseGuid(std::string_view text);

/// A point in time as its parts. `millisecond` is rounded from the fraction of the day.
struct DateParts {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0, millisecond = 0;
  bool operator==(const DateParts&) const = default;
};

/// Nothing outside the years 0 to 9999 or when the value is no number.
std::optional<DateParts> SplitDate(Date date);
/// Nothing for a day or time that does not exist, or outside the years 100 to 9999.
std::optional<Date> JoinDate(const DateParts& parts);

/// "YYYY-MM-DDThh:mm:ss", with ".mmm" where there are milliseconds; empty when SplitDate has none.
std::string DateText(Date date);

/// "-1.50": exactly `scale` decimals.
std::string DecimalText(const Decimal& value);
/// Digits with an optional sign and point; the scale is the number of decimals. At most 28 digits.
Result<Decimal> ParseDecimal(std::string_view text);
/// The same number with `scale` decimals, rounded half away from zero; kDataTypeConversion when it
/// needs more than `precision` digits.
Result<Decimal> Rescale(const Decimal& value, std::uint8_t precision, std::uint8_t scale);
/// -1, 0 or 1 as `a` is below, equal to or above `b`, whatever their scales.
int Compare(const Decimal& a, const Decimal& b);
double ToDouble(const Decimal& value);

}  // namespace zent::jet
