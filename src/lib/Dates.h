#pragma once

#include <optional>
#include <string_view>

/// Recognition of date texts, as the platform does it for the locale en-US.
///
/// Dates: month, day and year in numbers with "/" or "-" between them (day first when the month
/// would be above 12; year first when the first number has more than two digits); month and day
/// with the year `current_year`; month and year for the first of the month; a month name with a
/// day, a year or both, a weekday before it or not. Years of one or two digits are 1950 to 2049,
/// others 100 to 9999.
///
/// Times: "10:30", "10:30:15", "10:30 PM", "10 AM"; alone, behind a date or before it.
///
/// Anything else, a plain number too, is no date.
namespace zent {

/// The days since 1899-12-30, the time as a fraction; a time alone is that fraction. Before that
/// day the fraction counts away from 0: -1.25 is six o'clock of 1899-12-29.
std::optional<double> ParseDate(std::string_view text, int current_year);

/// True when ParseDate finds a date.
bool IsDate(std::string_view text, int current_year);

}  // namespace zent
