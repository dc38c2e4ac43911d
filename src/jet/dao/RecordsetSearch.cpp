#include <algorithm>
#include <map>
#include <optional>

#include "base/CaseFold.h"
#include "jet/dao/Recordset.h"
#include "jet/dao/RecordsetState.h"
#include "jet/dao/TableOrder.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/expressions/ColumnBinder.h"
#include "jet/sql/expressions/Evaluator.h"
#include "jet/sql/syntax/Parser.h"

/// Finding rows.
namespace zent::jet {
namespace {

/// The current row of a recordset for an expression.
class CurrentRow final : public RowValues {
 public:
  explicit CurrentRow(Recordset& recordset) : recordset_(recordset) {}
  Result<const Value*> At(std::size_t column) override {
    Result<Value> value = recordset_.Get(column);
    if (!value.ok()) return value.error();
    return &(values_[column] = std::move(value.value()));
  }

 private:
  Recordset& recordset_;
  std::map<std::size_t, Value> values_;
};

Result<Expression> ReadCriteria(const Recordset& recordset, std::string_view criteria) {
  Result<Expression> expression = ParseExpression(criteria);
  if (!expression.ok()) return expression;
  std::vector<ScopeColumn> scope;
  for (const Field& field : recordset.Fields()) scope.push_back({field.source_table, field.name});
  ColumnBinder binder(std::move(scope));
  if (Status bound = binder.Bind(expression.value()); !bound.ok()) return bound.error();
  if (Status known = binder.Finish(); !known.ok()) return known.error();
  return expression;
}

RowOrder::Found SeekBy(IndexOrder& order, std::string_view comparison, const std::string& key) {
  if (comparison == "=") return order.SeekEqual(key);
  if (comparison == ">=") return order.SeekFrom(key);
  if (comparison == ">") return order.SeekAbove(key);
  if (comparison == "<=") return order.SeekUpTo(key);
  if (comparison == "<") return order.SeekBelow(key);
  return JetError(kInvalidArgument);
}

}  // namespace

Result<std::size_t> RealIndexOf(const TableDefinition& table, std::string_view name) {
  for (const LogicalIndex& logical : table.logical_indexes) {
    if (SameName(logical.name, name)) return std::size_t{logical.real};
  }
  return JetError(kNotAnIndex, name);
}

Status Recordset::SetIndex(std::string_view name) {
  State& state = *state_;
  if (state.type != RecordsetType::Table) return JetError(kNotSupportedHere);
  const Result<Table*> table = state.OpenTable();
  if (!table.ok()) return table.status();
  const OpenedTable source = [&state] { return state.OpenTable(); };
  if (name.empty()) {
    state.index_name.clear();
    state.index.reset();
    state.order = std::make_unique<FileOrder>(source);
    return MoveFirst();
  }
  const Result<std::size_t> real = RealIndexOf(table.value()->definition(), name);
  if (!real.ok()) return real.status();
  state.index_name = name;
  state.index = real.value();
  state.order = std::make_unique<IndexOrder>(source, state.index);
  return MoveFirst();
}

Status Recordset::Seek(std::string_view comparison, std::span<const Value> keys) {
  State& state = *state_;
  if (Status open = state.core.CheckOpen(); !open.ok()) return open;
  if (state.type != RecordsetType::Table) return JetError(kNotSupportedHere);
  auto* const order = dynamic_cast<IndexOrder*>(state.order.get());
  if (order == nullptr) return JetError(kNoCurrentIndex);
  const Result<std::string> key = order->KeyOf(keys);
  if (!key.ok()) return key.status();
  Status moved = state.Move(SeekBy(*order, comparison, key.value()), State::Place::Nowhere);
  if (moved.ok()) state.no_match = state.place != State::Place::Row;
  return moved;
}

Status Recordset::FindFirst(std::string_view criteria) { return Find(criteria, true); }

Status Recordset::FindNext(std::string_view criteria) { return Find(criteria, false); }

Status Recordset::Find(std::string_view criteria, bool from_start) {
  State& state = *state_;
  if (Status open = state.core.CheckOpen(); !open.ok()) return open;
  if (state.type == RecordsetType::Table) return JetError(kNotSupportedHere);
  const Result<Expression> test = ReadCriteria(*this, criteria);
  if (!test.ok()) return test.status();
  const State::Place place = state.place;
  const RowPointer row = state.row;
  Evaluator evaluator(state.core.context());
  CurrentRow current(*this);
  Status moved = from_start || AtEnd() ? MoveFirst() : MoveNext();
  for (; moved.ok() && !AtEnd(); moved = MoveNext()) {
    const Result<bool> taken = evaluator.Test(test.value(), current);
    if (!taken.ok() && taken.number() == kRecordDeleted) continue;
    if (!taken.ok()) return taken.status();
    state.no_match = !taken.value();
    if (taken.value()) return {};
  }
  if (!moved.ok()) return moved;
  state.no_match = true;
  // Back to where it was.
  if (place == State::Place::Row) return MoveTo(row);
  return {};
}

}  // namespace zent::jet
