#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "jet/sql/execution/Query.h"

namespace zent::jet {

/// The queries within the expressions of one query. What does not depend on the row is worked out
/// once.
class Subqueries final : public SubqueryRunner {
 public:
  explicit Subqueries(SqlSession& session) : session_(session) {}

  /// Makes the queries in `expression`, which must stay where it is. kSubqueryFields when one that
  /// gives values has several columns.
  Status Add(const Expression& expression, const OuterScope& outer);
  /// As Query::outer_reach, the largest of all.
  std::size_t outer_reach() const { return outer_reach_; }

  Result<Value> Single(const Expression& subquery, RowValues& row) override;
  Result<Value> Exists(const Expression& exists, RowValues& row) override;
  Result<Value> IsAmong(const Expression& in, const Value& value, RowValues& row) override;

 private:
  struct Known {
    std::unique_ptr<Query> query;
    std::optional<Value> answer = {};  ///< of one that does not depend on the row
    bool listed = false;               ///< all values are in `values`
    bool has_null = false;
    unsigned classes = 0;  ///< kinds of values there are, one bit each
    std::vector<Value> values = {};
    std::vector<std::string> keys = {};  ///< of `values`, in order
  };
  Status List(Known& known);
  template <typename Work>
  Result<Value> Answer(const Expression& expression, Work work);

  SqlSession& session_;
  std::map<const Expression*, Known> known_;
  std::size_t outer_reach_ = 0;
};

}  // namespace zent::jet
