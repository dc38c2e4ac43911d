#include "database/engines/odbc/OdbcValues.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "base/Text.h"
#include "database/engines/odbc/OdbcDates.h"
#include "database/engines/odbc/OdbcNumbers.h"
#include "database/engines/odbc/OdbcTypes.h"
#include "database/port/EngineErrors.h"
#include "odbc/OdbcErrors.h"

namespace zent {
namespace {

using Converted = Result<odbc::OdbcValue>;

RuntimeError WrongType() {
  return odbc::EngineError(odbc::kDataTypeConversion, "Data type conversion error.");
}

RuntimeError TooLong() {
  return odbc::EngineError(kEngineTextTooLong,
                           "The field is too small to accept the amount of data.");
}

/// "6F9619FF-8B86-D011-B42D-00C04FC964FF", also with braces around it.
std::optional<Guid> ParseGuid(std::string_view text) {
  std::string digits;
  for (const char c : text) {
    if (c != '-' && c != '{' && c != '}') digits += c;
  }
  Guid guid;
  if (digits.size() != 2 * guid.bytes.size()) return std::nullopt;
  for (std::size_t at = 0; at < guid.bytes.size(); ++at) {
    const char* const start = digits.data() + 2 * at;
    const std::from_chars_result read = std::from_chars(start, start + 2, guid.bytes[at], 16);
    if (read.ec != std::errc() || read.ptr != start + 2) return std::nullopt;
  }
  return guid;
}

std::string GuidText(const Guid& guid) {
  std::string text;
  for (std::size_t at = 0; at < guid.bytes.size(); ++at) {
    if (at == 4 || at == 6 || at == 8 || at == 10) text += '-';
    text += fmt::format("{:02X}", guid.bytes[at]);
  }
  return text;
}

/// A whole number in the width of its field.
FieldValue OfWidth(std::int64_t number, FieldType type) {
  switch (type) {
    case FieldType::Byte:
      return static_cast<std::uint8_t>(number);
    case FieldType::Integer:
      return static_cast<std::int16_t>(number);
    case FieldType::Long:
      return static_cast<std::int32_t>(number);
    default:
      return number;
  }
}

struct FromServer {
  FieldType type;

  FieldValue operator()(std::monostate /*null*/) const { return {}; }
  FieldValue operator()(bool value) const { return value; }
  FieldValue operator()(std::int64_t value) const { return OfWidth(value, type); }
  FieldValue operator()(double value) const {
    if (type == FieldType::Single) return static_cast<float>(value);
    return value;
  }
  FieldValue operator()(const odbc::Decimal& value) const { return DecimalText{value.digits}; }
  FieldValue operator()(const std::string& value) const {
    const std::optional<Guid> guid = type == FieldType::Guid ? ParseGuid(value) : std::nullopt;
    return guid ? FieldValue(*guid) : FieldValue(value);
  }
  FieldValue operator()(const odbc::Bytes& value) const { return BinaryBytes{value.bytes}; }
  FieldValue operator()(const odbc::DateTime& value) const {
    const std::optional<DateSerial> serial = SerialOf(value);
    return serial ? FieldValue(*serial) : FieldValue();
  }
};

Converted ToBoolean(const FieldValue& value) {
  if (const bool* plain = std::get_if<bool>(&value.content())) return odbc::OdbcValue(*plain);
  if (EqualsIgnoringCase(value.AsText(), "True")) return odbc::OdbcValue(true);
  if (EqualsIgnoringCase(value.AsText(), "False")) return odbc::OdbcValue(false);
  const Result<double> number = FloatingNumber(value);
  if (!number.ok()) return number.error();
  return odbc::OdbcValue(number.value() != 0);
}

template <typename Width>
Converted ToWhole(const FieldValue& value) {
  const Result<std::int64_t> number =
      WholeNumber(value, std::numeric_limits<Width>::min(), std::numeric_limits<Width>::max());
  if (!number.ok()) return number.error();
  return odbc::OdbcValue(number.value());
}

/// A byte has no -1: true is all its bits, as in the classic language.
Converted ToByte(const FieldValue& value) {
  const bool* const flag = std::get_if<bool>(&value.content());
  if (flag == nullptr) return ToWhole<std::uint8_t>(value);
  return odbc::OdbcValue(std::int64_t{*flag ? 255 : 0});
}

Converted ToFloating(const FieldValue& value, double most) {
  const Result<double> number = FloatingNumber(value);
  if (!number.ok()) return number.error();
  if (std::abs(number.value()) <= most) return odbc::OdbcValue(number.value());
  return odbc::EngineError(odbc::kNumericOverflow, "Numeric field overflow.");
}

Converted ToDecimal(const FieldValue& value, int places) {
  const Result<std::string> digits = ExactDigits(value, places);
  if (!digits.ok()) return digits.error();
  return odbc::OdbcValue(odbc::Decimal{digits.value()});
}

Converted ToDate(const FieldValue& value) {
  if (const auto* text = std::get_if<std::string>(&value.content())) return odbc::OdbcValue(*text);
  const auto* const serial = std::get_if<DateSerial>(&value.content());
  const Result<double> days = serial != nullptr ? serial->days : FloatingNumber(value);
  if (!days.ok()) return days.error();
  const std::optional<odbc::DateTime> date = DateOf({days.value()});
  if (!date) return WrongType();
  return odbc::OdbcValue(*date);
}

Converted ToText(const FieldValue& value, std::int32_t size) {
  std::string text = value.AsText();
  if (size > 0 && CountCharacters(text) > static_cast<std::size_t>(size)) return TooLong();
  return odbc::OdbcValue(std::move(text));
}

Converted ToBinary(const FieldValue& value, std::int32_t size) {
  const auto* const binary = std::get_if<BinaryBytes>(&value.content());
  const auto* const guid = std::get_if<Guid>(&value.content());
  if (binary == nullptr && guid == nullptr) return WrongType();
  odbc::Bytes bytes;
  bytes.bytes =
      binary != nullptr ? binary->bytes : std::string(guid->bytes.begin(), guid->bytes.end());
  if (size > 0 && bytes.bytes.size() > static_cast<std::size_t>(size)) return TooLong();
  return odbc::OdbcValue(std::move(bytes));
}

Converted ToGuid(const FieldValue& value) {
  if (const Guid* guid = std::get_if<Guid>(&value.content())) {
    return odbc::OdbcValue(GuidText(*guid));
  }
  const std::optional<Guid> read = ParseGuid(value.AsText());
  if (!read) return WrongType();
  return odbc::OdbcValue(GuidText(*read));
}

}  // namespace

FieldValue FromOdbc(const odbc::OdbcValue& value, const odbc::SqlType& type) {
  return std::visit(FromServer{FieldTypeOf(type)}, value);
}

Converted ToOdbc(const FieldValue& value, const odbc::SqlType& type) {
  if (value.IsNull()) return odbc::OdbcValue();
  switch (FieldTypeOf(type)) {
    case FieldType::Boolean:
      return ToBoolean(value);
    case FieldType::Byte:
      return ToByte(value);
    case FieldType::Integer:
      return ToWhole<std::int16_t>(value);
    case FieldType::Long:
      return ToWhole<std::int32_t>(value);
    case FieldType::BigInt:
      return ToWhole<std::int64_t>(value);
    case FieldType::Single:
      return ToFloating(value, std::numeric_limits<float>::max());
    case FieldType::Double:
      return ToFloating(value, std::numeric_limits<double>::max());
    case FieldType::Decimal:
      return ToDecimal(value, type.digits);
    case FieldType::Date:
      return ToDate(value);
    case FieldType::Binary:
    case FieldType::LongBinary:
      return ToBinary(value, FieldSizeOf(type));
    case FieldType::Guid:
      return ToGuid(value);
    default:
      return ToText(value, FieldSizeOf(type));
  }
}

}  // namespace zent
