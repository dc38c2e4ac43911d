#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/PropertyBlob.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

/// Writes the rows of MSysObjects, and with them those of MSysACEs.
class ObjectWriter {
 public:
  /// `catalog` must outlive it.
  static Result<ObjectWriter> Open(Catalog& catalog);

  /// The number of a new object that is no local table: they count up from the lowest there is.
  Result<std::int32_t> NextId();
  /// Adds an object with the rights that its container hands on.
  Status Add(const CatalogObject& object, const PropertyBlob& properties);
  Status Rename(const CatalogObject& object, std::string_view name, Date now);
  /// No sets: no properties at all.
  Status SetProperties(const CatalogObject& object, const PropertyBlob& properties, Date now);
  /// The definition of the object has changed.
  Status Touch(const CatalogObject& object, Date now);
  /// Takes out the object and its rights.
  Status Remove(const CatalogObject& object);

 private:
  ObjectWriter(Catalog& catalog, std::unique_ptr<TableStore> table)
      : catalog_(catalog), table_(std::move(table)) {}

  /// The account that owns an object.
  Result<std::string> OwnerOf(std::int32_t id);
  Status Change(const CatalogObject& object, std::initializer_list<struct NamedValue> values);

  Catalog& catalog_;
  std::unique_ptr<TableStore> table_;
};

}  // namespace zent::jet
