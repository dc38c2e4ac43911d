#pragma once

#include <optional>
#include <vector>

#include "jet/format/IndexKey.h"
#include "jet/sql/execution/KeyRange.h"
#include "jet/sql/expressions/Evaluator.h"

namespace zent::jet {

/// A column of an index, and what the tests on it may be compared with.
struct TestedColumn {
  std::size_t column = 0;  ///< number in the row
  const ColumnDefinition* definition = nullptr;
  KeyColumn key = {};
  /// Columns from this one to before that one are not known while the index is read: an operand
  /// that reads them is no constant.
  std::size_t first_unknown = 0;
  std::size_t end_unknown = 0;
};

enum class TestUse : std::uint8_t {
  None,    ///< the index does not help
  Range,   ///< the rows lie in ranges of keys
  Points,  ///< the keys are known: the next column of the index can be used as well
};

/// How far an index can use `test` on `tested`. With `not_null`, tests that a null passes are of no
/// use.
TestUse UseOf(const Expression& test, const TestedColumn& tested, bool not_null);

/// The keys of one column that rows passing `test` can have, in order; too many rather than too
/// few. Nothing: no limit is known.
struct ColumnRanges {
  std::vector<KeyRange> ranges;
  bool points = true;  ///< each range is one key
};
std::optional<ColumnRanges> RangesOf(const Expression& test, const TestedColumn& tested,
                                     Evaluator& evaluator, RowValues& row);

/// Whether `expression` can be worked out without the unknown columns of `tested`.
bool IsConstant(const Expression& expression, const TestedColumn& tested);

}  // namespace zent::jet
