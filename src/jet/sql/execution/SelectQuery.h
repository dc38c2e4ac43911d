#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "jet/sql/execution/GroupedStream.h"
#include "jet/sql/execution/JoinStream.h"
#include "jet/sql/execution/Query.h"
#include "jet/sql/execution/RowFrame.h"
#include "jet/sql/execution/SelectNames.h"
#include "jet/sql/execution/SortedStream.h"
#include "jet/sql/execution/Subqueries.h"
#include "jet/storage/Pager.h"

namespace zent::jet {

/// One SELECT without unions: tables, joined and tested, then grouped, put in order and cut to
/// what TOP and DISTINCT leave.
class SelectQuery final : public Query {
 public:
  static Result<std::unique_ptr<Query>> Make(SqlSession& session, const SelectStatement& select,
                                             const OuterScope& outer);

  const std::vector<ResultColumn>& columns() const override { return columns_; }
  Result<bool> Next() override;
  const std::vector<Value>& row() const override { return row_; }
  std::optional<RowPointer> base_row() const override;
  Table* base_table() const override;
  Status Restart() override;
  std::size_t outer_reach() const override { return outer_reach_; }

 private:
  SelectQuery(SqlSession& session, const SelectStatement& select, const OuterScope& outer);
  Status OpenTables();
  Status BindNames();
  Status PlanRows();
  Status PlanGroups(Grouping& grouping);
  void UseRowCount(const Grouping& grouping);
  Status AddSubqueries();
  bool IsGrouped() const;

  Status Begin();
  Status CountRows();
  Result<bool> NextWanted();
  Result<bool> NextDistinct();
  Result<bool> IsLikeLast();
  Status Project();

  SqlSession& session_;
  ReadScope scope_;
  SelectStatement select_;
  OuterScope outer_;
  RowFrame frame_;
  Subqueries subqueries_;
  Evaluator evaluator_;
  std::vector<ScopeColumn> names_;  ///< of the frame's columns
  std::vector<ResultColumn> columns_;
  std::size_t outer_reach_ = 0;

  std::unique_ptr<JoinStream> joined_;
  std::unique_ptr<GroupedStream> grouped_;
  std::unique_ptr<SortedStream> sorted_;
  RowStream* rows_ = nullptr;  ///< the last of them

  bool begun_ = false;
  bool over_ = false;
  std::optional<std::int64_t> limit_;  ///< rows that TOP leaves
  std::int64_t given_ = 0;
  std::string last_key_;  ///< of the last row within the limit
  std::unordered_set<std::string> seen_;
  std::size_t seen_bytes_ = 0;
  std::vector<Value> row_;
};

}  // namespace zent::jet
