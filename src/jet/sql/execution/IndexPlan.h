#pragma once

#include <optional>
#include <span>
#include <vector>

#include "jet/sql/execution/ColumnTests.h"
#include "jet/sql/execution/KeyRange.h"
#include "jet/sql/execution/RowFrame.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

/// How an index of a table is read.
struct IndexPlan {
  /// A column of the index and the tests on it.
  struct Part {
    TestedColumn column = {};
    std::vector<const Expression*> tests = {};
  };
  std::size_t index = 0;         ///< among TableStore::indexes
  std::vector<Part> parts = {};  ///< the leading columns that tests restrict
  bool backwards = false;
};

/// The index through which the fewest rows of table `table` are likely to be read; nothing when
/// none helps. The rows of the tables before are taken as known.
std::optional<IndexPlan> ChooseIndex(RowFrame& frame, std::size_t table,
                                     std::span<const Expression* const> tests);

/// Makes `plan` give the rows of the first table in the order of `order`, with the index it has or,
/// having none, with one that fits; false when that is not possible. All terms are columns of that
/// table.
bool PutInOrder(RowFrame& frame, std::span<const OrderTerm> order, std::optional<IndexPlan>& plan);

/// What is to be read, in the order of the index.
std::vector<KeyRange> KeyRangesOf(const IndexPlan& plan, Evaluator& evaluator, RowFrame& frame);

}  // namespace zent::jet
