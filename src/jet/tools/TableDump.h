#pragma once

#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/tools/JsonWriter.h"
#include "jet/tools/ValueJson.h"

namespace zent::jet {

/// Writes a table as an object of a dump.
class TableDump {
 public:
  /// `objects` are those of the catalog, for the names of the tables that indexes refer to.
  TableDump(Catalog& catalog, const std::vector<CatalogObject>& objects, JsonWriter& json,
            ValueJson& values)
      : catalog_(catalog), objects_(objects), json_(json), values_(values) {}

  Status Write(const CatalogObject& object, bool rows);

 private:
  void WriteColumns(const TableDefinition& table, const PropertyBlob& properties);
  void WriteColumn(const TableDefinition& table, const ColumnDefinition& column,
                   const PropertyBlob& properties);
  Status WriteIndexes(TableStore& table);
  Status WriteIndex(TableStore& table, const LogicalIndex& index);
  void WriteReference(const LogicalIndex& index);
  Status WriteRows(TableStore& table);

  Catalog& catalog_;
  const std::vector<CatalogObject>& objects_;
  JsonWriter& json_;
  ValueJson& values_;
};

}  // namespace zent::jet
