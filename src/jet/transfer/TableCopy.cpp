#include "jet/transfer/TableCopy.h"

#include <numeric>

#include "jet/catalog/Catalog.h"
#include "jet/format/IndexKey.h"
#include "jet/format/JetErrors.h"
#include "jet/schema/Schema.h"
#include "jet/transfer/RowReader.h"
#include "jet/transfer/TableDescription.h"
#include "jet/transfer/TableLoader.h"

namespace zent::jet {
namespace {

/// Text whose order is not known would keep every later change out.
Status CheckOrder(const TableDefinition& table) {
  if (table.version == JetVersion::Jet3) return {};  // becomes General Legacy
  for (const ColumnDefinition& column : table.columns) {
    if (!IsText(column.type) || IsCovered(table.version, column)) continue;
    return JetErrorBecause(kReadOnly, "the sort order of field " + column.name + " is not known");
  }
  return {};
}

/// For each column of the copy, its position in the source.
Result<std::vector<std::size_t>> MatchColumns(const Table& from, const TableDefinition& to) {
  std::vector<std::size_t> positions;
  for (const ColumnDefinition& column : to.columns) {
    const Result<std::size_t> position = from.PositionOf(column.name);
    if (!position.ok()) return position.error();
    positions.push_back(position.value());
  }
  return positions;
}

Status CopyRows(Table& from, TableLoader& loader) {
  const Result<std::vector<std::size_t>> columns = MatchColumns(from, loader.table());
  if (!columns.ok()) return columns.status();
  const ReadScope scope(from.store().rows().maps().pager());
  if (!scope.status().ok()) return scope.status();
  RowReader reader(from.store(), columns.value(), loader.table());
  RowScan scan(from.store().rows());
  for (;;) {
    const Result<bool> more = scan.Next();
    if (!more.ok()) return more.status();
    if (!more.value()) {
      if (Status whole = CheckAllFound(from.store(), loader.rows()); !whole.ok()) return whole;
      return loader.Finish(false);
    }
    const Result<RowFields*> fields = reader.Read(scan.bytes(), scan.page());
    if (!fields.ok()) return fields.status();
    if (Status added = loader.Add(*fields.value()); !added.ok()) return added;
  }
}

Status CopyAutoNumber(Table& from, UsageMaps& maps, PageNumber page) {
  const Result<std::int32_t> last = from.store().LastAutoNumber();
  if (!last.ok()) return last.status();
  Result<PageEdit> edit = maps.pager().Edit(page);
  if (!edit.ok()) return edit.status();
  StoreU32(edit.value().bytes(), AutoNumberOffset(JetVersion::Jet4),
           static_cast<std::uint32_t>(last.value()));
  return {};
}

}  // namespace

Result<std::int64_t> CopyTable(Catalog& source, Catalog& target, const TableCopy& copy) {
  if (Status writable = target.pager().Writable(); !writable.ok()) return writable.error();
  Result<Table*> from = source.OpenTable(copy.table);
  if (!from.ok()) return from.error();
  if (Status known = CheckOrder(from.value()->definition()); !known.ok()) return known.error();
  const std::string name = copy.new_name.empty() ? from.value()->name() : copy.new_name;
  const Result<NewTable> described = DescribeTable(*from.value(), name);
  if (!described.ok()) return described.error();
  if (Status made = Schema(target, copy.created).CreateTable(described.value()); !made.ok())
    return made.error();
  if (!copy.rows) return std::int64_t{0};

  // Within one file the catalog has forgotten the table.
  from = source.OpenTable(copy.table);
  if (!from.ok()) return from.error();
  const Result<Table*> to = target.OpenTable(name);
  if (!to.ok()) return to.error();
  const PageNumber page = to.value()->store().page();
  const Result<std::unique_ptr<TableLoader>> loader =
      TableLoader::Open(target.maps(), page, copy.sort_bytes);
  if (!loader.ok()) return loader.error();
  if (Status copied = CopyRows(*from.value(), *loader.value()); !copied.ok()) {
    return copied.error();
  }
  if (Status numbered = CopyAutoNumber(*from.value(), target.maps(), page); !numbered.ok()) {
    return numbered.error();
  }
  return std::int64_t{loader.value()->rows()};
}

}  // namespace zent::jet
