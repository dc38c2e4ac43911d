#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

#include "lib/Dates.h"
#include "support/TempFolder.h"

namespace zent {
namespace {

constexpr int kCurrentYear = 2026;
constexpr double kSecondsOfDay = 86400;

/// Half a second: results are multiples of one.
constexpr double kTolerance = 0.5 / kSecondsOfDay;

/// A line of the recorded vectors.
struct Vector {
  std::string text;
  std::optional<double> date;
  bool odd = false;
};

std::vector<Vector> ReadVectors() {
  std::istringstream lines(testing::ReadHostFile(ZENT_TEST_DATA "/dates/en-us.txt"));
  std::vector<Vector> vectors;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('#')) continue;
    const std::size_t open = line.find('"');
    const std::size_t close = line.rfind('"');
    Vector vector;
    vector.text = line.substr(open + 1, close - open - 1);
    vector.odd = line.ends_with("odd");
    std::istringstream columns(line.substr(0, open));
    double days = 0;
    double seconds = 0;
    if (columns >> days >> seconds) vector.date = days + seconds / kSecondsOfDay;
    vectors.push_back(std::move(vector));
  }
  return vectors;
}

void ExpectDate(const std::string& text, std::optional<double> expected) {
  SCOPED_TRACE('"' + text + '"');
  const std::optional<double> date = ParseDate(text, kCurrentYear);
  ASSERT_EQ(date.has_value(), expected.has_value());
  if (date) {
    EXPECT_NEAR(*date, *expected, kTolerance);
  }
  EXPECT_EQ(IsDate(text, kCurrentYear), expected.has_value());
}

// Where the recorded result is peculiar to the recorded implementation: what is right here.
const std::map<std::string, std::optional<double>> kSettled = {
    {"2-Jan-05", 38354.0},     // day, month name, year is a usual form: 2005-01-02, not 2002-01-05
    {"1/2", 46024.0},          // as recorded: the order of the locale and the current year
    {"1.5", std::nullopt},     // a decimal number, not five past one
    {"5,000", std::nullopt},   // a number in thousands, not the month May
    {"05-01-02", 37377.0},     // as recorded: month first, as with "/"
    {"1//2005", std::nullopt}  // the day is missing
};

TEST(ParseDate, AgreesWithThePlatform) {
  std::size_t settled = 0;
  std::size_t followed = 0;
  for (const Vector& vector : ReadVectors()) {
    const auto own = kSettled.find(vector.text);
    EXPECT_EQ(own != kSettled.end(), vector.odd) << vector.text;
    ++(vector.odd ? settled : followed);
    ExpectDate(vector.text, own != kSettled.end() ? own->second : vector.date);
  }
  EXPECT_EQ(settled, kSettled.size());
  EXPECT_EQ(followed, 55U);
}

struct DateCase {
  const char* what;
  const char* text;
  double days;
};

constexpr DateCase kDateCases[] = {
    {"month names in any case", "JAN 2, 2005", 38354},
    {"a name right behind the day", "2Jan2005", 38354},
    {"a name between strokes", "2/Jan/2005", 38354},
    {"year, name, day", "2005 Jan 2", 38354},
    {"name and year with a comma", "January, 2005", 38353},
    {"name and day, in the current year", "Jan 2", 46024},
    {"day and name, in the current year", "2 January", 46024},
    {"day above 12 and month, in the current year", "13/2", 46066},
    {"month and year", "1/2005", 38353},
    {"year and month", "2005-01", 38353},
    {"day of a leap year in a current year that is none", "Feb 28", 46081},
    {"a weekday of another day is not looked at", "Monday, January 2, 2005", 38354},
    {"a weekday before a date in numbers", "Sun 1/2/2005", 38354},
    {"time first", "10:30 1/2/2005", 38354.4375},
    {"a time behind a day without year", "Jan 2 10:30", 46024.4375},
    {"blanks around every sign", " 1 - 2 - 2005  10 : 30 ", 38354.4375},
    {"tabs", "1/2/2005\t10:30", 38354.4375},
    {"midnight in twelve hours", "12:00 AM", 0},
    {"noon in twelve hours", "12 PM", 0.5},
    {"the last year of two digits", "12/31/49", 54788},
    {"the first year of two digits", "1/1/50", 18264},
    {"the origin", "12/30/1899", 0},
    {"the day before it", "12/29/1899", -1},
    {"a time before the origin counts away from 0", "12/29/1899 06:00", -1.25},
};

TEST(ParseDate, TakesFurtherForms) {
  for (const DateCase& row : kDateCases) {
    SCOPED_TRACE(row.what);
    ExpectDate(row.text, row.days);
  }
}

struct NoDateCase {
  const char* what;
  const char* text;
};

constexpr NoDateCase kNoDateCases[] = {
    {"numbers with blanks between them", "1 2 2005"},
    {"two kinds of separators", "1/2-2005"},
    {"four numbers", "1/2/2005/3"},
    {"a separator at the end", "1/2/2005/"},
    {"a comma at the end", "Jan 2, 2005,"},
    {"a separator at the start", "/1/2/2005"},
    {"two dates", "1/2/2005 1/3/2005"},
    {"two times", "10:30 11:30"},
    {"a time with four parts", "10:30:15:20"},
    {"a colon at the end", "10:30:15:"},
    {"a colon without minutes", "10:"},
    {"minutes of three digits", "10:030"},
    {"thirteen in the afternoon", "13:00 PM"},
    {"half of day twice", "10:30 AM PM"},
    {"half of day alone", "AM"},
    {"a weekday alone", "Sunday"},
    {"two months", "Jan Feb 2005"},
    {"two years", "2005 Jan 2006"},
    {"a year too early", "1/1/099"},
    {"two years in numbers", "2005/1/2006"},
    {"a year in the middle", "1/2005/2"},
    {"a day that is 1 in eight bits", "Jan 257 2005"},
    {"a month that is 1 in eight bits", "257/2005"},
    {"a year with a letter", "Jan 2 2005y"},
    {"a misspelt month", "Janu 2, 2005"},
    {"the 29th of February in a year that has none", "Feb 29"},
    {"the 31st of April", "4/31/2005"},
    {"a letter of another alphabet", "J\xC3\xA4n 2, 2005"},
    {"a broken character", "1/2/2005\xFF"},
    {"a line break", "1/2/2005\r\n"},
    {"numbers without end", "99999999999999999999/1/1"},
};

TEST(ParseDate, RefusesWhatIsNoDate) {
  for (const NoDateCase& row : kNoDateCases) {
    SCOPED_TRACE(row.what);
    ExpectDate(row.text, std::nullopt);
  }
}

TEST(ParseDate, RefusesALongTextAtOnce) {
  std::string text;
  for (int part = 0; part < 1'000'000; ++part) text += "1/";
  EXPECT_FALSE(IsDate(text, kCurrentYear));
  EXPECT_FALSE(IsDate(std::string(2'000'000, ' '), kCurrentYear));
}

TEST(ParseDate, TakesTheCurrentYearAsGiven) {
  EXPECT_TRUE(IsDate("2/29", 2024));
  EXPECT_FALSE(IsDate("2/29", 2025));
}

}  // namespace
}  // namespace zent
