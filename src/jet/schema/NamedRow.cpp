#include "jet/schema/NamedRow.h"

#include <algorithm>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"

namespace zent::jet {

Result<std::size_t> ColumnPosition(const TableDefinition& table, std::string_view name) {
  const auto at =
      std::find_if(table.columns.begin(), table.columns.end(),
                   [&](const ColumnDefinition& column) { return SameKey(column.name, name); });
  if (at == table.columns.end()) return JetErrorBecause(kItemNotFound, name);
  return static_cast<std::size_t>(at - table.columns.begin());
}

Result<std::vector<Value>> RowOf(const TableDefinition& table,
                                 std::initializer_list<NamedValue> values) {
  std::vector<Value> row(table.columns.size());
  for (const NamedValue& named : values) {
    const Result<std::size_t> position = ColumnPosition(table, named.column);
    if (!position.ok()) return position.error();
    row[position.value()] = named.value;
  }
  return row;
}

}  // namespace zent::jet
