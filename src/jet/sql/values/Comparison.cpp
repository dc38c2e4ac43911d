#include "jet/sql/values/Comparison.h"

#include <string>

#include "base/Utf.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/format/ValueText.h"
#include "jet/sql/values/Numbers.h"

namespace zent::jet {
namespace {

constexpr std::size_t kKeyUnits = 255;  // UTF-16 units that take part in a key

template <typename Number>
int Order(Number a, Number b) {
  return a < b ? -1 : a > b ? 1 : 0;
}

int CompareKeys(std::string_view a, std::string_view b) {
  std::string a_key;
  std::string b_key;
  AppendTextKey4(a, true, a_key);
  AppendTextKey4(b, true, b_key);
  return Order(a_key.compare(b_key), 0);
}

int CompareNumbers(const Value& a, const Value& b) {
  if (IsWhole(a) && IsWhole(b)) return Order(WholeOf(a), WholeOf(b));
  const std::optional<Decimal> exact_a = DecimalOf(a);
  const std::optional<Decimal> exact_b = DecimalOf(b);
  if (exact_a && exact_b) return Compare(*exact_a, *exact_b);
  if (exact_a) return CompareToDouble(a, DoubleOf(b));
  if (exact_b) return -CompareToDouble(b, DoubleOf(a));
  return Order(DoubleOf(a), DoubleOf(b));
}

/// A GUID, or a text that is one.
std::optional<Guid> GuidOf(const Value& value) {
  if (const auto* guid = std::get_if<Guid>(&value)) return *guid;
  const auto* const text = std::get_if<Text>(&value);
  if (text == nullptr) return std::nullopt;
  const Result<Guid> parsed = ParseGuid(*text);
  return parsed.ok() ? std::optional<Guid>(parsed.value()) : std::nullopt;
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) {
  if (a.size() <= kKeyUnits && b.size() <= kKeyUnits) return CompareKeys(a, b);
  const std::u16string a_units = ToUtf16(a);
  const std::u16string b_units = ToUtf16(b);
  for (std::size_t at = 0; at < a_units.size() || at < b_units.size(); at += kKeyUnits) {
    const auto piece = [&](const std::u16string& units) {
      return at < units.size() ? FromUtf16(std::u16string_view(units).substr(at, kKeyUnits))
                               : std::string();
    };
    const int order = CompareKeys(piece(a_units), piece(b_units));
    if (order != 0) return order;
  }
  return 0;
}

Result<std::optional<int>> CompareValues(const Value& a, const Value& b) {
  if (IsNull(a) || IsNull(b)) return std::optional<int>();
  if (IsNumber(a) && IsNumber(b)) return std::optional<int>(CompareNumbers(a, b));
  const auto* const a_text = std::get_if<Text>(&a);
  const auto* const b_text = std::get_if<Text>(&b);
  if (a_text != nullptr && b_text != nullptr) {
    return std::optional<int>(CompareText(*a_text, *b_text));
  }
  const auto* const a_bytes = std::get_if<Binary>(&a);
  const auto* const b_bytes = std::get_if<Binary>(&b);
  if (a_bytes != nullptr && b_bytes != nullptr) {
    return std::optional<int>(Order(a_bytes->bytes.compare(b_bytes->bytes), 0));
  }
  const std::optional<Guid> a_guid = GuidOf(a);
  const std::optional<Guid> b_guid = GuidOf(b);
  if (!a_guid || !b_guid) return JetError(kCriteriaTypeMismatch);
  return std::optional<int>(Order(*a_guid, *b_guid));
}

}  // namespace zent::jet
