#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/ForeignLink.h"
#include "jet/catalog/Table.h"

namespace zent::jet {

/// The update or deletion of a row, with all that it brings with it through relationships: cascades
/// over several levels, into the table itself and in circles. What it would come to is found out
/// and checked before the first row is touched, then made as a whole.
///
/// Checked is the state afterwards: a row may refer to one whose key changes with it, and a row
/// that goes as well holds nothing back.
class ChangePlan {
 public:
  explicit ChangePlan(Pager& pager) : pager_(pager) {}

  /// What the caller wants. Once for a plan.
  Status Delete(Table& table, RowPointer at);
  Status Update(Table& table, RowPointer at, std::span<const ColumnChange> changes);

  /// Follows the relationships and checks: kRelatedRecordsExist, kNoRelatedRecord, and whatever the
  /// tables refuse.
  Status Check();
  /// After Check.
  Status Make();

 private:
  using RowId = std::pair<PageNumber, RowPointer>;  ///< definition page of the table, row
  struct Planned {
    Table* table = nullptr;
    bool deleted = false;
    std::vector<ColumnChange> changes = {};  ///< of a row that stays
    int visits = 0;
    RowChange change = {};
  };
  /// A key that went away on the one side of a relationship that does not cascade.
  struct GoneKey {
    Table* table;
    const ForeignLink* link;
    std::string own_key;
    std::string partner_key;
  };

  Planned& PlannedRow(Table& table, RowPointer at);
  Status Visit(const RowId& id);
  Status FollowLink(const Planned& row, const ForeignLink& link);
  Status FollowTo(const Planned& row, const ForeignLink& link, RowPointer child);
  Status CheckReferences(const Planned& row);
  Status CheckGoneKey(const GoneKey& gone);
  Status NoteNewKeys(const Planned& row);
  /// Whether a row of `table` has `key` in that index when all is made.
  Result<bool> HasKeyAfterwards(Table& table, std::size_t index, const std::string& key) const;

  Pager& pager_;
  std::map<RowId, Planned> rows_;
  std::deque<RowId> to_visit_;
  std::vector<GoneKey> gone_;
  std::set<std::tuple<PageNumber, std::size_t, std::string>> new_keys_;  ///< table, index, key
};

}  // namespace zent::jet
