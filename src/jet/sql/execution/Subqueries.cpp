#include "jet/sql/execution/Subqueries.h"

#include <algorithm>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/values/Comparison.h"

namespace zent::jet {

Status Subqueries::Add(const Expression& expression, const OuterScope& outer) {
  for (const Expression& operand : expression.operands) {
    if (Status added = Add(operand, outer); !added.ok()) return added;
  }
  const SelectStatement* const select = expression.query.get();
  if (select == nullptr) return {};
  Result<std::unique_ptr<Query>> query = MakeQuery(session_, *select, outer);
  if (!query.ok()) return query.error();
  if (expression.kind != ExpressionKind::Exists && query.value()->columns().size() != 1) {
    return JetError(kSubqueryFields);
  }
  outer_reach_ = std::max(outer_reach_, query.value()->outer_reach());
  known_[&expression].query = std::move(query.value());
  return {};
}

template <typename Work>
Result<Value> Subqueries::Answer(const Expression& expression, Work work) {
  const auto found = known_.find(&expression);
  if (found == known_.end()) return JetErrorBecause(kSyntaxError, "no query can stand here");
  Known& known = found->second;
  if (known.answer) return *known.answer;
  if (const Status started = known.query->Restart(); !started.ok()) return started.error();
  Result<Value> answer = work(*known.query);
  if (answer.ok() && known.query->outer_reach() == 0) known.answer = answer.value();
  return answer;
}

Result<Value> Subqueries::Single(const Expression& subquery, RowValues& /*row*/) {
  return Answer(subquery, [](Query& query) -> Result<Value> {
    const Result<bool> found = query.Next();
    if (!found.ok()) return found.error();
    if (!found.value()) return Value(Null());
    Value value = query.row()[0];
    const Result<bool> more = query.Next();
    if (!more.ok()) return more.error();
    if (more.value()) return JetError(kSubqueryRows);
    return value;
  });
}

Result<Value> Subqueries::Exists(const Expression& exists, RowValues& /*row*/) {
  return Answer(exists, [](Query& query) -> Result<Value> {
    const Result<bool> found = query.Next();
    if (!found.ok()) return found.error();
    return Value(found.value());
  });
}

Status Subqueries::List(Known& known) {
  known.values.clear();
  known.keys.clear();
  known.has_null = false;
  known.classes = 0;
  if (Status started = known.query->Restart(); !started.ok()) return started;
  std::size_t kept = 0;
  for (;;) {
    const Result<bool> found = known.query->Next();
    if (!found.ok()) return found.error();
    if (!found.value()) break;
    const Value& value = known.query->row()[0];
    if (IsNull(value)) {
      known.has_null = true;
      continue;
    }
    known.classes |= 1U << static_cast<unsigned>(KeyClassOf(value));
    std::string key;
    AppendOrderKey(value, false, key);
    kept += 2 * key.size() + sizeof(Value) + sizeof(std::string);
    if (kept > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
    known.keys.push_back(std::move(key));
    known.values.push_back(value);
  }
  std::sort(known.keys.begin(), known.keys.end());
  known.listed = known.query->outer_reach() == 0;
  return {};
}

Result<Value> Subqueries::IsAmong(const Expression& in, const Value& value, RowValues& /*row*/) {
  const auto found = known_.find(&in);
  if (found == known_.end()) return JetErrorBecause(kSyntaxError, "no query can stand here");
  Known& known = found->second;
  if (!known.listed) {
    if (const Status listed = List(known); !listed.ok()) return listed.error();
  }
  if (known.values.empty() && !known.has_null) return Value(false);
  if (IsNull(value)) return Value(Null());
  bool among = false;
  if ((known.classes & ~(1U << static_cast<unsigned>(KeyClassOf(value)))) == 0) {
    std::string key;
    AppendOrderKey(value, false, key);
    among = std::binary_search(known.keys.begin(), known.keys.end(), key);
  } else {
    for (const Value& item : known.values) {
      const Result<std::optional<int>> order = CompareValues(value, item);
      if (!order.ok()) return order.error();
      among = among || order.value() == 0;
    }
  }
  if (!among && known.has_null) return Value(Null());
  return Value(among);
}

}  // namespace zent::jet
