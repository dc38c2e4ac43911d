#pragma once

#include <string>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"

/// Values as other types.
namespace zent::jet {

/// A value as text, as joining it to a text shows it: "1.5", "1E+20", "-1" for Yes, dates as
/// "1/31/2005 6:30:00 PM", nothing for null. kCriteriaTypeMismatch for binary.
Result<std::string> TextOf(const Value& value);

/// What `column` holds after `value` is assigned to it. Numbers round to the nearest (the even one
/// of two), texts become what they show, null in a Yes/No column is No. kFieldTooSmall for text or
/// bytes that are too long, kNumericOverflow for a number out of range, kDataTypeConversion for
/// what cannot become the type. Required and zero length are not checked here.
Result<Value> ConvertForColumn(const ColumnDefinition& column, const Value& value);

}  // namespace zent::jet
