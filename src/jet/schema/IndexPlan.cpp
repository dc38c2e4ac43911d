#include "jet/schema/IndexPlan.h"

#include <algorithm>

#include "base/CaseFold.h"
#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/schema/NamedRow.h"
#include "jet/schema/Names.h"

namespace zent::jet {
namespace {

Result<IndexColumn> PlanIndexColumn(const TableDefinition& table, const RealIndex& planned,
                                    const NewIndex::Column& column) {
  const Result<std::size_t> position = ColumnPosition(table, column.name);
  if (!position.ok()) return position.error();
  const ColumnDefinition& definition = table.columns[position.value()];
  if (definition.type == ColumnType::Ole || definition.type == ColumnType::Internal) {
    return JetErrorBecause(kInvalidFieldType, "such a field cannot be indexed", column.name);
  }
  if (IsText(definition.type) && !IsCovered(table.version, definition)) {
    return JetErrorBecause(kReadOnly, "the sort order of field " + column.name + " is not known");
  }
  const bool twice =
      std::any_of(planned.columns.begin(), planned.columns.end(),
                  [&](const IndexColumn& other) { return other.column == definition.number; });
  if (twice) return JetError(kFieldDefinedTwice, column.name);
  return IndexColumn{.column = definition.number, .ascending = !column.descending};
}

}  // namespace

Result<std::size_t> IndexPosition(const TableDefinition& table, std::string_view name) {
  const auto at =
      std::find_if(table.logical_indexes.begin(), table.logical_indexes.end(),
                   [&](const LogicalIndex& index) { return SameName(index.name, name); });
  if (at == table.logical_indexes.end()) return JetErrorBecause(kItemNotFound, name);
  return static_cast<std::size_t>(at - table.logical_indexes.begin());
}

Status CheckRoomForIndex(const TableDefinition& table, std::string_view table_name,
                         std::string_view index_name) {
  const bool taken =
      std::any_of(table.logical_indexes.begin(), table.logical_indexes.end(),
                  [&](const LogicalIndex& index) { return SameKey(index.name, index_name); });
  if (taken) return JetErrorBecause(kIndexExists, index_name);
  if (table.logical_indexes.size() < kMaxIndexes) return {};
  return JetError(kTooManyIndexes, table_name);
}

Result<RealIndex> PlanIndex(const TableDefinition& table, std::string_view table_name,
                            const NewIndex& index) {
  if (Status named = CheckName(index.name); !named.ok()) return named.error();
  if (Status room = CheckRoomForIndex(table, table_name, index.name); !room.ok()) {
    return room.error();
  }
  const bool has_primary =
      std::any_of(table.logical_indexes.begin(), table.logical_indexes.end(),
                  [](const LogicalIndex& other) { return other.kind == IndexKind::Primary; });
  if (index.primary && has_primary) return JetError(kPrimaryKeyExists);
  if (index.columns.empty()) return JetErrorBecause(kInvalidArgument, "an index without fields");
  if (index.columns.size() > kMaxIndexColumns) return JetError(kTooManyIndexFields);

  RealIndex planned;
  for (const NewIndex::Column& column : index.columns) {
    const Result<IndexColumn> part = PlanIndexColumn(table, planned, column);
    if (!part.ok()) return part.error();
    planned.columns.push_back(part.value());
  }
  if (index.primary || index.unique) planned.flags |= kUniqueIndex;
  if (index.primary || index.required) planned.flags |= kRequiredIndex;
  if (index.ignore_nulls && !index.primary) planned.flags |= kIgnoreNullsIndex;
  return planned;
}

std::uint32_t AddLogicalIndex(std::string_view name, std::size_t real, IndexKind kind,
                              TableDefinition& table) {
  std::uint32_t number = 0;
  for (const LogicalIndex& other : table.logical_indexes) {
    number = std::max(number, other.number + 1);
  }
  const std::uint8_t cascades = kind == IndexKind::Foreign ? std::uint8_t{0} : kNotCascaded;
  table.logical_indexes.push_back({.name = std::string(name),
                                   .number = number,
                                   .real = static_cast<std::uint32_t>(real),
                                   .kind = kind,
                                   .cascade_updates = cascades,
                                   .cascade_deletes = cascades});
  return number;
}

std::optional<RealIndex> RemoveLogicalIndex(std::size_t position, TableDefinition& table) {
  const std::uint32_t real = table.logical_indexes[position].real;
  table.logical_indexes.erase(table.logical_indexes.begin() +
                              static_cast<std::ptrdiff_t>(position));
  const bool shared = std::any_of(table.logical_indexes.begin(), table.logical_indexes.end(),
                                  [&](const LogicalIndex& other) { return other.real == real; });
  if (shared) return {};
  RealIndex removed = std::move(table.real_indexes[real]);
  table.real_indexes.erase(table.real_indexes.begin() + static_cast<std::ptrdiff_t>(real));
  for (LogicalIndex& other : table.logical_indexes) {
    if (other.real > real) --other.real;
  }
  return removed;
}

}  // namespace zent::jet
