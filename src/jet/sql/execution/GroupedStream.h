#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/execution/RowStream.h"
#include "jet/sql/expressions/Aggregate.h"

namespace zent::jet {

/// What a query with GROUP BY or aggregates is made of.
struct Grouping {
  std::vector<Expression> groups;      ///< over the rows of the tables
  std::vector<Expression> aggregates;  ///< of kind Aggregate; their operands over the same
  const Expression* having = nullptr;  ///< over the groups
};

/// One row a group: the values of the group expressions, then those of the aggregates. Without
/// group expressions there is one group, also without rows. Groups come in the order in which their
/// first rows do.
class GroupedStream final : public RowStream {
 public:
  GroupedStream(RowStream& rows, Grouping grouping, Evaluator& evaluator)
      : rows_(rows), grouping_(std::move(grouping)), evaluator_(evaluator) {}

  /// The rows are known to be so many, and only that is asked.
  void SetRowCount(std::int32_t rows) { row_count_ = rows; }

  Status Restart() override;
  Result<bool> Next() override;
  Result<const Value*> At(std::size_t column) override;
  std::size_t place_size() const override { return 1; }
  void NotePlace(std::vector<std::uint32_t>& places) const override { places.push_back(at_); }
  Status GoTo(const std::uint32_t* place) override;

 private:
  struct Group {
    std::vector<Value> values;
    std::vector<Aggregator> aggregators;
  };
  Status Gather();
  Result<Group*> FindGroup();
  Status AddRow(Group& group);
  Status MakeValues(Group& group);
  Group NewGroup() const;

  RowStream& rows_;
  Grouping grouping_;
  Evaluator& evaluator_;
  std::optional<std::int32_t> row_count_;
  bool gathered_ = false;
  std::map<std::string, std::uint32_t, std::less<>> places_;
  std::vector<Group> groups_;
  std::size_t kept_ = 0;  ///< bytes
  std::uint32_t at_ = 0;
  std::uint32_t next_ = 0;
  std::string key_;
};

/// Whether both give the same value for every row.
bool IsSameExpression(const Expression& a, const Expression& b);

/// Puts columns of the groups in place of what `groups` has. kNotInAggregate for a column that is
/// left. Aggregates are left alone.
Status UseGroups(Expression& expression, const std::vector<Expression>& groups);

}  // namespace zent::jet
