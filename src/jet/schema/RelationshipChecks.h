#pragma once

#include <cstddef>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Relationship.h"
#include "jet/schema/EditedTable.h"

namespace zent::jet {

/// How a relationship lies over two definitions.
struct RelationshipPlan {
  Relationship relationship = {};           ///< its columns in the order of the referenced index
  std::vector<IndexColumn> referring = {};  ///< what an index on the referring side has
  std::size_t referenced_index = 0;         ///< enforced: the unique real index of the other side
};

/// kInvalidArgument and kTooManyIndexFields for the number of columns, kItemNotFound,
/// kFieldDefinedTwice, kRelationMismatch for columns of different types; enforced: kNoUniqueIndex.
Result<RelationshipPlan> PlanRelationship(const Relationship& relationship,
                                          const TableDefinition& referring,
                                          const TableDefinition& referenced);

/// kNoRelatedRecord when a row of the referring table names none of the referenced one. Rows that
/// are null in all columns name none.
Status CheckReferences(UsageMaps& maps, const RelationshipPlan& plan, PageNumber referring,
                       PageNumber referenced);

/// The real index over exactly these columns, in their order; nothing when there is none.
std::optional<std::size_t> FindTree(const TableDefinition& table,
                                    const std::vector<IndexColumn>& columns);

}  // namespace zent::jet
