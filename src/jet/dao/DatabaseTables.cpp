#include "jet/dao/Conversion.h"
#include "jet/dao/Database.h"
#include "jet/dao/DatabaseCore.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/Schema.h"

/// What a database is made of.
namespace zent::jet {
namespace {

TableFacts FactsOf(const CatalogObject& object) {
  TableFacts facts{.name = object.name};
  facts.attributes = static_cast<std::uint32_t>(object.flags);
  if (object.IsHidden()) facts.attributes |= kHiddenTable;
  if (object.type == ObjectType::LinkedTable) {
    facts.attributes |= kAttachedTable;
    // The path stands beside the connect text in the file.
    facts.connect = (object.connect.empty() ? ";" : object.connect);
    if (!object.database.empty()) {
      if (!facts.connect.ends_with(';')) facts.connect += ';';
      facts.connect += "DATABASE=" + object.database;
    }
  }
  if (object.type == ObjectType::LinkedOdbcTable) {
    facts.attributes |= kAttachedOdbc;
    facts.connect = object.connect;
  }
  facts.source_table_name = object.foreign_name;
  facts.date_created = object.created;
  facts.last_updated = object.updated;
  return facts;
}

/// An object of the container of tables that is a table.
Result<CatalogObject> FindTable(Catalog& catalog, std::string_view name) {
  Result<std::optional<CatalogObject>> found = catalog.FindIn(kTablesId, name);
  if (!found.ok()) return found.error();
  if (!found.value() || !found.value()->IsTable()) return JetError(kItemNotFound);
  return std::move(*found.value());
}

}  // namespace

Result<Collection<TableDef>> Database::TableDefs() {
  if (Status open = core_->CheckOpen(); !open.ok()) return open.error();
  const Result<std::vector<CatalogObject>> objects = core_->catalog->Tables();
  if (!objects.ok()) return objects.error();
  std::vector<TableDef> tables;
  for (const CatalogObject& object : objects.value()) {
    tables.emplace_back(*this, FactsOf(object));
  }
  return Collection<TableDef>(std::move(tables));
}

Result<TableDef> Database::FindTableDef(std::string_view name) {
  if (Status open = core_->CheckOpen(); !open.ok()) return open.error();
  const Result<CatalogObject> object = FindTable(*core_->catalog, name);
  if (!object.ok()) return object.error();
  return TableDef(*this, FactsOf(object.value()));
}

Status Database::Append(TableDef& table) {
  if (table.database_ != nullptr) return JetError(kTableExists, table.name());
  NewTable made{.name = table.name()};
  for (const Field& field : table.new_fields_) {
    Result<NewColumn> column = ColumnFor(field);
    if (!column.ok()) return column.status();
    made.columns.push_back(std::move(column.value()));
  }
  for (const Index& index : table.new_indexes_) made.indexes.push_back(IndexFor(index));
  made.properties = table.new_properties_;
  if ((table.attributes() & kHiddenTable) != 0) made.flags = kHiddenObject;
  Status done =
      core_->Change([&] { return Schema(*core_->catalog, core_->now()).CreateTable(made); });
  if (!done.ok()) return done;
  Result<TableDef> found = FindTableDef(made.name);
  if (!found.ok()) return found.status();
  table = std::move(found.value());
  return {};
}

Status Database::DeleteTable(std::string_view name) {
  if (Status open = core_->CheckOpen(); !open.ok()) return open;
  const Result<CatalogObject> object = FindTable(*core_->catalog, name);
  if (!object.ok()) return object.status();
  return core_->Change(
      [&] { return Schema(*core_->catalog, core_->now()).DropTable(object.value().name); });
}

Result<Collection<Relation>> Database::Relations() {
  if (Status open = core_->CheckOpen(); !open.ok()) return open.error();
  const Result<std::vector<Relationship>> all = core_->catalog->Relationships();
  if (!all.ok()) return all.error();
  std::vector<Relation> relations;
  for (const Relationship& relationship : all.value()) {
    relations.push_back(RelationOf(relationship));
  }
  return Collection<Relation>(std::move(relations));
}

Status Database::Append(const Relation& relation) {
  return core_->Change([&] {
    return Schema(*core_->catalog, core_->now()).CreateRelationship(RelationshipFor(relation));
  });
}

Status Database::DeleteRelation(std::string_view name) {
  return core_->Change(
      [&] { return Schema(*core_->catalog, core_->now()).DropRelationship(name); });
}

Result<Collection<Property>> Database::Properties() {
  if (Status open = core_->CheckOpen(); !open.ok()) return open.error();
  const Result<std::optional<CatalogObject>> object =
      core_->catalog->Find(ObjectType::Database, kDatabaseName);
  if (!object.ok()) return object.error();
  if (!object.value()) return Collection<Property>();
  const Result<PropertyBlob> blob = core_->catalog->Properties(*object.value());
  if (!blob.ok()) return blob.error();
  const PropertySet* const own = blob.value().Find({});
  return own == nullptr ? Collection<Property>() : Collection<Property>(own->properties);
}

}  // namespace zent::jet
