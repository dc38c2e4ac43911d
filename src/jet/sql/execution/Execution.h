#pragma once

#include <cstdint>
#include <memory>

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

/// Runs a statement that changes something and returns how many rows it changed (0 for data
/// definitions). It needs an open transaction of the catalog's pager; after an error that
/// transaction is fit for a rollback only. kInvalidOperation for a query that only reads.
Result<std::int64_t> Execute(SqlSession& session, const Statement& statement);

}  // namespace zent::jet
