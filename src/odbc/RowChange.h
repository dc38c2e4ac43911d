#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "odbc/OdbcColumn.h"
#include "odbc/OdbcParameter.h"

namespace zent::odbc {

/// A part of a statement with a value for each of its "?".
struct BoundText {
  std::string text;
  std::vector<OdbcParameter> values;
};

/// A column with the value that it has, or is to get.
struct ColumnValue {
  const OdbcColumn& column;
  OdbcValue value;
};

/// Whether a server compares values of such a column with "=", and finds again what it gave: not
/// long ones, and not numbers and times that lose something on the way.
bool IsComparable(const OdbcColumn& column);

/// "a"=? AND "b" IS NULL.
BoundText RowTest(const std::vector<ColumnValue>& values, std::string_view quote);

/// A statement that changes one row, and the tests for it.
struct RowChange {
  BoundText statement;
  BoundText test;  ///< finds the row as it was read
  /// Finds the row if it was so already that the change changes nothing; empty for a deletion.
  BoundText unchanged;
};

/// Rows that pass both.
BoundText BothTests(const BoundText& a, const BoundText& b);

/// The statements that change one row; `table` is written as it is.
BoundText UpdateText(std::string_view table, const std::vector<ColumnValue>& values,
                     const BoundText& test, std::string_view quote);
BoundText InsertText(std::string_view table, const std::vector<ColumnValue>& values,
                     std::string_view quote);
BoundText DeleteText(std::string_view table, const BoundText& test);
BoundText CountText(std::string_view table, const BoundText& test);

}  // namespace zent::odbc
