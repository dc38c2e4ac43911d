#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "jet/format/TableDefinition.h"

/// The four tables in which a database describes itself, as Access makes them in a new file. The
/// numbers of their columns and the places of their fields are always these.
namespace zent::jet {

struct SystemTableName {
  PageNumber page;
  std::string_view name;
};
inline constexpr std::array kSystemTables = {
    SystemTableName{kObjectsPage, "MSysObjects"}, SystemTableName{kAcesPage, "MSysACEs"},
    SystemTableName{kQueriesPage, "MSysQueries"},
    SystemTableName{kRelationshipsPage, "MSysRelationships"}};

/// Columns and indexes of the system table at `page`, without maps and trees.
TableDefinition SystemDefinition(PageNumber page);

}  // namespace zent::jet
