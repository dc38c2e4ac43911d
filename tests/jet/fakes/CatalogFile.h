#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/fakes/StoreFile.h"
#include "jet/fakes/TableBuilder.h"

namespace zent::jet::testing {

/// A property that a test gives to a column, or, without one, to the table.
struct GivenProperty {
  std::string column;
  std::string name;
  ColumnType type = ColumnType::Bool;
  Value value = true;
};

/// A database in memory with the tables of the catalog and what a test puts into it, open in one
/// transaction.
class CatalogFile {
 public:
  /// What the indexes of MSysObjects are like; of unknown order is the one over names.
  enum class Indexes : std::uint8_t { Unique, NotUnique, OfUnknownOrder };
  explicit CatalogFile(Indexes index = Indexes::Unique);

  StoreFile& file() { return file_; }
  /// Opened at the first call.
  Catalog& catalog();
  /// The table of that name, open.
  Table& table(std::string_view name);

  /// A row of the catalog; its number is made up unless given.
  struct Object {
    std::string name;
    ObjectType type = ObjectType::Table;
    std::int32_t id = 0;
    std::int32_t flags = 0;
    std::int32_t parent = kTablesId;
    std::string properties = {};
    std::string connect = {};
    std::string database = {};
  };
  RowPointer Add(const Object& object);
  /// Writes the table and names it.
  PageNumber AddTable(std::string name, TableBuilder& table,
                      const std::vector<GivenProperty>& properties = {});

  /// A relationship that the file enforces, between tables that are there and empty. The one side
  /// must have a unique index over its columns.
  void Relate(const Relationship& relationship);
  /// A row of MSysRelationships alone: name, flags, count, position, table, column, referenced
  /// table, referenced column.
  void AddRelationshipRow(std::vector<Value> row);

  TableStore& objects() { return *objects_; }

 private:
  StoreFile file_;
  std::unique_ptr<TableStore> objects_;
  std::unique_ptr<TableStore> relationships_;
  std::unique_ptr<Catalog> catalog_;
  std::int32_t next_id_ = INT32_MIN;
};

/// The bytes of such properties.
std::string PropertyBytes(const std::vector<GivenProperty>& properties);

}  // namespace zent::jet::testing
