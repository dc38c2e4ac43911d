#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "base/Status.h"
#include "jet/sql/execution/IndexPlan.h"
#include "jet/sql/execution/RowFrame.h"
#include "jet/sql/execution/RowSource.h"
#include "jet/sql/execution/RowStream.h"
#include "jet/sql/syntax/Statement.h"

namespace zent::jet {

/// The rows of the FROM part that its joins and WHERE leave. For each row of the first table those
/// of the second are looked for, and so on: through an index where one fits, else through a list
/// of hashes where something must be equal, else all.
///
/// Tests are made as soon as the tables that they read are there; the frame, the expressions and
/// the evaluator must outlive it.
class JoinStream final : public RowStream {
 public:
  /// `tables` go by the tables of the frame. Their names are looked up.
  JoinStream(RowFrame& frame, Evaluator& evaluator, std::span<const JoinedTable> tables,
             const Expression* where);
  /// Chooses how to read each table. With `order` (which may be empty) it tries to give the rows in
  /// that order; true when it does.
  bool Plan(std::span<const OrderTerm> order);

  Status Restart() override;
  Result<bool> Next() override;
  Result<const Value*> At(std::size_t column) override { return frame_.At(column); }
  std::size_t place_size() const override { return levels_.size(); }
  void NotePlace(std::vector<std::uint32_t>& places) const override;
  Status GoTo(const std::uint32_t* place) override;

 private:
  using Tests = std::vector<const Expression*>;
  struct Level {
    bool outer = false;  ///< a left join: a row of nulls stands for no match
    bool matched = false;
    Tests tests = {};   ///< tell whether rows belong together
    Tests filter = {};  ///< behind a left join: tell whether the row is wanted
    std::unique_ptr<RowSource> source = {};
  };
  /// The number of tables that must be there for `test`.
  std::size_t TablesFor(const Expression& test) const;
  void AddTest(const Expression& test);
  std::unique_ptr<RowSource> MakeSource(std::size_t table, std::optional<IndexPlan> plan);
  Result<bool> Passes(const Tests& tests);
  Result<bool> NextAt(std::size_t level);

  RowFrame& frame_;
  Evaluator& evaluator_;
  std::vector<Level> levels_;
  Tests constants_;  ///< tests that read no table
  bool over_ = true;
  bool started_ = false;
};

}  // namespace zent::jet
