#pragma once

#include <utility>

#include "odbc/OdbcColumn.h"
#include "odbc/OdbcValue.h"

namespace zent::odbc {

/// A value for a "?" of a statement. Names and numbers of a column's type let the server compare
/// and store without a change of type; where the type does not fit the value, the value goes as it
/// is and the server changes it.
struct OdbcParameter {
  // Implicit: a plain value is a parameter.
  OdbcParameter(OdbcValue content) : value(std::move(content)) {}
  OdbcParameter(OdbcValue content, const SqlType& column_type)
      : value(std::move(content)), type(column_type) {}

  OdbcValue value;
  SqlType type = {};  ///< of the column that it is for; number 0 when it is not known
};

}  // namespace zent::odbc
