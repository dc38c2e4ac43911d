#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/fakes/StoreFile.h"
#include "jet/store/TableStore.h"

namespace zent::jet::testing {

/// Makes a table in a StoreFile: its maps, its empty trees and its definition.
class TableBuilder {
 public:
  explicit TableBuilder(StoreFile& file) : file_(file) {}

  /// Columns get their number, slot and offset in the order of the calls.
  TableBuilder& Column(std::string name, ColumnType type, std::uint16_t length = 0,
                       std::uint8_t flags = 0);
  TableBuilder& AutoNumber(std::string name);
  /// Columns by number; a negative one (~number) is descending.
  TableBuilder& Index(const std::vector<int>& columns, std::uint8_t flags = 0,
                      bool primary = false);

  /// Writes it and opens it.
  std::unique_ptr<TableStore> Build();

 private:
  StoreFile& file_;
  TableDefinition table_;
};

/// The rows of a table, its indexes, long values, maps and counters agree, and no page of the file
/// but these is in use. Returns the values of the rows.
using TableRows = std::map<RowPointer, std::vector<Value>>;
TableRows ExpectRightTable(StoreFile& file, TableStore& table);

}  // namespace zent::jet::testing
