#pragma once

#include <string>
#include <vector>

#include "base/Status.h"
#include "odbc/Identifiers.h"
#include "odbc/OdbcColumn.h"

namespace zent::odbc {

class OdbcConnection;

struct OdbcTable {
  TableName name;
  bool is_view = false;
  bool operator==(const OdbcTable&) const = default;
};

struct OdbcIndexColumn {
  std::string name;
  bool descending = false;
  bool operator==(const OdbcIndexColumn&) const = default;
};

struct OdbcIndex {
  std::string name;
  bool unique = false;
  std::vector<OdbcIndexColumn> columns;
  bool operator==(const OdbcIndex&) const = default;
};

/// What a server knows of its tables. Names are taken as they are, "%" and "_" in them too; of a
/// table that is not there everything is empty. Parts that are empty are those of the connection.
class OdbcCatalog {
 public:
  explicit OdbcCatalog(OdbcConnection& connection) : connection_(connection) {}

  /// Tables and views, no system tables, of the connection's database.
  Result<std::vector<OdbcTable>> Tables();
  /// In the order of the table.
  Result<std::vector<OdbcColumn>> Columns(const TableName& table);
  /// The columns of the primary key in the order that the driver tells, which is not the key's own
  /// with every driver; empty without one.
  Result<std::vector<std::string>> PrimaryKey(const TableName& table);
  /// All indexes, that of the primary key too.
  Result<std::vector<OdbcIndex>> Indexes(const TableName& table);

 private:
  TableName InDatabase(TableName table) const;

  OdbcConnection& connection_;
};

}  // namespace zent::odbc
