#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/store/TableStore.h"

namespace zent::jet {

class Catalog;
class Table;

/// One side of an enforced relationship, seen from the table that has the logical index. Each side
/// has an index, so that what belongs together is found by keys.
struct ForeignLink {
  enum class OnDelete : std::uint8_t { Refuse, Cascade, SetNull };

  ForeignSide side = ForeignSide::None;  ///< what the table itself is
  std::size_t own = 0;                   ///< position of its index among the real ones
  Table* other = nullptr;
  std::size_t partner = 0;  ///< position of the other table's index
  bool cascades_updates = false;
  OnDelete on_delete = OnDelete::Refuse;
  bool same_keys = false;  ///< equal values have equal keys in both indexes
};

/// The links of `table`. Damage when an index names a table that is not there, or one that does not
/// name it as well.
Result<std::vector<ForeignLink>> OpenLinks(Catalog& catalog, Table& table);

/// The key that the partner's index has for the values which `row`, of `table`, has in the link's
/// columns. None when all of them are null: such a row is related to nothing.
Result<std::optional<std::string>> PartnerKey(Table& table, const ForeignLink& link,
                                              const RowState& row);

/// Those values.
Result<std::vector<Value>> LinkValues(Table& table, const ForeignLink& link, const RowState& row);

}  // namespace zent::jet
