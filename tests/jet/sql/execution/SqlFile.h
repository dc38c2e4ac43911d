#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "jet/catalog/Catalog.h"
#include "jet/fakes/MemoryStorage.h"
#include "jet/schema/Schema.h"
#include "jet/sql/execution/Execution.h"

namespace zent::jet::testing {

/// A new database in memory, and statements at work on it. The clock stands at 2005-01-31 18:00.
class SqlFile {
 public:
  SqlFile();

  /// Runs a statement in a transaction of its own: how many rows it changed ("3"), or "error 3022".
  std::string Run(std::string_view statement);
  /// Runs statements that must succeed.
  void RunAll(const std::vector<std::string_view>& statements);
  /// The rows of a query: "1|Ann / 2|Bob", "" without any, or "error 3078".
  std::string Rows(std::string_view query);
  /// The names of its columns: "Id|Name".
  std::string Columns(std::string_view query);
  /// What a statement says when it fails; empty when it does not.
  std::string Message(std::string_view statement);

  /// The file of that name for IN "name"; made when it is asked for.
  SqlFile& Other(std::string_view path);

  Catalog& catalog() { return *catalog_; }
  Pager& pager() { return *pager_; }
  SqlSession session();

 private:
  Result<std::int64_t> Execute(std::string_view statement);

  MemoryStorage storage_;
  std::unique_ptr<Pager> pager_;
  std::unique_ptr<Catalog> catalog_;
  std::map<std::string, std::unique_ptr<SqlFile>, std::less<>> others_;
};

/// One value as the tests write it: text as it is, NULL, Yes, No, numbers, dates.
std::string Shown(const Value& value);

/// A statement or query, and what comes of it.
struct SqlCase {
  std::string_view what;
  std::string_view statement;
  std::string_view outcome;
};

}  // namespace zent::jet::testing
