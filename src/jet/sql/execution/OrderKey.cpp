#include "jet/sql/execution/OrderKey.h"

#include <array>
#include <bit>
#include <optional>

#include "base/Utf.h"
#include "jet/format/TextKey.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
constexpr std::size_t kKeyUnits = 255;  // of a text, what one key takes
constexpr int kMaxScale = 28;
constexpr std::size_t kWords = 8;

void AppendBig(std::uint64_t value, unsigned size, std::string& key) {
  while (size-- > 0) key.push_back(static_cast<char>(value >> (8 * size)));
}

void AppendDouble(double number, std::string& key) {
  if (number == 0) number = 0;  // -0 is 0
  const auto bits = std::bit_cast<std::uint64_t>(number);
  AppendBig((bits & kSign) != 0 ? ~bits : bits | kSign, 8, key);
}

/// What a double loses of a large decimal: all its digits, as a whole number of 10^-28.
void AppendDigits(const Decimal& decimal, std::string& key) {
  std::array<std::uint32_t, kWords> words = {};
  for (std::size_t i = 0; i < decimal.magnitude.size(); ++i) {
    words[kWords - decimal.magnitude.size() + i] = decimal.magnitude[i];
  }
  for (int scale = decimal.scale; scale < kMaxScale; ++scale) {
    std::uint64_t carry = 0;
    for (std::size_t i = kWords; i-- > 0;) {
      carry += std::uint64_t{words[i]} * 10;
      words[i] = static_cast<std::uint32_t>(carry);
      carry >>= 32U;
    }
  }
  for (const std::uint32_t word : words) AppendBig(decimal.negative ? ~word : word, 4, key);
}

void AppendNumber(const Value& value, std::string& key) {
  const double nearest = DoubleOf(value);
  AppendDouble(nearest, key);
  const bool decimal =
      std::holds_alternative<Currency>(value) || std::holds_alternative<Decimal>(value);
  const int order = decimal ? CompareToDouble(value, nearest) : 0;
  key.push_back(static_cast<char>(1 + order));
  const std::optional<Decimal> exact = order == 0 ? std::nullopt : DecimalOf(value);
  if (exact) AppendDigits(*exact, key);
}

void AppendText(std::string_view text, std::string& key) {
  if (text.size() <= kKeyUnits) {
    AppendTextKey4(text, true, key);
    return;
  }
  const std::u16string units = ToUtf16(text);
  for (std::size_t at = 0; at < units.size(); at += kKeyUnits) {
    AppendTextKey4(FromUtf16(std::u16string_view(units).substr(at, kKeyUnits)), true, key);
  }
}

/// A zero byte becomes two, so that the end, 00 01, is none of the bytes.
void AppendBytes(std::string_view bytes, std::string& key) {
  for (const char byte : bytes) {
    key.push_back(byte);
    if (byte == '\0') key.push_back('\xFF');
  }
  key.append({'\0', '\x01'});
}

}  // namespace

KeyClass KeyClassOf(const Value& value) {
  if (IsNull(value)) return KeyClass::None;
  if (IsNumber(value)) return KeyClass::Numbers;
  if (std::holds_alternative<Text>(value)) return KeyClass::Texts;
  return std::holds_alternative<Guid>(value) ? KeyClass::Guids : KeyClass::Bytes;
}

std::size_t KeptBytes(const std::vector<Value>& row) {
  std::size_t kept = 0;
  for (const Value& value : row) {
    const auto* const text = std::get_if<Text>(&value);
    const auto* const bytes = std::get_if<Binary>(&value);
    kept += sizeof(Value) + (text == nullptr ? 0 : text->size()) +
            (bytes == nullptr ? 0 : bytes->bytes.size());
  }
  return kept;
}

void AppendOrderKey(const Value& value, bool descending, std::string& key) {
  const std::size_t begin = key.size();
  const KeyClass key_class = KeyClassOf(value);
  key.push_back(static_cast<char>(key_class));
  switch (key_class) {
    case KeyClass::None:
      break;
    case KeyClass::Numbers:
      AppendNumber(value, key);
      break;
    case KeyClass::Texts:
      AppendText(std::get<Text>(value), key);
      key.push_back('\0');
      break;
    case KeyClass::Guids:
      for (const std::uint8_t byte : std::get<Guid>(value).bytes) {
        key.push_back(static_cast<char>(byte));
      }
      break;
    case KeyClass::Bytes:
      AppendBytes(std::get<Binary>(value).bytes, key);
      break;
  }
  if (!descending) return;
  for (std::size_t i = begin; i < key.size(); ++i) key[i] = static_cast<char>(~key[i]);
}

}  // namespace zent::jet
