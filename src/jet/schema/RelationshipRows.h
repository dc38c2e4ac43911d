#pragma once

#include <string_view>

#include "base/Status.h"
#include "jet/catalog/Relationship.h"

/// Writes the rows of MSysRelationships. Names are found in any case.
namespace zent::jet {

Status AddRelationshipRows(UsageMaps& maps, const Relationship& relationship);
Status DeleteRelationshipRows(UsageMaps& maps, std::string_view name);
/// A table has another name, on either side.
Status RenameRelatedTable(UsageMaps& maps, std::string_view from, std::string_view to);
Status RenameRelatedColumn(UsageMaps& maps, std::string_view table, std::string_view from,
                           std::string_view to);

}  // namespace zent::jet
