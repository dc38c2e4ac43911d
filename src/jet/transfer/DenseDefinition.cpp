#include "jet/transfer/DenseDefinition.h"

#include <algorithm>
#include <map>
#include <numeric>

namespace zent::jet {
namespace {

/// Text of Jet 3 has a byte a character and its collation elsewhere.
void ConvertColumn(ColumnDefinition& column) {
  column.unknown = 0;
  if (!IsText(column.type)) return;
  column.length = static_cast<std::uint16_t>(column.length * 2);
  column.details = {0x09, 0x04, 0, 0};
  if (!column.IsFixed()) column.extended_flags = kCompressedColumn;
}

/// The positions of the columns in the order in which they were added.
std::vector<std::size_t> ByNumber(const std::vector<ColumnDefinition>& columns) {
  std::vector<std::size_t> order(columns.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(),
            [&](std::size_t a, std::size_t b) { return columns[a].number < columns[b].number; });
  return order;
}

void NumberColumns(TableDefinition& table) {
  for (const std::size_t i : ByNumber(table.columns)) {
    ColumnDefinition& column = table.columns[i];
    column.number = table.max_columns++;
    if (column.IsFixed()) column.slot = 0;
  }
}

/// Slots in their old order; long values have theirs behind the others in files of the same kind.
void GiveSlots(TableDefinition& table) {
  std::vector<ColumnDefinition*> variable;
  for (ColumnDefinition& column : table.columns) {
    if (!column.IsFixed() && column.type != ColumnType::Bool) variable.push_back(&column);
  }
  std::sort(variable.begin(), variable.end(),
            [](const auto* a, const auto* b) { return a->slot < b->slot; });
  for (ColumnDefinition* const column : variable) column->slot = table.variable_slots++;
  // Of a fixed column: the variable ones that were there before it.
  for (const std::size_t i : ByNumber(table.columns)) {
    ColumnDefinition& column = table.columns[i];
    if (!column.IsFixed() && column.type != ColumnType::Bool) continue;
    column.slot = static_cast<std::uint16_t>(
        std::count_if(variable.begin(), variable.end(),
                      [&](const auto* one) { return one->number < column.number; }));
  }
}

void GiveOffsets(TableDefinition& table) {
  std::vector<ColumnDefinition*> fixed;
  for (ColumnDefinition& column : table.columns) {
    if (column.IsFixed() && column.type != ColumnType::Bool) fixed.push_back(&column);
  }
  std::sort(fixed.begin(), fixed.end(),
            [](const auto* a, const auto* b) { return a->fixed_offset < b->fixed_offset; });
  std::size_t offset = 0;
  for (ColumnDefinition* const column : fixed) {
    column->fixed_offset = static_cast<std::uint16_t>(offset);
    offset += column->length;
  }
}

/// Indexes of the table, emptied; trees that no name stands for are left out.
void TakeIndexes(const TableDefinition& source, TableDefinition& table) {
  std::map<std::uint32_t, std::uint32_t> places;
  for (LogicalIndex& logical : table.logical_indexes) {
    const auto [at, is_new] =
        places.try_emplace(logical.real, static_cast<std::uint32_t>(table.real_indexes.size()));
    logical.real = at->second;
    if (!is_new) continue;
    RealIndex real = source.real_indexes[at->first];
    for (IndexColumn& column : real.columns) {
      const ColumnDefinition* const one = source.ColumnOf(column.column);
      if (one == nullptr) continue;  // damage, found when the keys are made
      column.column = table.columns[static_cast<std::size_t>(one - source.columns.data())].number;
    }
    real.map = {};
    real.root = 0;
    real.flags |= kAccessIndex;
    real.rows_at_compaction = real.distinct_keys = real.leftover = 0;
    real.unused_orders = {};
    table.real_indexes.push_back(std::move(real));
  }
}

bool HasSameLayout(const TableDefinition& source, const TableDefinition& table) {
  if (source.version != table.version || source.max_columns != table.max_columns ||
      source.variable_slots != table.variable_slots) {
    return false;
  }
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const ColumnDefinition& a = source.columns[i];
    const ColumnDefinition& b = table.columns[i];
    if (a.number != b.number) return false;
    if (a.type == ColumnType::Bool) continue;
    if (a.IsFixed() ? a.fixed_offset != b.fixed_offset : a.slot != b.slot) return false;
  }
  return true;
}

}  // namespace

DenseDefinition MakeDense(const TableDefinition& source) {
  DenseDefinition dense;
  TableDefinition& table = dense.table;
  table.kind = source.kind;
  table.last_auto_number = source.last_auto_number;
  if (source.version == JetVersion::Jet4) table.leftovers[0] = source.leftovers[0];
  table.columns = source.columns;
  table.logical_indexes = source.logical_indexes;
  if (source.version == JetVersion::Jet3) {
    for (ColumnDefinition& column : table.columns) ConvertColumn(column);
  }
  NumberColumns(table);
  GiveSlots(table);
  GiveOffsets(table);
  TakeIndexes(source, table);
  for (const ColumnDefinition& column : table.columns) {
    if (IsLong(column.type)) table.long_value_maps.push_back({.column = column.number});
  }
  dense.from.resize(table.columns.size());
  std::iota(dense.from.begin(), dense.from.end(), std::size_t{0});
  dense.same_layout = HasSameLayout(source, table);
  return dense;
}

}  // namespace zent::jet
