#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/format/Layout.h"
#include "jet/format/Value.h"

namespace zent::jet {

class Table;

struct ResultColumn {
  std::string name;         ///< alias, name of the column, or "Expr1000", "Expr1001" ...
  std::string table = {};   ///< where the values come from; empty for an expression
  std::string column = {};  ///< its name there
  /// Of the table's column; of an expression nothing: its values tell.
  std::optional<ColumnType> type = {};
  std::uint16_t size = 0;      ///< of the table's column: characters of a text, else bytes
  std::uint8_t precision = 0;  ///< of a numeric column of a table: digits
  std::uint8_t scale = 0;      ///< ... and those behind the point
};

/// The rows of a query, one after the other. While it lives it reads one committed state of the
/// file. The tables must not change meanwhile: who wants to change what it finds gathers the rows
/// first.
class ResultSet {
 public:
  ResultSet() = default;
  virtual ~ResultSet() = default;
  ResultSet(const ResultSet&) = delete;
  ResultSet& operator=(const ResultSet&) = delete;

  virtual const std::vector<ResultColumn>& columns() const = 0;
  /// Goes to the first row, then to the next; false behind the last. After an error it is over.
  virtual Result<bool> Next() = 0;
  /// The values of the row, in the order of columns(); until the next call of Next.
  virtual const std::vector<Value>& row() const = 0;

  /// Where the row is stored, and its table: only when each row is one of one table, so not for
  /// joins, groups, DISTINCT and UNION.
  virtual std::optional<RowPointer> base_row() const = 0;
  virtual Table* base_table() const = 0;
};

}  // namespace zent::jet
