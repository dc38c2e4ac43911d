#include "jet/random/RandomValues.h"

#include <iterator>

#include "jet/format/ValueText.h"

namespace zent::jet::testing {
namespace {

constexpr ColumnType kAllTypes[] = {ColumnType::Bool,   ColumnType::Byte,     ColumnType::Int,
                                    ColumnType::Long,   ColumnType::Currency, ColumnType::Single,
                                    ColumnType::Double, ColumnType::Date,     ColumnType::Binary,
                                    ColumnType::Text,   ColumnType::Ole,      ColumnType::Memo,
                                    ColumnType::Guid,   ColumnType::Numeric};
constexpr ColumnType kPortableTypes[] = {ColumnType::Bool,   ColumnType::Byte, ColumnType::Int,
                                         ColumnType::Long,   ColumnType::Text, ColumnType::Text,
                                         ColumnType::Double, ColumnType::Date, ColumnType::Memo};
constexpr std::size_t kKeys = 300;  ///< different values of most columns
constexpr std::uint16_t kTextSize = 40;
constexpr std::uint16_t kBinarySize = 20;

}  // namespace

ColumnType RandomValues::Type() {
  return palette_ == Palette::All ? kAllTypes[Pick(std::size(kAllTypes))]
                                  : kPortableTypes[Pick(std::size(kPortableTypes))];
}

std::string RandomValues::Letters(std::size_t least, std::size_t most) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::string text;
  for (std::size_t left = least + Pick(most - least + 1); left > 0; --left) {
    text += kLetters[Pick(kLetters.size())];
  }
  return text;
}

std::string RandomValues::LongBytes() {
  constexpr std::size_t kMost[] = {1, 30, 900, 3000, 9000};
  const std::size_t most = kMost[Pick(std::size(kMost))];
  return Letters(most == 1 && palette_ == Palette::All ? 0 : 1, most);
}

Value RandomValues::Filled(const ModelColumn& column) {
  const auto key = static_cast<std::int32_t>(Pick(kKeys));
  switch (column.type) {
    case ColumnType::Byte:
      return static_cast<std::uint8_t>(Pick(256));
    case ColumnType::Int:
      return static_cast<std::int16_t>(key - 100);
    case ColumnType::Long:
      return key * 1'000'003 - 7;
    case ColumnType::Currency:
      return Currency{std::int64_t{key} * 10'000'000'019 - 12345};
    case ColumnType::Single:
      return static_cast<float>(key) * 0.5F - 20;
    case ColumnType::Double:
      return key * 0.25 - 10;
    case ColumnType::Date:
      return Date{30000.5 + key};
    case ColumnType::Binary:
      return Binary{Letters(1, kBinarySize)};
    case ColumnType::Ole:
      return Binary{LongBytes()};
    case ColumnType::Memo:
      return Text(LongBytes());
    case ColumnType::Guid:
      return Guid{{static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(key / 256), 3, 4}};
    case ColumnType::Numeric:
      return ParseDecimal(std::to_string(key - 50) + ".25").value();
    default:
      return Chance(3) ? Text(Letters(20, kTextSize)) : Text("key" + std::to_string(key));
  }
}

Value RandomValues::ValueFor(const ModelColumn& column) {
  if (column.type == ColumnType::Bool) return Chance(2);
  if (Chance(8)) return Null();
  return Filled(column);
}

NewColumn NewColumnOf(const ModelColumn& column) {
  NewColumn made{.name = column.name, .type = column.type};
  made.size = column.type == ColumnType::Binary ? kBinarySize : kTextSize;
  made.precision = 10;
  made.scale = 2;
  made.auto_number = column.auto_number;
  made.required = column.required;
  return made;
}

}  // namespace zent::jet::testing
