#include "jet/sql/syntax/DateLiteral.h"

#include <fmt/format.h>

#include <array>
#include <cctype>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

constexpr int kMaxDigits = 4;
constexpr int kFirstYearOf1900 = 30;

/// A number, a word in small letters, or one character between them.
struct Piece {
  int number = -1;
  std::size_t digits = 0;
  std::string word;
  char mark = '\0';
};

bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
bool IsLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

std::optional<std::vector<Piece>> SplitPieces(std::string_view text) {
  std::vector<Piece> pieces;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t start = at;
    Piece piece;
    if (IsDigit(text[at])) {
      piece.number = 0;
      while (at < text.size() && IsDigit(text[at])) {
        if (at - start == kMaxDigits) return std::nullopt;
        piece.number = piece.number * 10 + (text[at++] - '0');
      }
      piece.digits = at - start;
    } else if (IsLetter(text[at])) {
      while (at < text.size() && IsLetter(text[at])) ++at;
      piece.word = ToLower(text.substr(start, at - start));
    } else {
      piece.mark = text[at++];
      if (piece.mark == ' ' || piece.mark == ',') continue;
    }
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

/// 1 to 12 for an English month or its first three letters or more, 0 for anything else.
int MonthOf(std::string_view word) {
  constexpr std::array<std::string_view, 12> kMonths = {
      "january", "february", "march",     "april",   "may",      "june",
      "july",    "august",   "september", "october", "november", "december"};
  if (word.size() < 3) return 0;
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (kMonths[i].substr(0, word.size()) == word) return static_cast<int>(i) + 1;
  }
  return 0;
}

/// Reads the pieces from the first to the last.
class DateReader {
 public:
  explicit DateReader(std::vector<Piece> pieces) : pieces_(std::move(pieces)) {}

  std::optional<Date> Read() {
    if (pieces_.empty()) return std::nullopt;
    if (!IsMark(1, ':') && !IsHalfOfDay(1)) {
      if (!ReadDay()) return std::nullopt;
    }
    if (at_ < pieces_.size() && !ReadTime()) return std::nullopt;
    if (at_ != pieces_.size()) return std::nullopt;
    return JoinDate(parts_);
  }

 private:
  bool IsMark(std::size_t at, char mark) const {
    return at < pieces_.size() && pieces_[at].mark == mark;
  }
  bool IsHalfOfDay(std::size_t at) const {
    return at < pieces_.size() && (pieces_[at].word == "am" || pieces_[at].word == "pm");
  }

  bool ReadDay() {
    std::array<Piece, 3> fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (i > 0 && (IsMark(at_, '/') || IsMark(at_, '-'))) ++at_;
      if (at_ == pieces_.size() || pieces_[at_].mark != '\0') return false;
      fields[i] = pieces_[at_++];
    }
    return SetDay(fields);
  }

  bool SetDay(const std::array<Piece, 3>& fields) {
    const auto& [first, second, third] = fields;
    if (first.number < 0) {  // Jan 31, 2005
      parts_.month = MonthOf(first.word);
      parts_.day = second.number;
      return SetYear(third);
    }
    if (second.number < 0) {  // 31 Jan 2005
      parts_.month = MonthOf(second.word);
      parts_.day = first.number;
      return SetYear(third);
    }
    const bool year_first = first.digits > 2;
    parts_.month = year_first ? second.number : first.number;
    parts_.day = year_first ? third.number : second.number;
    if (parts_.month > 12 && parts_.day <= 12) std::swap(parts_.month, parts_.day);
    return SetYear(year_first ? first : third);
  }

  bool SetYear(const Piece& piece) {
    if (piece.number < 0) return false;
    parts_.year = piece.number;
    if (piece.digits <= 2) parts_.year += piece.number < kFirstYearOf1900 ? 2000 : 1900;
    return true;
  }

  bool ReadTime() {
    if (!ReadTimePart(parts_.hour)) return false;
    bool has_minutes = false;
    if (IsMark(at_, ':')) {
      ++at_;
      has_minutes = true;
      if (!ReadTimePart(parts_.minute)) return false;
      if (IsMark(at_, ':')) {
        ++at_;
        if (!ReadTimePart(parts_.second)) return false;
      }
    }
    if (!IsHalfOfDay(at_)) return has_minutes;
    if (parts_.hour < 1 || parts_.hour > 12) return false;
    parts_.hour = parts_.hour % 12 + (pieces_[at_++].word == "pm" ? 12 : 0);
    return true;
  }

  bool ReadTimePart(int& part) {
    if (at_ == pieces_.size() || pieces_[at_].number < 0 || pieces_[at_].digits > 2) return false;
    part = pieces_[at_++].number;
    return true;
  }

  std::vector<Piece> pieces_;
  std::size_t at_ = 0;
  DateParts parts_;
};

}  // namespace

std::optional<Date> ParseDateText(std::string_view text) {
  std::optional<std::vector<Piece>> pieces = SplitPieces(text);
  if (!pieces) return std::nullopt;
  return DateReader(*std::move(pieces)).Read();
}

std::string PlainDateText(Date date) {
  const std::optional<DateParts> parts = SplitDate(date);
  if (!parts || parts->year < 100) return {};
  const DateParts day_zero;
  std::string time = fmt::format("{:02}:{:02}:{:02}", parts->hour, parts->minute, parts->second);
  if (parts->year == day_zero.year && parts->month == day_zero.month &&
      parts->day == day_zero.day) {
    return time;
  }
  std::string text = fmt::format("{:04}-{:02}-{:02}", parts->year, parts->month, parts->day);
  if (time != "00:00:00") text += " " + time;
  return text;
}

}  // namespace zent::jet
