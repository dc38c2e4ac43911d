#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/fakes/StoreFile.h"
#include "jet/schema/Schema.h"
#include "jet/store/TableStore.h"

namespace zent::jet::testing {

/// The bytes of a new empty database.
std::string EmptyDatabase();

/// Rows of a table, by names of the columns.
using NamedRow = std::map<std::string, Value>;
std::vector<NamedRow> RowsOf(StoreFile& file, PageNumber definition);

/// Every table that the catalog names is right (see ExpectRightTable), every page of the file
/// belongs to one, the rows of rights belong to objects, and logical indexes to their partners.
void ExpectRightDatabase(StoreFile& file);

/// A new database in memory, in an open transaction, and what changes it.
class SchemaFile {
 public:
  explicit SchemaFile(const std::string& bytes = EmptyDatabase());

  StoreFile& file() { return file_; }
  Catalog& catalog() { return *catalog_; }
  Schema& schema() { return schema_; }
  const TableDefinition& Definition(std::string_view table);
  PageNumber PageOf(std::string_view table);
  /// Puts rows in; each has the values of the columns in the order in which they are listed.
  Status Insert(std::string_view table, const std::vector<std::vector<Value>>& rows);
  std::vector<NamedRow> Rows(std::string_view table) { return RowsOf(file_, PageOf(table)); }
  /// The values of one column, row by row.
  std::vector<Value> Column(std::string_view table, const std::string& column);

 private:
  StoreFile file_;
  std::unique_ptr<Catalog> catalog_;
  Schema schema_;
};

/// The number of a failure, 0 for none; a text that tells what failed beyond expectation.
void ExpectNumber(const Status& status, int number);

/// A table People: Id (AutoNumber, primary key), Name (text, indexed), Born, Notes (memo).
NewTable People();

}  // namespace zent::jet::testing
