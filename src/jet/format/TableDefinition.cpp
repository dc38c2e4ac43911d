#include "jet/format/TableDefinition.h"

#include <algorithm>

namespace zent::jet {

const ColumnDefinition* TableDefinition::ColumnOf(std::uint16_t number) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [&](const ColumnDefinition& column) { return column.number == number; });
  return found == columns.end() ? nullptr : &*found;
}

ColumnDefinition* TableDefinition::ColumnOf(std::uint16_t number) {
  const auto found =
      std::find_if(columns.begin(), columns.end(),
                   [&](const ColumnDefinition& column) { return column.number == number; });
  return found == columns.end() ? nullptr : &*found;
}

std::size_t TableDefinition::FixedAreaSize() const {
  std::size_t end = 0;
  for (const ColumnDefinition& column : columns) {
    if (!column.IsFixed() || column.type == ColumnType::Bool) continue;
    end = std::max(end, std::size_t{column.fixed_offset} + column.length);
  }
  return end;
}

std::size_t RowCountOffset(JetVersion version) { return LayoutOf(version).definition.row_count; }

std::size_t AutoNumberOffset(JetVersion version) {
  return LayoutOf(version).definition.auto_number;
}

std::size_t DistinctKeysOffset(JetVersion version, std::size_t real_index) {
  const Layout::Definition& layout = LayoutOf(version).definition;
  return layout.header_size + real_index * layout.counter_size + 4;
}

}  // namespace zent::jet
