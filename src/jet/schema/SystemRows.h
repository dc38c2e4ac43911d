#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/SystemTable.h"

namespace zent::jet {

/// The rows of a system table whose `column`, by the place of its name at Open, has `value`; texts
/// in any case. Through an index where there is one.
Result<std::vector<RowPointer>> FindRows(SystemTable& table, std::size_t column,
                                         const Value& value);

/// Deletes those rows.
Status DeleteRows(SystemTable& table, std::size_t column, const Value& value);

}  // namespace zent::jet
