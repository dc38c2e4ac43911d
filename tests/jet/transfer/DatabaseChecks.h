#pragma once

#include <memory>
#include <string>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/fakes/MemoryStorage.h"

/// What two databases hold, compared; what differs is a failed expectation.
namespace zent::jet::testing {

/// A file opened with its catalog.
struct OpenedDatabase {
  std::unique_ptr<Pager> pager;
  std::unique_ptr<Catalog> catalog;
};
OpenedDatabase OpenCatalog(Storage& storage, std::string_view path);

/// A value of a row of the catalog: rights, queries and relationships, without numbers of objects.
using Rows = std::vector<std::vector<Value>>;
/// The rows of a table in the order of the file, columns by their names.
Rows RowsOf(Table& table);

/// The same objects with the same properties; tables with the same columns, rows, counters and
/// indexes; the same rights, queries and relationships. Numbers of tables may differ.
void ExpectSameContents(Catalog& a, Catalog& b);
/// As above for one table each, whatever their names.
void ExpectSameTable(Table& a, Table& b, bool with_rows = true);

/// Each index of the table has an entry for each row and no other, in order, and nothing but pages
/// that are its own.
void ExpectRightIndexes(Table& table);

}  // namespace zent::jet::testing
