#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/format/Value.h"

namespace zent::jet {

/// A value for the column of that name.
struct NamedValue {
  std::string_view column;
  Value value;
};

/// The position of a column of `table`, in any case; kItemNotFound.
Result<std::size_t> ColumnPosition(const TableDefinition& table, std::string_view name);

/// A row with these values, null elsewhere.
Result<std::vector<Value>> RowOf(const TableDefinition& table,
                                 std::initializer_list<NamedValue> values);

}  // namespace zent::jet
