#include "jet/sql/execution/JoinStream.h"

#include <algorithm>
#include <utility>

namespace zent::jet {
namespace {

/// The tests that have to hold all.
void Split(const Expression& test, std::vector<const Expression*>& tests) {
  if (test.kind != ExpressionKind::And) {
    tests.push_back(&test);
    return;
  }
  for (const Expression& operand : test.operands) Split(operand, tests);
}

bool IsOfTable(const Expression& expression, const TestedColumn& own) {
  if (expression.kind == ExpressionKind::Column) {
    return expression.column >= own.first_unknown && expression.column < own.end_unknown;
  }
  const bool leaf = expression.operands.empty();
  return !leaf && expression.query.get() == nullptr &&
         std::all_of(expression.operands.begin(), expression.operands.end(),
                     [&](const Expression& operand) {
                       return operand.kind == ExpressionKind::Literal || IsOfTable(operand, own);
                     });
}

}  // namespace

JoinStream::JoinStream(RowFrame& frame, Evaluator& evaluator, std::span<const JoinedTable> tables,
                       const Expression* where)
    : frame_(frame), evaluator_(evaluator), levels_(tables.size()) {
  std::vector<const Expression*> tests;
  for (std::size_t i = 0; i < tables.size(); ++i) {
    levels_[i].outer = tables[i].kind == JoinKind::Left;
    if (!tables[i].on) continue;
    if (levels_[i].outer) {
      Split(*tables[i].on, levels_[i].tests);
    } else {
      Split(*tables[i].on, tests);
    }
  }
  if (where != nullptr) Split(*where, tests);
  for (const Expression* const test : tests) AddTest(*test);
}

std::size_t JoinStream::TablesFor(const Expression& test) const {
  if (test.query.get() != nullptr) return levels_.size();
  std::size_t tables = 0;
  if (test.kind == ExpressionKind::Column && test.column < frame_.column_count()) {
    while (tables < levels_.size() && frame_.first_column(tables) <= test.column) ++tables;
  }
  for (const Expression& operand : test.operands) tables = std::max(tables, TablesFor(operand));
  return tables;
}

void JoinStream::AddTest(const Expression& test) {
  const std::size_t tables = TablesFor(test);
  if (tables == 0) {
    constants_.push_back(&test);
    return;
  }
  Level& level = levels_[tables - 1];
  (level.outer ? level.filter : level.tests).push_back(&test);
}

bool JoinStream::Plan(std::span<const OrderTerm> order) {
  bool ordered = false;
  for (std::size_t i = 0; i < levels_.size(); ++i) {
    std::optional<IndexPlan> plan = ChooseIndex(frame_, i, levels_[i].tests);
    if (i == 0 && !order.empty()) ordered = PutInOrder(frame_, order, plan);
    levels_[i].source = MakeSource(i, std::move(plan));
  }
  return ordered;
}

std::unique_ptr<RowSource> JoinStream::MakeSource(std::size_t table,
                                                  std::optional<IndexPlan> plan) {
  if (plan) return std::make_unique<IndexSource>(frame_, table, *std::move(plan), evaluator_);
  const TestedColumn own{.first_unknown = frame_.first_column(table),
                         .end_unknown = table + 1 < levels_.size() ? frame_.first_column(table + 1)
                                                                   : frame_.column_count()};
  const TestedColumn later{.first_unknown = own.first_unknown,
                           .end_unknown = frame_.column_count()};
  std::vector<LookupSource::Equal> equals;
  for (const Expression* const test : levels_[table].tests) {
    if (table == 0 || test->kind != ExpressionKind::Equal) continue;
    for (std::size_t side = 0; side < 2; ++side) {
      const Expression& mine = test->operands[side];
      const Expression& other = test->operands[1 - side];
      if (!IsOfTable(mine, own) || !IsConstant(other, later)) continue;
      equals.emplace_back(&mine, &other);
      break;
    }
  }
  if (equals.empty()) return std::make_unique<ScanSource>(frame_, table);
  return std::make_unique<LookupSource>(frame_, table, std::move(equals), evaluator_);
}

Status JoinStream::Restart() {
  started_ = false;
  const Result<bool> wanted = Passes(constants_);
  if (!wanted.ok()) return wanted.error();
  over_ = !wanted.value();
  return {};
}

Result<bool> JoinStream::Passes(const Tests& tests) {
  for (const Expression* const test : tests) {
    Result<bool> passed = evaluator_.Test(*test, frame_);
    if (!passed.ok() || !passed.value()) return passed;
  }
  return true;
}

/// Moves the table of `level` to its next row that fits those before.
Result<bool> JoinStream::NextAt(std::size_t i) {
  Level& level = levels_[i];
  for (;;) {
    Result<bool> found = level.source->Next();
    if (!found.ok()) return found;
    if (!found.value()) {
      if (!level.outer || level.matched) return false;
      level.matched = true;
      frame_.SetNulls(i);
    } else {
      Result<bool> fits = Passes(level.tests);
      if (!fits.ok()) return fits;
      if (!fits.value()) continue;
      level.matched = true;
    }
    Result<bool> wanted = Passes(level.filter);
    if (!wanted.ok() || wanted.value()) return wanted;
    if (!found.value()) return false;
  }
}

Result<bool> JoinStream::Next() {
  if (over_) return false;
  if (levels_.empty()) {
    over_ = true;  // without tables there is one row
    return true;
  }
  std::size_t i = started_ ? levels_.size() - 1 : 0;
  bool enter = !started_;
  started_ = true;
  for (;;) {
    if (enter) {
      levels_[i].matched = false;
      if (const Status entered = levels_[i].source->Restart(); !entered.ok()) {
        over_ = true;
        return entered.error();
      }
    }
    Result<bool> found = NextAt(i);
    over_ = !found.ok() || (!found.value() && i == 0);
    if (over_) return found;
    enter = found.value();
    if (enter && i + 1 == levels_.size()) return true;
    enter ? ++i : --i;
  }
}

void JoinStream::NotePlace(std::vector<std::uint32_t>& places) const {
  for (std::size_t i = 0; i < levels_.size(); ++i) places.push_back(frame_.at(i).packed());
}

Status JoinStream::GoTo(const std::uint32_t* place) {
  for (std::size_t i = 0; i < levels_.size(); ++i) {
    if (Status fetched = frame_.Fetch(i, RowPointer::FromPacked(place[i])); !fetched.ok()) {
      return fetched;
    }
  }
  return {};
}

}  // namespace zent::jet
