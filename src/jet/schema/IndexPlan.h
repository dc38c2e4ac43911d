#pragma once

#include <optional>
#include <string_view>

#include "base/Status.h"
#include "jet/format/TableDefinition.h"
#include "jet/schema/NewTable.h"

/// From what a new index shall be to how the definition has it.
namespace zent::jet {

/// What Access leaves where an ordinary index has no cascades.
inline constexpr std::uint8_t kNotCascaded = 4;

/// The position of the logical index of that name, in any case; kItemNotFound.
Result<std::size_t> IndexPosition(const TableDefinition& table, std::string_view name);

/// The tree of `index`, without map and root: kInvalidName, kIndexExists, kPrimaryKeyExists,
/// kTooManyIndexes, kTooManyIndexFields, kItemNotFound for a column that is not there,
/// kInvalidFieldType for one that has no keys, kReadOnly for text whose order is not known.
Result<RealIndex> PlanIndex(const TableDefinition& table, std::string_view table_name,
                            const NewIndex& index);

/// kIndexExists when the name is taken, kTooManyIndexes when the table has all it may have.
Status CheckRoomForIndex(const TableDefinition& table, std::string_view table_name,
                         std::string_view index_name);

/// Adds a logical index over the real index at `real` and returns its number.
std::uint32_t AddLogicalIndex(std::string_view name, std::size_t real, IndexKind kind,
                              TableDefinition& table);

/// Takes out the logical index at `position`. The real index behind it goes as well when no other
/// logical one has it; that one is returned.
std::optional<RealIndex> RemoveLogicalIndex(std::size_t position, TableDefinition& table);

}  // namespace zent::jet
