#pragma once

#include <optional>

#include "database/port/FieldValue.h"
#include "odbc/OdbcValue.h"

namespace zent {

/// Nothing for a date that is none.
std::optional<DateSerial> SerialOf(const odbc::DateTime& date);

/// To the microsecond, and to the millisecond where no more than the last bit of the serial is
/// between. Nothing outside the years 100 to 9999.
std::optional<odbc::DateTime> DateOf(DateSerial serial);

}  // namespace zent
