#include "jet/dao/DefaultValues.h"
#include "jet/dao/Recordset.h"
#include "jet/dao/RecordsetState.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/values/Conversion.h"

/// Changes of rows.
namespace zent::jet {

Status Recordset::Edit() {
  State& state = *state_;
  if (Status current = state.CheckCurrent(); !current.ok()) return current;
  if (Status updatable = state.CheckUpdatable(); !updatable.ok()) return updatable;
  const Result<Table*> table = state.OpenTable();
  if (!table.ok()) return table.status();
  Result<std::vector<Value>> values = table.value()->store().Fetch(state.row);
  if (!values.ok()) return values.status();
  state.values = std::move(values.value());
  state.touched.assign(state.values.size(), false);
  state.mode = EditMode::InProgress;
  return {};
}

Status Recordset::AddNew() {
  State& state = *state_;
  if (Status updatable = state.CheckUpdatable(); !updatable.ok()) return updatable;
  const Result<Table*> table = state.OpenTable();
  if (!table.ok()) return table.status();
  Result<std::vector<Value>> values = NewRowValues(*table.value(), state.core.context());
  if (!values.ok()) return values.status();
  state.values = std::move(values.value());
  state.touched.assign(state.values.size(), false);
  state.mode = EditMode::Add;
  return {};
}

Status Recordset::Put(const ItemKey& field, const Value& value) {
  State& state = *state_;
  if (Status open = state.core.CheckOpen(); !open.ok()) return open;
  const Result<std::size_t> position = state.fields.PositionOf(field);
  if (!position.ok()) return position.status();
  if (state.mode == EditMode::None) return JetError(kUpdateWithoutEdit);
  const Result<Table*> table = state.OpenTable();
  if (!table.ok()) return table.status();
  const std::size_t column = state.columns[position.value()];
  const TableDefinition& definition = table.value()->definition();
  if (column >= definition.columns.size() || state.values.size() != definition.columns.size()) {
    return JetError(kObjectInvalid);  // the table is another one by now
  }
  Result<Value> converted = ConvertForColumn(definition.columns[column], value);
  if (!converted.ok()) return converted.status();
  state.values[column] = std::move(converted.value());
  state.touched[column] = true;
  return {};
}

Status Recordset::State::SaveNew(Table& opened) {
  std::vector<Value> given = values;
  // Numbers that were only shown are given out now.
  const TableDefinition& definition = opened.definition();
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (definition.columns[i].IsAutoNumber() && !touched[i]) given[i] = Null();
  }
  const Result<RowPointer> at = opened.Insert(given);
  if (!at.ok()) return at.status();
  last_modified = at.value();
  return {};
}

Status Recordset::State::SaveChanges(Table& opened) {
  std::vector<ColumnChange> changes;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (touched[i]) changes.push_back({.position = i, .value = values[i]});
  }
  // A row that is gone must be said also when nothing has changed.
  if (changes.empty()) return opened.store().rows().Fetch(row).status();
  return opened.Update(row, changes);
}

Status Recordset::Update() {
  State& state = *state_;
  if (Status open = state.core.CheckOpen(); !open.ok()) return open;
  if (state.mode == EditMode::None) return JetError(kUpdateWithoutEdit);
  const bool adding = state.mode == EditMode::Add;
  Status saved = state.core.Change([&]() -> Status {
    const Result<Table*> table = state.OpenTable();
    if (!table.ok()) return table.status();
    if (state.values.size() != table.value()->definition().columns.size()) {
      return JetError(kObjectInvalid);
    }
    return adding ? state.SaveNew(*table.value()) : state.SaveChanges(*table.value());
  });
  if (!saved.ok()) return saved;
  state.mode = EditMode::None;
  if (adding) {
    state.order->Added(state.last_modified);
  } else {
    state.last_modified = state.row;
    // In the order of an index it may have another place now.
    if (state.index) return state.order->GoTo(state.row).status();
  }
  return {};
}

Status Recordset::CancelUpdate() {
  if (state_->mode == EditMode::None) return JetError(kUpdateWithoutEdit);
  state_->mode = EditMode::None;
  return {};
}

Status Recordset::Delete() {
  State& state = *state_;
  if (Status current = state.CheckCurrent(); !current.ok()) return current;
  if (Status updatable = state.CheckUpdatable(); !updatable.ok()) return updatable;
  Status deleted = state.core.Change([&]() -> Status {
    const Result<Table*> table = state.OpenTable();
    return table.ok() ? table.value()->Delete(state.row) : table.status();
  });
  if (!deleted.ok()) return deleted;
  state.mode = EditMode::None;
  state.order->Deleted();
  state.place = State::Place::Nowhere;
  return {};
}

}  // namespace zent::jet
