#include "jet/schema/OldRows.h"

#include <algorithm>
#include <array>

#include "jet/schema/DefinitionWriter.h"
#include "jet/schema/NamedRow.h"
#include "jet/store/TableStore.h"

namespace zent::jet {
namespace {

constexpr std::size_t kCountSize = 2;  // of the column count, before the fixed area

/// Where the fixed area of a row ends: where its first variable field begins, else at its mask. Too
/// far at worst.
std::size_t FixedEndOf(ByteView row, bool has_variable_part) {
  if (row.size() < kCountSize) return 0;
  const std::size_t mask_size = (LoadU16(row, 0) + 7U) / 8U;
  if (row.size() < kCountSize + mask_size) return 0;
  const std::size_t mask = row.size() - mask_size;
  if (!has_variable_part || mask < kCountSize + 4) return mask - kCountSize;
  const std::size_t first = LoadU16(row, mask - 4);
  return (first >= kCountSize && first <= mask ? first : mask) - kCountSize;
}

}  // namespace

Result<std::size_t> LongestFixedArea(UsageMaps& maps, PageNumber page) {
  const Result<std::unique_ptr<TableStore>> table = TableStore::Open(maps, page);
  if (!table.ok()) return table.error();
  const TableDefinition& definition = table.value()->definition();
  const bool has_variable_part = definition.variable_slots > 0;
  std::size_t end = definition.FixedAreaSize();
  RowScan scan(table.value()->rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    end = std::max(end, FixedEndOf(scan.bytes(), has_variable_part));
  }
  if (!more.ok()) return more.error();
  return end;
}

Status GiveVariablePart(Catalog& catalog, PageNumber page, std::string_view column) {
  const Result<std::unique_ptr<TableStore>> table = TableStore::Open(catalog.maps(), page);
  if (!table.ok()) return table.error();
  const Result<std::size_t> position = ColumnPosition(table.value()->definition(), column);
  if (!position.ok()) return position.error();
  const std::array change = {ColumnChange{.position = position.value(), .value = Null()}};
  RowScan scan(table.value()->rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    if (Status s = table.value()->Update(scan.at(), change); !s.ok()) return s;
  }
  return more.status();
}

Status NumberRows(Catalog& catalog, PageNumber page, std::string_view column) {
  UsageMaps& maps = catalog.maps();
  const Result<std::unique_ptr<TableStore>> table = TableStore::Open(maps, page);
  if (!table.ok()) return table.error();
  const Result<std::size_t> position = ColumnPosition(table.value()->definition(), column);
  if (!position.ok()) return position.error();
  const bool guid = table.value()->definition().columns[position.value()].type == ColumnType::Guid;
  std::int32_t last = 0;
  RowScan scan(table.value()->rows());
  Result<bool> more = scan.Next();
  for (; more.value_or(false); more = scan.Next()) {
    const Value value = guid ? Value(MakeGuid(catalog.random())) : Value(++last);
    const std::array change = {ColumnChange{.position = position.value(), .value = value}};
    if (Status s = table.value()->Update(scan.at(), change); !s.ok()) return s;
  }
  if (!more.ok() || guid) return more.status();
  Result<StoredDefinition> stored = ReadDefinition(catalog.pager(), page);
  if (!stored.ok()) return stored.error();
  stored.value().table.last_auto_number = last;
  return WriteDefinition(maps, stored.value().table, stored.value().pages);
}

}  // namespace zent::jet
