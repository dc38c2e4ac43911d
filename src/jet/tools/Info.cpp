#include "jet/tools/Info.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "jet/tools/DatabaseFacts.h"

namespace zent::jet {
namespace {

const char* KindOf(const CatalogObject& object) {
  if (object.type == ObjectType::LinkedOdbcTable) return "odbc";
  if (object.IsLinked()) return "linked";
  if (object.IsSystem()) return "system";
  return object.IsHidden() ? "hidden" : "table";
}

TableInfo InfoOf(Catalog& catalog, const CatalogObject& object) {
  TableInfo info = {.name = object.name, .kind = KindOf(object)};
  if (object.IsLinked()) {
    info.source = object.database;
    if (!object.foreign_name.empty()) info.source += " " + object.foreign_name;
    return info;
  }
  const Result<StoredDefinition> definition = ReadDefinition(catalog.pager(), object.definition());
  if (!definition.ok()) {
    info.problem = definition.error().description;
    return info;
  }
  info.columns = definition.value().table.columns.size();
  info.indexes = definition.value().table.logical_indexes.size();
  info.rows = definition.value().table.row_count;
  return info;
}

}  // namespace

Result<DatabaseInfo> ReadInfo(Catalog& catalog) {
  const ReadScope scope(catalog.pager());
  if (!scope.status().ok()) return scope.status().error();
  Pager& pager = catalog.pager();
  const Result<FileHeader> header = HeaderOf(pager);
  if (!header.ok()) return header.error();
  DatabaseInfo info = {
      .header = header.value(), .page_size = pager.page_size(), .pages = pager.page_count()};
  const Result<PropertyBlob> properties =
      DocumentProperties(catalog, ObjectType::Database, kDatabaseName);
  info.format = FormatName(pager.version(), properties.value_or({}));
  const Result<std::vector<CatalogObject>> objects = catalog.Objects();
  if (!objects.ok()) return objects.error();
  for (const CatalogObject& object : objects.value()) {
    if (object.type == ObjectType::Query) ++info.queries;
    if (object.IsLinked()) ++info.linked_tables;
    if (!object.IsLocalTable()) continue;
    if (object.IsSystem()) {
      ++info.system_tables;
      continue;
    }
    ++info.tables;
    info.rows += InfoOf(catalog, object).rows;
  }
  const Result<std::vector<Relationship>> relationships = catalog.Relationships();
  if (!relationships.ok()) return relationships.error();
  info.relationships = relationships.value().size();
  return info;
}

Result<std::vector<TableInfo>> ListTables(Catalog& catalog, bool all) {
  const ReadScope scope(catalog.pager());
  if (!scope.status().ok()) return scope.status().error();
  const Result<std::vector<CatalogObject>> objects = catalog.Tables();
  if (!objects.ok()) return objects.error();
  std::vector<TableInfo> tables;
  for (const CatalogObject& object : objects.value()) {
    if (all || !object.IsSystem()) tables.push_back(InfoOf(catalog, object));
  }
  std::sort(tables.begin(), tables.end(), [](const TableInfo& a, const TableInfo& b) {
    return FoldName(a.name) < FoldName(b.name);
  });
  return tables;
}

}  // namespace zent::jet
