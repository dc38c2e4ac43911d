#pragma once

#include <map>
#include <memory>
#include <set>
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
  /// The column added last keeps its text in one byte a character where it can.
  TableBuilder& Compressed();
  /// Columns by number; a negative one (~number) is descending.
  TableBuilder& Index(const std::vector<int>& columns, std::uint8_t flags = 0,
                      bool primary = false);

  /// The page for the definition, instead of a new one.
  TableBuilder& At(PageNumber page);
  /// What the calls do not reach.
  TableDefinition& definition() { return table_; }

  /// Writes it; returns its page.
  PageNumber Write();
  /// Writes it and opens it.
  std::unique_ptr<TableStore> Build();

 private:
  StoreFile& file_;
  PageNumber page_ = 0;  ///< 0: a new one
  TableDefinition table_;
};

/// Writes a definition that takes no more than its first page.
void WriteSmallDefinition(StoreFile& file, PageNumber page, const TableDefinition& table);

/// The rows of a table, its indexes, long values, maps and counters agree, and no page of the file
/// but these is in use. Returns the values of the rows.
using TableRows = std::map<RowPointer, std::vector<Value>>;
TableRows ExpectRightTable(StoreFile& file, TableStore& table);
/// As ExpectRightTable in a file that holds more: the pages of the table are added to `named`.
TableRows ExpectRightTable(StoreFile& file, TableStore& table, std::set<PageNumber>& named);

}  // namespace zent::jet::testing
