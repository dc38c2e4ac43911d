#pragma once

#include <string>

#include "base/Status.h"
#include "odbc/OdbcHandle.h"

namespace zent::odbc {

struct OdbcSession;

/// What a server and its driver say of themselves.
struct ServerFacts {
  std::string dbms_name;  ///< "MariaDB", "Microsoft SQL Server", "Oracle"
  std::string dbms_version;
  std::string driver_name;
  std::string database;          ///< empty where the server has no databases of its own
  std::string user;              ///< as the server knows it
  std::string data_source;       ///< the DSN; empty where none was named
  std::string identifier_quote;  ///< of one character; empty when names cannot be quoted
  std::string pattern_escape;    ///< before "%" and "_" in names that are patterns
  bool has_schemas = false;      ///< "a.b" is table b of schema a, else of database a
  bool has_transactions = false;
  /// Statements that may be in use at once on one connection; 0 when unlimited or unknown.
  unsigned concurrent_statements = 0;
};

Result<ServerFacts> ReadServerFacts(OdbcSession& session, const OdbcHandle& connection);

}  // namespace zent::odbc
