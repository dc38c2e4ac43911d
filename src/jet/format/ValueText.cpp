#include "jet/format/ValueText.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <limits>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

constexpr std::uint64_t kCurrencyUnit = 10000;
constexpr int kCurrencyDecimals = 4;

constexpr std::chrono::sys_days kDayZero =
    std::chrono::year{1899} / std::chrono::December / std::chrono::day{30};
constexpr double kFirstDay = -694000;  // within the year -1
constexpr double kLastDay = 2958466;   // behind the year 9999
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
constexpr std::int64_t kMillisecondsPerDay = 86400000;

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

std::string CurrencyText(Currency value) {
  const bool negative = value.ten_thousandths < 0;
  const auto bits = static_cast<std::uint64_t>(value.ten_thousandths);
  const std::uint64_t magnitude = negative ? 0 - bits : bits;
  return fmt::format("{}{}.{:04}", negative ? "-" : "", magnitude / kCurrencyUnit,
                     magnitude % kCurrencyUnit);
}

Result<Currency> ParseCurrency(std::string_view text) {
  const Result<Decimal> parsed = ParseDecimal(text);
  if (!parsed.ok() || parsed.value().scale > kCurrencyDecimals) {
    return JetError(kDataTypeConversion);
  }
  const Result<Decimal> scaled = Rescale(parsed.value(), 28, kCurrencyDecimals);
  if (!scaled.ok()) return JetError(kDataTypeConversion);
  const Decimal& decimal = scaled.value();
  const std::uint64_t magnitude =
      (std::uint64_t{decimal.magnitude[2]} << 32U) | decimal.magnitude[3];
  const std::uint64_t limit =
      std::uint64_t{std::numeric_limits<std::int64_t>::max()} + (decimal.negative ? 1U : 0U);
  if (decimal.magnitude[0] != 0 || decimal.magnitude[1] != 0 || magnitude > limit) {
    return JetError(kDataTypeConversion);
  }
  return Currency{static_cast<std::int64_t>(decimal.negative ? 0 - magnitude : magnitude)};
}

std::string GuidText(const Guid& guid) {
  std::string text = "{";
  for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text.push_back('-');
    text += fmt::format("{:02X}", guid.bytes[i]);
  }
  return text + "}";
}

Result<Guid> ParseGuid(std::string_view text) {
  if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
  if (text.size() != 36) return JetError(kDataTypeConversion);
  Guid guid;
  std::size_t at = 0;
  for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) {
      if (text[at++] != '-') return JetError(kDataTypeConversion);
    }
    const int high = HexDigit(text[at++]);
    const int low = HexDigit(text[at++]);
    if (high < 0 || low < 0) return JetError(kDataTypeConversion);
    guid.bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
  }
  return guid;
}

std::optional<DateParts> SplitDate(Date date) {
  if (!(date.days > kFirstDay && date.days < kLastDay)) return std::nullopt;
  const double whole = std::trunc(date.days);
  auto day = static_cast<std::int64_t>(whole);
  std::int64_t time = std::llround(std::abs(date.days - whole) * kMillisecondsPerDay);
  if (time == kMillisecondsPerDay) {
    time = 0;
    ++day;
  }
  const std::chrono::year_month_day calendar(kDayZero + std::chrono::days(day));
  const int year = static_cast<int>(calendar.year());
  if (year < 0 || year > kLastYear) return std::nullopt;
  return DateParts{.year = year,
                   .month = static_cast<int>(static_cast<unsigned>(calendar.month())),
                   .day = static_cast<int>(static_cast<unsigned>(calendar.day())),
                   .hour = static_cast<int>(time / 3600000),
                   .minute = static_cast<int>(time / 60000 % 60),
                   .second = static_cast<int>(time / 1000 % 60),
                   .millisecond = static_cast<int>(time % 1000)};
}

std::optional<Date> JoinDate(const DateParts& parts) {
  const bool is_time = parts.hour >= 0 && parts.hour < 24 && parts.minute >= 0 &&
                       parts.minute < 60 && parts.second >= 0 && parts.second < 60 &&
                       parts.millisecond >= 0 && parts.millisecond < 1000;
  if (!is_time || parts.year < kFirstYear || parts.year > kLastYear || parts.month < 1 ||
      parts.month > 12 || parts.day < 1 || parts.day > 31) {
    return std::nullopt;
  }
  const std::chrono::year_month_day calendar =
      std::chrono::year{parts.year} / parts.month / parts.day;
  if (!calendar.ok()) return std::nullopt;
  const auto day = static_cast<double>((std::chrono::sys_days(calendar) - kDayZero).count());
  const std::int64_t time =
      ((parts.hour * 60LL + parts.minute) * 60 + parts.second) * 1000 + parts.millisecond;
  const double fraction = static_cast<double>(time) / static_cast<double>(kMillisecondsPerDay);
  return Date{day < 0 ? day - fraction : day + fraction};
}

std::string DateText(Date date) {
  const std::optional<DateParts> parts = SplitDate(date);
  if (!parts) return {};
  std::string text = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", parts->year, parts->month,
                                 parts->day, parts->hour, parts->minute, parts->second);
  if (parts->millisecond != 0) text += fmt::format(".{:03}", parts->millisecond);
  return text;
}

}  // namespace zent::jet
