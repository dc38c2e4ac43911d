#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "jet/format/Value.h"

/// Dates as statements have them between "#" and "#". No country's settings count.
namespace zent::jet {

/// A date, a time, or a date followed by a time, each with blanks around: "1/31/2005",
/// "2005-01-31", "31-Jan-2005", "Jan 31, 2005", "6:30 PM", "2005-01-31 18:30:00". Month before day,
/// unless only the other order makes a date; the years 0 to 29 are 2000 to 2029, 30 to 99 are 1930
/// to 1999. A date without a year is none. Nothing for what is no such text or no day of the
/// calendar.
std::optional<Date> ParseDateText(std::string_view text);

/// A text that ParseDateText reads as the same second: "2005-01-31 18:30:00", without the time
/// where it is midnight, without the date on day zero. Empty outside the years 100 to 9999.
std::string PlainDateText(Date date);

}  // namespace zent::jet
