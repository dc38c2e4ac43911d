#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/ColumnPlan.h"
#include "jet/schema/ColumnProperties.h"
#include "jet/schema/DefinitionWriter.h"
#include "jet/schema/EditedTable.h"
#include "jet/schema/IndexPlan.h"
#include "jet/schema/Names.h"
#include "jet/schema/ObjectWriter.h"
#include "jet/schema/RelationshipRows.h"
#include "jet/schema/ReleaseStorage.h"
#include "jet/schema/Schema.h"

/// Tables as wholes.
namespace zent::jet {
namespace {

/// Columns and indexes, without maps and trees; checked.
Result<TableDefinition> PlanTable(const NewTable& table) {
  TableDefinition planned;
  if (table.columns.size() > kMaxColumns) return JetError(kTooManyFields);
  for (const NewColumn& column : table.columns) {
    Result<ColumnDefinition> definition = PlanColumn(column);
    if (!definition.ok()) return definition.error();
    definition.value().ordinal = planned.max_columns;
    PlaceColumn(std::move(definition.value()), 0, planned);
  }
  if (Status checked = CheckColumns(planned); !checked.ok()) return checked.error();
  for (const NewIndex& index : table.indexes) {
    Result<RealIndex> real = PlanIndex(planned, table.name, index);
    if (!real.ok()) return real.error();
    const IndexKind kind = index.primary ? IndexKind::Primary : IndexKind::Ordinary;
    AddLogicalIndex(index.name, planned.real_indexes.size(), kind, planned);
    planned.real_indexes.push_back(std::move(real.value()));
  }
  return planned;
}

Result<PropertyBlob> PlanProperties(const NewTable& table) {
  PropertyBlob blob;
  if (!table.properties.empty()) blob.sets.push_back({.properties = table.properties});
  for (const NewColumn& column : table.columns) {
    if (Status added = AddColumnProperties(column, blob); !added.ok()) return added.error();
  }
  return blob;
}

/// Tables, links and queries share their names.
Status CheckNewTableName(Catalog& catalog, std::string_view name) {
  if (Status named = CheckName(name); !named.ok()) return named;
  const Result<std::optional<CatalogObject>> there = catalog.FindIn(kTablesId, name);
  if (!there.ok()) return there.error();
  return there.value() ? Status(JetError(kTableExists, name)) : Status();
}

Status CheckNotRelated(Catalog& catalog, const CatalogObject& table) {
  const Result<std::vector<Relationship>> relations = catalog.RelationshipsOf(table.name);
  if (!relations.ok()) return relations.error();
  if (relations.value().empty()) return {};
  return JetErrorBecause(kTableInUse, "relationship " + relations.value().front().name, table.name);
}

/// The pages of a local table.
Status ReleaseAll(Catalog& catalog, const CatalogObject& object) {
  Result<StoredDefinition> stored = ReadDefinition(catalog.pager(), object.definition());
  if (!stored.ok()) return stored.error();
  UsageMaps& maps = catalog.maps();
  const TableDefinition& table = stored.value().table;
  for (const LogicalIndex& index : table.logical_indexes) {
    if (index.kind == IndexKind::Foreign && index.other_table != object.definition()) {
      return JetErrorBecause(kTableInUse, "index " + index.name, object.name);
    }
  }
  if (Status s = CheckTable(maps, object.definition(), table); !s.ok()) return s;
  if (Status s = ReleaseTable(maps, table); !s.ok()) return s;
  for (const PageNumber page : stored.value().pages) {
    if (Status s = maps.allocator().Release(page); !s.ok()) return s;
  }
  return {};
}

}  // namespace

Status Schema::CreateTable(const NewTable& table) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  if (Status named = CheckNewTableName(catalog_, table.name); !named.ok()) return named;
  Result<TableDefinition> planned = PlanTable(table);
  if (!planned.ok()) return planned.error();
  const Result<PropertyBlob> properties = PlanProperties(table);
  if (!properties.ok()) return properties.error();
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();

  UsageMaps& maps = catalog_.maps();
  std::vector<PageNumber> pages;
  {
    const Result<PageEdit> first = maps.allocator().Allocate();
    if (!first.ok()) return first.error();
    pages.push_back(first.value().page());
  }
  PageNumber beside = 0;
  TableDefinition& definition = planned.value();
  if (Status s = CreateStorage(maps, pages.front(), beside, definition); !s.ok()) return s;
  SortDefinition(definition);
  if (Status s = WriteDefinition(maps, definition, pages); !s.ok()) return s;
  return objects.value().Add({.id = static_cast<std::int32_t>(pages.front()),
                              .parent = kTablesId,
                              .type = ObjectType::Table,
                              .flags = table.flags,
                              .name = table.name,
                              .created = now_,
                              .updated = now_},
                             properties.value());
}

Status Schema::RenameTable(std::string_view from, std::string_view to) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  const Result<CatalogObject> object = FindTable(catalog_, from);
  if (!object.ok()) return object.error();
  if (Status named = CheckName(to); !named.ok()) return named;
  const Result<std::optional<CatalogObject>> there = catalog_.FindIn(kTablesId, to);
  if (!there.ok()) return there.error();
  if (there.value() && there.value()->id != object.value().id) return JetError(kTableExists, to);
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();
  if (Status s = objects.value().Rename(object.value(), to, now_); !s.ok()) return s;
  return RenameRelatedTable(catalog_.maps(), object.value().name, to);
}

Status Schema::DropTable(std::string_view table) {
  const ForgettingScope scope(catalog_);
  if (Status ready = ReadyToChange(catalog_); !ready.ok()) return ready;
  const Result<CatalogObject> object = FindTable(catalog_, table);
  if (!object.ok()) return object.error();
  if (Status free = CheckNotRelated(catalog_, object.value()); !free.ok()) return free;
  Result<ObjectWriter> objects = ObjectWriter::Open(catalog_);
  if (!objects.ok()) return objects.error();
  if (object.value().IsLocalTable()) {
    if (Status s = ReleaseAll(catalog_, object.value()); !s.ok()) return s;
  }
  return objects.value().Remove(object.value());
}

}  // namespace zent::jet
