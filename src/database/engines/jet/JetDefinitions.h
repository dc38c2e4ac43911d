#pragma once

#include "base/Status.h"
#include "database/port/TableDefinition.h"
#include "jet/dao/Field.h"
#include "jet/dao/TableDef.h"

/// The structure of a database in the engine's terms and the port's, and back.
namespace zent {

FieldDefinition FromJet(const jet::Field& field);
Result<jet::Field> ToJet(const FieldDefinition& field);

IndexDefinition FromJet(const jet::Index& index);
jet::Index ToJet(const IndexDefinition& index);

RelationDefinition FromJet(const jet::Relation& relation);
jet::Relation ToJet(const RelationDefinition& relation);

/// With fields, indexes and properties.
Result<TableDefinition> FromJet(const jet::TableDef& table);
/// A new table with its fields, properties and indexes; those that relations make are left out.
Result<jet::TableDef> ToJet(const TableDefinition& table);

/// Gives a table of a file the rules that `definition` has; no row is looked at.
Status SetRules(jet::TableDef& table, const TableDefinition& definition);

}  // namespace zent
