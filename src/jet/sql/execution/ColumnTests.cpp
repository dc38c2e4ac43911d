#include "jet/sql/execution/ColumnTests.h"

#include <algorithm>
#include <utility>

#include "jet/sql/execution/KeyBounds.h"
#include "jet/sql/values/Like.h"

namespace zent::jet {
namespace {

bool IsTested(const Expression& expression, const TestedColumn& tested) {
  return expression.kind == ExpressionKind::Column && expression.column == tested.column;
}

/// The comparison with its sides exchanged.
ExpressionKind Turned(ExpressionKind kind) {
  switch (kind) {
    case ExpressionKind::Less:
      return ExpressionKind::Greater;
    case ExpressionKind::LessOrEqual:
      return ExpressionKind::GreaterOrEqual;
    case ExpressionKind::Greater:
      return ExpressionKind::Less;
    case ExpressionKind::GreaterOrEqual:
      return ExpressionKind::LessOrEqual;
    default:
      return kind;
  }
}

/// A comparison of the column with a constant, whichever side it stands on.
struct Compared {
  ExpressionKind kind = ExpressionKind::Equal;
  const Expression* constant = nullptr;  ///< null when it is no such comparison
};
Compared ComparedWith(const Expression& test, const TestedColumn& tested) {
  const bool left = IsTested(test.operands[0], tested);
  const Expression& other = test.operands[left ? 1 : 0];
  if ((!left && !IsTested(test.operands[1], tested)) || !IsConstant(other, tested)) return {};
  return {left ? test.kind : Turned(test.kind), &other};
}

bool OthersAreConstant(const Expression& test, const TestedColumn& tested) {
  return IsTested(test.operands[0], tested) &&
         std::all_of(test.operands.begin() + 1, test.operands.end(),
                     [&](const Expression& item) { return IsConstant(item, tested); });
}

/// Types whose keys are in the order of the values, one by one.
bool HasOrder(const TestedColumn& tested) {
  const ColumnType type = tested.definition->type;
  return type != ColumnType::Bool && type != ColumnType::Numeric && type != ColumnType::Guid &&
         type != ColumnType::Binary;
}

TestUse UseOfComparison(const Expression& test, const TestedColumn& tested) {
  const Compared compared = ComparedWith(test, tested);
  if (compared.constant == nullptr) return TestUse::None;
  if (compared.kind == ExpressionKind::Equal) return TestUse::Points;
  return HasOrder(tested) ? TestUse::Range : TestUse::None;
}

bool IsUsablePrefix(const Expression& test, const TestedColumn& tested) {
  if (tested.definition->type != ColumnType::Text || !OthersAreConstant(test, tested)) return false;
  const auto* const pattern = std::get_if<Text>(&test.operands[1].value);
  if (test.operands[1].kind != ExpressionKind::Literal || pattern == nullptr) return false;
  const Result<LikePattern> compiled = LikePattern::Compile(*pattern);
  return compiled.ok() && !SafePrefix(compiled.value().Prefix()).empty();
}

/// Makes the ranges of one column.
class RangeMaker {
 public:
  RangeMaker(const TestedColumn& tested, Evaluator& evaluator, RowValues& row)
      : tested_(tested), evaluator_(evaluator), row_(row) {}

  using Ranges = std::optional<ColumnRanges>;

  Ranges Make(const Expression& test) {
    switch (test.kind) {
      case ExpressionKind::Column:
        return UseOf(test, tested_, false) == TestUse::None
                   ? Ranges()
                   : Compare(ExpressionKind::Equal, Value(true));
      case ExpressionKind::Equal:
      case ExpressionKind::Less:
      case ExpressionKind::LessOrEqual:
      case ExpressionKind::Greater:
      case ExpressionKind::GreaterOrEqual:
        return Comparison(test);
      case ExpressionKind::In:
        return OthersAreConstant(test, tested_) ? List(test) : Ranges();
      case ExpressionKind::Between:
        return OthersAreConstant(test, tested_) ? Between(test) : Ranges();
      case ExpressionKind::Like:
        return IsUsablePrefix(test, tested_) ? Prefix(test) : Ranges();
      case ExpressionKind::IsNull:
        return IsTested(test.operands[0], tested_) ? Nulls() : Ranges();
      case ExpressionKind::And:
      case ExpressionKind::Or:
        return Both(test);
      default:
        return {};
    }
  }

 private:
  Ranges Comparison(const Expression& test) {
    const Compared compared = ComparedWith(test, tested_);
    if (compared.constant == nullptr) return {};
    return Compare(compared.kind, *compared.constant);
  }

  Ranges Compare(ExpressionKind kind, const Expression& constant) {
    const Result<Value> value = evaluator_.Evaluate(constant, row_);
    return value.ok() ? Compare(kind, value.value()) : Ranges();
  }

  Ranges Compare(ExpressionKind kind, const Value& value) {
    if (IsNull(value)) return ColumnRanges{};  // no comparison with null takes a row
    const std::optional<KeyBounds> bounds = BoundsOf(*tested_.definition, value);
    if (!bounds) return {};
    std::string low;
    std::string high;
    if (!AppendKey(tested_.key, bounds->low, low).ok()) return {};
    if (!AppendKey(tested_.key, bounds->high, high).ok()) return {};
    const std::string any(1, tested_.key.ascending ? '\x7F' : '\x80');
    const bool upwards = kind == ExpressionKind::Greater || kind == ExpressionKind::GreaterOrEqual;
    const bool point = kind == ExpressionKind::Equal;
    ColumnRanges found{.ranges = {}, .points = point && low == high};
    // What is not below the value lies behind its key, or before it in a descending column.
    if (point) {
      found.ranges.push_back({std::min(low, high), std::max(low, high)});
    } else if (upwards == tested_.key.ascending) {
      found.ranges.push_back({std::min(low, high), any});
    } else {
      found.ranges.push_back({any, std::max(low, high)});
    }
    return found;
  }

  Ranges List(const Expression& test) {
    ColumnRanges all;
    for (std::size_t i = 1; i < test.operands.size(); ++i) {
      Ranges one = Compare(ExpressionKind::Equal, test.operands[i]);
      if (!one) return {};
      Append(*std::move(one), all);
    }
    return all;
  }

  Ranges Between(const Expression& test) {
    const Ranges low = Compare(ExpressionKind::GreaterOrEqual, test.operands[1]);
    const Ranges high = Compare(ExpressionKind::LessOrEqual, test.operands[2]);
    if (!low || !high) return {};
    return ColumnRanges{.ranges = Intersection(low->ranges, high->ranges), .points = false};
  }

  Ranges Prefix(const Expression& test) {
    const auto* const pattern = std::get_if<Text>(&test.operands[1].value);
    if (pattern == nullptr) return {};
    const Result<LikePattern> compiled = LikePattern::Compile(*pattern);
    if (!compiled.ok()) return {};
    std::string key;
    const std::string prefix(SafePrefix(compiled.value().Prefix()));
    if (prefix.empty() || !AppendKey(tested_.key, prefix, key).ok()) return {};
    // The codes of the characters come first and end with 01 (FE when turned).
    key.resize(std::min(key.find(tested_.key.ascending ? '\x01' : '\xFE', 1), key.size()));
    return ColumnRanges{.ranges = {{key, key}}, .points = false};
  }

  Ranges Nulls() {
    std::string key;
    if (!AppendKey(tested_.key, Null(), key).ok()) return {};
    return ColumnRanges{.ranges = {{key, key}}};
  }

  Ranges Both(const Expression& test) {
    Ranges a = Make(test.operands[0]);
    Ranges b = Make(test.operands[1]);
    if (test.kind == ExpressionKind::Or) {
      if (!a || !b) return {};
      Append(*std::move(b), *a);
      return a;
    }
    if (!a || !b) return a ? a : b;
    return ColumnRanges{.ranges = Intersection(a->ranges, b->ranges),
                        .points = a->points || b->points};
  }

  static void Append(ColumnRanges more, ColumnRanges& all) {
    all.ranges.insert(all.ranges.end(), std::make_move_iterator(more.ranges.begin()),
                      std::make_move_iterator(more.ranges.end()));
    all.points = all.points && more.points;
    Tidy(all.ranges);
  }

  const TestedColumn& tested_;
  Evaluator& evaluator_;
  RowValues& row_;
};

TestUse UseOfBoth(const Expression& test, const TestedColumn& tested, bool not_null) {
  const TestUse a = UseOf(test.operands[0], tested, not_null);
  const TestUse b = UseOf(test.operands[1], tested, not_null);
  return test.kind == ExpressionKind::Or ? std::min(a, b) : std::max(a, b);
}

}  // namespace

bool IsConstant(const Expression& expression, const TestedColumn& tested) {
  switch (expression.kind) {
    case ExpressionKind::Column:
      return expression.column < tested.first_unknown || expression.column >= tested.end_unknown;
    case ExpressionKind::Aggregate:
    case ExpressionKind::Subquery:
    case ExpressionKind::Exists:
    case ExpressionKind::InQuery:
    case ExpressionKind::NotInQuery:
      return false;
    default:
      return std::all_of(expression.operands.begin(), expression.operands.end(),
                         [&](const Expression& item) { return IsConstant(item, tested); });
  }
}

TestUse UseOf(const Expression& test, const TestedColumn& tested, bool not_null) {
  switch (test.kind) {
    case ExpressionKind::Column:
      return IsTested(test, tested) && tested.definition->type == ColumnType::Bool ? TestUse::Points
                                                                                   : TestUse::None;
    case ExpressionKind::Equal:
    case ExpressionKind::Less:
    case ExpressionKind::LessOrEqual:
    case ExpressionKind::Greater:
    case ExpressionKind::GreaterOrEqual:
      return UseOfComparison(test, tested);
    case ExpressionKind::In:
      return OthersAreConstant(test, tested) ? TestUse::Points : TestUse::None;
    case ExpressionKind::Between:
      return OthersAreConstant(test, tested) && HasOrder(tested) ? TestUse::Range : TestUse::None;
    case ExpressionKind::Like:
      return IsUsablePrefix(test, tested) ? TestUse::Range : TestUse::None;
    case ExpressionKind::IsNull:
      return IsTested(test.operands[0], tested) && !not_null &&
                     tested.definition->type != ColumnType::Bool
                 ? TestUse::Points
                 : TestUse::None;
    case ExpressionKind::And:
    case ExpressionKind::Or:
      return UseOfBoth(test, tested, not_null);
    default:
      return TestUse::None;
  }
}

std::optional<ColumnRanges> RangesOf(const Expression& test, const TestedColumn& tested,
                                     Evaluator& evaluator, RowValues& row) {
  return RangeMaker(tested, evaluator, row).Make(test);
}

}  // namespace zent::jet
