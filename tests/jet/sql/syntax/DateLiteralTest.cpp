#include <gtest/gtest.h>

#include "jet/format/ValueText.h"
#include "jet/sql/syntax/DateLiteral.h"

namespace zent::jet {
namespace {

struct DateCase {
  const char* what;
  const char* text;
  const char* date;  ///< as DateText; empty for a text that is no date
};

constexpr DateCase kDates[] = {
    {"month before day", "1/31/2005", "2005-01-31T00:00:00"},
    {"month before day where both would do", "2/3/2005", "2005-02-03T00:00:00"},
    {"the other order where only it is a date", "31/1/2005", "2005-01-31T00:00:00"},
    {"hyphens", "1-31-2005", "2005-01-31T00:00:00"},
    {"year first", "2005-01-31", "2005-01-31T00:00:00"},
    {"year first with slashes", "2005/1/31", "2005-01-31T00:00:00"},
    {"two digits up to 29", "1/2/29", "2029-01-02T00:00:00"},
    {"two digits from 30", "1/2/30", "1930-01-02T00:00:00"},
    {"name of the month in the middle", "31-Jan-2005", "2005-01-31T00:00:00"},
    {"name of the month first", "January 31, 2005", "2005-01-31T00:00:00"},
    {"date and time", "1/31/2005 18:30:15", "2005-01-31T18:30:15"},
    {"afternoon", "1/31/2005 6:30 PM", "2005-01-31T18:30:00"},
    {"midnight", "1/31/2005 12:05:00 AM", "2005-01-31T00:05:00"},
    {"noon", "1/31/2005 12:05 pm", "2005-01-31T12:05:00"},
    {"mark without blank", "1/31/2005 6PM", "2005-01-31T18:00:00"},
    {"time alone", "18:30", "1899-12-30T18:30:00"},
    {"hour alone", "6 pm", "1899-12-30T18:00:00"},
    {"blanks around", "  1/2/2005  ", "2005-01-02T00:00:00"},
    {"leap day", "2/29/2004", "2004-02-29T00:00:00"},
    {"before day zero", "1/1/1850 6:00", "1850-01-01T06:00:00"},
    {"nothing", "", ""},
    {"blanks", "  ", ""},
    {"no leap year", "2/29/2005", ""},
    {"month 13", "13/13/2005", ""},
    {"day 0", "1/0/2005", ""},
    {"year below 100", "0001-01-01", ""},
    {"two numbers", "1/2", ""},
    {"hour alone without mark", "18", ""},
    {"hour 24", "24:00", ""},
    {"hour 13 in the afternoon", "13:00 PM", ""},
    {"hour 0 in the morning", "0:00 AM", ""},
    {"minute 60", "1:60", ""},
    {"no month", "31-Foo-2005", ""},
    {"month of two letters", "31-Ja-2005", ""},
    {"rest behind", "1/2/2005 18:30 x", ""},
    {"letters", "abc", ""},
    {"many digits", "1/2/20055", ""},
    {"words alone", "jan jan jan", ""},
    {"marks alone", "//", ""},
    {"point", "1.2.2005", ""},
};

TEST(ParseDateText, ReadsDatesAndTimes) {
  for (const DateCase& row : kDates) {
    SCOPED_TRACE(row.what);
    const std::optional<Date> date = ParseDateText(row.text);
    EXPECT_EQ(date ? DateText(*date) : "", row.date);
  }
}

TEST(PlainDateText, IsReadAsTheSameDate) {
  for (const DateCase& row : kDates) {
    SCOPED_TRACE(row.what);
    const std::optional<Date> date = ParseDateText(row.text);
    if (!date) continue;
    EXPECT_EQ(ParseDateText(PlainDateText(*date)), date);
  }
}

TEST(PlainDateText, LeavesOutWhatIsZero) {
  EXPECT_EQ(PlainDateText(Date{0}), "00:00:00");
  EXPECT_EQ(PlainDateText(Date{0.5}), "12:00:00");
  EXPECT_EQ(PlainDateText(Date{1}), "1899-12-31");
  EXPECT_EQ(PlainDateText(Date{38383.25}), "2005-01-31 06:00:00");
  EXPECT_EQ(PlainDateText(Date{1e9}), "");
}

}  // namespace
}  // namespace zent::jet
