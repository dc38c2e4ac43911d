#pragma once

#include <cstddef>

#include "base/Status.h"
#include "odbc/OdbcCalls.h"
#include "odbc/OdbcColumn.h"
#include "odbc/OdbcValue.h"

namespace zent::odbc {

/// The form in which values of a column are asked for.
struct ValueForm {
  ColumnKind kind;
  SQLSMALLINT c_type;
  std::size_t bytes;  ///< of a value; 0 where it differs from value to value
};

ValueForm FormOf(const SqlType& type);

/// The value of `length` bytes in that form. A date that is none (month or day 0) is null.
OdbcValue DecodeValue(const ValueForm& form, const unsigned char* data, std::size_t length);

/// A text or bytes in the kind that the column has: Decimal, Bytes or text.
OdbcValue ValueOfText(ColumnKind kind, std::string text);

}  // namespace zent::odbc
