#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/Status.h"
#include "database/port/TableDefinition.h"
#include "odbc/OdbcCatalog.h"

/// The structure of a server's database in the port's terms.
namespace zent {

/// Tables and views but those of the server itself.
Result<std::vector<odbc::OdbcTable>> OwnTables(odbc::OdbcCatalog& catalog);

/// The table of that name in any case: of several one in the schema "dbo", then one that is written
/// so, then the first.
std::optional<odbc::OdbcTable> FindTable(const std::vector<odbc::OdbcTable>& tables,
                                         std::string_view name);

/// With its fields and indexes. Attributes of a server's table are 0.
Result<TableDefinition> DefinitionOf(odbc::OdbcCatalog& catalog, const odbc::TableName& table);

}  // namespace zent
