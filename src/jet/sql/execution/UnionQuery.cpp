#include "jet/sql/execution/UnionQuery.h"

#include <algorithm>
#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/format/TextKey.h"
#include "jet/sql/execution/OrderKey.h"
#include "jet/sql/execution/SelectQuery.h"
#include "jet/sql/syntax/Printer.h"

namespace zent::jet {

Result<std::unique_ptr<Query>> MakeQuery(SqlSession& session, const SelectStatement& select,
                                         const OuterScope& outer) {
  return select.unions.empty() ? SelectQuery::Make(session, select, outer)
                               : UnionQuery::Make(session, select, outer);
}

Result<std::unique_ptr<Query>> UnionQuery::Make(SqlSession& session, const SelectStatement& select,
                                                const OuterScope& outer) {
  std::unique_ptr<UnionQuery> query(new UnionQuery(session));
  // Every UNION without ALL makes distinct what stands before it as well.
  std::size_t distinct_terms = 0;
  for (std::size_t i = 0; i < select.unions.size(); ++i) {
    if (!select.unions[i].union_all) distinct_terms = i + 2;
  }
  SelectStatement first = select;
  first.unions.clear();
  first.order_by.clear();
  for (std::size_t i = 0; i <= select.unions.size(); ++i) {
    Result<std::unique_ptr<Query>> term =
        SelectQuery::Make(session, i == 0 ? first : select.unions[i - 1], outer);
    if (!term.ok()) return term.error();
    if (i == 0) query->columns_ = term.value()->columns();
    if (term.value()->columns().size() != query->columns_.size()) return JetError(kUnionColumns);
    query->outer_reach_ = std::max(query->outer_reach_, term.value()->outer_reach());
    query->terms_.push_back({std::move(term.value()), i < distinct_terms});
  }
  query->row_.resize(query->columns_.size());
  if (const Status bound = query->BindOrder(select); !bound.ok()) return bound.error();
  return std::unique_ptr<Query>(std::move(query));
}

/// ORDER BY names columns of the result, or their numbers.
Status UnionQuery::BindOrder(const SelectStatement& select) {
  order_ = select.order_by;
  std::vector<ScopeColumn> names;
  for (const ResultColumn& column : columns_) names.push_back({column.table, column.name});
  ColumnBinder binder(std::move(names));
  for (OrderTerm& term : order_) {
    if (const auto* number = std::get_if<std::int16_t>(&term.expression.value);
        term.expression.kind == ExpressionKind::Literal && number != nullptr) {
      if (*number < 1 || static_cast<std::size_t>(*number) > columns_.size()) {
        return JetErrorBecause(kSyntaxError, "there is no such column",
                               PrintExpression(term.expression));
      }
      term.expression = Node(ExpressionKind::Column, {}, columns_[0].name);
      term.expression.column = static_cast<std::size_t>(*number) - 1;
      continue;
    }
    if (Status bound = binder.Bind(term.expression); !bound.ok()) return bound;
  }
  return binder.Finish();
}

Status UnionQuery::Restart() {
  begun_ = true;
  term_ = 0;
  seen_.clear();
  kept_ = 0;
  gathered_ = false;
  in_order_.clear();
  next_ = 0;
  for (Term& term : terms_) {
    if (Status started = term.query->Restart(); !started.ok()) return started;
  }
  return {};
}

Result<bool> UnionQuery::IsNew() {
  std::string key;
  for (const Value& value : row_) AppendOrderKey(value, false, key);
  kept_ += key.size() + sizeof(std::string);
  if (kept_ > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
  return seen_.insert(std::move(key)).second;
}

Result<bool> UnionQuery::NextOfTerms() {
  while (term_ < terms_.size()) {
    Term& term = terms_[term_];
    Result<bool> found = term.query->Next();
    if (!found.ok()) return found;
    if (!found.value()) {
      ++term_;
      continue;
    }
    row_ = term.query->row();
    if (!term.distinct) return true;
    Result<bool> is_new = IsNew();
    if (!is_new.ok() || is_new.value()) return is_new;
  }
  return false;
}

Status UnionQuery::Gather() {
  gathered_ = true;
  for (;;) {
    const Result<bool> found = NextOfTerms();
    if (!found.ok()) return found.error();
    if (!found.value()) break;
    std::string key;
    if (Status keyed = AppendRowKey(present_, order_, evaluator_, key); !keyed.ok()) return keyed;
    kept_ += KeptBytes(row_) + key.size();
    if (kept_ > kMaxKeptBytes) return JetError(kDatabaseTooLarge);
    in_order_.emplace_back(std::move(key), row_);
  }
  std::stable_sort(in_order_.begin(), in_order_.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  return {};
}

Result<bool> UnionQuery::Next() {
  if (!begun_) {
    if (const Status begun = Restart(); !begun.ok()) return begun.error();
  }
  if (order_.empty()) return NextOfTerms();
  if (!gathered_) {
    if (const Status gathered = Gather(); !gathered.ok()) return gathered.error();
  }
  if (next_ == in_order_.size()) return false;
  row_ = in_order_[next_++].second;
  return true;
}

}  // namespace zent::jet
