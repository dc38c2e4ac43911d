#include "jet/sql/execution/SqlFile.h"

#include <gtest/gtest.h>

#include "jet/catalog/Transaction.h"
#include "jet/fakes/TestDatabase.h"
#include "jet/schema/NewDatabase.h"
#include "jet/sql/syntax/Parser.h"
#include "jet/sql/values/Conversion.h"

namespace zent::jet::testing {
namespace {

constexpr EvaluationContext kClock = {.now = {38383.75}};

template <typename Items, typename Print>
std::string Joined(const Items& items, std::string_view between, Print print) {
  std::string text;
  bool first = true;
  for (const auto& item : items) {
    if (!first) text += between;
    first = false;
    text += print(item);
  }
  return text;
}

}  // namespace

std::string Shown(const Value& value) {
  if (IsNull(value)) return "NULL";
  if (const bool* const yes = std::get_if<bool>(&value)) return *yes ? "Yes" : "No";
  return TextOf(value).value_or("?");
}

SqlFile::SqlFile() {
  const Status created = CreateDatabase(storage_, kPath, {});
  EXPECT_TRUE(created.ok());
  Result<std::unique_ptr<Pager>> pager = Pager::Open(storage_, kPath, Opened(Sharing::Exclusive));
  EXPECT_TRUE(pager.ok());
  pager_ = std::move(pager.value());
  Result<std::unique_ptr<Catalog>> catalog = Catalog::Open(*pager_);
  EXPECT_TRUE(catalog.ok());
  catalog_ = std::move(catalog.value());
}

SqlFile& SqlFile::Other(std::string_view path) {
  std::unique_ptr<SqlFile>& other = others_[std::string(path)];
  if (!other) other = std::make_unique<SqlFile>();
  return *other;
}

SqlSession SqlFile::session() {
  return {.catalog = *catalog_, .context = kClock, .open_other = [this](std::string_view path) {
            SqlFile& other = Other(path);
            if (!other.pager_->in_transaction()) {
              EXPECT_TRUE(other.pager_->Begin().ok());
            }
            return Result<Catalog*>(other.catalog_.get());
          }};
}

Result<std::int64_t> SqlFile::Execute(std::string_view statement) {
  const Result<Statement> parsed = ParseStatement(statement);
  if (!parsed.ok()) return parsed.error();
  Result<Transaction> transaction = Transaction::Begin(*catalog_);
  if (!transaction.ok()) return transaction.error();
  SqlSession own = session();
  Result<std::int64_t> rows = jet::Execute(own, parsed.value());
  for (const auto& [path, other] : others_) {
    if (!other->pager_->in_transaction()) continue;
    const Status ended = rows.ok() ? other->pager_->Commit() : other->pager_->Rollback();
    if (!rows.ok()) other->catalog_->Forget();
    EXPECT_TRUE(ended.ok());
  }
  if (!rows.ok()) return rows;
  const Status committed = transaction.value().Commit();
  if (!committed.ok()) return committed.error();
  return rows;
}

std::string SqlFile::Run(std::string_view statement) {
  const Result<std::int64_t> rows = Execute(statement);
  return rows.ok() ? std::to_string(rows.value()) : "error " + std::to_string(rows.number());
}

void SqlFile::RunAll(const std::vector<std::string_view>& statements) {
  for (const std::string_view statement : statements) {
    EXPECT_EQ(Message(statement), "") << statement;
  }
}

std::string SqlFile::Message(std::string_view statement) {
  const Result<std::int64_t> rows = Execute(statement);
  return rows.ok() ? "" : rows.error().description;
}

std::string SqlFile::Rows(std::string_view query) {
  const auto failed = [](int number) { return "error " + std::to_string(number); };
  const Result<Statement> parsed = ParseStatement(query);
  if (!parsed.ok()) return failed(parsed.number());
  SqlSession own = session();
  const Result<std::unique_ptr<ResultSet>> rows =
      OpenQuery(own, std::get<SelectStatement>(parsed.value()));
  if (!rows.ok()) return failed(rows.number());
  std::string text;
  for (bool first = true;; first = false) {
    const Result<bool> found = rows.value()->Next();
    if (!found.ok()) return failed(found.number());
    if (!found.value()) return text;
    text += (first ? "" : " / ") + Joined(rows.value()->row(), "|", Shown);
  }
}

std::string SqlFile::Columns(std::string_view query) {
  const Result<Statement> parsed = ParseStatement(query);
  EXPECT_TRUE(parsed.ok());
  SqlSession own = session();
  const Result<std::unique_ptr<ResultSet>> rows =
      OpenQuery(own, std::get<SelectStatement>(parsed.value()));
  if (!rows.ok()) return "error " + std::to_string(rows.number());
  return Joined(rows.value()->columns(), "|",
                [](const ResultColumn& column) { return column.name; });
}

}  // namespace zent::jet::testing
