#include "jet/sql/execution/IndexPlan.h"

#include <algorithm>
#include <utility>

namespace zent::jet {
namespace {

constexpr std::size_t kMostRanges = 4096;
constexpr int kUniqueScore = 100;
constexpr int kPointScore = 4;
constexpr int kRangeScore = 3;

/// Text whose keys we can make, and compare as the evaluator does.
bool IsReadable(const KeyColumn& column) {
  return !IsText(column.type) ||
         (column.version == JetVersion::Jet4 && column.collation == kGeneralLegacy);
}

TestedColumn ColumnOf(RowFrame& frame, std::size_t table, const TableIndex& index,
                      std::size_t part) {
  const std::size_t position = index.columns()[part];
  return {.column = frame.first_column(table) + position,
          .definition = &frame.table(table).definition().columns[position],
          .key = index.key_columns()[part],
          .first_unknown = frame.first_column(table),
          .end_unknown = frame.column_count()};
}

bool IgnoresNulls(RowFrame& frame, std::size_t table, const TableIndex& index) {
  return frame.table(table).definition().real_indexes[index.position()].IgnoresNulls();
}

struct RatedPlan {
  IndexPlan plan;
  int score = 0;
};

RatedPlan Rate(RowFrame& frame, std::size_t table, std::size_t index_place,
               std::span<const Expression* const> tests) {
  const TableIndex& index = frame.table(table).store().indexes()[index_place];
  RatedPlan rated{.plan = {.index = index_place}};
  bool all_points = true;
  for (std::size_t i = 0; i < index.columns().size() && all_points; ++i) {
    IndexPlan::Part part{.column = ColumnOf(frame, table, index, i)};
    if (!IsReadable(part.column.key)) break;
    TestUse best = TestUse::None;
    for (const Expression* const test : tests) {
      const TestUse use = UseOf(*test, part.column, IgnoresNulls(frame, table, index));
      if (use != TestUse::None) part.tests.push_back(test);
      best = std::max(best, use);
    }
    if (best == TestUse::None) {
      all_points = false;
      break;
    }
    rated.score += best == TestUse::Points ? kPointScore : kRangeScore;
    all_points = best == TestUse::Points;
    rated.plan.parts.push_back(std::move(part));
  }
  if (all_points && index.unique() && rated.plan.parts.size() == index.columns().size()) {
    rated.score += kUniqueScore;
  }
  return rated;
}

/// Types whose keys are in the order that ORDER BY wants.
bool IsOrdered(ColumnType type) {
  return type != ColumnType::Numeric && type != ColumnType::Guid && type != ColumnType::Binary &&
         !IsLong(type);
}

/// Whether the index has the order from its first column on; `backwards` tells how it is read then.
bool HasOrder(RowFrame& frame, const TableIndex& index, std::span<const OrderTerm> order,
              bool& backwards) {
  if (order.size() > index.columns().size()) return false;
  for (std::size_t i = 0; i < order.size(); ++i) {
    const TestedColumn column = ColumnOf(frame, 0, index, i);
    if (column.column != order[i].expression.column || !IsOrdered(column.definition->type) ||
        !IsReadable(column.key)) {
      return false;
    }
    const bool turned = column.key.ascending == order[i].descending;
    if (i > 0 && turned != backwards) return false;
    backwards = turned;
  }
  return true;
}

}  // namespace

std::optional<IndexPlan> ChooseIndex(RowFrame& frame, std::size_t table,
                                     std::span<const Expression* const> tests) {
  RatedPlan best;
  for (std::size_t i = 0; i < frame.table(table).store().indexes().size(); ++i) {
    RatedPlan rated = Rate(frame, table, i, tests);
    if (rated.score > best.score) best = std::move(rated);
  }
  if (best.score == 0) return std::nullopt;
  return std::move(best.plan);
}

bool PutInOrder(RowFrame& frame, std::span<const OrderTerm> order, std::optional<IndexPlan>& plan) {
  const std::vector<TableIndex>& indexes = frame.table(0).store().indexes();
  bool backwards = false;
  if (plan) {
    if (!HasOrder(frame, indexes[plan->index], order, backwards)) return false;
    plan->backwards = backwards;
    return true;
  }
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    if (IgnoresNulls(frame, 0, indexes[i])) continue;
    if (!HasOrder(frame, indexes[i], order, backwards)) continue;
    plan = IndexPlan{.index = i, .parts = {}, .backwards = backwards};
    return true;
  }
  return false;
}

std::vector<KeyRange> KeyRangesOf(const IndexPlan& plan, Evaluator& evaluator, RowFrame& frame) {
  std::vector<KeyRange> ranges(1);
  for (const IndexPlan::Part& part : plan.parts) {
    std::optional<ColumnRanges> own;
    for (const Expression* const test : part.tests) {
      std::optional<ColumnRanges> more = RangesOf(*test, part.column, evaluator, frame);
      if (!more) continue;
      if (own) {
        more->ranges = Intersection(own->ranges, more->ranges);
        more->points = own->points || more->points;
      }
      own = std::move(more);
    }
    if (!own || ranges.size() * own->ranges.size() > kMostRanges) break;
    std::vector<KeyRange> longer;
    for (const KeyRange& range : ranges) {
      for (const KeyRange& tail : own->ranges) {
        longer.push_back({range.low + tail.low, range.high + tail.high});
      }
    }
    ranges = std::move(longer);
    if (!own->points) break;
  }
  return ranges;
}

}  // namespace zent::jet
