#include "lib/Dates.h"

#include <array>
#include <chrono>
#include <string>
#include <vector>

#include "base/Text.h"

namespace zent {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};
constexpr std::array<std::string_view, 7> kWeekdays = {"sunday",   "monday", "tuesday", "wednesday",
                                                       "thursday", "friday", "saturday"};

constexpr std::size_t kMostTokens = 16;  // more than any date has
constexpr std::size_t kMostDigits = 4;
constexpr double kSecondsOfDay = 24 * 60 * 60;

/// A number, a word in small letters or a single sign.
struct DateToken {
  std::string word;  ///< empty for a number and a sign
  int number = 0;
  std::size_t digits = 0;  ///< of the number; 0 for a word and a sign
  char sign = '\0';
};

struct Date {
  int year = 0;
  int month = 0;
  int day = 0;
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return c >= 'a' && c <= 'z'; }
bool IsBlankChar(char c) { return c == ' ' || c == '\t'; }

/// The end of the run of characters of one kind that begins at `at`.
std::size_t RunEnd(std::string_view text, std::size_t at, bool (*is_kind)(char)) {
  while (at < text.size() && is_kind(text[at])) ++at;
  return at;
}

/// Cuts `text`, in small letters, into tokens; nothing when it holds what no date holds.
std::optional<std::vector<DateToken>> Tokenize(std::string_view text) {
  constexpr std::string_view kSigns = "/-:,";
  std::vector<DateToken> tokens;
  for (std::size_t at = RunEnd(text, 0, IsBlankChar); at < text.size();
       at = RunEnd(text, at, IsBlankChar)) {
    if (tokens.size() == kMostTokens) return std::nullopt;
    DateToken token;
    const std::size_t start = at;
    if (IsDigit(text[at])) {
      at = RunEnd(text, at, IsDigit);
      token.digits = at - start;
      if (token.digits > kMostDigits) return std::nullopt;
      for (const char digit : text.substr(start, token.digits)) {
        token.number = token.number * 10 + (digit - '0');
      }
    } else if (IsLetter(text[at])) {
      at = RunEnd(text, at, IsLetter);
      token.word = text.substr(start, at - start);
    } else if (kSigns.find(text[at]) != std::string_view::npos) {
      token.sign = text[at++];
    } else {
      return std::nullopt;
    }
    tokens.push_back(std::move(token));
  }
  return tokens;
}

/// The position of a name, whole or by its first three letters, in its table, from 1; 0 for none.
template <std::size_t kCount>
int NumberOfName(const std::array<std::string_view, kCount>& names, std::string_view word) {
  constexpr std::size_t kShortLength = 3;
  for (std::size_t index = 0; index < kCount; ++index) {
    const bool is_it = word == names[index] || word == names[index].substr(0, kShortLength);
    if (is_it) return static_cast<int>(index) + 1;
  }
  return 0;
}

/// Reads the tokens of one text from left to right.
class DateReader {
 public:
  DateReader(std::vector<DateToken> tokens, int current_year)
      : tokens_(std::move(tokens)), current_year_(current_year) {}

  std::optional<double> Read();

 private:
  /// The token `ahead` places further on; an empty one behind the last.
  const DateToken& Peek(std::size_t ahead = 0) const {
    return at_ + ahead < tokens_.size() ? tokens_[at_ + ahead] : end_;
  }
  bool IsNumberAt(std::size_t ahead) const { return Peek(ahead).digits > 0; }
  bool IsMonthAt(std::size_t ahead) const { return NumberOfName(kMonths, Peek(ahead).word) > 0; }
  bool IsHalfOfDayAt(std::size_t ahead) const {
    return Peek(ahead).word == "am" || Peek(ahead).word == "pm";
  }
  bool IsTimeAt(std::size_t ahead) const {
    return IsNumberAt(ahead) && (Peek(ahead + 1).sign == ':' || IsHalfOfDayAt(ahead + 1));
  }
  bool IsNamedDate() const;

  void SkipWeekday();
  /// Seconds since midnight.
  std::optional<int> ReadTime();
  std::optional<Date> ReadDate();
  std::optional<Date> ReadNumericDate();
  std::optional<Date> ReadNamedDate();

  std::vector<DateToken> tokens_;
  int current_year_;
  std::size_t at_ = 0;
  DateToken end_;
};

bool IsYearOnly(const DateToken& token) { return token.digits > 2; }

/// The year of a number as written; 0 when no year is written so.
int YearOf(const DateToken& token) {
  constexpr int kFirstYear = 100;
  constexpr int kTurn = 50;  // 1950 to 2049: the present setting of the platform
  if (IsYearOnly(token)) return token.number >= kFirstYear ? token.number : 0;
  return token.number < kTurn ? 2000 + token.number : 1900 + token.number;
}

bool IsInCalendar(const Date& date) {
  // The calendar's types hold small numbers only and wrap others.
  const bool is_small = date.month > 0 && date.month <= 12 && date.day > 0 && date.day <= 31;
  return is_small && date.year > 0 &&
         std::chrono::year_month_day(std::chrono::year(date.year),
                                     std::chrono::month(static_cast<unsigned>(date.month)),
                                     std::chrono::day(static_cast<unsigned>(date.day)))
             .ok();
}

int DaysSinceOrigin(const Date& date) {
  using std::chrono::sys_days;
  constexpr sys_days kOrigin = std::chrono::year(1899) / std::chrono::December / 30;
  const sys_days day = std::chrono::year(date.year) /
                       std::chrono::month(static_cast<unsigned>(date.month)) /
                       std::chrono::day(static_cast<unsigned>(date.day));
  return static_cast<int>((day - kOrigin).count());
}

/// Month and day in the order of the locale, else the other way round.
Date MonthAndDay(int first, int second, int year) {
  const Date date{year, first, second};
  return IsInCalendar(date) ? date : Date{year, second, first};
}

std::optional<double> DateReader::Read() {
  std::optional<Date> date;
  std::optional<int> seconds;
  while (at_ < tokens_.size()) {
    if (IsTimeAt(0)) {
      if (seconds) return std::nullopt;
      seconds = ReadTime();
      if (!seconds) return std::nullopt;
    } else {
      if (date) return std::nullopt;
      date = ReadDate();
      if (!date || !IsInCalendar(*date)) return std::nullopt;
    }
  }
  if (!date && !seconds) return std::nullopt;
  const int days = date ? DaysSinceOrigin(*date) : 0;
  const double fraction = seconds.value_or(0) / kSecondsOfDay;
  return days < 0 ? days - fraction : days + fraction;
}

std::optional<int> DateReader::ReadTime() {
  std::array<int, 3> parts = {0, 0, 0};
  for (std::size_t part = 0; part < parts.size(); ++part) {
    if (part > 0) {
      if (Peek().sign != ':') break;
      ++at_;
    }
    if (!IsNumberAt(0) || Peek().digits > 2) return std::nullopt;
    parts[part] = tokens_[at_++].number;
  }
  if (IsHalfOfDayAt(0)) {
    const bool afternoon = tokens_[at_++].word == "pm";
    if (parts[0] > 12) return std::nullopt;
    parts[0] = parts[0] % 12 + (afternoon ? 12 : 0);
  }
  if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59) return std::nullopt;
  return (parts[0] * 60 + parts[1]) * 60 + parts[2];
}

void DateReader::SkipWeekday() {
  if (NumberOfName(kWeekdays, Peek().word) == 0) return;
  ++at_;
  if (Peek().sign == ',') ++at_;
}

bool DateReader::IsNamedDate() const {
  if (IsMonthAt(0)) return true;
  if (!IsNumberAt(0)) return false;
  const bool separated = Peek(1).sign == '-' || Peek(1).sign == '/' || Peek(1).sign == ',';
  return IsMonthAt(separated ? 2 : 1);
}

std::optional<Date> DateReader::ReadDate() {
  SkipWeekday();
  if (IsNamedDate()) return ReadNamedDate();
  return ReadNumericDate();
}

std::optional<Date> DateReader::ReadNumericDate() {
  const char separator = Peek(1).sign;
  const bool is_date = IsNumberAt(0) && (separator == '/' || separator == '-') && IsNumberAt(2);
  if (!is_date) return std::nullopt;
  const DateToken first = Peek(0);
  const DateToken second = Peek(2);
  at_ += 3;
  if (Peek().sign != separator) {
    if (IsYearOnly(second)) return Date{YearOf(second), first.number, 1};
    if (IsYearOnly(first)) return Date{YearOf(first), second.number, 1};
    return MonthAndDay(first.number, second.number, current_year_);
  }
  if (!IsNumberAt(1) || IsYearOnly(second)) return std::nullopt;
  const DateToken third = Peek(1);
  at_ += 2;
  if (!IsYearOnly(first)) return MonthAndDay(first.number, second.number, YearOf(third));
  return Date{YearOf(first), second.number, IsYearOnly(third) ? 0 : third.number};
}

std::optional<Date> DateReader::ReadNamedDate() {
  std::vector<DateToken> numbers;
  int month = 0;
  std::size_t numbers_before_month = 0;
  const auto is_part_at = [&](std::size_t ahead) {
    if (IsMonthAt(ahead)) return month == 0;
    return IsNumberAt(ahead) && !IsTimeAt(ahead) && numbers.size() < 2;
  };
  while (is_part_at(0)) {
    if (IsNumberAt(0)) {
      numbers.push_back(Peek());
    } else {
      month = NumberOfName(kMonths, Peek().word);
      numbers_before_month = numbers.size();
    }
    ++at_;
    const char sign = Peek().sign;
    if ((sign == '-' || sign == '/' || sign == ',') && is_part_at(1)) ++at_;
  }
  if (month == 0 || numbers.empty() || numbers_before_month == 2) return std::nullopt;
  if (numbers.size() == 1) {
    if (IsYearOnly(numbers[0])) return Date{YearOf(numbers[0]), month, 1};
    return Date{current_year_, month, numbers[0].number};
  }
  const bool year_first = numbers_before_month == 1 && IsYearOnly(numbers[0]);
  const DateToken& year = year_first ? numbers[0] : numbers[1];
  const DateToken& day = year_first ? numbers[1] : numbers[0];
  return Date{YearOf(year), month, IsYearOnly(day) ? 0 : day.number};
}

}  // namespace

std::optional<double> ParseDate(std::string_view text, int current_year) {
  std::optional<std::vector<DateToken>> tokens = Tokenize(ToLower(text));
  if (!tokens) return std::nullopt;
  return DateReader(std::move(*tokens), current_year).Read();
}

bool IsDate(std::string_view text, int current_year) {
  return ParseDate(text, current_year).has_value();
}

}  // namespace zent
