#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/EditedTable.h"
#include "jet/schema/NamedRow.h"
#include "jet/schema/ObjectWriter.h"
#include "jet/schema/Schema.h"

/// Properties of tables and their columns.
namespace zent::jet {
namespace {

struct EditedProperties {
  CatalogObject object;
  PropertyBlob blob;
};

/// The properties of a table; kItemNotFound for a column that it does not have. The columns of a
/// linked table are not known here.
Result<EditedProperties> OpenProperties(Catalog& catalog, std::string_view table,
                                        std::string_view column) {
  Result<CatalogObject> object = FindTable(catalog, table);
  if (!object.ok()) return object.error();
  Result<PropertyBlob> blob = catalog.Properties(object.value());
  if (!blob.ok()) return blob.error();
  if (!column.empty() && object.value().IsLocalTable()) {
    const Result<EditedTable> local = OpenForEdit(catalog, table);
    if (!local.ok()) return local.error();
    const Result<std::size_t> position = ColumnPosition(local.value().definition, column);
    if (!position.ok()) return position.error();
  }
  return EditedProperties{.object = std::move(object.value()), .blob = std::move(blob.value())};
}

Status Save(Catalog& catalog, const EditedProperties& edited, Date now) {
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog);
  if (!objects.ok()) return objects.error();
  return objects.value().SetProperties(edited.object, edited.blob, now);
}

}  // namespace

Status Schema::SetProperty(std::string_view table, std::string_view column,
                           const Property& property) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  if (property.name.empty()) return JetError(kInvalidName, property.name);
  Result<EditedProperties> edited = OpenProperties(catalog_, table, column);
  if (!edited.ok()) return edited.error();
  edited.value().blob.SetOf(column).Set(property);
  return Save(catalog_, edited.value(), now_);
}

Status Schema::RemoveProperty(std::string_view table, std::string_view column,
                              std::string_view property) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  Result<EditedProperties> edited = OpenProperties(catalog_, table, column);
  if (!edited.ok()) return edited.error();
  const PropertySet* const set = edited.value().blob.Find(column);
  if (set == nullptr || set->Find(property) == nullptr) {
    return JetErrorBecause(kItemNotFound, property);
  }
  edited.value().blob.SetOf(column).Remove(property);
  return Save(catalog_, edited.value(), now_);
}

}  // namespace zent::jet
