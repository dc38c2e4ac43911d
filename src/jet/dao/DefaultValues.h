#pragma once

#include <vector>

#include "base/Status.h"
#include "jet/catalog/Table.h"
#include "jet/sql/expressions/Functions.h"

namespace zent::jet {

/// The values of a new row before anyone has given it one, by position: the fields' default values,
/// worked out; a counted AutoNumber has the number after the last.
Result<std::vector<Value>> NewRowValues(Table& table, const EvaluationContext& context);

}  // namespace zent::jet
