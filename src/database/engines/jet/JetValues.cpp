#include "database/engines/jet/JetValues.h"

#include <limits>

#include "jet/format/JetErrors.h"
#include "jet/format/ValueText.h"

namespace zent {
namespace {

template <typename... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

jet::Value OfBigInteger(std::int64_t value) {
  if (value >= std::numeric_limits<std::int32_t>::min() &&
      value <= std::numeric_limits<std::int32_t>::max()) {
    return static_cast<std::int32_t>(value);
  }
  return static_cast<double>(value);
}

}  // namespace

FieldValue FromJet(const jet::Value& value) {
  return std::visit(
      Overloaded{
          [](jet::Null) { return FieldValue(); },
          [](const jet::Currency& money) { return FieldValue(Currency{money.ten_thousandths}); },
          [](const jet::Date& date) { return FieldValue(DateSerial{date.days}); },
          [](const jet::Binary& binary) { return FieldValue(BinaryBytes{binary.bytes}); },
          [](const jet::Guid& guid) { return FieldValue(Guid{guid.bytes}); },
          [](const jet::Decimal& decimal) {
            return FieldValue(DecimalText{jet::DecimalText(decimal)});
          },
          [](const auto& plain) { return FieldValue(plain); },
      },
      value);
}

Result<jet::Value> ToJet(const FieldValue& value) {
  using Converted = Result<jet::Value>;
  return std::visit(
      Overloaded{
          [](std::monostate) -> Converted { return jet::Value(jet::Null{}); },
          [](std::int64_t big) -> Converted { return OfBigInteger(big); },
          [](const Currency& money) -> Converted {
            return jet::Value(jet::Currency{money.ten_thousandths});
          },
          [](const DateSerial& date) -> Converted { return jet::Value(jet::Date{date.days}); },
          [](const BinaryBytes& binary) -> Converted {
            return jet::Value(jet::Binary{binary.bytes});
          },
          [](const Guid& guid) -> Converted { return jet::Value(jet::Guid{guid.bytes}); },
          [](const DecimalText& decimal) -> Converted {
            const Result<jet::Decimal> number = jet::ParseDecimal(decimal.digits);
            if (!number.ok()) return number.error();
            return jet::Value(number.value());
          },
          [](const auto& plain) -> Converted { return jet::Value(plain); },
      },
      value.content());
}

FieldType FromJet(jet::DataType type) { return static_cast<FieldType>(type); }

Result<jet::DataType> ToJet(FieldType type) {
  const auto number = static_cast<std::uint8_t>(type);
  const auto same = static_cast<jet::DataType>(number);
  if (!jet::IsDataType(same)) return jet::JetError(jet::kDataTypeConversion);
  return same;
}

}  // namespace zent
