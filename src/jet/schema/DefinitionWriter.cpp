#include "jet/schema/DefinitionWriter.h"

#include <algorithm>
#include <tuple>

#include "base/CaseFold.h"
#include "jet/format/DefinitionPages.h"
#include "jet/store/IndexTree.h"

namespace zent::jet {
namespace {

/// Makes the chain `count` pages long.
Status ResizeChain(UsageMaps& maps, std::size_t count, std::vector<PageNumber>& pages) {
  while (pages.size() > count) {
    if (Status released = maps.allocator().Release(pages.back()); !released.ok()) return released;
    pages.pop_back();
  }
  while (pages.size() < count) {
    const Result<PageEdit> page = maps.allocator().Allocate();
    if (!page.ok()) return page.error();
    pages.push_back(page.value().page());
  }
  return {};
}

Result<RowPointer> CreateMap(UsageMaps& maps, PageNumber& beside) {
  Result<RowPointer> map = maps.Create(beside);
  if (map.ok()) beside = map.value().page;
  return map;
}

std::size_t PositionOf(const TableDefinition& table, std::uint16_t number) {
  const auto at =
      std::find_if(table.columns.begin(), table.columns.end(),
                   [&](const ColumnDefinition& column) { return column.number == number; });
  return static_cast<std::size_t>(at - table.columns.begin());
}

}  // namespace

void SortDefinition(TableDefinition& table) {
  std::sort(table.columns.begin(), table.columns.end(),
            [](const ColumnDefinition& a, const ColumnDefinition& b) {
              return std::tuple(a.ordinal, FoldName(a.name)) <
                     std::tuple(b.ordinal, FoldName(b.name));
            });
  std::sort(table.logical_indexes.begin(), table.logical_indexes.end(),
            [](const LogicalIndex& a, const LogicalIndex& b) {
              return FoldName(a.name) < FoldName(b.name);
            });
  std::sort(table.long_value_maps.begin(), table.long_value_maps.end(),
            [&](const LongValueMaps& a, const LongValueMaps& b) {
              return PositionOf(table, a.column) < PositionOf(table, b.column);
            });
}

Status WriteDefinition(UsageMaps& maps, const TableDefinition& table,
                       std::vector<PageNumber>& pages) {
  const std::vector<std::uint8_t> stream = SerialiseTableDefinition(table);
  const std::size_t count = DefinitionPageCount(table.version, stream.size());
  if (Status resized = ResizeChain(maps, count, pages); !resized.ok()) return resized;
  for (std::size_t i = 0; i < pages.size(); ++i) {
    Result<PageEdit> edit = maps.pager().Edit(pages[i]);
    if (!edit.ok()) return edit.error();
    const PageNumber next = i + 1 < pages.size() ? pages[i + 1] : 0;
    WriteDefinitionPage(table.version, stream, i, next, edit.value().bytes());
  }
  return {};
}

Result<LongValueMaps> CreateLongValueMaps(UsageMaps& maps, std::uint16_t column,
                                          PageNumber& beside) {
  const Result<RowPointer> owned = CreateMap(maps, beside);
  if (!owned.ok()) return owned.error();
  const Result<RowPointer> free = CreateMap(maps, beside);
  if (!free.ok()) return free.error();
  return LongValueMaps{.column = column, .owned = owned.value(), .free = free.value()};
}

Status CreateTree(UsageMaps& maps, PageNumber page, PageNumber& beside, RealIndex& index) {
  const Result<RowPointer> map = CreateMap(maps, beside);
  if (!map.ok()) return map.error();
  index.map = map.value();
  const Result<IndexTree> tree = IndexTree::Create(maps, page, index.map);
  if (!tree.ok()) return tree.error();
  index.root = tree.value().place().root;
  return {};
}

Status CreateStorage(UsageMaps& maps, PageNumber page, PageNumber& beside, TableDefinition& table) {
  for (RowPointer* const map : {&table.owned_map, &table.free_map}) {
    const Result<RowPointer> created = CreateMap(maps, beside);
    if (!created.ok()) return created.error();
    *map = created.value();
  }
  for (std::uint16_t number = 0; number < table.max_columns; ++number) {
    const ColumnDefinition* const column = table.ColumnOf(number);
    if (column == nullptr || !IsLong(column->type)) continue;
    const Result<LongValueMaps> created = CreateLongValueMaps(maps, number, beside);
    if (!created.ok()) return created.error();
    table.long_value_maps.push_back(created.value());
  }
  for (RealIndex& index : table.real_indexes) {
    if (Status created = CreateTree(maps, page, beside, index); !created.ok()) return created;
  }
  return {};
}

}  // namespace zent::jet
