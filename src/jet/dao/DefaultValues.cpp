#include "jet/dao/DefaultValues.h"

#include "jet/sql/execution/ColumnDefaults.h"

namespace zent::jet {
namespace {

bool HasDefault(const Table& table, const ColumnDefinition& column) {
  const PropertySet* const set = table.properties().Find(column.name);
  return set != nullptr && set->Find("DefaultValue") != nullptr;
}

bool IsAutoNumber(const ColumnDefinition& column) {
  return column.IsAutoNumber() ||
         (column.type == ColumnType::Guid && (column.flags & kGuidAutoNumberColumn) != 0);
}

}  // namespace

Result<std::vector<Value>> NewRowValues(Table& table, const EvaluationContext& context) {
  const std::vector<ColumnDefinition>& columns = table.definition().columns;
  ColumnDefaults defaults(table, context);
  std::vector<Value> values(columns.size());
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (!IsAutoNumber(columns[i])) {
      values[i] = defaults.For(i);
      if (columns[i].type == ColumnType::Bool && IsNull(values[i])) values[i] = false;
      continue;
    }
    // With a default value it is a random one, which nobody knows before.
    if (columns[i].type != ColumnType::Long || HasDefault(table, columns[i])) continue;
    const Result<std::int32_t> last = table.store().LastAutoNumber();
    if (!last.ok()) return last.error();
    values[i] = static_cast<std::int32_t>(static_cast<std::uint32_t>(last.value()) + 1U);
  }
  return values;
}

}  // namespace zent::jet
