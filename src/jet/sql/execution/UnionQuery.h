#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "jet/sql/execution/Query.h"
#include "jet/sql/execution/RowStream.h"
#include "jet/sql/execution/SortedStream.h"

namespace zent::jet {

/// The rows of several queries, one after the other. Their names are those of the first.
class UnionQuery final : public Query {
 public:
  static Result<std::unique_ptr<Query>> Make(SqlSession& session, const SelectStatement& select,
                                             const OuterScope& outer);

  const std::vector<ResultColumn>& columns() const override { return columns_; }
  Result<bool> Next() override;
  const std::vector<Value>& row() const override { return row_; }
  std::optional<RowPointer> base_row() const override { return std::nullopt; }
  Table* base_table() const override { return nullptr; }
  Status Restart() override;
  std::size_t outer_reach() const override { return outer_reach_; }

 private:
  struct Term {
    std::unique_ptr<Query> query;
    bool distinct = false;  ///< no row that is there already, also among its own
  };
  /// The present row as expressions read it.
  class PresentRow final : public RowValues {
   public:
    explicit PresentRow(const std::vector<Value>& row) : row_(row) {}
    Result<const Value*> At(std::size_t column) override { return &row_[column]; }

   private:
    const std::vector<Value>& row_;
  };

  explicit UnionQuery(SqlSession& session) : evaluator_(session.context), present_(row_) {}
  Status BindOrder(const SelectStatement& select);
  Result<bool> NextOfTerms();
  Result<bool> IsNew();
  Status Gather();

  std::vector<Term> terms_;
  std::vector<ResultColumn> columns_;
  std::vector<OrderTerm> order_;
  std::size_t outer_reach_ = 0;
  Evaluator evaluator_;

  bool begun_ = false;
  std::size_t term_ = 0;
  std::vector<Value> row_;
  PresentRow present_;
  std::unordered_set<std::string> seen_;
  std::size_t kept_ = 0;  ///< bytes
  bool gathered_ = false;
  std::vector<std::pair<std::string, std::vector<Value>>> in_order_;
  std::size_t next_ = 0;
};

}  // namespace zent::jet
