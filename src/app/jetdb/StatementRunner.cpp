#include "app/jetdb/StatementRunner.h"

#include <fmt/format.h>

#include "jet/sql/execution/Execution.h"
#include "jet/sql/syntax/Parser.h"

namespace zent {

StatementRunner::StatementRunner(JetdbHost& host, OpenedDatabase& database, RowFormat format,
                                 bool single)
    : host_(host),
      database_(database),
      format_(format),
      single_(single),
      session_{.catalog = *database.catalog} {
  session_.open_other = [this](std::string_view path) { return OpenOther(path); };
}

Status StatementRunner::Run(const ScriptStatement& statement) {
  session_.context.now = host_.Now();
  const Result<jet::Statement> parsed = jet::ParseStatement(statement.text);
  Status done = parsed.ok() ? RunParsed(parsed.value()) : parsed.status();
  if (done.ok()) return done;
  RuntimeError error = done.error();
  error.description += fmt::format(" [statement of line {}]", statement.line);
  return error;
}

Status StatementRunner::RunParsed(const jet::Statement& statement) {
  const auto* const select = std::get_if<jet::SelectStatement>(&statement);
  return select != nullptr && select->into.empty() ? Print(*select) : Change(statement);
}

Status StatementRunner::Print(const jet::SelectStatement& select) {
  const Result<std::unique_ptr<jet::ResultSet>> rows = jet::OpenQuery(session_, select);
  if (!rows.ok()) return rows.status();
  std::vector<std::string> columns;
  for (const jet::ResultColumn& column : rows.value()->columns()) columns.push_back(column.name);
  RowPrinter printer(host_.output(), format_);
  printer.Begin(std::move(columns));
  std::size_t count = 0;
  Result<bool> more = rows.value()->Next();
  for (; more.ok() && more.value(); more = rows.value()->Next()) {
    printer.Add(rows.value()->row());
    ++count;
  }
  printer.End();
  if (!more.ok()) return more.status();
  if (format_ == RowFormat::Text) host_.output() << fmt::format("({} rows)\n", count);
  return {};
}

Status StatementRunner::Change(const jet::Statement& statement) {
  const Result<std::int64_t> changed = Execute(statement);
  if (!changed.ok()) {
    others_.clear();
    transaction_.reset();
    return changed.status();
  }
  if (!single_) {
    if (Status committed = Commit(); !committed.ok()) return committed;
  }
  if (format_ == RowFormat::Text) {
    host_.output() << fmt::format("({} rows changed)\n", changed.value());
  }
  return {};
}

Result<std::int64_t> StatementRunner::Execute(const jet::Statement& statement) {
  const std::string_view target = jet::TargetFileOf(statement);
  if (target.empty() || IsOwn(target)) {
    if (Status begun = Begin(); !begun.ok()) return begun.error();
    return jet::Execute(session_, statement);
  }
  // A file that is only read need not be writable.
  const jet::ReadScope scope(*database_.pager);
  if (!scope.status().ok()) return scope.status().error();
  return jet::Execute(session_, statement);
}

bool StatementRunner::IsOwn(std::string_view path) {
  return host_.IsSameFile(std::string(path), database_.pager->path());
}

Status StatementRunner::Begin() {
  if (transaction_) return {};
  Result<jet::Transaction> begun = jet::Transaction::Begin(*database_.catalog);
  if (!begun.ok()) return begun.status();
  transaction_.emplace(std::move(begun.value()));
  return {};
}

/// Files that rows were copied into come first: if that fails, they are nowhere.
Status StatementRunner::Commit() {
  for (auto& [path, other] : others_) {
    if (Status committed = other.transaction->Commit(); !committed.ok()) {
      transaction_.reset();
      return committed;
    }
  }
  others_.clear();
  if (!transaction_) return {};
  Status committed = transaction_->Commit();
  transaction_.reset();
  return committed;
}

Status StatementRunner::Finish() { return Commit(); }

Result<jet::Catalog*> StatementRunner::OpenOther(std::string_view path) {
  if (IsOwn(path)) return database_.catalog.get();
  const auto known = others_.find(path);
  if (known != others_.end()) return known->second.database.catalog.get();
  Result<OpenedDatabase> opened = OpenDatabase(host_, std::string(path), {}, jet::Sharing::Shared);
  if (!opened.ok()) return opened.error();
  Other other = {.database = std::move(opened.value()), .transaction = std::nullopt};
  Result<jet::Transaction> begun = jet::Transaction::Begin(*other.database.catalog);
  if (!begun.ok()) return begun.error();
  other.transaction.emplace(std::move(begun.value()));
  const auto added = others_.emplace(std::string(path), std::move(other)).first;
  return added->second.database.catalog.get();
}

}  // namespace zent
