#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "database/port/FieldType.h"

namespace zent {

/// A fixed-point amount of money.
struct Currency {
  std::int64_t ten_thousandths = 0;
  bool operator==(const Currency&) const = default;
};

/// Days since 1899-12-30; the fraction is the time of day, and counts away from 0 before that day.
struct DateSerial {
  double days = 0;
  bool operator==(const DateSerial&) const = default;
};

/// An exact decimal number: "-12.50".
struct DecimalText {
  std::string digits;
  bool operator==(const DecimalText&) const = default;
};

struct BinaryBytes {
  std::string bytes;
  bool operator==(const BinaryBytes&) const = default;
};

/// The sixteen bytes in the order in which they are written.
struct Guid {
  std::array<std::uint8_t, 16> bytes = {};
  bool operator==(const Guid&) const = default;
};

/// What a field of a row holds. What was read from one database can be set in another without loss.
/// Text is UTF-8.
class FieldValue {
 public:
  using Content = std::variant<std::monostate, bool, std::uint8_t, std::int16_t, std::int32_t,
                               std::int64_t, float, double, Currency, DecimalText, DateSerial,
                               std::string, BinaryBytes, Guid>;

  FieldValue() = default;  ///< null
  // Implicit, so that a value can be set as it is written; a literal is text, not a boolean.
  FieldValue(bool value) : content_(value) {}
  FieldValue(std::uint8_t value) : content_(value) {}
  FieldValue(std::int16_t value) : content_(value) {}
  FieldValue(std::int32_t value) : content_(value) {}
  FieldValue(std::int64_t value) : content_(value) {}
  FieldValue(float value) : content_(value) {}
  FieldValue(double value) : content_(value) {}
  FieldValue(Currency value) : content_(value) {}
  FieldValue(DecimalText value) : content_(std::move(value)) {}
  FieldValue(DateSerial value) : content_(value) {}
  FieldValue(std::string value) : content_(std::move(value)) {}
  FieldValue(std::string_view value) : content_(std::string(value)) {}
  FieldValue(const char* value) : content_(std::string(value)) {}
  FieldValue(BinaryBytes value) : content_(std::move(value)) {}
  FieldValue(Guid value) : content_(value) {}

  const Content& content() const { return content_; }
  bool IsNull() const { return std::holds_alternative<std::monostate>(content_); }

  /// The value as text, as joining it to an empty text gives it in the classic language: null is
  /// empty, a boolean "True" or "False", a number without needless zeros ("0.5", "1E+15", seven
  /// digits of a single and fifteen of a double), a date "1/2/2005", "1/2/2005 3:04:05 PM" or, on
  /// day 0, the time alone, a GUID "{guid {...}}" as the engine writes it. Bytes are read as
  /// UTF-16 and a last odd one left out.
  std::string AsText() const;

  /// Whether null, empty or of blanks only: the test for a blank field.
  bool IsBlank() const;

  bool operator==(const FieldValue&) const = default;

 private:
  Content content_;
};

}  // namespace zent
