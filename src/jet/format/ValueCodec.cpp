#include "jet/format/ValueCodec.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>

#include "jet/format/JetErrors.h"
#include "jet/format/TextCodec.h"

namespace zent::jet {
namespace {

// A GUID of the file: one number of four bytes, two of two, least byte first, and eight bytes. The
// place of each byte of the written form:
constexpr std::array<std::size_t, 16> kGuidOrder = {3, 2, 1,  0,  5,  4,  7,  6,
                                                    8, 9, 10, 11, 12, 13, 14, 15};

// A numeric: sign, then four words, the highest first, each least byte first.
constexpr std::uint8_t kNegative = 0x80;
constexpr std::size_t kNumericSize = 17;

constexpr std::size_t kUnitSize = 2;

Guid DecodeGuid(ByteView bytes) {
  Guid guid;
  for (std::size_t i = 0; i < kGuidOrder.size(); ++i) guid.bytes[i] = bytes[kGuidOrder[i]];
  return guid;
}

Decimal DecodeNumeric(ByteView bytes, std::uint8_t scale) {
  Decimal value = {.negative = bytes[0] != 0, .scale = scale};
  for (std::size_t i = 0; i < value.magnitude.size(); ++i) {
    value.magnitude[i] = LoadU32(bytes, 1 + 4 * i);
  }
  return value;
}

/// Of a type whose size is fixed; the bytes are as many.
Value DecodeFixed(const ColumnDefinition& column, ByteView bytes) {
  switch (column.type) {
    case ColumnType::Byte:
      return bytes[0];
    case ColumnType::Int:
      return static_cast<std::int16_t>(LoadU16(bytes, 0));
    case ColumnType::Long:
      return static_cast<std::int32_t>(LoadU32(bytes, 0));
    case ColumnType::Currency:
      return Currency{static_cast<std::int64_t>(LoadU64(bytes, 0))};
    case ColumnType::Single:
      return std::bit_cast<float>(LoadU32(bytes, 0));
    case ColumnType::Double:
      return std::bit_cast<double>(LoadU64(bytes, 0));
    case ColumnType::Date:
      return Date{std::bit_cast<double>(LoadU64(bytes, 0))};
    case ColumnType::Guid:
      return DecodeGuid(bytes);
    case ColumnType::Numeric:
      return DecodeNumeric(bytes, column.scale());
    default:
      return Binary{std::string(AsText(bytes))};
  }
}

void Put(std::uint64_t value, std::size_t size, std::string& bytes) {
  bytes.clear();
  for (std::size_t i = 0; i < size; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
}

void PutGuid(const Guid& guid, std::string& bytes) {
  bytes.assign(guid.bytes.size(), '\0');
  for (std::size_t i = 0; i < kGuidOrder.size(); ++i) {
    bytes[kGuidOrder[i]] = static_cast<char>(guid.bytes[i]);
  }
}

void PutNumeric(const Decimal& value, std::string& bytes) {
  bytes.assign(kNumericSize, '\0');
  if (value.negative) bytes[0] = static_cast<char>(kNegative);
  for (std::size_t i = 0; i < kNumericSize - 1; ++i) {
    bytes[1 + i] = static_cast<char>(value.magnitude[i / 4] >> (8 * (i % 4)));
  }
}

/// Writes the alternative of each type that is no text and no bytes.
struct FixedEncoder {
  std::string& bytes;

  void operator()(Null) const { bytes.clear(); }
  void operator()(bool) const { bytes.clear(); }
  void operator()(std::uint8_t value) const { Put(value, 1, bytes); }
  void operator()(std::int16_t value) const { Put(static_cast<std::uint16_t>(value), 2, bytes); }
  void operator()(std::int32_t value) const { Put(static_cast<std::uint32_t>(value), 4, bytes); }
  void operator()(Currency value) const {
    Put(static_cast<std::uint64_t>(value.ten_thousandths), 8, bytes);
  }
  void operator()(float value) const { Put(std::bit_cast<std::uint32_t>(value), 4, bytes); }
  void operator()(double value) const { Put(std::bit_cast<std::uint64_t>(value), 8, bytes); }
  void operator()(Date value) const { Put(std::bit_cast<std::uint64_t>(value.days), 8, bytes); }
  void operator()(const Text& value) const { bytes = value; }
  void operator()(const Binary& value) const { bytes = value.bytes; }
  void operator()(const Guid& value) const { PutGuid(value, bytes); }
  void operator()(const Decimal& value) const { PutNumeric(value, bytes); }
};

bool MayHold(const ColumnDefinition& column, const Value& value) {
  const ColumnType type = TypeOf(value);
  if (type == ColumnType::Text) return IsText(column.type);
  if (type == ColumnType::Binary) {
    return column.type == ColumnType::Binary || column.type == ColumnType::Ole ||
           (FixedSizeOf(column.type) == 0 && !IsText(column.type));
  }
  return type == column.type;
}

Status EncodeTextField(const ColumnDefinition& column, const Text& text, std::string& bytes) {
  if (column.type == ColumnType::Text && CountUnits(text) * kUnitSize > column.length) {
    return JetError(kFieldTooSmall, column.name);
  }
  EncodeText(text, column.IsCompressed() && !column.IsFixed(), bytes);
  if (!column.IsFixed()) return {};
  while (bytes.size() + kUnitSize <= column.length) bytes.append({' ', '\0'});
  return {};
}

}  // namespace

Result<Value> DecodeField(JetVersion version, const ColumnDefinition& column, ByteView bytes,
                          PageNumber page) {
  if (IsText(column.type)) return Value(DecodeText(version, bytes));
  const std::size_t size = FixedSizeOf(column.type);
  if (size != 0 && bytes.size() < size) {
    return Damaged(page, fmt::format("a {} value is cut", NameOf(column.type)));
  }
  return DecodeFixed(column, bytes);
}

Status EncodeField(const ColumnDefinition& column, const Value& value, std::string& bytes) {
  if (IsNull(value) || !MayHold(column, value)) return JetError(kDataTypeConversion);
  if (const auto* text = std::get_if<Text>(&value)) return EncodeTextField(column, *text, bytes);
  if (const auto* decimal = std::get_if<Decimal>(&value);
      decimal != nullptr && decimal->scale != column.scale()) {
    return JetErrorBecause(kDataTypeConversion, "another number of decimals than the field has");
  }
  std::visit(FixedEncoder{bytes}, value);
  if (std::holds_alternative<Binary>(value) && column.type != ColumnType::Ole &&
      bytes.size() > column.length) {
    return JetError(kFieldTooSmall, column.name);
  }
  return {};
}

}  // namespace zent::jet
