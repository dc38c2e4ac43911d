#include "jet/catalog/ChangePlan.h"

#include <algorithm>

#include "jet/format/JetErrors.h"

namespace zent::jet {
namespace {

/// A row whose values change more often than this goes in a circle that never settles.
constexpr int kMaxVisits = 16;

/// The rows that have `key` in an index.
Result<std::vector<RowPointer>> RowsOf(Table& table, std::size_t index, const std::string& key) {
  std::vector<RowPointer> rows;
  IndexCursor cursor = table.store().indexes()[index].tree().Cursor();
  Result<bool> on = cursor.Seek(key);
  for (; on.value_or(false); on = cursor.Next()) {
    const RowPointer at = cursor.row();
    if (cursor.Compare(key, at) != 0) break;
    rows.push_back(at);
  }
  if (!on.ok()) return on.error();
  return rows;
}

/// Puts `added` over `changes`; true when that makes a difference.
bool Merge(std::vector<ColumnChange>& changes, std::span<const ColumnChange> added) {
  bool differs = false;
  for (const ColumnChange& one : added) {
    const auto there = std::find_if(changes.begin(), changes.end(), [&](const ColumnChange& other) {
      return other.position == one.position;
    });
    if (there == changes.end()) {
      changes.push_back(one);
      differs = true;
    } else if (there->value != one.value) {
      there->value = one.value;
      differs = true;
    }
  }
  return differs;
}

}  // namespace

ChangePlan::Planned& ChangePlan::PlannedRow(Table& table, RowPointer at) {
  Planned& row = rows_[{table.store().page(), at}];
  row.table = &table;
  return row;
}

Status ChangePlan::Delete(Table& table, RowPointer at) {
  Planned& row = PlannedRow(table, at);
  if (row.deleted) return {};
  row.deleted = true;
  to_visit_.emplace_back(table.store().page(), at);
  return {};
}

Status ChangePlan::Update(Table& table, RowPointer at, std::span<const ColumnChange> changes) {
  Planned& row = PlannedRow(table, at);
  if (row.deleted) return {};
  if (!Merge(row.changes, changes) && row.visits > 0) return {};
  if (++row.visits > kMaxVisits) {
    return JetErrorBecause(kInvalidOperation, "its relationships pass the change on without end");
  }
  to_visit_.emplace_back(table.store().page(), at);
  return {};
}

Status ChangePlan::Check() {
  while (!to_visit_.empty()) {
    const RowId id = to_visit_.front();
    to_visit_.pop_front();
    if (Status visited = Visit(id); !visited.ok()) return visited;
  }
  for (const auto& [id, row] : rows_) {
    if (Status noted = NoteNewKeys(row); !noted.ok()) return noted;
  }
  for (const auto& [id, row] : rows_) {
    if (Status checked = CheckReferences(row); !checked.ok()) return checked;
  }
  for (const GoneKey& gone : gone_) {
    if (Status checked = CheckGoneKey(gone); !checked.ok()) return checked;
  }
  return {};
}

Status ChangePlan::Visit(const RowId& id) {
  Planned& row = rows_.at(id);
  Result<RowChange> change = row.deleted ? row.table->CheckDelete(id.second)
                                         : row.table->CheckUpdate(id.second, row.changes);
  if (!change.ok()) return change.error();
  row.change = std::move(change.value());
  const Result<std::span<const ForeignLink>> links = row.table->Links();
  if (!links.ok()) return links.error();
  for (const ForeignLink& link : links.value()) {
    if (link.side != ForeignSide::Referenced) continue;
    if (Status followed = FollowLink(row, link); !followed.ok()) return followed;
  }
  return {};
}

Status ChangePlan::FollowLink(const Planned& row, const ForeignLink& link) {
  const RowState& before = row.change.before;
  const std::optional<std::string>& own_key = before.keys[link.own].key;
  if (!row.deleted && own_key == row.change.after.keys[link.own].key) return {};
  const Result<std::optional<std::string>> key = PartnerKey(*row.table, link, before);
  if (!key.ok()) return key.error();
  if (!key.value() || !own_key) return {};

  const bool refuses =
      row.deleted ? link.on_delete == ForeignLink::OnDelete::Refuse : !link.cascades_updates;
  if (refuses) {
    gone_.push_back({row.table, &link, *own_key, *key.value()});
    return {};
  }
  const Result<std::vector<RowPointer>> children = RowsOf(*link.other, link.partner, *key.value());
  if (!children.ok()) return children.error();
  for (const RowPointer child : children.value()) {
    if (Status followed = FollowTo(row, link, child); !followed.ok()) return followed;
  }
  return {};
}

Status ChangePlan::FollowTo(const Planned& row, const ForeignLink& link, RowPointer child) {
  if (row.deleted && link.on_delete == ForeignLink::OnDelete::Cascade) {
    return Delete(*link.other, child);
  }
  const std::vector<std::size_t>& columns = link.other->store().indexes()[link.partner].columns();
  std::vector<Value> values(columns.size());
  if (!row.deleted) {
    Result<std::vector<Value>> changed = LinkValues(*row.table, link, row.change.after);
    if (!changed.ok()) return changed.error();
    values = std::move(changed.value());
  }
  std::vector<ColumnChange> changes;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    changes.push_back({.position = columns[i], .value = std::move(values[i])});
  }
  return Update(*link.other, child, changes);
}

/// Keys that planned rows will have. Two rows that get the same one in a unique index are refused
/// here: the tables look at one change at a time.
Status ChangePlan::NoteNewKeys(const Planned& row) {
  if (row.deleted) return {};
  std::vector<TableIndex>& indexes = row.table->store().indexes();
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    const TableIndex::RowKey& after = row.change.after.keys[i];
    if (!after.key || row.change.before.keys[i].key == after.key) continue;
    const bool is_new = new_keys_.emplace(row.table->store().page(), i, *after.key).second;
    if (!is_new && indexes[i].unique() && !after.all_null) return JetError(kDuplicateKey);
  }
  return {};
}

Status ChangePlan::CheckReferences(const Planned& row) {
  if (row.deleted) return {};
  const Result<std::span<const ForeignLink>> links = row.table->Links();
  if (!links.ok()) return links.error();
  for (const ForeignLink& link : links.value()) {
    if (link.side != ForeignSide::Referring) continue;
    const RowState& after = row.change.after;
    if (row.change.before.keys[link.own].key == after.keys[link.own].key) continue;
    const Result<std::optional<std::string>> key = PartnerKey(*row.table, link, after);
    if (!key.ok()) return key.error();
    if (!key.value()) continue;
    const Result<bool> there = HasKeyAfterwards(*link.other, link.partner, *key.value());
    if (!there.ok()) return there.error();
    if (!there.value()) return JetError(kNoRelatedRecord, link.other->name());
  }
  return {};
}

Status ChangePlan::CheckGoneKey(const GoneKey& gone) {
  const Result<bool> stays = HasKeyAfterwards(*gone.table, gone.link->own, gone.own_key);
  if (!stays.ok()) return stays.error();
  if (stays.value()) return {};
  Table& children = *gone.link->other;
  const Result<bool> referred = HasKeyAfterwards(children, gone.link->partner, gone.partner_key);
  if (!referred.ok()) return referred.error();
  return referred.value() ? Status(JetError(kRelatedRecordsExist, children.name())) : Status();
}

Result<bool> ChangePlan::HasKeyAfterwards(Table& table, std::size_t index,
                                          const std::string& key) const {
  const PageNumber page = table.store().page();
  if (new_keys_.contains({page, index, key})) return true;
  IndexCursor cursor = table.store().indexes()[index].tree().Cursor();
  Result<bool> on = cursor.Seek(key);
  for (; on.value_or(false); on = cursor.Next()) {
    if (cursor.Compare(key, cursor.row()) != 0) return false;
    const auto planned = rows_.find({page, cursor.row()});
    if (planned == rows_.end()) return true;
    const Planned& row = planned->second;
    if (!row.deleted && row.change.after.keys[index].key == key) return true;
  }
  return on;
}

Status ChangePlan::Make() {
  PageTransaction transaction(pager_);
  if (!transaction.status().ok()) return transaction.status();
  for (auto& [id, row] : rows_) {
    TableStore& store = row.table->store();
    Status made = row.deleted ? store.DeleteChecked(row.change) : store.UpdateChecked(row.change);
    if (!made.ok()) return made;
  }
  return transaction.Commit();
}

}  // namespace zent::jet
