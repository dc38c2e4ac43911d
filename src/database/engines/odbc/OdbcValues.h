#pragma once

#include "base/Status.h"
#include "database/port/FieldValue.h"
#include "odbc/OdbcColumn.h"
#include "odbc/OdbcValue.h"

namespace zent {

/// A value of a column, in the type that the column has.
FieldValue FromOdbc(const odbc::OdbcValue& value, const odbc::SqlType& type);

/// A value in the form that the column takes; text for a date is left to the server. Errors: 3163
/// too long, kNumericOverflow out of range, kDataTypeConversion of a wrong type.
Result<odbc::OdbcValue> ToOdbc(const FieldValue& value, const odbc::SqlType& type);

}  // namespace zent
