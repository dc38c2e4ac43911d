#include "jet/tools/IndexCheck.h"

#include <fmt/format.h>

#include <algorithm>

#include "jet/tools/TreeCheck.h"

namespace zent::jet {

IndexCheck::IndexCheck(Checking& checking, TableStore& table, std::size_t position,
                       std::string subject)
    : checking_(checking),
      table_(table),
      index_(table.indexes()[position]),
      subject_(std::move(subject)) {
  const TableDefinition& definition = table.definition();
  required_ = definition.real_indexes[position].IsRequired() ||
              std::any_of(definition.logical_indexes.begin(), definition.logical_indexes.end(),
                          [&](const LogicalIndex& index) {
                            return index.real == position && index.kind == IndexKind::Primary;
                          });
  keys_known_ =
      std::none_of(index_.columns().begin(), index_.columns().end(), [&](std::size_t column) {
        const ColumnDefinition& one = definition.columns[column];
        return IsText(one.type) && !IsCovered(definition.version, one);
      });
}

void IndexCheck::AddRow(const RowFields& fields, RowPointer at, PageNumber page) {
  if (!keys_known_) {
    expected_.Add({}, at);
    return;
  }
  const Result<TableIndex::RowKey> key = index_.KeyOf(table_.definition(), fields, page);
  if (!key.ok()) return checking_.faults.Add(subject_, key.error());
  if (required_ && key.value().has_null) {
    checking_.faults.Add(subject_,
                         fmt::format("page {} row {} has a null in its key", at.page, at.row));
  }
  if (key.value().key) expected_.Add(*key.value().key, at);
}

void IndexCheck::Finish(bool rows_right) {
  TreeCheck tree(
      checking_, index_.tree().place(),
      {.unique = index_.unique(), .columns = index_.columns().size(), .keys_known = keys_known_},
      subject_);
  const bool whole = tree.Run();
  entries_ = tree.entries().count();
  if (!whole || !rows_right || tree.entries() == expected_) return;
  if (!keys_known_) {
    checking_.faults.Add(subject_, fmt::format("{} entries for {} rows, or those of others",
                                               entries_, expected_.count()));
    return;
  }
  const std::uint64_t before = checking_.faults.count();
  ExplainMissing();
  ExplainSurplus();
  if (checking_.faults.count() != before) return;
  checking_.faults.Add(subject_, "its entries are not those of the rows");
}

/// Rows that the tree does not find.
void IndexCheck::ExplainMissing() {
  IndexCursor cursor = index_.tree().Cursor();
  RowScan scan(table_.rows());
  while (scan.Next().value_or(false)) {
    const Result<RowFields> fields = LoadFields(table_.definition(), scan.bytes(), scan.page());
    if (!fields.ok()) continue;
    const Result<TableIndex::RowKey> key =
        index_.KeyOf(table_.definition(), fields.value(), scan.page());
    if (!key.ok() || !key.value().key) continue;
    const Result<bool> found = cursor.Seek(*key.value().key, scan.at());
    if (found.value_or(false) && cursor.Compare(*key.value().key, scan.at()) == 0) continue;
    checking_.faults.Add(subject_, fmt::format("page {} row {} has no entry of its key",
                                               scan.at().page, scan.at().row));
  }
}

/// Entries that are not those of a row.
void IndexCheck::ExplainSurplus() {
  IndexCursor cursor = index_.tree().Cursor();
  Result<bool> on = cursor.SeekFirst();
  for (; on.value_or(false); on = cursor.Next()) {
    const RowPointer at = cursor.row();
    const Result<StoredRow> row = table_.rows().Fetch(at);
    if (!row.ok()) {
      checking_.faults.Add(
          subject_, fmt::format("an entry of page {} row {}, where no row is", at.page, at.row));
      continue;
    }
    const PageNumber page = row.value().page.page();
    const Result<RowFields> fields = LoadFields(table_.definition(), row.value().bytes, page);
    if (!fields.ok()) continue;
    const Result<TableIndex::RowKey> key = index_.KeyOf(table_.definition(), fields.value(), page);
    if (key.ok() && key.value().key == cursor.key()) continue;
    checking_.faults.Add(
        subject_,
        fmt::format("an entry of page {} row {} with another key than the row's", at.page, at.row));
  }
}

}  // namespace zent::jet
