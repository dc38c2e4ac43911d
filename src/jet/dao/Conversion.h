#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/catalog/Relationship.h"
#include "jet/catalog/Table.h"
#include "jet/dao/Field.h"
#include "jet/schema/NewTable.h"

/// DAO's objects and what the file has for them.
namespace zent::jet {

/// A field of a table, by the position of its column.
Result<Field> FieldOf(const Table& table, std::size_t position);
/// In the order in which they are listed.
Result<std::vector<Field>> FieldsOf(const Table& table);
/// The indexes by name; the hidden ones of the referenced side of relationships are left out.
std::vector<Index> IndexesOf(const TableDefinition& table);

/// kInvalidFieldType for a type that fields do not have.
Result<NewColumn> ColumnFor(const Field& field);
NewIndex IndexFor(const Index& index);

Relation RelationOf(const Relationship& relationship);
Relationship RelationshipFor(const Relation& relation);

}  // namespace zent::jet
