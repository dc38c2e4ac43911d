#include "jet/transfer/FileCopier.h"

#include <algorithm>
#include <array>

#include "base/CaseFold.h"
#include "jet/format/JetErrors.h"
#include "jet/transfer/RowReader.h"
#include "jet/transfer/StoredRowCopier.h"
#include "jet/transfer/TableLoader.h"
#include "jet/transfer/TableMaker.h"

namespace zent::jet {
namespace {

/// The tables of the catalog, which lie at the same pages in every file, and the columns that name
/// objects by number.
struct CatalogTable {
  PageNumber page;
  std::vector<std::string_view> id_columns;
};
const CatalogTable kCatalogTables[] = {
    {kObjectsPage, {"Id", "ParentId"}},
    {kAcesPage, {"ObjectId"}},
    {kQueriesPage, {"ObjectId"}},
    {kRelationshipsPage, {}},
};

/// Whether the table's count of its rows can be relied on: Access' own files have rights and
/// queries whose counts are off by some rows.
bool CountsRows(PageNumber page) { return page == kObjectsPage || page == kRelationshipsPage; }

/// An error of one table, which says so.
RuntimeError InTable(RuntimeError error, std::string_view name) {
  error.description += " (table " + std::string(name) + ")";
  return error;
}

/// The positions of the columns of those names; absent ones are left out.
std::vector<std::size_t> PositionsOf(const TableDefinition& table,
                                     const std::vector<std::string_view>& names) {
  std::vector<std::size_t> positions;
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const bool named = std::any_of(names.begin(), names.end(), [&](std::string_view name) {
      return SameName(name, table.columns[i].name);
    });
    if (named && table.columns[i].type == ColumnType::Long) positions.push_back(i);
  }
  return positions;
}

}  // namespace

Status FileCopier::Run() {
  const Result<std::vector<CatalogObject>> objects = source_.Objects();
  if (!objects.ok()) return objects.status();
  for (const CatalogTable& table : kCatalogTables) {
    if (Status made = MakeCatalogTable(table.page); !made.ok()) return made;
  }
  for (const CatalogObject& object : objects.value()) {
    if (!object.IsLocalTable() || object.definition() <= kRelationshipsPage) continue;
    if (Status copied = CopyTable(object.definition()); !copied.ok()) {
      return InTable(copied.error(), object.name);
    }
  }
  if (Status linked = LinkPartners(); !linked.ok()) return linked;
  for (const CatalogTable& table : kCatalogTables) {
    if (Status copied = CopyCatalogRows(table.page, table.id_columns); !copied.ok()) return copied;
  }
  return {};
}

Status FileCopier::CopyTable(PageNumber from) {
  if (tables_.contains(from)) return Damaged(from, "two tables have one definition");
  const Result<std::unique_ptr<TableStore>> store = TableStore::Open(source_.maps(), from);
  if (!store.ok()) return store.status();
  DenseDefinition dense = MakeDense(store.value()->definition());
  Result<std::vector<PageNumber>> pages = MakeTable(maps_, dense.table, 0, map_page_);
  if (!pages.ok()) return pages.status();
  const PageNumber to = pages.value().front();
  Status copied = CopyRows(*store.value(), dense, to);
  tables_[from] = {std::move(dense.table), std::move(pages.value())};
  return copied;
}

Status FileCopier::CopyRows(TableStore& from, const DenseDefinition& dense, PageNumber to) {
  const Result<std::unique_ptr<TableLoader>> loader = TableLoader::Open(maps_, to, sort_bytes_);
  if (!loader.ok()) return loader.status();
  RowReader reader(from, dense.from, loader.value()->table());
  StoredRowCopier copier(from, *loader.value());
  RowScan scan(from.rows());
  for (;;) {
    const Result<bool> more = scan.Next();
    if (!more.ok()) return more.status();
    if (!more.value()) {
      if (Status whole = CheckAllFound(from, loader.value()->rows()); !whole.ok()) return whole;
      return loader.value()->Finish(true);
    }
    if (dense.same_layout) {
      const Result<bool> copied = copier.Copy(scan.bytes(), scan.page());
      if (!copied.ok()) return copied.status();
      if (copied.value()) continue;
    }
    const Result<RowFields*> fields = reader.Read(scan.bytes(), scan.page());
    if (!fields.ok()) return fields.status();
    if (Status added = loader.value()->Add(*fields.value()); !added.ok()) return added;
  }
}

Status FileCopier::MakeCatalogTable(PageNumber page) {
  const Result<StoredDefinition> stored = ReadDefinition(source_.pager(), page);
  if (!stored.ok()) return stored.status();
  DenseDefinition dense = MakeDense(stored.value().table);
  Result<std::vector<PageNumber>> pages = MakeTable(maps_, dense.table, page, map_page_);
  if (!pages.ok()) return pages.status();
  definitions_[page] = std::move(dense);
  return {};
}

Status FileCopier::CopyCatalogRows(PageNumber page,
                                   const std::vector<std::string_view>& id_columns) {
  const Result<std::unique_ptr<TableStore>> from = TableStore::Open(source_.maps(), page);
  if (!from.ok()) return from.status();
  const Result<std::unique_ptr<TableLoader>> loader = TableLoader::Open(maps_, page, sort_bytes_);
  if (!loader.ok()) return loader.status();
  const std::vector<std::size_t> ids = PositionsOf(loader.value()->table(), id_columns);
  RowReader reader(*from.value(), definitions_[page].from, loader.value()->table());
  RowScan scan(from.value()->rows());
  for (;;) {
    const Result<bool> more = scan.Next();
    if (!more.ok()) return more.status();
    if (!more.value()) break;
    const Result<RowFields*> fields = reader.Read(scan.bytes(), scan.page());
    if (!fields.ok()) return fields.status();
    for (const std::size_t id : ids) {
      FieldBytes& field = (*fields.value())[id];
      if (!field.present || field.bytes.size() != 4) continue;
      const auto moved = tables_.find(LoadU32(AsBytes(field.bytes), 0));
      if (moved == tables_.end()) continue;
      std::array<std::uint8_t, 4> number = {};
      StoreU32(number, 0, moved->second.pages.front());
      field.bytes = AsText(number);
    }
    if (Status added = loader.value()->Add(*fields.value()); !added.ok()) return added;
  }
  if (CountsRows(page)) {
    Status whole = CheckAllFound(*from.value(), loader.value()->rows());
    if (!whole.ok()) return whole;
  }
  return loader.value()->Finish(true);
}

// The indexes of a relationship name each other's tables. One whose partner is gone is an index
// like others.
Status FileCopier::LinkPartners() {
  for (auto& [from, copied] : tables_) {
    bool changed = false;
    for (LogicalIndex& logical : copied.table.logical_indexes) {
      if (logical.kind != IndexKind::Foreign) continue;
      changed = true;
      const auto other = tables_.find(logical.other_table);
      if (other != tables_.end()) {
        logical.other_table = other->second.pages.front();
        continue;
      }
      logical.kind = IndexKind::Ordinary;
      logical.side = ForeignSide::None;
      logical.partner = -1;
      logical.other_table = 0;
    }
    if (!changed) continue;
    // The counters are in the file alone.
    const Result<StoredDefinition> stored = ReadDefinition(maps_.pager(), copied.pages.front());
    if (!stored.ok()) return stored.status();
    TableDefinition table = stored.value().table;
    table.logical_indexes = copied.table.logical_indexes;
    if (Status wrote = RewriteDefinition(maps_.pager(), table, copied.pages); !wrote.ok()) {
      return wrote;
    }
  }
  return {};
}

}  // namespace zent::jet
