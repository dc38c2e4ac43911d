#include <gtest/gtest.h>

#include <limits>

#include "database/engines/odbc/OdbcDates.h"

namespace zent {
namespace {

struct DateCase {
  const char* what;
  odbc::DateTime date;
  double serial;
};

constexpr DateCase kDateCases[] = {
    {"day zero", {1899, 12, 30, 0, 0, 0, 0}, 0},
    {"a time on day zero", {1899, 12, 30, 6, 0, 0, 0}, 0.25},
    {"the day before", {1899, 12, 29, 0, 0, 0, 0}, -1},
    {"a time before day zero counts away from it", {1899, 12, 29, 6, 0, 0, 0}, -1.25},
    {"a day", {2005, 1, 2, 0, 0, 0, 0}, 38354},
    {"a day and a time", {2005, 1, 2, 3, 4, 5, 0}, 38354 + 11045 / 86400.0},
    {"a leap day", {2024, 2, 29, 23, 59, 59, 0}, 45351 + 86399 / 86400.0},
    {"milliseconds", {2024, 2, 29, 12, 0, 0, 125000000}, 45351.5 + 0.125 / 86400},
    {"the first day", {100, 1, 1, 0, 0, 0, 0}, -657434},
    {"the first day, late", {100, 1, 1, 18, 0, 0, 0}, -657434.75},
    {"the last second", {9999, 12, 31, 23, 59, 59, 0}, 2958465 + 86399 / 86400.0},
};

TEST(OdbcDates, AreSerialsAndBack) {
  for (const DateCase& row : kDateCases) {
    SCOPED_TRACE(row.what);
    const std::optional<DateSerial> serial = SerialOf(row.date);
    ASSERT_TRUE(serial);
    EXPECT_DOUBLE_EQ(serial->days, row.serial);
    const std::optional<odbc::DateTime> date = DateOf(*serial);
    ASSERT_TRUE(date);
    EXPECT_TRUE(*date == row.date)
        << date->hour << ":" << date->minute << ":" << date->second << " + " << date->nanoseconds;
  }
}

constexpr std::int16_t kYears[] = {1900, 2005, 9999};

TEST(OdbcDates, KeepEverySecondOfADayNearAndFar) {
  for (const std::int16_t year : kYears) {
    for (int second = 0; second < 86400; second += 7) {
      odbc::DateTime date{year, 6, 15};
      date.hour = static_cast<std::uint16_t>(second / 3600);
      date.minute = static_cast<std::uint16_t>(second / 60 % 60);
      date.second = static_cast<std::uint16_t>(second % 60);
      const std::optional<DateSerial> serial = SerialOf(date);
      ASSERT_TRUE(serial && DateOf(*serial));
      ASSERT_TRUE(*DateOf(*serial) == date) << year << " " << second;
    }
  }
}

TEST(OdbcDates, RoundUpToTheNextDay) {
  const std::optional<odbc::DateTime> date = DateOf({38354.9999999999999});
  ASSERT_TRUE(date);
  EXPECT_TRUE((*date == odbc::DateTime{2005, 1, 3}));
}

constexpr double kNoDates[] = {-657435,
                               2958466,
                               1e300,
                               -1e300,
                               std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};

TEST(OdbcDates, AreNothingOutsideTheirYears) {
  for (const double serial : kNoDates) EXPECT_FALSE(DateOf({serial})) << serial;
  EXPECT_FALSE(SerialOf({2005, 2, 30}));
  EXPECT_FALSE(SerialOf({2005, 13, 1}));
  EXPECT_FALSE(SerialOf({0, 0, 0}));
}

}  // namespace
}  // namespace zent
