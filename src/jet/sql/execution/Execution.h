#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "base/Status.h"
#include "jet/sql/execution/ResultSet.h"
#include "jet/sql/execution/SqlSession.h"
#include "jet/sql/syntax/Statement.h"

/// Statements of the Access dialect at work on a file.
namespace zent::jet {

/// The rows of a query. It is planned at once, so that errors in names come from here; rows are
/// read as they are asked for, except where they have to be grouped or put in order first.
/// kNoSuchTable for tables, and for queries stored in the file, which cannot be run.
Result<std::unique_ptr<ResultSet>> OpenQuery(SqlSession& session, const SelectStatement& select);

/// The path of the file that a statement names for its rows: it then only reads the one that it
/// runs on, unless both are the same. Empty for statements that change the file they run on.
std::string_view TargetFileOf(const Statement& statement);

/// Runs a statement that changes something and returns how many rows it changed (0 for data
/// definitions). It needs an open transaction of the catalog's pager, or, with another target file,
/// a ReadScope; after an error that transaction is fit for a rollback only. kInvalidOperation for a
/// query that only reads.
Result<std::int64_t> Execute(SqlSession& session, const Statement& statement);

}  // namespace zent::jet
