#pragma once

#include <array>
#include <bit>
#include <compare>
#include <cstdint>
#include <string>
#include <variant>

/// What a field of a row holds.
namespace zent::jet {

/// Column types, with the numbers of the file. A file may hold others: their fields are bytes.
enum class ColumnType : std::uint8_t {
  Bool = 1,
  Byte = 2,
  Int = 3,
  Long = 4,
  Currency = 5,
  Single = 6,
  Double = 7,
  Date = 8,
  Binary = 9,
  Text = 10,
  Ole = 11,
  Memo = 12,
  Guid = 15,
  Numeric = 16,
  Internal = 17,  ///< a fixed block that Access keeps for itself
};

struct Null {
  bool operator==(const Null&) const = default;
};

struct Currency {
  std::int64_t ten_thousandths = 0;
  auto operator<=>(const Currency&) const = default;
};

/// Days since 1899-12-30; the fraction is the time of day, also before that day: -1.25 is six in
/// the morning of 1899-12-29. Equal when all bits are: a copy keeps them.
struct Date {
  double days = 0;
  bool operator==(const Date& other) const {
    return std::bit_cast<std::uint64_t>(days) == std::bit_cast<std::uint64_t>(other.days);
  }
};

/// UTF-8; a lone surrogate of the file keeps its three-byte form.
using Text = std::string;

struct Binary {
  std::string bytes;
  bool operator==(const Binary&) const = default;
};

/// The sixteen bytes in the order in which they are written.
struct Guid {
  std::array<std::uint8_t, 16> bytes = {};
  auto operator<=>(const Guid&) const = default;
};

/// magnitude / 10^scale; the magnitude has four words, the most significant first.
struct Decimal {
  bool negative = false;
  std::uint8_t scale = 0;
  std::array<std::uint32_t, 4> magnitude = {};
  bool operator==(const Decimal&) const = default;  ///< 1.5 and 1.50 differ
};

using Value = std::variant<Null, bool, std::uint8_t, std::int16_t, std::int32_t, Currency, float,
                           double, Date, Text, Binary, Guid, Decimal>;

inline bool IsNull(const Value& value) { return std::holds_alternative<Null>(value); }

/// The type whose columns hold such values: Text for memo as well, Binary for OLE. Not for null.
ColumnType TypeOf(const Value& value);

/// True for memo and OLE: the field holds a descriptor, the value may lie on other pages.
constexpr bool IsLong(ColumnType type) {
  return type == ColumnType::Memo || type == ColumnType::Ole;
}
constexpr bool IsText(ColumnType type) {
  return type == ColumnType::Text || type == ColumnType::Memo;
}

/// Bytes of a value whose size the type fixes, 0 for the others (and for bool, which has none).
std::size_t FixedSizeOf(ColumnType type);

/// Name of a type: "text", "memo", "bool" ...; "unknown" for a number without one.
const char* NameOf(ColumnType type);

}  // namespace zent::jet
