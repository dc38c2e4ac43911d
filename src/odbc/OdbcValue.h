#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace zent::odbc {

/// An exact number as digits: "-12.50". The point is a point, whatever the driver's language.
struct Decimal {
  std::string digits;
  bool operator==(const Decimal&) const = default;
};

struct Bytes {
  std::string bytes;
  bool operator==(const Bytes&) const = default;
};

/// A day and a time of day, of no time zone.
struct DateTime {
  std::int16_t year = 0;
  std::uint16_t month = 0;
  std::uint16_t day = 0;
  std::uint16_t hour = 0;
  std::uint16_t minute = 0;
  std::uint16_t second = 0;
  std::uint32_t nanoseconds = 0;
  bool operator==(const DateTime&) const = default;
};

/// What a column of a row holds, or a parameter: null, a bit, a whole number, a number, an exact
/// number, text (UTF-8), bytes, a date. A time without a day, and types that the engine does not
/// know, are text.
using OdbcValue =
    std::variant<std::monostate, bool, std::int64_t, double, Decimal, std::string, Bytes, DateTime>;

inline bool IsNull(const OdbcValue& value) { return std::holds_alternative<std::monostate>(value); }

}  // namespace zent::odbc
