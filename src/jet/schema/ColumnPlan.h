#pragma once

#include <cstddef>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/schema/NewTable.h"

/// From what a new column shall be to how the definition has it.
namespace zent::jet {

/// The definition of a column that has no place in a table yet: kInvalidName, kInvalidFieldType,
/// kFieldTooSmall.
Result<ColumnDefinition> PlanColumn(const NewColumn& column);

/// Puts `column` into `table`: it gets the next number and, if variable, the next slot, else a
/// place in the fixed area that is not below `fixed_end`.
void PlaceColumn(ColumnDefinition column, std::size_t fixed_end, TableDefinition& table);

/// kTooManyFields, kFieldDefinedTwice, and kRecordTooLarge when no row would fit a page.
Status CheckColumns(const TableDefinition& table);

}  // namespace zent::jet
