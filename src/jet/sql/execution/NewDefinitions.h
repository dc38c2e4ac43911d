#pragma once

#include "jet/schema/NewTable.h"
#include "jet/sql/execution/ResultSet.h"
#include "jet/sql/syntax/Statement.h"

/// What statements say of columns and indexes, as the schema takes it.
namespace zent::jet {

NewColumn MakeColumn(const ColumnSpecification& column);
/// A constraint without a name is called after its columns, a primary key "PrimaryKey".
NewIndex MakeIndex(const IndexSpecification& index);

/// A column for the values of a result: of the same type, or, for an expression, of one that holds
/// `sample` and its like.
NewColumn MakeColumn(const ResultColumn& column, const Value& sample);

}  // namespace zent::jet
