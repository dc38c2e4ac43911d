#include "jet/tools/TableCheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "base/CaseFold.h"
#include "jet/store/TableStore.h"
#include "jet/tools/IndexCheck.h"
#include "jet/tools/TableRowsCheck.h"

namespace zent::jet {
namespace {

/// What a definition promises that reading it does not check already.
void CheckNames(Checking& checking, const TableDefinition& table, const std::string& subject) {
  std::set<std::string> names;
  for (const ColumnDefinition& column : table.columns) {
    if (!names.insert(FoldName(column.name)).second) {
      checking.faults.Add(subject, "two columns are named " + column.name);
    }
  }
  names.clear();
  std::set<std::uint32_t> numbers;
  std::set<std::uint32_t> backed;
  int primary = 0;
  for (const LogicalIndex& index : table.logical_indexes) {
    if (!names.insert(FoldName(index.name)).second) {
      checking.faults.Add(subject, "two indexes are named " + index.name);
    }
    if (!numbers.insert(index.number).second) {
      checking.faults.Add(subject, fmt::format("two indexes have the number {}", index.number));
    }
    backed.insert(index.real);
    if (index.kind == IndexKind::Primary) ++primary;
  }
  if (primary > 1) checking.faults.Add(subject, "more than one primary key");
  if (backed.size() != table.real_indexes.size()) {
    checking.faults.Add(subject, "an index without a name");
  }
}

/// The first name of the index at `position`.
std::string NameOfIndex(const TableDefinition& table, std::size_t position) {
  for (const LogicalIndex& index : table.logical_indexes) {
    if (index.real == position) return index.name;
  }
  return fmt::format("{}", position);
}

/// Two system tables of Access' own files have counts that are off by some rows.
bool CountsRows(PageNumber page) { return page != kAcesPage && page != kQueriesPage; }

}  // namespace

TableCheckResult CheckTable(Checking& checking, UsageMaps& maps, PageNumber page,
                            const std::string& name) {
  const std::string subject = "table " + name;
  TableCheckResult result;
  const Result<std::unique_ptr<TableStore>> opened = TableStore::Open(maps, page);
  if (!opened.ok()) {
    checking.faults.Add(subject, opened.error());
    return result;
  }
  TableStore& table = *opened.value();
  result.readable = true;
  result.definition = table.definition();
  const PageUse::User user = checking.use.Add(subject + ", definition");
  for (const PageNumber one : table.definition_pages()) checking.use.Claim(one, user);
  CheckNames(checking, table.definition(), subject);

  const std::uint64_t before = checking.faults.count();
  TableRowsCheck rows(checking, page, table.definition(), subject);
  std::vector<IndexCheck> indexes;
  for (std::size_t i = 0; i < table.indexes().size(); ++i) {
    indexes.emplace_back(checking, table, i,
                         fmt::format("{}, index {}", subject, NameOfIndex(table.definition(), i)));
  }
  rows.Run([&](RowPointer at, ByteView bytes, PageNumber where) {
    const Result<RowFields> fields = LoadFields(table.definition(), bytes, where);
    if (!fields.ok()) return checking.faults.Add(subject, fields.error());
    for (IndexCheck& index : indexes) index.AddRow(fields.value(), at, where);
  });
  result.rows = rows.rows();
  const std::uint32_t counted = table.definition().row_count;
  if (counted != result.rows && CountsRows(page)) {
    checking.faults.Add(subject, fmt::format("it counts {} rows and has {}", counted, result.rows));
  }
  const bool rows_right = checking.faults.count() == before;
  for (IndexCheck& index : indexes) {
    index.Finish(rows_right);
    result.entries += index.entries();
  }
  return result;
}

}  // namespace zent::jet
