#include "jet/schema/EditedTable.h"

#include "jet/format/JetErrors.h"
#include "jet/schema/DefinitionWriter.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

Status ReadyToChange(Catalog& catalog) {
  if (Status writable = catalog.pager().Writable(); !writable.ok()) return writable;
  if (catalog.pager().in_transaction()) return {};
  return JetErrorBecause(kInvalidOperation, "no transaction is open");
}

Result<CatalogObject> FindTable(Catalog& catalog, std::string_view name) {
  Result<std::optional<CatalogObject>> object = catalog.FindIn(kTablesId, name);
  if (!object.ok()) return object.error();
  if (!object.value() || !object.value()->IsTable()) return JetError(kNoSuchTable, name);
  if ((object.value()->flags & kSystemObject) != 0) {
    return JetErrorBecause(kReadOnly, "a table of the system");
  }
  return std::move(*object.value());
}

Result<EditedTable> OpenForEdit(Catalog& catalog, std::string_view name) {
  Result<CatalogObject> object = FindTable(catalog, name);
  if (!object.ok()) return object.error();
  if (!object.value().IsLocalTable()) {
    return JetErrorBecause(kNoSuchTable, "it is linked: its fields are elsewhere", name);
  }
  Result<StoredDefinition> stored = ReadDefinition(catalog.pager(), object.value().definition());
  if (!stored.ok()) return stored.error();
  Result<PropertyBlob> properties = catalog.Properties(object.value());
  if (!properties.ok()) return properties.error();
  return EditedTable{.object = std::move(object.value()),
                     .definition = std::move(stored.value().table),
                     .pages = std::move(stored.value().pages),
                     .properties = std::move(properties.value())};
}

Status SaveDefinition(Catalog& catalog, EditedTable& table) {
  SortDefinition(table.definition);
  return WriteDefinition(catalog.maps(), table.definition, table.pages);
}

}  // namespace zent::jet
