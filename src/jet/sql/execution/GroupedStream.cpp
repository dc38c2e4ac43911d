#include "jet/sql/execution/GroupedStream.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "jet/format/JetErrors.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {

Status GroupedStream::Restart() {
  gathered_ = false;
  places_.clear();
  groups_.clear();
  kept_ = 0;
  next_ = 0;
  return rows_.Restart();
}

GroupedStream::Group GroupedStream::NewGroup() const {
  Group group;
  for (const Expression& aggregate : grouping_.aggregates) {
    group.aggregators.emplace_back(aggregate.name);
  }
  return group;
}

Result<GroupedStream::Group*> GroupedStream::FindGroup() {
  key_.clear();
  std::vector<Value> values;
  for (const Expression& expression : grouping_.groups) {
    Result<Value> value = evaluator_.Evaluate(expression, rows_);
    if (!value.ok()) return value.error();
    AppendOrderKey(value.value(), false, key_);
    values.push_back(std::move(value.value()));
  }
  const auto known = places_.find(key_);
  if (known != places_.end()) return &groups_[known->second];
  places_.emplace(key_, static_cast<std::uint32_t>(groups_.size()));
  groups_.push_back(NewGroup());
  groups_.back().values = std::move(values);
  kept_ += 2 * key_.size() + sizeof(Group) +
           (grouping_.groups.size() + grouping_.aggregates.size()) * sizeof(Value);
  if (kept_ > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
  return &groups_.back();
}

Status GroupedStream::AddRow(Group& group) {
  for (std::size_t i = 0; i < grouping_.aggregates.size(); ++i) {
    const Expression& aggregate = grouping_.aggregates[i];
    Result<Value> value = aggregate.operands.empty()
                              ? Result<Value>(Value(true))
                              : evaluator_.Evaluate(aggregate.operands[0], rows_);
    if (!value.ok()) return value.error();
    if (Status added = group.aggregators[i].Add(value.value()); !added.ok()) return added;
  }
  return {};
}

Status GroupedStream::MakeValues(Group& group) {
  for (const Aggregator& aggregator : group.aggregators) {
    Result<Value> total = aggregator.Total();
    if (!total.ok()) return total.error();
    group.values.push_back(row_count_ ? Value(*row_count_) : std::move(total.value()));
  }
  group.aggregators.clear();
  return {};
}

Status GroupedStream::Gather() {
  gathered_ = true;
  if (grouping_.groups.empty()) groups_.push_back(NewGroup());
  while (!row_count_) {
    const Result<bool> found = rows_.Next();
    if (!found.ok()) return found.error();
    if (!found.value()) break;
    const Result<Group*> group =
        grouping_.groups.empty() ? Result<Group*>(&groups_.front()) : FindGroup();
    if (!group.ok()) return group.error();
    if (Status added = AddRow(*group.value()); !added.ok()) return added;
  }
  for (Group& group : groups_) {
    if (Status made = MakeValues(group); !made.ok()) return made;
  }
  return {};
}

Result<bool> GroupedStream::Next() {
  if (!gathered_) {
    if (const Status gathered = Gather(); !gathered.ok()) return gathered.error();
  }
  while (next_ < groups_.size()) {
    at_ = next_++;
    if (grouping_.having == nullptr) return true;
    Result<bool> wanted = evaluator_.Test(*grouping_.having, *this);
    if (!wanted.ok() || wanted.value()) return wanted;
  }
  return false;
}

Result<const Value*> GroupedStream::At(std::size_t column) {
  if (at_ >= groups_.size() || column >= groups_[at_].values.size()) return JetError(kItemNotFound);
  return &groups_[at_].values[column];
}

Status GroupedStream::GoTo(const std::uint32_t* place) {
  at_ = *place;
  return {};
}

bool IsSameExpression(const Expression& a, const Expression& b) {
  if (a.kind != b.kind || a.operands.size() != b.operands.size() || a.query != b.query) {
    return false;
  }
  if (a.kind == ExpressionKind::Literal) return a.value == b.value;
  if (a.kind == ExpressionKind::Column) return a.column == b.column;
  return EqualsIgnoringCase(a.name, b.name) &&
         std::equal(a.operands.begin(), a.operands.end(), b.operands.begin(), IsSameExpression);
}

Status UseGroups(Expression& expression, const std::vector<Expression>& groups) {
  if (expression.kind == ExpressionKind::Aggregate) return {};
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (!IsSameExpression(expression, groups[i])) continue;
    expression = Node(ExpressionKind::Column, {}, PrintExpression(expression));
    expression.column = i;
    return {};
  }
  if (expression.kind == ExpressionKind::Column) {
    return JetError(kNotInAggregate, PrintExpression(expression));
  }
  for (Expression& operand : expression.operands) {
    if (Status used = UseGroups(operand, groups); !used.ok()) return used;
  }
  return {};
}

}  // namespace zent::jet
