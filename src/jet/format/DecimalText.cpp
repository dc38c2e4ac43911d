#include <algorithm>
#include <charconv>

#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"

namespace zent::jet {
namespace {

using Magnitude = std::array<std::uint32_t, 4>;

constexpr std::size_t kMaxDigits = 28;
constexpr std::uint32_t kTen = 10;

bool IsZero(const Magnitude& magnitude) {
  return std::all_of(magnitude.begin(), magnitude.end(),
                     [](std::uint32_t word) { return word == 0; });
}

/// Divides by ten and returns the digit that is left.
std::uint32_t DropDigit(Magnitude& magnitude) {
  std::uint64_t rest = 0;
  for (std::uint32_t& word : magnitude) {
    const std::uint64_t part = (rest << 32U) | word;
    word = static_cast<std::uint32_t>(part / kTen);
    rest = part % kTen;
  }
  return static_cast<std::uint32_t>(rest);
}

/// Times ten plus `digit`; false when it no longer fits.
bool AddDigit(Magnitude& magnitude, std::uint32_t digit) {
  std::uint64_t carry = digit;
  for (auto word = magnitude.rbegin(); word != magnitude.rend(); ++word) {
    const std::uint64_t part = std::uint64_t{*word} * kTen + carry;
    *word = static_cast<std::uint32_t>(part);
    carry = part >> 32U;
  }
  return carry == 0;
}

void AddOne(Magnitude& magnitude) {
  for (auto word = magnitude.rbegin(); word != magnitude.rend(); ++word) {
    if (++*word != 0) return;
  }
}

/// The digits without leading zeros; none for zero.
std::string DigitsOf(Magnitude magnitude) {
  std::string digits;
  while (!IsZero(magnitude)) digits.push_back(static_cast<char>('0' + DropDigit(magnitude)));
  std::reverse(digits.begin(), digits.end());
  return digits;
}

}  // namespace

std::string DecimalText(const Decimal& value) {
  std::string text = DigitsOf(value.magnitude);
  if (text.size() <= value.scale) text.insert(0, value.scale + 1U - text.size(), '0');
  if (value.scale > 0) text.insert(text.size() - value.scale, 1, '.');
  if (value.negative && !IsZero(value.magnitude)) text.insert(0, 1, '-');
  return text;
}

Result<Decimal> ParseDecimal(std::string_view text) {
  Decimal value;
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
    value.negative = text[0] == '-';
    text.remove_prefix(1);
  }
  bool point = false;
  std::size_t digits = 0;
  for (const char c : text) {
    if (c == '.' && !point) {
      point = true;
      continue;
    }
    const bool fits = c >= '0' && c <= '9' && value.scale < kMaxDigits &&
                      AddDigit(value.magnitude, static_cast<std::uint32_t>(c - '0'));
    if (!fits || DigitsOf(value.magnitude).size() > kMaxDigits)
      return JetError(kDataTypeConversion);
    ++digits;
    if (point) ++value.scale;
  }
  if (digits == 0) return JetError(kDataTypeConversion);
  if (IsZero(value.magnitude)) value.negative = false;
  return value;
}

Result<Decimal> Rescale(const Decimal& value, std::uint8_t precision, std::uint8_t scale) {
  Decimal scaled = value;
  bool fits = true;
  for (; fits && scaled.scale < scale; ++scaled.scale) fits = AddDigit(scaled.magnitude, 0);
  std::uint32_t dropped = 0;
  for (; scaled.scale > scale; --scaled.scale) dropped = DropDigit(scaled.magnitude);
  if (dropped >= kTen / 2) AddOne(scaled.magnitude);
  if (!fits || DigitsOf(scaled.magnitude).size() > precision) return JetError(kDataTypeConversion);
  if (IsZero(scaled.magnitude)) scaled.negative = false;
  return scaled;
}

int Compare(const Decimal& a, const Decimal& b) {
  std::string a_digits = DigitsOf(a.magnitude);
  std::string b_digits = DigitsOf(b.magnitude);
  const bool a_negative = a.negative && !a_digits.empty();
  const bool b_negative = b.negative && !b_digits.empty();
  if (a_negative != b_negative) return a_negative ? -1 : 1;

  // Digits of the same number of decimals compare as texts where they are as many.
  if (!a_digits.empty() && a.scale < b.scale) a_digits.append(b.scale - a.scale, '0');
  if (!b_digits.empty() && b.scale < a.scale) b_digits.append(a.scale - b.scale, '0');
  int order = a_digits.compare(b_digits);
  if (a_digits.size() != b_digits.size()) order = a_digits.size() < b_digits.size() ? -1 : 1;
  const int sign = order < 0 ? -1 : order > 0 ? 1 : 0;
  return a_negative ? -sign : sign;
}

double ToDouble(const Decimal& value) {
  const std::string text = DecimalText(value);
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace zent::jet
