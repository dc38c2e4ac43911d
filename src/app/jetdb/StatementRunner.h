#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "app/jetdb/OpenedDatabase.h"
#include "app/jetdb/RowPrinter.h"
#include "app/jetdb/StatementSplitter.h"
#include "jet/catalog/Transaction.h"
#include "jet/sql/execution/SqlSession.h"
#include "jet/sql/syntax/Statement.h"

namespace zent {

/// Runs statements on a database, and on the other files that they name.
class StatementRunner {
 public:
  /// `single`: all statements are one transaction, which Finish commits.
  StatementRunner(JetdbHost& host, OpenedDatabase& database, RowFormat format, bool single);

  /// Runs one statement; its error names its place in the script.
  Status Run(const ScriptStatement& statement);
  Status Finish();

 private:
  /// Another file, in a transaction of its own.
  struct Other {
    OpenedDatabase database;
    std::optional<jet::Transaction> transaction;
  };

  Status RunParsed(const jet::Statement& statement);
  Status Print(const jet::SelectStatement& select);
  Status Change(const jet::Statement& statement);
  Result<std::int64_t> Execute(const jet::Statement& statement);
  bool IsOwn(std::string_view path);
  Status Begin();
  Status Commit();
  Result<jet::Catalog*> OpenOther(std::string_view path);

  JetdbHost& host_;
  OpenedDatabase& database_;
  RowFormat format_;
  bool single_;
  jet::SqlSession session_;
  std::map<std::string, Other, std::less<>> others_;
  std::optional<jet::Transaction> transaction_;
};

}  // namespace zent
