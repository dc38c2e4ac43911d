#include "jet/sql/execution/Execution.h"

#include <utility>

#include "jet/format/JetErrors.h"
#include "jet/sql/execution/Query.h"
#include "jet/sql/execution/StatementRunners.h"

namespace zent::jet {
namespace {

struct Runner {
  SqlSession& session;

  Result<std::int64_t> operator()(const SelectStatement& select) const {
    if (!select.into.empty()) return RunSelectInto(session, select);
    return JetErrorBecause(kInvalidOperation, "a query that changes nothing cannot be executed");
  }
  Result<std::int64_t> operator()(const InsertStatement& insert) const {
    return RunInsert(session, insert);
  }
  Result<std::int64_t> operator()(const UpdateStatement& update) const {
    return RunUpdate(session, update);
  }
  Result<std::int64_t> operator()(const DeleteStatement& statement) const {
    return RunDelete(session, statement);
  }
  template <typename Definition>
  Result<std::int64_t> operator()(const Definition& definition) const {
    const Status done = RunDefinition(session, definition);
    if (!done.ok()) return done.error();
    return std::int64_t{0};
  }
};

}  // namespace

Result<std::int64_t> Execute(SqlSession& session, const Statement& statement) {
  return std::visit(Runner{session}, statement);
}

std::string_view TargetFileOf(const Statement& statement) {
  if (const auto* const insert = std::get_if<InsertStatement>(&statement)) return insert->database;
  if (const auto* const select = std::get_if<SelectStatement>(&statement)) {
    return select->into_database;
  }
  return {};
}

Result<std::unique_ptr<ResultSet>> OpenQuery(SqlSession& session, const SelectStatement& select) {
  if (!select.into.empty()) {
    return JetErrorBecause(kInvalidOperation, "SELECT INTO makes a table: it gives no rows");
  }
  Result<std::unique_ptr<Query>> query = MakeQuery(session, select);
  if (!query.ok()) return query.error();
  return std::unique_ptr<ResultSet>(std::move(query.value()));
}

}  // namespace zent::jet
