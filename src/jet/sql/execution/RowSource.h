#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/sql/execution/IndexPlan.h"
#include "jet/sql/execution/KeyRange.h"
#include "jet/sql/execution/RowFrame.h"
#include "jet/sql/expressions/Evaluator.h"
#include "jet/store/IndexCursor.h"
#include "jet/store/RowStore.h"

namespace zent::jet {

/// Puts rows of one table into a frame, one after the other: all, or those that some tests leave.
class RowSource {
 public:
  virtual ~RowSource() = default;
  /// Begins anew, with the rows of the tables before this one as they are now.
  virtual Status Restart() = 0;
  virtual Result<bool> Next() = 0;
};

/// All rows in the order of the file.
class ScanSource final : public RowSource {
 public:
  ScanSource(RowFrame& frame, std::size_t table) : frame_(frame), table_(table) {}
  Status Restart() override;
  Result<bool> Next() override;

 private:
  RowFrame& frame_;
  std::size_t table_;
  std::optional<RowScan> scan_;
};

/// The rows that an index finds, in its order or in the opposite one.
class IndexSource final : public RowSource {
 public:
  IndexSource(RowFrame& frame, std::size_t table, IndexPlan plan, Evaluator& evaluator);
  Status Restart() override;
  Result<bool> Next() override;

 private:
  Result<bool> EnterRange();
  Result<bool> Step();
  bool InRange() const;

  RowFrame& frame_;
  std::size_t table_;
  IndexPlan plan_;
  Evaluator& evaluator_;
  IndexCursor cursor_;
  std::vector<KeyRange> ranges_;
  std::size_t next_range_ = 0;
  bool entered_ = false;
  std::string first_key_;              ///< of the range
  std::optional<std::string> behind_;  ///< the first key behind it; nothing: it has no end
};

/// The rows whose columns equal what the tables before have, found through a sorted list of all
/// rows' hashes that is made once. Twelve bytes are kept of each row.
class LookupSource final : public RowSource {
 public:
  /// An expression of this table, and what it equals.
  using Equal = std::pair<const Expression*, const Expression*>;
  LookupSource(RowFrame& frame, std::size_t table, std::vector<Equal> equals, Evaluator& evaluator)
      : frame_(frame), table_(table), equals_(std::move(equals)), evaluator_(evaluator) {}
  Status Restart() override;
  Result<bool> Next() override;

 private:
  struct Entry {
    std::uint32_t hash = 0;
    RowPointer at = {};
    auto operator<=>(const Entry&) const = default;
  };
  Status Build();
  Result<bool> HashOwn(std::uint32_t& hash);

  RowFrame& frame_;
  std::size_t table_;
  std::vector<Equal> equals_;
  Evaluator& evaluator_;
  bool built_ = false;
  std::vector<Entry> entries_;
  /// What the own values are, one bit a class. Values of different classes are not for hashes to
  /// compare: then all rows are looked at.
  std::vector<unsigned> classes_;
  std::string key_;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
};

}  // namespace zent::jet
