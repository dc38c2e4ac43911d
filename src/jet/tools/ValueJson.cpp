#include "jet/tools/ValueJson.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "base/Utf.h"
#include "jet/format/ValueText.h"
#include "jet/tools/Sha256.h"

namespace zent::jet {
namespace {

constexpr std::size_t kGuidSize = 16;

std::string HexOf(const std::string& bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  text.reserve(2 * bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<std::uint8_t>(c);
    text.push_back(kDigits[byte >> 4U]);
    text.push_back(kDigits[byte & 15U]);
  }
  return text;
}

/// Properties keep GUIDs as bytes, in the order of the file: the first three parts turned round.
Value GuidOfBytes(const std::string& bytes) {
  Guid guid;
  std::copy_n(reinterpret_cast<const std::uint8_t*>(bytes.data()), kGuidSize, guid.bytes.begin());
  std::reverse(guid.bytes.begin(), guid.bytes.begin() + 4);
  std::reverse(guid.bytes.begin() + 4, guid.bytes.begin() + 6);
  std::reverse(guid.bytes.begin() + 6, guid.bytes.begin() + 8);
  return guid;
}

}  // namespace

void ValueJson::Add(const Value& value) {
  std::visit(
      [&](const auto& one) {
        using T = std::decay_t<decltype(one)>;
        if constexpr (std::is_same_v<T, Null>) {
          json_.AddNull();
        } else if constexpr (std::is_same_v<T, Currency>) {
          json_.Add(CurrencyText(one));
        } else if constexpr (std::is_same_v<T, Date>) {
          AddDate(one);
        } else if constexpr (std::is_same_v<T, Text>) {
          AddText(one);
        } else if constexpr (std::is_same_v<T, Binary>) {
          AddBytes(one.bytes);
        } else if constexpr (std::is_same_v<T, Guid>) {
          json_.Add(GuidText(one));
        } else if constexpr (std::is_same_v<T, Decimal>) {
          json_.Add(DecimalText(one));
        } else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>) {
          json_.Add(std::int64_t{one});
        } else {
          json_.Add(one);
        }
      },
      value);
}

void ValueJson::AddDate(Date date) {
  json_.BeginObject();
  json_.Member("iso", DateText(date));
  json_.Member("bits", fmt::format("{:016x}", std::bit_cast<std::uint64_t>(date.days)));
  json_.EndObject();
}

void ValueJson::AddText(const std::string& text) {
  if (whole_ || text.size() <= kLongest) return json_.Add(text);
  const std::u16string wide = ToUtf16(text);
  if (wide.size() <= kLongest) return json_.Add(text);
  std::string bytes;
  for (const char16_t unit : wide) {
    bytes.push_back(static_cast<char>(unit & 0xFFU));
    bytes.push_back(static_cast<char>(unit >> 8U));
  }
  json_.BeginObject();
  json_.Member("sha256", Sha256Of(AsBytes(bytes)));
  json_.Member("chars", static_cast<std::int64_t>(wide.size()));
  json_.EndObject();
}

void ValueJson::AddBytes(const std::string& bytes) {
  if (whole_ || bytes.size() <= kLongest) return json_.Add(HexOf(bytes));
  json_.BeginObject();
  json_.Member("sha256", Sha256Of(AsBytes(bytes)));
  json_.Member("bytes", static_cast<std::int64_t>(bytes.size()));
  json_.EndObject();
}

void ValueJson::AddProperties(JetVersion version, const PropertySet* set) {
  json_.BeginObject();
  if (set != nullptr) {
    for (const Property& property : set->properties) {
      json_.Key(property.name);
      json_.BeginObject();
      json_.Member("type", static_cast<std::int64_t>(property.type));
      json_.Member("ddl", property.IsDdl());
      json_.Key("value");
      const bool guid = property.type == ColumnType::Binary && property.data.size() == kGuidSize;
      Add(guid ? GuidOfBytes(property.data) : PropertyValue(version, property));
      json_.EndObject();
    }
  }
  json_.EndObject();
}

}  // namespace zent::jet
