#include <algorithm>
#include <utility>

#include "jet/catalog/Catalog.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/schema/Schema.h"
#include "jet/sql/execution/MadeNames.h"
#include "jet/sql/execution/NewDefinitions.h"
#include "jet/sql/execution/StatementRunners.h"

// CREATE, ALTER and DROP.
namespace zent::jet {
namespace {

Schema SchemaOf(SqlSession& session) { return Schema(session.catalog, session.context.now); }

/// The columns of the primary key of a table: what a foreign key refers to without saying.
Result<std::vector<std::string>> PrimaryColumns(Catalog& catalog, const std::string& name) {
  const Result<Table*> table = catalog.OpenTable(name);
  if (!table.ok()) return table.error();
  const TableDefinition& definition = table.value()->definition();
  for (const LogicalIndex& index : definition.logical_indexes) {
    if (index.kind != IndexKind::Primary) continue;
    std::vector<std::string> names;
    for (const IndexColumn& column : definition.real_indexes[index.real].columns) {
      const ColumnDefinition* const found = definition.ColumnOf(column.column);
      if (found != nullptr) names.push_back(found->name);
    }
    return names;
  }
  return JetErrorBecause(kItemNotFound, "table " + name + " has no primary key");
}

Status CreateForeignKey(SqlSession& session, const std::string& table,
                        const ForeignKeySpecification& key) {
  Relationship relationship{
      .name = key.name, .table = table, .referenced_table = key.referenced_table};
  if (relationship.name.empty()) {
    Result<std::string> made =
        FreeRelationshipName(session.catalog, table, key.referenced_table + table);
    if (!made.ok()) return made.error();
    relationship.name = std::move(made.value());
  }
  Result<std::vector<std::string>> referenced = key.referenced_columns;
  if (key.referenced_columns.empty()) {
    referenced = PrimaryColumns(session.catalog, key.referenced_table);
    if (!referenced.ok()) return referenced.error();
  }
  if (referenced.value().size() != key.columns.size()) return JetError(kValueCountDiffers);
  for (std::size_t i = 0; i < key.columns.size(); ++i) {
    relationship.columns.emplace_back(key.columns[i], referenced.value()[i]);
  }
  if (key.cascades_updates) relationship.flags |= kCascadesUpdates;
  if (key.cascades_deletes) relationship.flags |= kCascadesDeletes;
  return SchemaOf(session).CreateRelationship(relationship);
}

}  // namespace

Status RunDefinition(SqlSession& session, const CreateTableStatement& create) {
  NewTable table{.name = create.table};
  for (const ColumnSpecification& column : create.columns) {
    table.columns.push_back(MakeColumn(column));
  }
  for (const IndexSpecification& constraint : create.constraints) {
    table.indexes.push_back(MakeIndex(constraint));
  }
  Status done = SchemaOf(session).CreateTable(table);
  for (const ForeignKeySpecification& key : create.foreign_keys) {
    if (done.ok()) done = CreateForeignKey(session, create.table, key);
  }
  return done;
}

Status RunDefinition(SqlSession& session, const CreateIndexStatement& create) {
  return SchemaOf(session).CreateIndex(create.table, MakeIndex(create.index));
}

Status RunDefinition(SqlSession& session, const AddColumnStatement& add) {
  Schema schema = SchemaOf(session);
  Status done = schema.AddColumn(add.table, MakeColumn(add.column));
  if (done.ok() && add.constraint) done = schema.CreateIndex(add.table, MakeIndex(*add.constraint));
  if (done.ok() && add.foreign_key) done = CreateForeignKey(session, add.table, *add.foreign_key);
  return done;
}

Status RunDefinition(SqlSession& session, const AddConstraintStatement& add) {
  if (add.foreign_key) return CreateForeignKey(session, add.table, *add.foreign_key);
  return SchemaOf(session).CreateIndex(add.table, MakeIndex(*add.index));
}

Status RunDefinition(SqlSession& session, const DropColumnStatement& drop) {
  return SchemaOf(session).DropColumn(drop.table, drop.column);
}

Status RunDefinition(SqlSession& session, const DropConstraintStatement& drop) {
  const Result<std::vector<Relationship>> known = session.catalog.RelationshipsOf(drop.table);
  if (!known.ok()) return known.error();
  const bool is_key = std::any_of(known.value().begin(), known.value().end(),
                                  [&](const Relationship& relationship) {
                                    return SameKey(relationship.name, drop.constraint);
                                  });
  Schema schema = SchemaOf(session);
  return is_key ? schema.DropRelationship(drop.constraint)
                : schema.DropIndex(drop.table, drop.constraint);
}

Status RunDefinition(SqlSession& session, const DropTableStatement& drop) {
  return SchemaOf(session).DropTable(drop.table);
}

Status RunDefinition(SqlSession& session, const DropIndexStatement& drop) {
  return SchemaOf(session).DropIndex(drop.table, drop.index);
}

}  // namespace zent::jet
