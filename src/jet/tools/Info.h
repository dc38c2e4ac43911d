#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/Status.h"
#include "jet/catalog/Catalog.h"
#include "jet/format/FileHeader.h"

namespace zent::jet {

/// What there is to know of a database at a glance.
struct DatabaseInfo {
  FileHeader header = {};
  std::string format = {};  ///< as FormatName has it
  std::size_t page_size = 0;
  PageNumber pages = 0;
  std::size_t tables = 0;         ///< made by people
  std::size_t system_tables = 0;  ///< kept by the engine or by Access
  std::size_t linked_tables = 0;
  std::size_t queries = 0;
  std::size_t relationships = 0;
  std::uint64_t rows = 0;  ///< of the tables made by people, by their counters
};
Result<DatabaseInfo> ReadInfo(Catalog& catalog);

/// A table in a list of tables.
struct TableInfo {
  std::string name = {};
  std::string kind = {};  ///< "table", "hidden", "system", "linked", "odbc"
  std::size_t columns = 0;
  std::size_t indexes = 0;
  std::uint64_t rows = 0;    ///< by its counter
  std::string source = {};   ///< of a linked table: file and name there
  std::string problem = {};  ///< why it cannot be read
};
/// By name; those of the engine and of Access only with `all`.
Result<std::vector<TableInfo>> ListTables(Catalog& catalog, bool all);

}  // namespace zent::jet
