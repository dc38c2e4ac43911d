#pragma once

#include "jet/catalog/Table.h"
#include "jet/sql/expressions/Functions.h"

namespace zent::jet {

/// Makes `table` refuse rows that its ValidationRule properties do not allow, those of its columns
/// (">0", "In (1,2)": the column itself is what is compared) and its own: kValidationFailed with
/// the ValidationText. A rule that comes to null allows the row. One that cannot be read or worked
/// out is as none.
void AddValidationRules(Table& table, EvaluationContext context);

}  // namespace zent::jet
