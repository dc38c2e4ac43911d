#pragma once

#include <cstdint>
#include <string>

#include "base/Status.h"
#include "database/port/FieldValue.h"

/// Values as numbers. What is none, bytes or words, is kDataTypeConversion; one that is out of
/// range kNumericOverflow. True is -1.
namespace zent {

/// Rounded to the nearest whole number, a half to the even one.
Result<std::int64_t> WholeNumber(const FieldValue& value, std::int64_t least, std::int64_t most);
Result<double> FloatingNumber(const FieldValue& value);
/// As digits without an exponent. A number that needs one gets `places` digits behind the point.
Result<std::string> ExactDigits(const FieldValue& value, int places);

}  // namespace zent
