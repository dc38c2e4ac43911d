#pragma once

#include <string>

#include "base/Status.h"
#include "jet/catalog/Table.h"
#include "jet/schema/NewTable.h"

namespace zent::jet {

/// What a new table like `table` is told by: its columns in the order in which they are listed,
/// with their properties, and its indexes but those that only relationships stand for.
Result<NewTable> DescribeTable(const Table& table, std::string name);

/// One column of it.
Result<NewColumn> DescribeColumn(const Table& table, std::size_t position);

}  // namespace zent::jet
