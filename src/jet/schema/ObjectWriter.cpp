#include "jet/schema/ObjectWriter.h"

#include <algorithm>
#include <limits>

#include "jet/format/JetErrors.h"
#include "jet/schema/NamedRow.h"
#include "jet/schema/Rights.h"

namespace zent::jet {
namespace {

Result<Value> PropertyField(const PropertyBlob& properties) {
  if (properties.sets.empty()) return Value(Null());
  Result<std::string> bytes = SerialisePropertyBlob(JetVersion::Jet4, properties);
  if (!bytes.ok()) return bytes.error();
  return Value(Binary{std::move(bytes.value())});
}

}  // namespace

Result<ObjectWriter> ObjectWriter::Open(Catalog& catalog) {
  Result<std::unique_ptr<TableStore>> table = TableStore::Open(catalog.maps(), kObjectsPage);
  if (!table.ok()) return table.error();
  return ObjectWriter(catalog, std::move(table.value()));
}

Result<std::int32_t> ObjectWriter::NextId() {
  const Result<std::vector<CatalogObject>> objects = catalog_.Objects();
  if (!objects.ok()) return objects.error();
  std::int32_t next = std::numeric_limits<std::int32_t>::min();
  for (const CatalogObject& object : objects.value()) {
    if (object.id < 0) next = std::max(next, object.id + 1);
  }
  if (next >= 0) return JetErrorBecause(kInvalidOperation, "the numbers of objects are used up");
  return next;
}

Result<std::string> ObjectWriter::OwnerOf(std::int32_t id) {
  const Result<std::optional<CatalogObject>> object = catalog_.FindById(id);
  if (!object.ok()) return object.error();
  if (!object.value()) return std::string();
  const Result<std::size_t> position = ColumnPosition(table_->definition(), "Owner");
  if (!position.ok()) return position.error();
  const Result<std::vector<Value>> row = table_->Fetch(object.value()->row);
  if (!row.ok()) return row.error();
  const Binary* const owner = std::get_if<Binary>(&row.value()[position.value()]);
  return owner == nullptr ? std::string() : owner->bytes;
}

Status ObjectWriter::Add(const CatalogObject& object, const PropertyBlob& properties) {
  const Result<std::string> owner = OwnerOf(kDatabaseId);
  if (!owner.ok()) return owner.error();
  const Result<std::string> engine = OwnerOf(kTablesId);
  if (!engine.ok()) return engine.error();
  const Result<Value> blob = PropertyField(properties);
  if (!blob.ok()) return blob.error();
  Result<std::vector<Value>> row =
      RowOf(table_->definition(), {{"Id", object.id},
                                   {"ParentId", object.parent},
                                   {"Name", object.name},
                                   {"Type", static_cast<std::int16_t>(object.type)},
                                   {"DateCreate", object.created},
                                   {"DateUpdate", object.updated},
                                   {"Owner", Binary{owner.value()}},
                                   {"Flags", object.flags},
                                   {"LvProp", blob.value()}});
  if (!row.ok()) return row.error();
  if (Result<RowPointer> at = table_->Insert(row.value()); !at.ok()) return at.error();
  return GrantInherited(catalog_.maps(), object.id, object.parent, owner.value(), engine.value());
}

Status ObjectWriter::Change(const CatalogObject& object, std::initializer_list<NamedValue> values) {
  std::vector<ColumnChange> changes;
  for (const NamedValue& named : values) {
    const Result<std::size_t> position = ColumnPosition(table_->definition(), named.column);
    if (!position.ok()) return position.error();
    changes.push_back({.position = position.value(), .value = named.value});
  }
  return table_->Update(object.row, changes);
}

Status ObjectWriter::Rename(const CatalogObject& object, std::string_view name, Date now) {
  return Change(object, {{"Name", std::string(name)}, {"DateUpdate", now}});
}

Status ObjectWriter::SetProperties(const CatalogObject& object, const PropertyBlob& properties,
                                   Date now) {
  const Result<Value> blob = PropertyField(properties);
  if (!blob.ok()) return blob.error();
  return Change(object, {{"LvProp", blob.value()}, {"DateUpdate", now}});
}

Status ObjectWriter::Touch(const CatalogObject& object, Date now) {
  return Change(object, {{"DateUpdate", now}});
}

Status ObjectWriter::Remove(const CatalogObject& object) {
  if (Status deleted = table_->Delete(object.row); !deleted.ok()) return deleted;
  return RevokeAll(catalog_.maps(), object.id);
}

}  // namespace zent::jet
