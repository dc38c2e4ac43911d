#include "jet/dao/Recordset.h"

#include <algorithm>
#include <utility>

#include "jet/dao/RecordsetState.h"
#include "jet/format/JetErrors.h"

namespace zent::jet {

Recordset::Recordset(std::unique_ptr<State> state) : state_(std::move(state)) {}
Recordset::~Recordset() = default;

RecordsetType Recordset::type() const { return state_->type; }
bool Recordset::updatable() const { return state_->CheckUpdatable().ok(); }
const Collection<Field>& Recordset::Fields() const { return state_->fields; }
EditMode Recordset::edit_mode() const { return state_->mode; }
bool Recordset::NoMatch() const { return state_->no_match; }
Recordset::Bookmark Recordset::last_modified() const { return state_->last_modified; }

bool Recordset::AtBegin() const { return state_->empty || state_->place == State::Place::Before; }

bool Recordset::AtEnd() const { return state_->empty || state_->place == State::Place::Behind; }

Result<Table*> Recordset::State::OpenTable() {
  if (Status open = core.CheckOpen(); !open.ok()) return open.error();
  Catalog& catalog = *core.catalog;
  // Asked for with every field: looked up by name it would cost more than the row does.
  const bool kept = kept_table != nullptr && generation == catalog.generation();
  if (kept && !catalog.MayHaveChanged()) return kept_table;
  Result<Table*> found = catalog.OpenTable(table);
  const bool anew = kept_table == nullptr || generation != catalog.generation();
  kept_table = found.value_or(nullptr);
  generation = catalog.generation();
  if (kept_table != nullptr && anew) Adopt(*kept_table);
  return found;
}

void Recordset::State::Adopt(const Table& opened) {
  const TableDefinition& definition = opened.definition();
  std::vector<std::uint16_t> now;
  now.reserve(definition.columns.size());
  for (const ColumnDefinition& column : definition.columns) now.push_back(column.number);
  if (!numbers.empty() && now != numbers) {
    for (std::size_t& column : columns) {
      if (column == kGone) continue;
      const auto found = std::find(now.begin(), now.end(), numbers[column]);
      column = found == now.end() ? kGone : static_cast<std::size_t>(found - now.begin());
    }
    values.clear();
  }
  numbers = std::move(now);
  if (index_name.empty()) return;
  const Result<std::size_t> real = RealIndexOf(definition, index_name);
  index = real.ok() ? std::optional<std::size_t>(real.value()) : std::nullopt;
}

Status Recordset::State::CheckCurrent() const {
  if (Status open = core.CheckOpen(); !open.ok()) return open;
  return place == Place::Row ? Status() : Status(JetError(kNoCurrentRecord));
}

Status Recordset::State::CheckUpdatable() {
  if (Status writable = core.Writable(); !writable.ok()) return writable;
  if (table.empty()) return JetErrorBecause(kReadOnly, "the rows are a copy");
  const Result<Table*> opened = OpenTable();
  return opened.ok() ? opened.value()->Writable() : opened.status();
}

// A move gives up what is being edited, as DAO does.
Status Recordset::State::Move(const RowOrder::Found& found, Place beyond) {
  if (!found.ok()) return found.status();
  mode = EditMode::None;
  place = found.value() ? Place::Row : beyond;
  if (found.value()) {
    row = *found.value();
    empty = false;
  }
  return {};
}

Status Recordset::MoveFirst() {
  if (Status open = state_->core.CheckOpen(); !open.ok()) return open;
  Status moved = state_->Move(state_->order->First(), State::Place::Behind);
  if (!moved.ok()) return moved;
  state_->empty = state_->place != State::Place::Row;
  return {};
}

Status Recordset::MoveLast() {
  if (Status open = state_->core.CheckOpen(); !open.ok()) return open;
  Status moved = state_->Move(state_->order->Last(), State::Place::Behind);
  if (!moved.ok()) return moved;
  state_->empty = state_->place != State::Place::Row;
  return {};
}

Status Recordset::MoveNext() {
  if (Status open = state_->core.CheckOpen(); !open.ok()) return open;
  if (AtEnd()) return JetError(kNoCurrentRecord);
  if (state_->place == State::Place::Before) return MoveFirst();
  return state_->Move(state_->order->Next(), State::Place::Behind);
}

Status Recordset::MovePrevious() {
  if (Status open = state_->core.CheckOpen(); !open.ok()) return open;
  if (AtBegin()) return JetError(kNoCurrentRecord);
  if (state_->place == State::Place::Behind) return MoveLast();
  return state_->Move(state_->order->Previous(), State::Place::Before);
}

Result<std::int32_t> Recordset::RecordCount() {
  if (Status open = state_->core.CheckOpen(); !open.ok()) return open.error();
  if (state_->type != RecordsetType::Table) {
    return static_cast<std::int32_t>(state_->order->visited());
  }
  const Result<Table*> table = state_->OpenTable();
  if (!table.ok()) return table.error();
  const Result<std::uint32_t> count = table.value()->store().RowCount();
  if (!count.ok()) return count.error();
  return static_cast<std::int32_t>(count.value());
}

Result<Value> Recordset::State::Stored(std::size_t position) {
  if (Status current = CheckCurrent(); !current.ok()) return current.error();
  if (table.empty()) return copied[row.packed()][position];
  const Result<Table*> opened = OpenTable();
  if (!opened.ok()) return opened.error();
  if (columns[position] == kGone) return JetError(kItemNotFound);
  TableStore& store = opened.value()->store();
  const Result<StoredRow> stored = store.rows().Fetch(row);
  if (!stored.ok()) return stored.error();
  return store.Field(stored.value().bytes, columns[position], stored.value().page.page());
}

Result<Value> Recordset::Get(const ItemKey& field) {
  const Result<std::size_t> position = state_->fields.PositionOf(field);
  if (!position.ok()) return position.error();
  if (state_->mode == EditMode::None) return state_->Stored(position.value());
  const std::size_t column = state_->columns[position.value()];
  if (column >= state_->values.size()) return JetError(kObjectInvalid);
  return state_->values[column];
}

Result<Recordset::Bookmark> Recordset::bookmark() const {
  if (Status current = state_->CheckCurrent(); !current.ok()) return current.error();
  return state_->row;
}

Status Recordset::MoveTo(const Bookmark& bookmark) {
  if (Status open = state_->core.CheckOpen(); !open.ok()) return open;
  const Result<bool> found = state_->order->GoTo(bookmark);
  if (!found.ok()) return found.status();
  if (!found.value()) return JetError(kInvalidBookmark);
  return state_->Move(std::optional<RowPointer>(bookmark), State::Place::Row);
}

}  // namespace zent::jet
