#include "jet/catalog/Catalog.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

/// Why an object that has the name of a table cannot be opened as one.
RuntimeError NoLocalTable(const CatalogObject& object) {
  const char* const reason =
      object.IsLinked() ? "it is linked: its rows are elsewhere" : "it is no table";
  return JetErrorBecause(kNoSuchTable, reason, object.name);
}

/// Whether both are the same but for the counters that change with rows.
bool HasSameStructure(TableDefinition now, const TableDefinition& before) {
  now.row_count = before.row_count;
  now.last_auto_number = before.last_auto_number;
  if (now.real_indexes.size() != before.real_indexes.size()) return false;
  for (std::size_t i = 0; i < now.real_indexes.size(); ++i) {
    now.real_indexes[i].rows_at_compaction = before.real_indexes[i].rows_at_compaction;
    now.real_indexes[i].distinct_keys = before.real_indexes[i].distinct_keys;
  }
  return now == before;
}

}  // namespace

Catalog::Catalog(Pager& pager) : pager_(pager), maps_(pager), random_(SystemRandom()) {}

Result<std::unique_ptr<Catalog>> Catalog::Open(Pager& pager) {
  std::unique_ptr<Catalog> catalog(new Catalog(pager));
  const Result<ObjectTable*> objects = catalog->ObjectRows();
  if (!objects.ok()) return objects.error();
  return catalog;
}

Result<ObjectTable*> Catalog::ObjectRows() {
  if (!objects_) {
    Result<ObjectTable> objects = ObjectTable::Open(maps_);
    if (!objects.ok()) return objects.error();
    objects_.emplace(std::move(objects.value()));
  }
  return &*objects_;
}

Result<std::vector<CatalogObject>> Catalog::Objects() {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  const Result<ObjectTable*> rows = ObjectRows();
  if (!rows.ok()) return rows.error();
  return rows.value()->All();
}

Result<std::vector<CatalogObject>> Catalog::Tables() {
  Result<std::vector<CatalogObject>> objects = Objects();
  if (!objects.ok()) return objects;
  std::erase_if(objects.value(), [](const CatalogObject& object) { return !object.IsTable(); });
  return objects;
}

Result<std::optional<CatalogObject>> Catalog::Find(ObjectType type, std::string_view name) {
  const std::int32_t parent = ParentOf(type);
  if (parent != 0) {
    Result<std::optional<CatalogObject>> found = FindIn(parent, name);
    if (found.ok() && found.value() && found.value()->type != type) found.value().reset();
    return found;
  }
  Result<std::vector<CatalogObject>> objects = Objects();
  if (!objects.ok()) return objects.error();
  const auto found = std::find_if(
      objects.value().begin(), objects.value().end(),
      [&](const CatalogObject& one) { return one.type == type && SameName(one.name, name); });
  if (found == objects.value().end()) return std::optional<CatalogObject>();
  return std::optional(std::move(*found));
}

Result<std::optional<CatalogObject>> Catalog::FindIn(std::int32_t parent, std::string_view name) {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  const Result<ObjectTable*> rows = ObjectRows();
  if (!rows.ok()) return rows.error();
  return rows.value()->FindIn(parent, name);
}

Result<std::optional<CatalogObject>> Catalog::FindById(std::int32_t id) {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  const Result<ObjectTable*> rows = ObjectRows();
  if (!rows.ok()) return rows.error();
  return rows.value()->FindById(id);
}

Result<PropertyBlob> Catalog::Properties(const CatalogObject& object) {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  const Result<ObjectTable*> rows = ObjectRows();
  if (!rows.ok()) return rows.error();
  const Result<std::string> bytes = rows.value()->PropertyBytes(object);
  if (!bytes.ok()) return bytes.error();
  return ParsePropertyBlob(pager_.version(), AsBytes(bytes.value()), object.row.page);
}

Result<std::vector<Relationship>> Catalog::Relationships() {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  return ReadRelationships(maps_);
}

Result<std::vector<Relationship>> Catalog::RelationshipsOf(std::string_view table) {
  Result<std::vector<Relationship>> all = Relationships();
  if (!all.ok()) return all;
  std::erase_if(all.value(), [&](const Relationship& one) {
    return !SameName(one.table, table) && !SameName(one.referenced_table, table);
  });
  return all;
}

Result<Table*> Catalog::OpenTable(std::string_view name) {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  const Result<std::optional<CatalogObject>> object = FindIn(kTablesId, name);
  if (!object.ok()) return object.error();
  if (!object.value()) return JetError(kNoSuchTable, name);
  if (!object.value()->IsLocalTable()) return NoLocalTable(*object.value());
  return OpenOnce(object.value()->definition(), object.value()->name, object.value());
}

Result<Table*> Catalog::OpenTableAt(PageNumber definition, std::string_view name) {
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status().error();
  const Result<std::optional<CatalogObject>> found =
      FindById(static_cast<std::int32_t>(definition));
  const std::optional<CatalogObject> object = found.value_or(std::nullopt);
  if (!object || !object->IsLocalTable()) return OpenOnce(definition, name, std::nullopt);
  return OpenOnce(definition, object->name, object);
}

bool Catalog::MayHaveChanged() const {
  return pager_.sharing() != Sharing::Exclusive && !pager_.in_transaction();
}

/// Whether the file still has the table as it was opened.
bool Catalog::IsCurrent(Table& table) {
  const PageNumber page = table.store().page();
  const Result<std::optional<CatalogObject>> found = FindById(static_cast<std::int32_t>(page));
  if (!found.ok() || !found.value() || found.value()->name != table.name()) return false;
  const Result<PropertyBlob> properties = Properties(*found.value());
  if (!properties.ok() || properties.value() != table.properties()) return false;
  Result<StoredDefinition> definition = ReadDefinition(pager_, page);
  return definition.ok() && definition.value().pages == table.store().definition_pages() &&
         HasSameStructure(std::move(definition.value().table), table.definition());
}

Status Catalog::Refresh() {
  if (pager_.sharing() == Sharing::Exclusive) return {};
  const ReadScope scope(pager_);
  if (!scope.status().ok()) return scope.status();
  std::vector<PageNumber> stale;
  for (const auto& [page, table] : tables_) {
    if (!IsCurrent(*table)) stale.push_back(page);
  }
  for (const PageNumber page : stale) Drop(page);
  return {};
}

void Catalog::Drop(PageNumber definition) {
  for (const auto& [page, table] : tables_) table->ForgetLinks();
  tables_.erase(definition);
  ++generation_;
}

Result<Table*> Catalog::OpenOnce(PageNumber definition, std::string_view name,
                                 const std::optional<CatalogObject>& object) {
  if (const auto open = tables_.find(definition);
      open != tables_.end() && MayHaveChanged() && object && !IsCurrent(*open->second)) {
    Drop(definition);
  }
  if (const auto open = tables_.find(definition); open != tables_.end()) {
    Table& table = *open->second;
    if (!SameName(table.name(), name)) return Damaged(definition, "two tables share a definition");
    return &table;
  }
  Result<std::unique_ptr<TableStore>> store = TableStore::Open(maps_, definition);
  if (!store.ok()) return store.error();
  const Result<PropertyBlob> properties = object ? Properties(*object) : PropertyBlob();
  std::unique_ptr<Table> table(
      new Table(*this, std::string(name), std::move(store.value()), properties));
  if (hook_) {
    if (Status hooked = hook_(*table); !hooked.ok()) return hooked.error();
  }
  return tables_.emplace(definition, std::move(table)).first->second.get();
}

void Catalog::Forget() {
  tables_.clear();
  objects_.reset();
  ++generation_;
}

}  // namespace zent::jet
