#include "database/engines/odbc/OdbcDates.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>

namespace zent {
namespace {

constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / 12 / 30;
constexpr std::int64_t kMicrosecondsADay = 86'400'000'000;

/// The microseconds of a part of a day. A day far from day zero leaves few bits to its time: what
/// looks like a microsecond before a whole second is that second.
std::int64_t MicrosecondsOf(double serial) {
  const double part = std::abs(serial - std::trunc(serial));
  const auto day = static_cast<double>(kMicrosecondsADay);
  const std::int64_t exact = std::llround(part * day);
  const double magnitude = std::abs(serial);
  const double last_bit =
      std::nextafter(magnitude, std::numeric_limits<double>::infinity()) - magnitude;
  const auto tolerance = static_cast<std::int64_t>(std::ceil(last_bit * day));
  const std::int64_t whole = (exact + 500) / 1000 * 1000;
  return std::abs(whole - exact) <= tolerance ? whole : exact;
}

}  // namespace

std::optional<DateSerial> SerialOf(const odbc::DateTime& date) {
  const std::chrono::year_month_day day(std::chrono::year(date.year),
                                        std::chrono::month(date.month), std::chrono::day(date.day));
  if (!day.ok()) return std::nullopt;
  const auto days = static_cast<double>((std::chrono::sys_days(day) - kDayZero).count());
  const std::int64_t seconds = (date.hour * 60 + date.minute) * 60 + date.second;
  const double part = static_cast<double>(seconds * 1'000'000'000 + date.nanoseconds) /
                      (static_cast<double>(kMicrosecondsADay) * 1000);
  return DateSerial{days < 0 ? days - part : days + part};
}

std::optional<odbc::DateTime> DateOf(DateSerial serial) {
  constexpr double kFirstDay = -657434;
  constexpr double kBehindLastDay = 2958466;
  if (!(serial.days > kFirstDay - 1 && serial.days < kBehindLastDay)) return std::nullopt;
  auto days = static_cast<int>(std::trunc(serial.days));
  std::int64_t time = MicrosecondsOf(serial.days);
  if (time == kMicrosecondsADay) {
    time = 0;
    days += 1;
  }
  const std::chrono::year_month_day day(kDayZero + std::chrono::days(days));
  const std::int64_t seconds = time / 1'000'000;
  odbc::DateTime date;
  date.year = static_cast<std::int16_t>(static_cast<int>(day.year()));
  date.month = static_cast<std::uint16_t>(static_cast<unsigned>(day.month()));
  date.day = static_cast<std::uint16_t>(static_cast<unsigned>(day.day()));
  date.hour = static_cast<std::uint16_t>(seconds / 3600);
  date.minute = static_cast<std::uint16_t>(seconds / 60 % 60);
  date.second = static_cast<std::uint16_t>(seconds % 60);
  date.nanoseconds = static_cast<std::uint32_t>(time % 1'000'000 * 1000);
  return date;
}

}  // namespace zent
